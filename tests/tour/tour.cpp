#include "tour.h"

#include <QApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdio>
#include <utility>

namespace tavlo::tour {
namespace {

using base::operator""ms;

/// How often it is looked for what must come: for more than a minute, and longer on a machine that
/// is busy elsewhere.
constexpr int kManyLooks = 1500;
/// What was just done may not have reached the deck yet.
constexpr int kLooksUntilOver = 20;
/// What a window needs to be on the screen as its form says.
constexpr base::Duration kSettle = 250ms;

}  // namespace

Tour::Tour(platform::qt::QtLoop& loop, QString pictureFolder, std::vector<Step> steps,
           std::size_t first)
    : loop_(loop),
      pictureFolder_(std::move(pictureFolder)),
      steps_(std::move(steps)),
      first_(first),
      tick_(loop, "tour", 50ms) {
  tick_.OnTick = [this] { Tick(); };
}

void Tour::Tick() {
  tick_.Stop();
  if (next_ == steps_.size()) return;
  const Step& step = steps_[next_];
  if (!acted_) {
    acted_ = true;
    looks_ = 0;
    Act(step);
  } else if (step.seen()) {
    Finish(step, true);
  } else if (++looks_ == kManyLooks) {
    Finish(step, false);
  } else if (IsOver(step)) {
    Act(step);
  }
  tick_.Start();
}

void Tour::Act(const Step& step) {
  looksOver_ = 0;
  if (step.act) step.act();
}

bool Tour::IsOver(const Step& step) {
  looksOver_ = step.over && step.over() ? looksOver_ + 1 : 0;
  return looksOver_ == kLooksUntilOver;
}

void Tour::Finish(const Step& step, bool seen) {
  if (!step.picture.empty()) {
    loop_.Wait(kSettle);
    TakePicture(step.picture);
  }
  std::printf("%3zu  %-8s %s\n", Number(), seen ? "seen" : "NOT SEEN", step.says.c_str());
  std::fflush(stdout);
  if (!seen) {
    ++missed_;
    TakePicture("not-seen");
  }
  acted_ = false;
  ++next_;
}

void Tour::TakePicture(const std::string& name) const {
  const QPixmap picture = QApplication::primaryScreen()->grabWindow(0);
  const QString path = QString("%1/%2-%3.png")
                           .arg(pictureFolder_)
                           .arg(Number(), 3, 10, QChar('0'))
                           .arg(QString::fromStdString(name));
  if (!picture.save(path)) std::printf("    the picture %s could not be kept\n", name.c_str());
}

}  // namespace tavlo::tour
