#pragma once

#include <chrono>
#include <cstdlib>

#include "base/time.h"

namespace tavlo::test {

/// How many files, and for how long their writers take.
struct RunLength {
  int files;
  base::Duration time;
};

/// A short run, unless the environment asks by TAVLO_LONG for a long one.
inline RunLength Length() {
  using namespace std::chrono_literals;
  constexpr RunLength kShort{.files = 300, .time = 10s};
  constexpr RunLength kLong{.files = 2000, .time = 60s};
  return std::getenv("TAVLO_LONG") ? kLong : kShort;
}

}  // namespace tavlo::test
