#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

#include "base/timer_queue.h"
#include "support/effort.h"
#include "support/plain_loop.h"

namespace tavlo::test {

/// While it lives: whether the loop goes on turning. It ticks every few milliseconds as the
/// player's feed does. A busy machine makes none of its figures worse.
class LoopWatch {
 public:
  explicit LoopWatch(PlainLoop& loop) : loop_(loop), tick_(loop, "loop watch", kInterval) {
    tick_.OnTick = [this] { Look(); };
    tick_.Start();
  }

  /// Called on each tick.
  void OnTick(std::function<void()> call) { call_ = std::move(call); }

  /// How often the loop came past.
  int Ticks() const { return ticks_; }
  /// The most that the loop's thread computed between two ticks.
  std::chrono::milliseconds LongestStretch() const { return longest_; }
  /// How often the thread gave up its processor elsewhere than where the loop sleeps.
  long WaitsElsewhere() const { return effort_.Waits() - (loop_.Wakenings - wakenings_); }

 private:
  static constexpr base::Duration kInterval = std::chrono::milliseconds(2);

  void Look() {
    ++ticks_;
    if (sinceLast_) longest_ = std::max(longest_, sinceLast_->Computed());
    sinceLast_.emplace();
    if (call_) call_();
  }

  PlainLoop& loop_;
  base::Timer tick_;
  std::function<void()> call_;
  int ticks_ = 0;
  std::chrono::milliseconds longest_{0};
  std::optional<Effort> sinceLast_;
  const Effort effort_;
  const int wakenings_ = loop_.Wakenings;
};

}  // namespace tavlo::test
