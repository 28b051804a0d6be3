#pragma once

#include <cstdint>

#include "base/loop.h"
#include "window/alert_options.h"

namespace tavlo::lists {

/// The figures of what waits in the folders.
class WorkFigures {
 public:
  virtual ~WorkFigures() = default;

  /// Counts what waits and takes it as seen, so that only later work raises an alert.
  virtual void TakeWaitingWorkAsSeen() = 0;
};

/// The watch for new work while the deck is not used: it is paused while a list changes, and goes
/// on with what waits then taken as seen.
class WaitingWork : public window::AlertTimer {
 public:
  WaitingWork(base::Loop& loop, WorkFigures& figures);

  /// Looks for new work. Its interval comes from the settings.
  base::Timer tmrWorkWaitingAlert;
  /// Ticks since the last check.
  std::uint8_t AlertTicks = 0;

  void Pause() { tmrWorkWaitingAlert.Stop(); }
  void GoOn();
  void RestartWith(base::Duration interval) override;
  /// The program ends: nothing starts the timer any more.
  void End();
  bool Ended() const { return ended_; }
  /// The user did something: the next check comes a full period later.
  void UserActed() { AlertTicks = 0; }
  /// A list was just built: only work that comes later raises an alert.
  void TakeAsSeen() { figures_.TakeWaitingWorkAsSeen(); }

 private:
  WorkFigures& figures_;
  bool ended_ = false;
};

/// The watch is paused for as long as this lives, and goes on whatever becomes of the work
/// meanwhile.
class WatchPause {
 public:
  explicit WatchPause(WaitingWork& watch) : watch_(watch) { watch_.Pause(); }
  ~WatchPause() { watch_.GoOn(); }
  WatchPause(const WatchPause&) = delete;

 private:
  WaitingWork& watch_;
};

}  // namespace tavlo::lists
