#include "base/timer_queue.h"

#include <algorithm>
#include <utility>

#include "base/loop.h"

namespace tavlo::base {

std::optional<MonotonicTime> TimerQueue::NextDue(TimerKind kind) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [kind](const Entry& entry) {
    return entry.timer->Kind() == kind;
  });
  if (found == entries_.end()) return {};
  return found->due;
}

std::optional<MonotonicTime> TimerQueue::NextDue() const {
  if (entries_.empty()) return {};
  return entries_.begin()->due;
}

Timer* TimerQueue::TakeDue(MonotonicTime now, std::optional<TimerKind> onlyKind) {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return !onlyKind || entry.timer->Kind() == *onlyKind;
  });
  if (found == entries_.end() || found->due > now) return nullptr;
  Timer* const timer = found->timer;
  Arm(*timer, now + timer->Interval());
  return timer;
}

void TimerQueue::Arm(Timer& timer, MonotonicTime due) {
  Disarm(timer);
  timer.armed_ = Entry{due, ++lastStartNumber_, &timer};
  entries_.insert(*timer.armed_);
}

void TimerQueue::Disarm(Timer& timer) {
  if (!timer.armed_) return;
  entries_.erase(*timer.armed_);
  timer.armed_.reset();
}

Timer::Timer(Loop& loop, std::string name, Duration interval, TimerKind kind)
    : loop_(loop), name_(std::move(name)), interval_(interval), kind_(kind) {}

Timer::~Timer() { Stop(); }

void Timer::Start() { StartWith(loop_.Now() + interval_); }

void Timer::StartDue() { StartWith(loop_.Now()); }

void Timer::StartWith(MonotonicTime firstDue) {
  enabled_ = true;
  if (interval_ > Duration{0}) {
    loop_.Timers().Arm(*this, firstDue);
  } else {
    loop_.Timers().Disarm(*this);
  }
  loop_.TimersChanged();
}

void Timer::Stop() {
  enabled_ = false;
  loop_.Timers().Disarm(*this);
}

void Timer::SetInterval(Duration interval) {
  interval_ = interval;
  if (enabled_) Start();
}

}  // namespace tavlo::base
