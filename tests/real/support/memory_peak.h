#pragma once

#include <fstream>
#include <string>

namespace tavlo::test {

/// The most memory that this process has held since the last `ForgetPeak`, in megabytes.
inline long PeakMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes / 1024;
  }
  return -1;
}

inline void ForgetPeak() { std::ofstream("/proc/self/clear_refs") << 5; }

}  // namespace tavlo::test
