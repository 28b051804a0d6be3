#include "platform/ffmpeg/mp3_decoder.h"

#include <algorithm>

#include "platform/ffmpeg/codec.h"
#include "platform/ffmpeg/libav.h"

namespace tavlo::platform {
namespace {

/// Every so many frames the index keeps an offset: ten hours take some hundred kilobytes, and a
/// seek walks over few headers.
constexpr std::int64_t kIndexStep = 64;
/// A frame of layer 3 borrows bits from those before it; this many back, none can be missing.
constexpr std::int64_t kWarmUpFrames = 12;

class Mp3Decoder final : public Decoder {
 public:
  Mp3Decoder(const PlainFile& file, const Mp3Stream& stream, std::int64_t totalSamples,
             std::unique_ptr<Codec> codec)
      : file_(file),
        stream_(stream),
        totalSamples_(totalSamples),
        codec_(std::move(codec)),
        walker_(file, stream.begin, stream.format),
        index_{stream.begin} {}

  int SamplesPerSecond() const override { return stream_.format.samplesPerSecond; }
  int Channels() const override { return stream_.format.channels; }
  std::int64_t TotalSamples() const override { return totalSamples_; }

  bool Decode(std::vector<float>& values) override {
    const std::size_t before = values.size();
    while (position_ < totalSamples_ && values.size() == before) {
      const std::int64_t frameBegin = nextFrame_ * stream_.format.samples - stream_.startPadding;
      if (!DecodeFrame()) break;
      TakeFrom(frameBegin, values);
    }
    return values.size() > before;
  }

  std::int64_t Seek(std::int64_t target) override {
    position_ = std::clamp<std::int64_t>(target, 0, totalSamples_);
    const std::int64_t frame = (position_ + stream_.startPadding) / stream_.format.samples;
    GoToFrame(std::max<std::int64_t>(frame - kWarmUpFrames, 0));
    codec_->Flush();
    return position_;
  }

 private:
  /// Decodes the next frame into `frame_`: always as long as its header says.
  bool DecodeFrame() {
    const auto frame = NextFrame();
    if (!frame) return false;
    bytes_.resize(frame->header.size);
    // The walker has seen that the file holds the whole frame, so a part of it is a failure.
    if (file_.ReadAt(frame->offset, bytes_) < bytes_.size()) return false;
    decoded_.clear();
    codec_->DecodeBytes(bytes_, Channels(), decoded_);
    decoded_.resize(static_cast<std::size_t>(frame->header.samples * Channels()));
    return true;
  }

  /// Appends what of the decoded frame lies between the read position and the end of the sound.
  void TakeFrom(std::int64_t frameBegin, std::vector<float>& values) {
    const std::int64_t frameEnd = std::min(frameBegin + stream_.format.samples, totalSamples_);
    if (frameEnd <= position_) return;
    const auto at = [&](std::int64_t sample) {
      return decoded_.begin() + (sample - frameBegin) * Channels();
    };
    values.insert(values.end(), at(position_), at(frameEnd));
    position_ = frameEnd;
  }

  std::optional<Mp3Frame> NextFrame() {
    const auto frame = walker_.Next();
    if (!frame) return frame;
    ++nextFrame_;
    const bool indexed = static_cast<std::int64_t>(index_.size()) * kIndexStep > nextFrame_;
    if (!indexed && nextFrame_ % kIndexStep == 0) index_.push_back(walker_.Offset());
    return frame;
  }

  void GoToFrame(std::int64_t frame) {
    const auto known =
        std::min<std::int64_t>(frame / kIndexStep, static_cast<std::int64_t>(index_.size()) - 1);
    walker_.MoveTo(index_[static_cast<std::size_t>(known)]);
    nextFrame_ = known * kIndexStep;
    while (nextFrame_ < frame && NextFrame()) {
    }
  }

  const PlainFile& file_;
  const Mp3Stream stream_;
  const std::int64_t totalSamples_;
  std::unique_ptr<Codec> codec_;
  Mp3Walker walker_;
  std::vector<std::uint64_t> index_;
  std::int64_t nextFrame_ = 0;
  std::int64_t position_ = 0;
  std::vector<std::uint8_t> bytes_;
  std::vector<float> decoded_;
};

}  // namespace

std::unique_ptr<Decoder> NewMp3Decoder(const PlainFile& file, const Mp3Stream& stream,
                                       std::int64_t totalSamples) {
  constexpr AVCodecID kLayers[] = {AV_CODEC_ID_MP1, AV_CODEC_ID_MP2, AV_CODEC_ID_MP3};
  const Owned<AVCodecParameters> parameters = NewParameters();
  if (!parameters) return nullptr;
  parameters->codec_type = AVMEDIA_TYPE_AUDIO;
  parameters->codec_id = kLayers[stream.format.layer - 1];
  parameters->sample_rate = stream.format.samplesPerSecond;
  av_channel_layout_default(&parameters->ch_layout, stream.format.channels);
  std::unique_ptr<Codec> codec = Codec::Open(*parameters);
  if (!codec) return nullptr;
  return std::make_unique<Mp3Decoder>(file, stream, totalSamples, std::move(codec));
}

}  // namespace tavlo::platform
