#include "base/loop.h"

#include <exception>
#include <utility>

namespace tavlo::base {

void Loop::Post(std::function<void()> call) {
  posts_.push_back(std::move(call));
  TimersChanged();
}

Reply Loop::Show(const MessageBox& box) {
  ++openBoxes_;
  const Reply reply = ShowBox(box);
  if (--openBoxes_ == 0) LastBoxClosed();
  return reply;
}

void Loop::RunEvent(std::string_view what, const std::function<void()>& body) {
  try {
    body();
  } catch (const std::exception& failure) {
    Show({.title = "Tavlo Deck",
          .text = std::string(what) + " could not finish: " + failure.what(),
          .icon = Icon::Warning});
  }
}

void Loop::RunPass() {
  // One by one, because a call may open a box, and the passes under it run what waits behind.
  for (std::size_t waiting = posts_.size(); waiting > 0 && !posts_.empty(); --waiting) {
    const std::function<void()> call = std::move(posts_.front());
    posts_.pop_front();
    RunEvent("A posted call", call);
  }
  RunDueTimers({});
}

void Loop::RunFeeds() { RunDueTimers(TimerKind::Feed); }

void Loop::RunDueTimers(std::optional<TimerKind> onlyKind) {
  const MonotonicTime now = Now();
  while (Timer* const timer = timers_.TakeDue(now, onlyKind)) {
    // The tick is copied because it may replace its own handler.
    const auto tick = timer->OnTick;
    if (tick) RunEvent(timer->Name(), tick);
  }
}

}  // namespace tavlo::base
