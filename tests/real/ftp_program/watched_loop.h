#pragma once

#include <chrono>
#include <optional>

#include "platform/qt/qt_loop.h"
#include "support/effort.h"

namespace tavlo::test {

/// While it lives: whether the loop of the program goes on turning. It ticks every few milliseconds
/// as the player's feed does. What other programs of the machine make late makes none of its
/// figures worse. Made and asked on the loop's thread, before anything but the program uses that.
class WatchedLoop {
 public:
  explicit WatchedLoop(platform::qt::QtLoop& loop);
  ~WatchedLoop();
  WatchedLoop(const WatchedLoop&) = delete;

  /// How often the loop came past.
  int Ticks() const { return ticks_; }
  /// Neither what its thread computed between two ticks nor the longest wait for another thread
  /// that it was ready for, but for where the loop sleeps, was 50 ms. Several such waits are no
  /// fault: on a busy machine many keys are answered between two ticks, and a loop that waits again
  /// and again has no ticks. And no call of its thread went to another machine, asked for the
  /// address of one, or waited until a disk has a file.
  void ExpectNothingHeldIt() const;

 private:
  void Look();

  base::Timer tick_;
  int ticks_ = 0;
  std::chrono::milliseconds longestStretch_{0};
  std::chrono::milliseconds longestReadiness_{0};
  std::optional<Effort> sinceLast_;
  const int callsBefore_;
};

}  // namespace tavlo::test
