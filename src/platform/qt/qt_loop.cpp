#include "platform/qt/qt_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QSocketNotifier>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "platform/qt/desktop_limits.h"
#include "platform/qt/held_input.h"
#include "platform/qt/others_keyboard.h"

namespace tavlo::platform::qt {
namespace {

using base::operator""ms;

/// A look at the desktop's events is cheap, and what they ask for comes on top of this.
constexpr base::Duration kBreath = 4ms;
/// Showing more often than the screen can costs a scan its speed and gains nothing.
constexpr base::Duration kShowing = 15ms;

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
  enum class InBreaths { Refused, Taken };

  Wakening(QtLoop& loop, int descriptor, std::string name, std::function<void()> call,
           InBreaths inBreaths)
      : loop_(loop), notifier_(new QSocketNotifier(descriptor, QSocketNotifier::Read)) {
    QObject::connect(notifier_, &QSocketNotifier::activated, notifier_,
                     [this, &loop, inBreaths, name = std::move(name), call = std::move(call)] {
                       if (loop.breathing_ && inBreaths == InBreaths::Refused) {
                         Rest();
                       } else {
                         loop.RunEvent(name, call);
                       }
                     });
  }
  /// The notifier may be at work just now, so it goes when the loop turns next.
  ~Wakening() override {
    std::erase(loop_.refused_, this);
    notifier_->setEnabled(false);
    notifier_->deleteLater();
  }
  Wakening(const Wakening&) = delete;

  void GoOn() { notifier_->setEnabled(true); }

 private:
  /// The descriptor can be read until its call has run, and would keep a breath awake.
  void Rest() {
    notifier_->setEnabled(false);
    loop_.refused_.push_back(this);
  }

  QtLoop& loop_;
  QSocketNotifier* notifier_;
};

QtLoop::QtLoop() {
  clock_.start();
  alarm_.setSingleShot(true);
  alarm_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&alarm_, &QTimer::timeout, &alarm_, [this] { Pass(); });
  QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &alarm_,
                   [this](const QWindow* window) { hadKeyboard_ |= window != nullptr; });
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
  {
    const QScopedValueRollback breathing(breathing_, true);
    RunFeeds();
    const bool shows = Now() - lastShowing_ >= kShowing;
    if (shows && ShowChanges) ShowChanges();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    if (shows) lastShowing_ = Now();
  }
  inputHeld_ = true;
  EndBreath();
}

bool QtLoop::BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) {
  bool came = false;
  {
    const QScopedValueRollback breathing(breathing_, true);
    while (true) {
      RunFeeds();
      if (ShowChanges) ShowChanges();
      came = done();
      if (came || Now() >= limit) break;
      SleepInBreath(limit);
    }
  }
  EndBreath();
  return came;
}

bool QtLoop::TurnUntil(const std::function<bool()>& done, base::MonotonicTime limit) {
  QTimer atLimit;
  atLimit.setSingleShot(true);
  atLimit.setTimerType(Qt::PreciseTimer);
  atLimit.start(MillisecondsUntil(limit - Now()));
  while (true) {
    Yield();
    if (done()) return true;
    if (quit_ || Now() >= limit) return false;
    SleepUntilDue();
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

void QtLoop::SleepInBreath(base::MonotonicTime limit) {
  const auto feed = Timers().NextDue(base::TimerKind::Feed);
  const base::MonotonicTime wake = feed ? std::min(*feed, limit) : limit;
  alarm_.start(MillisecondsUntil(wake - Now()));
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtLoop::EndBreath() {
  // A breath inside another one: what is refused waits for the end of that.
  if (breathing_) return;
  for (Wakening* const wakening : std::exchange(refused_, {})) wakening->GoOn();
  SleepUntilDue();
  lastBreath_ = Now();
}

void QtLoop::TimersChanged() {
  // A rule timer that is due would keep a breath awake; its end sets the alarm.
  if (!breathing_) SleepUntilDue();
}

std::unique_ptr<DescriptorWait> QtLoop::WaitFor(int descriptor, std::string name,
                                                std::function<void()> call) {
  return std::make_unique<Wakening>(*this, descriptor, std::move(name), std::move(call),
                                    Wakening::InBreaths::Refused);
}

std::unique_ptr<DescriptorWait> QtLoop::WaitInBreathsToo(int descriptor, std::string name,
                                                         std::function<void()> call) {
  return std::make_unique<Wakening>(*this, descriptor, std::move(name), std::move(call),
                                    Wakening::InBreaths::Taken);
}

bool QtLoop::ByHand(std::function<void()> call) {
  if (!breathing_ && hands_.empty()) {
    call();
    return true;
  }
  hands_.push_back(std::move(call));
  if (!breathing_) SleepUntilDue();
  return false;
}

void QtLoop::RunHands() {
  // One by one, because each may open a box, or have a rule wait in a breath.
  for (std::size_t waiting = hands_.size(); waiting > 0 && HandsWait(); --waiting) {
    const std::function<void()> call = std::move(hands_.front());
    hands_.pop_front();
    call();
  }
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
  // Looked at before a window comes or goes, for then the keyboard changes hands. Whoever starts
  // the deck waits for what it says, whatever was typed in before.
  OthersKeyboard others;
  const bool typesElsewhere = hadKeyboard_ && others.IsTheirs();
  ShowForms();
  SleepUntilDue();
  const base::Reply reply =
      boxes_.Run(box, BoxOwner ? BoxOwner() : nullptr, typesElsewhere ? &others : nullptr);
  if (typesElsewhere) typedIn_ = others.Window();
  return reply;
}

void QtLoop::LastBoxClosed() {
  if (OnLastBoxClosed) OnLastBoxClosed();
  if (HandsWait()) SleepUntilDue();
}

void QtLoop::Pass() {
  // The alarm may ring inside a breath; SleepUntilDue at the end of the breath sets it again.
  if (breathing_) return;
  RunPass();
  RunHands();
  SleepUntilDue();
}

void QtLoop::SleepUntilDue() {
  const auto due = Timers().NextDue();
  if (HasPosts() || HandsWait()) {
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
  if (TellChanges) TellChanges();
  // A deck that was on top for as long as its box would stay before the letter.
  if (const std::uint32_t window = std::exchange(typedIn_, 0)) StandInFront(window);
  if (std::exchange(inputHeld_, false)) ReleaseHeldInput();
}

}  // namespace tavlo::platform::qt
