#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "platform/wake/bell.h"

namespace tavlo::platform {

using Deadline = std::chrono::steady_clock::time_point;

inline Deadline In(std::chrono::milliseconds time) {
  return std::chrono::steady_clock::now() + time;
}

/// What ties a thread that talks with a server to the loop: the loop cuts it, and the thread's
/// waits end; the thread gives signs, by which the loop knows that it is not stuck.
class Tether {
 public:
  /// Nobody wants an answer any more. On any thread.
  void Cut() {
    cut_ = true;
    bell_.Ring();
  }
  bool IsCut() const { return cut_; }

  void GiveSign() { ++signs_; }
  std::uint64_t Signs() const { return signs_; }

  enum class Waited { Ready, TimedOut, Cut };
  /// Waits for `events` of poll on a descriptor, or on two where the second is not below 0; an
  /// error there counts, too.
  Waited Await(int descriptor, short events, Deadline deadline, int second = -1);

 private:
  Bell bell_;
  std::atomic<bool> cut_ = false;
  std::atomic<std::uint64_t> signs_ = 0;
};

}  // namespace tavlo::platform
