#include "platform/ffmpeg/container_decoder.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

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
/// After a jump so many frames are looked at for one that says where it is.
constexpr int kMostFramesWithoutPlace = 16;
/// A seek that lands before its target decodes up to it, but not for longer than this.
constexpr std::int64_t kMostSecondsSkipped = 60;
/// When more sound than this stands behind the end that the headers tell, they are not believed.
constexpr std::int64_t kMostSecondsUntold = 5;

/// Codecs whose frames are all of one length, in containers that tell moments in milliseconds only.
bool HasEvenFrames(const AVCodecParameters& parameters) {
  constexpr std::array kEven{AV_CODEC_ID_WMAV1, AV_CODEC_ID_WMAV2, AV_CODEC_ID_WMAPRO,
                             AV_CODEC_ID_WMAVOICE};
  return std::ranges::find(kEven, parameters.codec_id) != kEven.end();
}

class ContainerDecoder final : public Decoder {
 public:
  ContainerDecoder(const PlainFile& file, const ContainerFormat& format)
      : file_(file), format_(format), packet_(NewPacket()) {}

  bool Open() {
    if (!packet_ || !Restart()) return false;
    totalSamples_ = Measure();
    away_ = true;
    return totalSamples_ > 0 && totalSamples_ <= Longest();
  }

  int SamplesPerSecond() const override { return samplesPerSecond_; }
  int Channels() const override { return channels_; }
  std::int64_t TotalSamples() const override { return totalSamples_; }

  bool Decode(std::vector<float>& values) override {
    if (std::exchange(away_, false)) Restart();
    if (waiting_.empty() && !DecodeFrame()) return false;
    values.insert(values.end(), waiting_.begin(), waiting_.end());
    waiting_.clear();
    return true;
  }

  std::int64_t Seek(std::int64_t target) override {
    away_ = false;
    target = std::clamp<std::int64_t>(target, 0, totalSamples_);
    // Codecs need some packets to settle, so the jump goes a second further back. Dropping what
    // stands in front then makes the seek exact.
    std::int64_t position = JumpBefore(target - samplesPerSecond_).value_or(target + 1);
    // Where even the beginning cannot be read no sample follows, and the target is returned.
    if (position > target) position = Restart() ? 0 : target;
    const std::int64_t mostSkipped = kMostSecondsSkipped * samplesPerSecond_;
    while (position < target && target - position <= mostSkipped) {
      if (waiting_.empty() && !DecodeFrame()) break;
      const std::int64_t drop = std::min(target - position, Waiting());
      waiting_.erase(waiting_.begin(), waiting_.begin() + drop * channels_);
      position += drop;
    }
    return position;
  }

 private:
  const AVStream& Stream() { return *input_->Context().streams[stream_]; }
  std::int64_t Waiting() const { return static_cast<std::int64_t>(waiting_.size()) / channels_; }
  std::int64_t Longest() const { return kLongestSeconds * samplesPerSecond_; }

  /// Goes to the first sample by opening the file anew: not every reader comes back from a jump to
  /// what the encoder put in front of the sound, and not every codec forgets when it is told to.
  bool Restart() {
    if (StartAnew()) return true;
    codec_ = nullptr;
    waiting_.clear();
    return false;
  }

  bool StartAnew() {
    waiting_.clear();
    stream_ = -1;
    input_ = std::make_unique<GuardedInput>(file_);
    if (!input_->Open(format_) || !ChooseStream() || !StartCodec()) return false;
    const AVFrame* first = NextFrame();
    if (first == nullptr || !IsPlayable(first->sample_rate, first->ch_layout.nb_channels))
      return false;
    if (samplesPerSecond_ == 0) {
      // The decoder knows better than the header: some codecs double the rate that it tells.
      samplesPerSecond_ = first->sample_rate;
      channels_ = FoldedChannels(first->ch_layout.nb_channels);
    }
    firstMoment_ = first->best_effort_timestamp;
    frameSamples_ = first->nb_samples;
    AppendFrame(*first, channels_, waiting_);
    return true;
  }

  bool ChooseStream() {
    if (FirstSound() < 0 || NeedsLook()) {
      DropOthers();
      if (!input_->FindStreamInfo()) return false;
    }
    stream_ = FirstSound();
    DropOthers();
    return stream_ >= 0;
  }

  /// The first stream of sound that one of our decoders takes, -1 when there is none.
  int FirstSound() {
    const AVFormatContext& context = input_->Context();
    for (unsigned i = 0; i < context.nb_streams; ++i) {
      const AVCodecParameters& parameters = *context.streams[i]->codecpar;
      if (parameters.codec_type == AVMEDIA_TYPE_AUDIO && Codec::Open(parameters))
        return static_cast<int>(i);
    }
    return -1;
  }

  bool NeedsLook() {
    const AVCodecParameters& parameters = *input_->Context().streams[FirstSound()]->codecpar;
    return parameters.sample_rate == 0 || parameters.ch_layout.nb_channels == 0;
  }

  /// Pictures and other sounds are neither parsed nor kept.
  void DropOthers() {
    const AVFormatContext& context = input_->Context();
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
    for (int i = 0; codec_ && i < kMostSilentPackets; ++i) {
      const AVFrame* frame = codec_->Receive();
      if (frame != nullptr && frame->nb_samples > 0) return frame;
      if (frame != nullptr) continue;
      if (ended_) return nullptr;
      ended_ = !input_->ReadPacket(stream_, *packet_);
      codec_->Send(ended_ ? nullptr : packet_.get());
    }
    return nullptr;
  }

