#include "platform/qt/qt_loop.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QScopedValueRollback>
#include <QSocketNotifier>
#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "platform/qt/held_input.h"
#include "platform/qt/message_dialog.h"

namespace tavlo::platform::qt {
namespace {

using base::operator""ms;

/// Breathing more often than the screen can show costs a scan its speed and gains nothing.
constexpr base::Duration kBreath = 15ms;

/// The toolkit counts whole milliseconds; rounding up keeps it from waking just before the due
/// time.
int MillisecondsUntil(base::Duration length) {
  const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(length).count();
  return static_cast<int>(
      std::clamp<std::int64_t>(milliseconds, 0, std::numeric_limits<int>::max()));
}

}  // namespace

class QtLoop::Wakening : public DescriptorWait {
 public:
  Wakening(QtLoop& loop, int descriptor, std::string name, std::function<void()> call)
      : notifier_(new QSocketNotifier(descriptor, QSocketNotifier::Read)) {
    QObject::connect(notifier_, &QSocketNotifier::activated, notifier_,
                     [&loop, name = std::move(name), call = std::move(call)] {
                       if (!loop.breathing_) loop.RunEvent(name, call);
                     });
  }
  /// The notifier may be at work just now, so it goes when the loop turns next.
  ~Wakening() override {
    notifier_->setEnabled(false);
    notifier_->deleteLater();
  }
  Wakening(const Wakening&) = delete;

 private:
  QSocketNotifier* notifier_;
};

QtLoop::QtLoop() {
  clock_.start();
  alarm_.setSingleShot(true);
  alarm_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&alarm_, &QTimer::timeout, &alarm_, [this] { Pass(); });
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   &alarm_, [this] { ShowForms(); });
}

base::MonotonicTime QtLoop::Now() const { return {base::Duration{clock_.nsecsElapsed() / 1000}}; }

base::CalendarTime QtLoop::WallClock() const {
  const QDateTime now = QDateTime::currentDateTime();
  return {.year = now.date().year(),
          .month = now.date().month(),
          .day = now.date().day(),
          .hour = now.time().hour(),
          .minute = now.time().minute(),
          .second = now.time().second(),
          .millisecond = now.time().msec()};
}

void QtLoop::Yield() {
  ShowForms();
  QCoreApplication::processEvents();
  Pass();
  ShowForms();
}

void QtLoop::Wait(base::Duration length) {
  // What the first pass has to paint happens within the time, not before it.
  const base::MonotonicTime end = Now() + length;
  Yield();
  const base::Duration left = end - Now();
  if (left <= base::Duration{0} || quit_) return;
  QEventLoop nested;
  QTimer::singleShot(MillisecondsUntil(left), Qt::PreciseTimer, &nested, &QEventLoop::quit);
  SleepUntilDue();
  nested.exec();
}

void QtLoop::Breathe() {
  if (breathing_ || Now() - lastBreath_ < kBreath) return;
  const QScopedValueRollback breathing(breathing_, true);
  RunFeeds();
  if (ShowChanges) ShowChanges();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  SleepUntilDue();
  inputHeld_ = true;
  lastBreath_ = Now();
}

void QtLoop::TimersChanged() { SleepUntilDue(); }

std::unique_ptr<DescriptorWait> QtLoop::WaitFor(int descriptor, std::string name,
                                                std::function<void()> call) {
  return std::make_unique<Wakening>(*this, descriptor, std::move(name), std::move(call));
}

int QtLoop::Run() {
  SleepUntilDue();
  // A rule may have ended the program before the event loop began to turn.
  return quit_ ? code_ : QCoreApplication::exec();
}

void QtLoop::Quit(int code) {
  quit_ = true;
  code_ = code;
  QCoreApplication::exit(code);
}

base::Reply QtLoop::ShowBox(const base::MessageBox& box) {
  ShowForms();
  SleepUntilDue();
  return RunMessageDialog(box, BoxOwner ? BoxOwner() : nullptr);
}

void QtLoop::LastBoxClosed() {
  if (OnLastBoxClosed) OnLastBoxClosed();
}

void QtLoop::Pass() {
  // The alarm may ring inside a breath; SleepUntilDue at the end of the breath sets it again.
  if (breathing_) return;
  RunPass();
  SleepUntilDue();
}

void QtLoop::SleepUntilDue() {
  const auto due = Timers().NextDue();
  if (HasPosts()) {
    alarm_.start(0);
  } else if (due) {
    alarm_.start(MillisecondsUntil(*due - Now()));
  } else {
    alarm_.stop();
  }
}

void QtLoop::ShowForms() {
  if (breathing_) return;
  if (ShowChanges) ShowChanges();
  if (std::exchange(inputHeld_, false)) ReleaseHeldInput();
}

}  // namespace tavlo::platform::qt
