#pragma once

#include <sys/resource.h>

#include <chrono>
#include <ctime>

namespace tavlo::test {

/// What the calling thread has done since the object was made. Unlike the time on the wall, neither
/// figure grows because the machine has something else to do.
class Effort {
 public:
  /// Processor time.
  std::chrono::milliseconds Computed() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(ComputedSoFar() - computed_);
  }
  /// How many times the thread gave up its processor to wait for something.
  long Waits() const { return WaitsSoFar() - waits_; }

 private:
  static std::chrono::nanoseconds ComputedSoFar() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  }
  static long WaitsSoFar() {
    rusage usage{};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
  }

  std::chrono::nanoseconds computed_ = ComputedSoFar();
  long waits_ = WaitsSoFar();
};

}  // namespace tavlo::test
