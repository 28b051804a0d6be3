#include "platform/sound/block_resampler.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/samplefmt.h>
#include <libswresample/swresample.h>
}

#include <cstdint>

namespace tavlo::platform {

void BlockResampler::Release::operator()(SwrContext* context) const { swr_free(&context); }

BlockResampler::BlockResampler(int sourceRate, int deviceRate)
    : sourceRate_(sourceRate), deviceRate_(deviceRate) {}

BlockResampler::~BlockResampler() = default;

std::vector<float> BlockResampler::Convert(playback::SampleArray& block) {
  if (sourceRate_ == deviceRate_) return std::move(block.values);
  if (!Prepare(block.channels)) return {};
  const double samples = static_cast<double>(block.Samples());
  const double documentPerSample =
      samples > 0 ? (block.sourceEnd - block.sourceBegin) / samples : 0;
  std::vector<float> out =
      Run(block.values.data(), static_cast<int>(block.Samples()), block.channels);
  block.sourceBegin -= lag_;
  if (block.last) {
    const std::vector<float> tail = Run(nullptr, 0, block.channels);
    out.insert(out.end(), tail.begin(), tail.end());
    context_.reset();
    lag_ = 0;
  } else {
    lag_ = static_cast<double>(swr_get_delay(context_.get(), sourceRate_)) * documentPerSample;
  }
  block.sourceEnd -= lag_;
  return out;
}

bool BlockResampler::Prepare(int channels) {
  if (context_ && channels == channels_) return true;
  context_.reset();
  lag_ = 0;
  channels_ = channels;
  AVChannelLayout layout;
  av_channel_layout_default(&layout, channels);
  SwrContext* context = nullptr;
  const int made = swr_alloc_set_opts2(&context, &layout, AV_SAMPLE_FMT_FLT, deviceRate_, &layout,
                                       AV_SAMPLE_FMT_FLT, sourceRate_, 0, nullptr);
  context_.reset(context);
  if (made == 0 && swr_init(context) == 0) return true;
  context_.reset();
  return false;
}

std::vector<float> BlockResampler::Run(const float* in, int samples, int channels) {
  const int room = swr_get_out_samples(context_.get(), samples);
  if (room <= 0) return {};
  std::vector<float> out(static_cast<std::size_t>(room) * static_cast<std::size_t>(channels));
  auto* outBytes = reinterpret_cast<std::uint8_t*>(out.data());
  const auto* inBytes = reinterpret_cast<const std::uint8_t*>(in);
  const int made =
      swr_convert(context_.get(), &outBytes, room, in == nullptr ? nullptr : &inBytes, samples);
  out.resize(static_cast<std::size_t>(made > 0 ? made : 0) * static_cast<std::size_t>(channels));
  return out;
}

}  // namespace tavlo::platform
