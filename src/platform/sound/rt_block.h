#pragma once

#include <cstdint>
#include <vector>

namespace tavlo::platform {

/// Frames of the device: moments of both ears at the device's rate.
using FrameCount = std::int64_t;

/// A block of sound at the device's rate, made on the loop's thread and read on the device's.
struct RtBlock {
  std::vector<float> values;  ///< Interleaved; one channel goes to both ears.
  int channels = 1;
  /// Blocks of another run than the wanted one are faded out and dropped.
  std::uint64_t run = 0;
  /// Document samples of its run that have been heard when the block begins and when it ends.
  double heardBegin = 0;
  double heardEnd = 0;

  FrameCount Frames() const { return static_cast<FrameCount>(values.size()) / channels; }
};

}  // namespace tavlo::platform
