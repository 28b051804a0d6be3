#include "platform/ffmpeg/container_decoder.h"

#include <algorithm>

#include "platform/ffmpeg/codec.h"
#include "platform/ffmpeg/container_format.h"
#include "platform/ffmpeg/guarded_input.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/sample_fold.h"
#include "platform/ffmpeg/sound_limits.h"

namespace tavlo::platform {
namespace {

/// Packets without a sound after which the rest of a file counts as broken.
constexpr int kMostSilentPackets = 4096;
/// A seek that lands before its target decodes up to it, but not for longer than this.
constexpr std::int64_t kMostSecondsSkipped = 60;

class ContainerDecoder final : public Decoder {
 public:
  explicit ContainerDecoder(const PlainFile& file) : input_(file), packet_(NewPacket()) {}

  bool Open(const ContainerFormat& format) {
    if (!packet_ || !input_.Open(format)) return false;
    if (!ChooseStream() || !StartCodec()) return false;
    const AVFrame* first = NextFrame();
    if (first == nullptr || !IsPlayable(first->sample_rate, first->ch_layout.nb_channels))
      return false;
    // The decoder knows better than the header: some codecs double the rate that it tells.
    samplesPerSecond_ = first->sample_rate;
    channels_ = FoldedChannels(first->ch_layout.nb_channels);
    firstMoment_ = first->best_effort_timestamp;
    AppendFrame(*first, channels_, waiting_);
    return Measure(format);
  }

  int SamplesPerSecond() const override { return samplesPerSecond_; }
  int Channels() const override { return channels_; }
  std::int64_t TotalSamples() const override { return totalSamples_; }

  bool Decode(std::vector<float>& values) override {
    if (waiting_.empty()) {
      const AVFrame* frame = NextFrame();
      if (frame == nullptr) return false;
      AppendFrame(*frame, channels_, waiting_);
    }
    values.insert(values.end(), waiting_.begin(), waiting_.end());
    waiting_.clear();
    return true;
  }

  std::int64_t Seek(std::int64_t target) override {
    target = std::clamp<std::int64_t>(target, 0, totalSamples_);
    // Codecs need some packets to settle, and the moments of the last ones in a file are often
    // wrong, so the jump goes a second further back. Dropping what stands in front then makes the
    // seek exact.
    std::int64_t position = JumpBefore(std::max<std::int64_t>(target - samplesPerSecond_, 0));
    if (position > target) position = JumpBefore(0);
    const std::int64_t mostSkipped = kMostSecondsSkipped * samplesPerSecond_;
    while (position < target && target - position <= mostSkipped) {
      if (waiting_.empty()) {
        const AVFrame* frame = NextFrame();
        if (frame == nullptr) break;
        AppendFrame(*frame, channels_, waiting_);
      }
      const std::int64_t drop = std::min(target - position, Waiting());
      waiting_.erase(waiting_.begin(), waiting_.begin() + drop * channels_);
      position += drop;
    }
    return position;
  }

 private:
  const AVStream& Stream() { return *input_.Context().streams[stream_]; }
  std::int64_t Waiting() const { return static_cast<std::int64_t>(waiting_.size()) / channels_; }

  bool ChooseStream() {
    if (FirstSound() < 0 || NeedsLook()) {
      DropOthers();
      if (!input_.FindStreamInfo()) return false;
    }
    stream_ = FirstSound();
    DropOthers();
    return stream_ >= 0;
  }

  /// The first stream of sound that one of our decoders takes, -1 when there is none.
  int FirstSound() {
    const AVFormatContext& context = input_.Context();
    for (unsigned i = 0; i < context.nb_streams; ++i) {
      const AVCodecParameters& parameters = *context.streams[i]->codecpar;
      if (parameters.codec_type == AVMEDIA_TYPE_AUDIO && Codec::Open(parameters))
        return static_cast<int>(i);
    }
    return -1;
  }

  bool NeedsLook() {
    const AVCodecParameters& parameters = *input_.Context().streams[FirstSound()]->codecpar;
    return parameters.sample_rate == 0 || parameters.ch_layout.nb_channels == 0;
  }

