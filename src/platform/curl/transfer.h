#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace tavlo::platform {

/// How the file that was asked for last is doing: told by the thread that receives it, or by
/// the loop when that gives it up, and asked by the loop.
class Transfer {
 public:
  static constexpr int kGoesOn = 1;
  static constexpr int kWhole = 0;

  void AddBytes(std::int64_t bytes) {
    moved_ += bytes;
    news_.notify_all();
  }
  /// kWhole, or a failure; the first counts.
  void End(int state) {
    {
      const std::lock_guard hold(mutex_);
      if (state_ == kGoesOn) state_ = state;
    }
    news_.notify_all();
  }

  std::int64_t Moved() const { return moved_; }
  bool GoesOn() {
    const std::lock_guard hold(mutex_);
    return state_ == kGoesOn;
  }
  /// Waits so long for the end, or for more bytes than `seen`.
  int AwaitNews(std::int64_t seen, std::chrono::milliseconds time) {
    std::unique_lock hold(mutex_);
    news_.wait_for(hold, time, [&] { return state_ != kGoesOn || moved_ != seen; });
    return state_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable news_;
  std::atomic<std::int64_t> moved_ = 0;
  int state_ = kGoesOn;
};

}  // namespace tavlo::platform
