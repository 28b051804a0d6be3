#include "platform/sound/stream_resampler.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/samplefmt.h>
#include <libswresample/swresample.h>
}

#include <cstdint>
#include <new>

namespace tavlo::platform {

void StreamResampler::Release::operator()(SwrContext* context) const { swr_free(&context); }

StreamResampler::StreamResampler(int fromRate, int toRate, int channels)
    : fromRate_(fromRate), channels_(channels) {
  AVChannelLayout layout;
  av_channel_layout_default(&layout, channels);
  SwrContext* context = nullptr;
  const int made = swr_alloc_set_opts2(&context, &layout, AV_SAMPLE_FMT_FLT, toRate, &layout,
                                       AV_SAMPLE_FMT_FLT, fromRate, 0, nullptr);
  context_.reset(context);
  if (made != 0 || swr_init(context) != 0) context_.reset();
}

StreamResampler::~StreamResampler() = default;

std::vector<float> StreamResampler::Convert(std::span<const float> in) {
  // Nothing at all would mean to the library that the stream has ended.
  if (in.empty()) return {};
  return Run(in.data(), static_cast<int>(in.size()) / channels_);
}

std::vector<float> StreamResampler::Finish() { return Run(nullptr, 0); }

double StreamResampler::HeldBack() const {
  return context_ ? static_cast<double>(swr_get_delay(context_.get(), fromRate_)) : 0;
}

std::vector<float> StreamResampler::Run(const float* in, int frames) {
  // A block that stayed empty would count as heard.
  if (!context_) throw std::bad_alloc();
  const int room = swr_get_out_samples(context_.get(), frames);
  if (room <= 0) return {};
  const auto channels = static_cast<std::size_t>(channels_);
  std::vector<float> out(static_cast<std::size_t>(room) * channels);
  auto* outBytes = reinterpret_cast<std::uint8_t*>(out.data());
  const auto* inBytes = reinterpret_cast<const std::uint8_t*>(in);
  const int made =
      swr_convert(context_.get(), &outBytes, room, in == nullptr ? nullptr : &inBytes, frames);
  if (made < 0) throw std::bad_alloc();
  out.resize(static_cast<std::size_t>(made) * channels);
  return out;
}

}  // namespace tavlo::platform
