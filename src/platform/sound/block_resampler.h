#pragma once

#include <optional>
#include <vector>

#include "platform/sound/stream_resampler.h"
#include "playback/audio_objects.h"

namespace tavlo::platform {

/// Brings the blocks of one run to the device's rate. It remembers the end of the block before, so
/// that the joins are seamless, and lets go of what it holds back at the block marked last.
class BlockResampler {
 public:
  BlockResampler(int sourceRate, int deviceRate);

  /// The block's samples at the device's rate, in its own channels. Moves the block's range back by
  /// what is held back, so that it stays true. Empty when the library refuses the format.
  std::vector<float> Convert(playback::SampleArray& block);

 private:
  int sourceRate_;
  int deviceRate_;
  double lag_ = 0;  ///< Document samples by which the converted end trails the block's end.
  std::optional<StreamResampler> stream_;
};

}  // namespace tavlo::platform
