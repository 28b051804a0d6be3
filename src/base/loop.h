#pragma once

#include <deque>
#include <functional>
#include <string_view>

#include "base/message_box.h"
#include "base/time.h"
#include "base/timer_queue.h"

namespace tavlo::base {

/// The message loop of the one thread that runs every rule, with its clocks, timers and message
/// boxes. Everything here is called on that thread only. The real twin turns the desktop's event
/// loop; the simulated one jumps from due time to due time.
class Loop {
 public:
  Loop() = default;
  virtual ~Loop() = default;
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  virtual MonotonicTime Now() const = 0;
  virtual CalendarTime WallClock() const = 0;

  /// One pass: posted calls, due timers and the events that wait now. Does not block.
  virtual void Yield() = 0;
  /// Yields until `length` has passed. Zero or less is one pass.
  virtual void Wait(Duration length) = 0;
  /// Lets painting and the feed timers through, and the end of the desktop's session, and nothing
  /// else, for work that nothing may interleave. Cheap enough to be called once a file.
  virtual void Breathe() = 0;
  /// Breathes until `done` says so, which is asked after each breath and each wakening; false at
  /// the limit.
  virtual bool BreatheUntil(const std::function<bool()>& done, MonotonicTime limit) = 0;

  /// Yields until `done` says so, which is asked after each pass and each wakening; false at the
  /// limit. For what another machine answers: timers and hands run meanwhile.
  virtual bool TurnUntil(const std::function<bool()>& done, MonotonicTime limit) = 0;

  /// Runs `call` on the next pass, after what is posted already.
  void Post(std::function<void()> call);

  /// Shows a modal box and returns its answer. Timers and player events go on under it; hand input
  /// to the windows is refused until it closes, and its owner is activated again then.
  Reply Show(const MessageBox& box);
  bool MessageBoxOpen() const { return openBoxes_ > 0; }

  /// The top of every event: runs `body` and turns a failure that no rule caught into a box that
  /// names `what`, so that nothing escapes into the toolkit.
  void RunEvent(std::string_view what, const std::function<void()>& body);

  TimerQueue& Timers() { return timers_; }
  /// A timer was armed: whoever sleeps until the next due time must look again.
  virtual void TimersChanged() {}

 protected:
  virtual Reply ShowBox(const MessageBox& box) = 0;
  /// Called when a message box has closed and none other is open.
  virtual void LastBoxClosed() {}

  /// Runs what is posted now, then every timer that is due at the moment it is looked at. A timer
  /// that a tick arms for this very moment waits for the next pass.
  void RunPass();
  /// Runs the due feed timers only.
  void RunFeeds();
  bool HasPosts() const { return !posts_.empty(); }

 private:
  void RunDueTimers(std::optional<TimerKind> onlyKind);

  TimerQueue timers_;
  std::deque<std::function<void()>> posts_;
  int openBoxes_ = 0;
};

}  // namespace tavlo::base
