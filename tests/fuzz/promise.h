#pragma once

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace tavlo::fuzz {

/// Ends the run when the code under test has broken a promise; the input that did it is kept.
inline void Promise(bool kept, const char* text) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", text);
  std::abort();
}

/// Promises that the thread computes for two seconds at most while this object lives. What other
/// programs of the machine compute meanwhile does not count.
class Promptness {
 public:
  Promptness() = default;
  ~Promptness() { Promise(Computed() - before_ < 2, "an input takes two seconds at most"); }
  Promptness(const Promptness&) = delete;

 private:
  static double Computed() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  }

  const double before_ = Computed();
};

}  // namespace tavlo::fuzz
