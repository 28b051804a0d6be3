#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/loop.h"
#include "platform/qt/message_dialog.h"
#include "platform/wake/descriptor_waits.h"

class QWidget;

namespace tavlo::platform::qt {

/// The loop on the desktop's real event loop. One precise timer sleeps until the next due time, so
/// an idle deck costs nothing. Needs the QApplication to exist; lives on its thread.
class QtLoop : public base::Loop, public DescriptorWaits {
 public:
  QtLoop();

  base::MonotonicTime Now() const override;
  base::CalendarTime WallClock() const override;

  void Yield() override;
  void Wait(base::Duration length) override;
  void Breathe() override;
  /// Sleeps until something comes: an event, news of `WaitInBreathsToo`, a feed that is due. Hands
  /// are let through to the widgets, and what they did is kept for later (`ByHand`).
  bool BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) override;
  /// Sleeps in between as the loop does at rest.
  bool TurnUntil(const std::function<bool()>& done, base::MonotonicTime limit) override;
  void TimersChanged() override;
  std::unique_ptr<DescriptorWait> WaitFor(int descriptor, std::string name,
                                          std::function<void()> call) override;
  std::unique_ptr<DescriptorWait> WaitInBreathsToo(int descriptor, std::string name,
                                                   std::function<void()> call) override;

  /// Runs what a hand did: at once, or in order when the rule that waits in a breath is over and no
  /// message box is open. False when it was kept for then.
  bool ByHand(std::function<void()> call);
  /// Forgets what hands did that is kept: they did it with something in view that has gone.
  void ForgetHands() { hands_.clear(); }

  /// Turns the event loop until Quit; returns the code that Quit was given.
  int Run();
  /// Ends Run and every wait inside it. May be called from any event, also before Run.
  void Quit(int code);

  /// True while a breath turns the toolkit: nothing may reach a form then.
  bool Breathing() const { return breathing_; }

  /// Brings the widgets up to the state of the forms. Called once per pass, before the loop sleeps.
  std::function<void()> ShowChanges;
  /// Tells others what has changed: as often as `ShowChanges`, but for the breaths, in which the
  /// state may be half done.
  std::function<void()> TellChanges;
  /// The window that a message box belongs to, or nothing.
  std::function<QWidget*()> BoxOwner;
  /// A message box has closed and no other is open.
  std::function<void()> OnLastBoxClosed;

 protected:
  base::Reply ShowBox(const base::MessageBox& box) override;
  void LastBoxClosed() override;

 private:
  class Wakening;

  void Pass();
  void SleepUntilDue();
  void SleepInBreath(base::MonotonicTime limit);
  /// What a breath refused is taken from here on.
  void EndBreath();
  bool HandsWait() const { return !hands_.empty() && !MessageBoxOpen(); }
  void RunHands();
  void ShowForms();

  QElapsedTimer clock_;
  QTimer alarm_;
  base::MonotonicTime lastBreath_;
  base::MonotonicTime lastShowing_;  ///< By a breath.
  bool breathing_ = false;
  std::vector<Wakening*> refused_;           ///< Those that rang in the breath.
  std::deque<std::function<void()>> hands_;  ///< What hands did and no rule has heard of yet.
  bool inputHeld_ = false;
  bool hadKeyboard_ = false;  ///< A window of the program has had it.
  MessageDialogs boxes_;
  std::uint32_t typedIn_ = 0;  ///< The window of another program that a box has left just now.
  bool quit_ = false;
  int code_ = 0;
};

}  // namespace tavlo::platform::qt