  /// Pictures and other sounds are neither parsed nor kept.
  void DropOthers() {
    const AVFormatContext& context = input_.Context();
    for (unsigned i = 0; i < context.nb_streams; ++i) {
      const bool sound = context.streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
      const bool ours = stream_ < 0 || static_cast<int>(i) == stream_;
      if (!sound || !ours) context.streams[i]->discard = AVDISCARD_ALL;
    }
  }

  bool StartCodec() {
    codec_ = Codec::Open(*Stream().codecpar, &Stream().time_base);
    ended_ = false;
    return codec_ != nullptr;
  }

  /// The next frame with sound in it; packets that cannot be decoded are passed over.
  const AVFrame* NextFrame() {
    for (int i = 0; i < kMostSilentPackets; ++i) {
      const AVFrame* frame = codec_->Receive();
      if (frame != nullptr && frame->nb_samples > 0) return frame;
      if (frame != nullptr) continue;
      if (ended_) return nullptr;
      ended_ = !input_.ReadPacket(stream_, *packet_);
      codec_->Send(ended_ ? nullptr : packet_.get());
    }
    return nullptr;
  }

  bool Measure(const ContainerFormat& format) {
    const std::int64_t longest = kLongestSeconds * samplesPerSecond_;
    if (!format.countPackets) {
      totalSamples_ = ToldSamples();
      if (totalSamples_ > 0 && totalSamples_ <= longest) return true;
    }
    totalSamples_ = CountSamples();
    Seek(0);
    return totalSamples_ > 0 && totalSamples_ <= longest;
  }

  /// What the headers say; 0 when they say nothing.
  std::int64_t ToldSamples() {
    if (Stream().duration > 0) return SamplesAt(Stream().duration);
    const std::int64_t whole = input_.Context().duration;
    if (whole <= 0) return 0;
    return av_rescale(whole, samplesPerSecond_, AV_TIME_BASE);
  }

  /// Adds up the packets without decoding them.
  std::int64_t CountSamples() {
    if (!input_.SeekTo(stream_, 0)) return 0;
    std::int64_t duration = 0;
    while (input_.ReadPacket(stream_, *packet_)) duration += std::max(packet_->duration, {});
    return SamplesAt(duration);
  }

  std::int64_t SamplesAt(std::int64_t moment) {
    return av_rescale_q(moment, Stream().time_base, {1, samplesPerSecond_});
  }

  /// Goes to a packet at or before the sample and returns where it lies: before 0 when it begins
  /// with what the encoder put in front of the sound.
  std::int64_t JumpBefore(std::int64_t target) {
    const std::int64_t start = firstMoment_ == AV_NOPTS_VALUE ? 0 : firstMoment_;
    const std::int64_t moment =
        start + av_rescale_q(target, {1, samplesPerSecond_}, Stream().time_base);
    waiting_.clear();
    codec_->Flush();
    ended_ = false;
    if (!input_.SeekTo(stream_, moment) && !input_.SeekTo(stream_, start)) {
      ended_ = true;
      return totalSamples_;
    }
    const AVFrame* frame = NextFrame();
    if (frame == nullptr) return totalSamples_;
    AppendFrame(*frame, channels_, waiting_);
    if (frame->best_effort_timestamp == AV_NOPTS_VALUE) return target;
    return SamplesAt(frame->best_effort_timestamp - start);
  }

  GuardedInput input_;
  Owned<AVPacket> packet_;
  std::unique_ptr<Codec> codec_;
  int stream_ = -1;
  bool ended_ = false;
  int samplesPerSecond_ = 0;
  int channels_ = 1;
  std::int64_t totalSamples_ = 0;
  std::int64_t firstMoment_ = 0;
  std::vector<float> waiting_;  ///< Decoded and not yet delivered.
};

}  // namespace

std::unique_ptr<Decoder> NewContainerDecoder(const PlainFile& file, Bytes head) {
  const ContainerFormat* format = FindContainerFormat(head);
  if (format == nullptr) return nullptr;
  auto decoder = std::make_unique<ContainerDecoder>(file);
  if (!decoder->Open(*format)) return nullptr;
  return decoder;
}

}  // namespace tavlo::platform
