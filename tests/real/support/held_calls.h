#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "support/patience.h"

namespace tavlo::test {

/// Where calls of other threads stand still for as long as a test wants them to.
class HeldCalls {
 public:
  void Shut() { Set(true); }
  void Open() { Set(false); }
  /// What a call does. It goes on by itself once no test can wait for it any more.
  void Pass() {
    std::unique_lock lock(mutex_);
    ++Calls;
    ++inside_;
    changed_.notify_all();
    changed_.wait_for(lock, kPatience, [this] { return !shut_; });
    --inside_;
  }
  /// Waits until so many calls stand here; false when they never come.
  bool AwaitCalls(int waiting) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience, [&] { return inside_ == waiting; });
  }

  std::atomic<int> Calls = 0;

 private:
  void Set(bool shut) {
    const std::lock_guard lock(mutex_);
    shut_ = shut;
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool shut_ = false;
  int inside_ = 0;
};

}  // namespace tavlo::test
