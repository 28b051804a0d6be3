#pragma once

#include <memory>
#include <vector>

#include "playback/audio_objects.h"

struct SwrContext;

namespace tavlo::platform {

/// Brings the blocks of one run to the device's rate. It remembers the end of the block before, so
/// that the joins are seamless, and lets go of what it holds back at the block marked last.
class BlockResampler {
 public:
  BlockResampler(int sourceRate, int deviceRate);
  ~BlockResampler();

  /// The block's samples at the device's rate, in its own channels. Moves the block's range back by
  /// what is held back, so that it stays true. Empty when the library refuses the format.
  std::vector<float> Convert(playback::SampleArray& block);

 private:
  struct Release {
    void operator()(SwrContext* context) const;
  };

  bool Prepare(int channels);
  std::vector<float> Run(const float* in, int samples, int channels);

  int sourceRate_;
  int deviceRate_;
  int channels_ = 0;
  double lag_ = 0;  ///< Document samples by which the converted end trails the block's end.
  std::unique_ptr<SwrContext, Release> context_;
};

}  // namespace tavlo::platform
