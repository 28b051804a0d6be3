#include "platform/sound/block_resampler.h"

#include <utility>

namespace tavlo::platform {

BlockResampler::BlockResampler(int sourceRate, int deviceRate)
    : sourceRate_(sourceRate), deviceRate_(deviceRate) {}

std::vector<float> BlockResampler::Convert(playback::SampleArray& block) {
  if (sourceRate_ == deviceRate_) return std::move(block.values);
  if (!stream_ || stream_->Channels() != block.channels) {
    stream_.emplace(sourceRate_, deviceRate_, block.channels);
    lag_ = 0;
  }
  const double samples = static_cast<double>(block.Samples());
  const double documentPerSample =
      samples > 0 ? (block.sourceEnd - block.sourceBegin) / samples : 0;
  std::vector<float> out = stream_->Convert(block.values);
  block.sourceBegin -= lag_;
  if (block.last) {
    const std::vector<float> tail = stream_->Finish();
    out.insert(out.end(), tail.begin(), tail.end());
    stream_.reset();
    lag_ = 0;
  } else {
    lag_ = stream_->HeldBack() * documentPerSample;
  }
  block.sourceEnd -= lag_;
  return out;
}

}  // namespace tavlo::platform