  bool DecodeFrame() {
    const AVFrame* frame = NextFrame();
    if (frame == nullptr) return false;
    AppendFrame(*frame, channels_, waiting_);
    return true;
  }

  /// What the headers tell is only where to look for the end: a file that was cut has not all of
  /// it, and many formats round.
  std::int64_t Measure() {
    if (!format_.countPackets) {
      if (const auto end = EndNear(ToldSamples())) return *end;
    }
    const std::int64_t counted = CountSamples();
    return EndNear(counted).value_or(counted);
  }

  /// What the headers say; 0 when they say nothing.
  std::int64_t ToldSamples() {
    if (Stream().duration > 0) return SamplesAt(Stream().duration);
    const std::int64_t whole = input_->Context().duration;
    if (whole <= 0) return 0;
    return av_rescale(whole, samplesPerSecond_, AV_TIME_BASE);
  }

  /// Decodes the last second to where the sound really ends. Nothing when that is not near.
  std::optional<std::int64_t> EndNear(std::int64_t told) {
    if (told <= 0 || told > Longest()) return std::nullopt;
    const std::int64_t target = told - samplesPerSecond_;
    const auto landed = JumpBefore(target);
    if (!landed || *landed < target - kMostSecondsSkipped * samplesPerSecond_) return std::nullopt;
    std::int64_t end = *landed + Waiting();
    const std::int64_t latest = told + kMostSecondsUntold * samplesPerSecond_;
    while (const AVFrame* frame = NextFrame()) {
      end += frame->nb_samples;
      if (end > latest) return std::nullopt;
    }
    return end;
  }

  /// Goes through the packets without decoding them.
  std::int64_t CountSamples() {
    if (!Restart() || !input_->SeekTo(stream_, Start())) return 0;
    std::int64_t sum = 0;
    std::int64_t last = AV_NOPTS_VALUE;
    while (input_->ReadPacket(stream_, *packet_)) {
      // A file may name any moment, so the sums stop where the numbers end.
      const std::int64_t duration = std::max(packet_->duration, {});
      sum = av_sat_add64(sum, duration);
      if (packet_->pts != AV_NOPTS_VALUE) last = av_sat_add64(packet_->pts, duration);
    }
    return SamplesAt(last == AV_NOPTS_VALUE ? sum : av_sat_sub64(last, Start()));
  }

  std::int64_t Start() const { return firstMoment_ == AV_NOPTS_VALUE ? 0 : firstMoment_; }

  std::int64_t SamplesAt(std::int64_t moment) {
    return av_rescale_q(moment, Stream().time_base, {1, samplesPerSecond_});
  }

  /// Where a frame of that moment begins.
  std::int64_t PositionOf(std::int64_t moment) {
    const std::int64_t position = SamplesAt(av_sat_sub64(moment, Start()));
    if (!HasEvenFrames(*Stream().codecpar)) return position;
    return (position + frameSamples_ / 2) / frameSamples_ * frameSamples_;
  }

  /// Goes to a frame at or before the sample, where there is one, and returns where it begins.
  /// Nothing when no frame there says where it is.
  std::optional<std::int64_t> JumpBefore(std::int64_t target) {
    if (target <= 0 || stream_ < 0)
      return Restart() ? std::optional<std::int64_t>(0) : std::nullopt;
    const std::int64_t moment =
        av_sat_add64(Start(), av_rescale_q(target, {1, samplesPerSecond_}, Stream().time_base));
    waiting_.clear();
    if (!StartCodec() || !input_->SeekTo(stream_, moment)) return std::nullopt;
    for (int i = 0; i < kMostFramesWithoutPlace; ++i) {
      const AVFrame* frame = NextFrame();
      if (frame == nullptr) break;
      if (frame->best_effort_timestamp == AV_NOPTS_VALUE) continue;
      AppendFrame(*frame, channels_, waiting_);
      return PositionOf(frame->best_effort_timestamp);
    }
    return std::nullopt;
  }

  const PlainFile& file_;
  const ContainerFormat& format_;
  std::unique_ptr<GuardedInput> input_;
  Owned<AVPacket> packet_;
  std::unique_ptr<Codec> codec_;
  int stream_ = -1;
  bool ended_ = false;
  bool away_ = false;  ///< Measuring has moved from the first sample.
  int samplesPerSecond_ = 0;
  int channels_ = 1;
  std::int64_t totalSamples_ = 0;
  std::int64_t firstMoment_ = 0;
  std::int64_t frameSamples_ = 0;  ///< Of the first frame.
  std::vector<float> waiting_;     ///< Decoded and not yet delivered.
};

}  // namespace

std::unique_ptr<Decoder> NewContainerDecoder(const PlainFile& file, Bytes head) {
  const ContainerFormat* format = FindContainerFormat(head);
  if (format == nullptr) return nullptr;
  auto decoder = std::make_unique<ContainerDecoder>(file, *format);
  if (!decoder->Open()) return nullptr;
  return decoder;
}

}  // namespace tavlo::platform
