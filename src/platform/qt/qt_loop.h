#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "base/loop.h"
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
  void TimersChanged() override;
  std::unique_ptr<DescriptorWait> WaitFor(int descriptor, std::string name,
                                          std::function<void()> call) override;

  /// Turns the event loop until Quit; returns the code that Quit was given.
  int Run();
  /// Ends Run and every wait inside it. May be called from any event, also before Run.
  void Quit(int code);

  /// True while Breathe turns the toolkit: nothing may reach a form then.
  bool Breathing() const { return breathing_; }

  /// Brings the widgets up to the state of the forms. Called once per pass, before the loop sleeps.
  std::function<void()> ShowChanges;
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
  void ShowForms();

  QElapsedTimer clock_;
  QTimer alarm_;
  base::MonotonicTime lastBreath_;
  bool breathing_ = false;
  bool inputHeld_ = false;
  bool quit_ = false;
  int code_ = 0;
};

}  // namespace tavlo::platform::qt
