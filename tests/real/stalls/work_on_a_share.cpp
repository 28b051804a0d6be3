#include "stalls/work_on_a_share.h"

#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <filesystem>
#include <utility>

#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

}  // namespace

LifeInWaits::LifeInWaits(DrivenProgram& program)
    : program_(program), feed_(program.Loop(), "life", 20ms, base::TimerKind::Feed) {
  feed_.OnTick = [this] { Tick(); };
  feed_.Start();
  qApp->installEventFilter(this);
}

void LifeInWaits::Tick() {
  if (!program_.Loop().Breathing()) return;
  for (QWidget* const window : QApplication::topLevelWidgets()) window->update();
  ++Feeds;
  OnFeed();
}

bool LifeInWaits::eventFilter(QObject* object, QEvent* event) {
  const bool window = object->isWidgetType() && static_cast<QWidget*>(object)->isWindow();
  if (window && event->type() == QEvent::Paint && program_.Loop().Breathing()) ++Paints;
  return false;
}

WorkOnAShare::WorkOnAShare(std::string below, const store::Assignments& settings)
    : below_(std::move(below)), settings_(settings) {}

void WorkOnAShare::SetUp() {
  ASSERT_TRUE(server.Start());
  home.MakeRoot(QuietSettings(settings_));
  fs::create_directory(home.CompletedPath());
  share.emplace(home, below_);
  if (!Mount().Fault().empty()) GTEST_SKIP() << Mount().Fault();
}

std::string WorkOnAShare::Put(const std::string& author, int seconds, const std::string& folder) {
  const std::string name = DocumentName(author);
  const std::string path = Behind(home.Root() + "/Files/" + folder + "/" + name);
  // The length tells one from another, too.
  const std::string bytes =
      WaveBytes(Chirp(seconds * kRate + static_cast<int>(authors_.size()), kRate));
  WriteFile(path, bytes);
  fs::last_write_time(path, fs::file_time_type::clock::now() - 1h);
  authors_[bytes] = author;
  return name;
}

WorkOnAShare::Places WorkOnAShare::Standing() const {
  Places places;
  for (const std::string folder : {"InQueue", "Completed", "Rescued"}) {
    const fs::path path = Behind(home.Root() + "/Files/" + folder);
    if (!fs::exists(path)) continue;
    for (const auto& entry : fs::directory_iterator(path)) {
      const auto found = authors_.find(ReadFile(entry.path()));
      places.emplace(folder + "/" + entry.path().filename().string(),
                     found == authors_.end() ? "?" : found->second);
    }
  }
  return places;
}

std::string WorkOnAShare::Behind(const std::string& path) const {
  const std::string& point = share->Mount().Path();
  if (!(path + "/").starts_with(point + "/")) return path;
  return share->Mount().Behind() + path.substr(point.size());
}

void WorkOnAShare::Run(const std::function<void()>& script) {
  // The program has this thread, whose number is that of the process.
  Mount().Watch(::getpid());
  program.emplace(home);
  life.emplace(*program);
  const int status = program->Run([&] {
    ASSERT_TRUE(program->Begin());
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    script();
    program->Exit();
  });
  life.reset();
  program.reset();
  Mount().Watch(-1);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Mount().AskedByTheWatched(), 0) << "by the thread of the loop";
}

double WorkOnAShare::Position() {
  return program->Ask([&] { return program->Rooms().documentInWork.CurrentSamplePosition; });
}

double WorkOnAShare::Played() {
  return program->Ask([&] { return static_cast<double>(Engine().Player().PlayedSamples()); });
}

bool WorkOnAShare::Playing() {
  return program->Ask([&] { return Engine().IsPlaying; });
}

bool WorkOnAShare::Enabled(forms::Command forms::MainForm::*command) {
  return program->Ask([&] { return (Main().*command).Enabled.Get(); });
}

std::string WorkOnAShare::Line() {
  return program->Ask(
      [&] { return Main().lblNotice.Visible ? Main().lblNotice.Value.Get() : std::string(); });
}

std::size_t WorkOnAShare::Rows() {
  return program->Ask([&] { return Main().listViewInQueue.Rows().size(); });
}

void WorkOnAShare::Play(const std::string& name) {
  program->ClickRow(program->RowOf(name));
  ASSERT_TRUE(Until([&] { return Enabled(&forms::MainForm::cmdPlay); })) << program->Box();
  program->Click("cmdPlay");
  ASSERT_TRUE(Until([&] { return Position() > 0; })) << program->Box();
}

void WorkOnAShare::PutInWork(const std::string& name) {
  Play(name);
  program->Click("cmdSkipEnd");
  ASSERT_TRUE(Until([&] { return Enabled(&forms::MainForm::cmdComplete); }));
}

void WorkOnAShare::Refresh() {
  program->Click("cmdUpdateFileList");
  ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
}

void WorkOnAShare::WaitInVain(const std::function<void()>& hand,
                              const std::function<bool()>& over) {
  program->Do([&] { life->Feeds = life->Paints = 0; });
  hand();
  EXPECT_TRUE(Until(over)) << program->Box();
  EXPECT_GT(program->Ask([&] { return life->Feeds; }), kFeedsInAWait);
  EXPECT_GT(program->Ask([&] { return life->Paints; }), kFeedsInAWait);
}

std::string WorkOnAShare::BoxInVain(const std::function<void()>& hand) {
  WaitInVain(hand, [&] { return !program->Box().empty(); });
  return program->AnswerBox();
}

void WorkOnAShare::GoOn() {
  Mount().GoOn();
  EXPECT_TRUE(
      program->Until([&] { return !program->Rooms().files.disk.OutOfReach(Mount().Path()); }));
}

}  // namespace tavlo::test
