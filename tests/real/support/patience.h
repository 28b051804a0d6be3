#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "base/time.h"

namespace tavlo::test {

/// How long any news may take on a busy machine.
inline constexpr base::Duration kPatience = std::chrono::seconds(120);

/// Waits for what another thread or another process brings about; false when it never does.
inline bool Comes(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

}  // namespace tavlo::test
