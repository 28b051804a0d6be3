#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace tavlo::platform {

/// What a program may take.
struct OutputLimits {
  std::chrono::milliseconds time;
  std::size_t bytes;  ///< Of its output; what it writes beyond them is dropped.
};

/// Runs a program and gives what it wrote to its standard output, to the end or until a limit was
/// met, when it is killed. What it complains about is thrown away. Empty when it can not be run.
std::string OutputOf(const std::string& program, const std::vector<std::string>& arguments,
                     const OutputLimits& limits);

}  // namespace tavlo::platform
