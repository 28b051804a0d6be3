#include "rate_converter.h"

// FFmpeg's headers are C and do not say so.
extern "C" {
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <algorithm>

namespace tavlo::dss {

using conversion::ConversionCode;

void RateConverter::Free::operator()(SwrContext* context) const { swr_free(&context); }

ConversionCode RateConverter::Open() {
  AVChannelLayout mono;
  av_channel_layout_default(&mono, 1);
  SwrContext* made = nullptr;
  const int set = swr_alloc_set_opts2(&made, &mono, AV_SAMPLE_FMT_S16, to_, &mono,
                                      AV_SAMPLE_FMT_S16, from_, 0, nullptr);
  context_.reset(made);
  if (set < 0 || swr_init(made) < 0) return ConversionCode::NoMemory;
  return ConversionCode::Done;
}

ConversionCode RateConverter::Run(const std::uint8_t* input, int count,
                                  std::vector<std::int16_t>& target) {
  // Without input it gives what it still holds.
  const int most = swr_get_out_samples(context_.get(), count);
  if (most < 0) return ConversionCode::DecodeFailed;
  const std::size_t before = target.size();
  target.resize(before + static_cast<std::size_t>(most));
  auto* output = reinterpret_cast<std::uint8_t*>(target.data() + before);
  const int got =
      swr_convert(context_.get(), &output, most, input != nullptr ? &input : nullptr, count);
  target.resize(before + static_cast<std::size_t>(std::max(got, 0)));
  if (got < 0) return ConversionCode::DecodeFailed;
  given_ += got;
  return ConversionCode::Done;
}

ConversionCode RateConverter::Convert(std::span<const std::int16_t> samples,
                                      std::vector<std::int16_t>& target) {
  taken_ += static_cast<std::int64_t>(samples.size());
  return Run(reinterpret_cast<const std::uint8_t*>(samples.data()),
             static_cast<int>(samples.size()), target);
}

ConversionCode RateConverter::End(std::vector<std::int16_t>& target) {
  const std::int64_t wanted = (taken_ * to_ + from_ / 2) / from_;
  const std::int64_t before = given_;
  const ConversionCode code = Run(nullptr, 0, target);
  if (code != ConversionCode::Done) return code;
  // The filter's own end may be a few samples off; they are silence or lie behind the sound.
  const std::int64_t beforeEnd = static_cast<std::int64_t>(target.size()) - (given_ - before);
  target.resize(static_cast<std::size_t>(std::max<std::int64_t>(beforeEnd + wanted - before, 0)));
  return ConversionCode::Done;
}

}  // namespace tavlo::dss
