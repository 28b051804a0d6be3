#include "platform/ffmpeg/wave_decoder.h"

#include <algorithm>
#include <array>
#include <bit>

#include "platform/ffmpeg/bytes.h"
#include "platform/ffmpeg/codec.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/sample_fold.h"
#include "platform/ffmpeg/sound_limits.h"

namespace tavlo::platform {
namespace {

using LawTable = std::array<float, 256>;

/// ITU-T G.711: a sign, three bits of exponent, four of mantissa, all bits stored inverted; the
/// bias of 33 (132 at 16 bits) makes the segments meet.
constexpr LawTable MakeMuLawTable() {
  LawTable table{};
  for (int code = 0; code < 256; ++code) {
    const int bits = ~code & 0xFF;
    const int magnitude = ((((bits & 0x0F) << 3) + 132) << ((bits & 0x70) >> 4)) - 132;
    table[static_cast<std::size_t>(code)] =
        static_cast<float>((bits & 0x80) != 0 ? -magnitude : magnitude) / 32768.0F;
  }
  return table;
}

/// ITU-T G.711: even bits stored inverted, a set sign bit is positive, the lowest segment linear.
constexpr LawTable MakeALawTable() {
  LawTable table{};
  for (int code = 0; code < 256; ++code) {
    const int bits = code ^ 0x55;
    const int segment = (bits & 0x70) >> 4;
    int magnitude = ((bits & 0x0F) << 4) + 8;
    if (segment > 0) magnitude = (magnitude + 0x100) << (segment - 1);
    table[static_cast<std::size_t>(code)] =
        static_cast<float>((bits & 0x80) != 0 ? magnitude : -magnitude) / 32768.0F;
  }
  return table;
}

constexpr LawTable kMuLawTable = MakeMuLawTable();
constexpr LawTable kALawTable = MakeALawTable();

float SampleFrom(WaveCoding coding, const std::uint8_t* at) {
  switch (coding) {
    case WaveCoding::Pcm8:
      return static_cast<float>(*at - 128) / 128.0F;
    case WaveCoding::Pcm16:
      return static_cast<float>(static_cast<std::int16_t>(LittleEndian16(at))) / 32768.0F;
    case WaveCoding::Pcm24: {
      const auto high = static_cast<std::uint32_t>(LittleEndian16(at + 1)) << 16;
      const auto value = static_cast<std::int32_t>(high | static_cast<std::uint32_t>(at[0]) << 8);
      return static_cast<float>(value) / 2147483648.0F;
    }
    case WaveCoding::Pcm32:
      return static_cast<float>(static_cast<std::int32_t>(LittleEndian32(at))) / 2147483648.0F;
    case WaveCoding::Float32:
      return Tamed(std::bit_cast<float>(LittleEndian32(at)));
    case WaveCoding::Float64:
      return Tamed(static_cast<float>(std::bit_cast<double>(LittleEndian64(at))));
    case WaveCoding::MuLaw:
      return kMuLawTable[*at];
    case WaveCoding::ALaw:
      return kALawTable[*at];
    case WaveCoding::Ima:
    case WaveCoding::Ms:
      break;
  }
  return 0;
}

/// What the decoders of waves share: a header, and a position in samples.
class WaveDecoder : public Decoder {
 public:
  WaveDecoder(const PlainFile& file, const WaveHeader& header) : file_(file), header_(header) {}

  int SamplesPerSecond() const override { return header_.samplesPerSecond; }
  int Channels() const override { return FoldedChannels(header_.channels); }
  std::int64_t TotalSamples() const override { return header_.totalSamples; }

  std::int64_t Seek(std::int64_t target) override {
    position_ = std::clamp<std::int64_t>(target, 0, header_.totalSamples);
    return position_;
  }

 protected:
  const PlainFile& file_;
  const WaveHeader header_;
  std::int64_t position_ = 0;
};

class PlainWaveDecoder final : public WaveDecoder {
 public:
  using WaveDecoder::WaveDecoder;

  bool Decode(std::vector<float>& values) override {
    constexpr std::int64_t kAtOnce = 8192;
    const auto wanted = std::min(kAtOnce, header_.totalSamples - position_);
    if (wanted <= 0) return false;
    const std::size_t moment = header_.bytesPerBlock;
    bytes_.resize(static_cast<std::size_t>(wanted) * moment);
    const std::uint64_t begin = header_.dataBegin + static_cast<std::uint64_t>(position_) * moment;
    const std::size_t got = file_.ReadAt(begin, bytes_) / moment;
    Append(got, values);
    position_ += static_cast<std::int64_t>(got);
    return got > 0;
  }

 private:
  void Append(std::size_t moments, std::vector<float>& values) {
    const int played = Channels();
    const std::size_t size = header_.bytesPerBlock / static_cast<std::size_t>(header_.channels);
    std::array<float, kMostChannels> moment{};
    if (header_.bigEndian) TurnSamples(size);
    const std::uint8_t* at = bytes_.data();
    float* target = Grow(values, moments * static_cast<std::size_t>(played));
    for (std::size_t i = 0; i < moments; ++i) {
      for (int channel = 0; channel < header_.channels; ++channel, at += size)
        moment[static_cast<std::size_t>(channel)] = SampleFrom(header_.coding, at);
      FoldMoment(moment.data(), header_.channels, played, target);
      target += played;
    }
  }

  void TurnSamples(std::size_t size) {
    for (std::size_t at = 0; at + size <= bytes_.size(); at += size)
      std::reverse(bytes_.data() + at, bytes_.data() + at + size);
  }

  static float* Grow(std::vector<float>& values, std::size_t more) {
    const std::size_t before = values.size();
    values.resize(before + more);
    return values.data() + before;
  }

  std::vector<std::uint8_t> bytes_;
};

/// Each block of ADPCM begins with the state that it needs, so a seek goes to the block and drops
/// what stands before the sample.
class AdpcmWaveDecoder final : public WaveDecoder {
 public:
  AdpcmWaveDecoder(const PlainFile& file, const WaveHeader& header, std::unique_ptr<Codec> codec)
      : WaveDecoder(file, header), codec_(std::move(codec)) {}

  bool Decode(std::vector<float>& values) override {
    if (position_ >= header_.totalSamples) return false;
    const std::int64_t block = position_ / header_.samplesPerBlock;
    const std::uint64_t offset = static_cast<std::uint64_t>(block) * header_.bytesPerBlock;
    bytes_.resize(std::min<std::uint64_t>(header_.bytesPerBlock, header_.dataSize - offset));
    if (file_.ReadAt(header_.dataBegin + offset, bytes_) < bytes_.size()) return false;

    const std::int64_t blockBegin = block * header_.samplesPerBlock;
    const std::int64_t blockEnd =
        std::min(blockBegin + header_.samplesPerBlock, header_.totalSamples);
    decoded_.clear();
    // A block that cannot be decoded is silence of its length: what follows keeps its place.
    codec_->DecodeBytes(bytes_, Channels(), decoded_);
    const auto channels = static_cast<std::size_t>(Channels());
    decoded_.resize(static_cast<std::size_t>(blockEnd - blockBegin) * channels);
    const auto skipped = static_cast<std::size_t>(position_ - blockBegin) * channels;
    values.insert(values.end(), decoded_.begin() + static_cast<std::ptrdiff_t>(skipped),
                  decoded_.end());
    position_ = blockEnd;
    return true;
  }

 private:
  std::unique_ptr<Codec> codec_;
  std::vector<std::uint8_t> bytes_;
  std::vector<float> decoded_;
};

std::unique_ptr<Codec> OpenAdpcm(const WaveHeader& header) {
  const Owned<AVCodecParameters> parameters = NewParameters();
  if (!parameters) return nullptr;
  parameters->codec_type = AVMEDIA_TYPE_AUDIO;
  parameters->codec_id =
      header.coding == WaveCoding::Ima ? AV_CODEC_ID_ADPCM_IMA_WAV : AV_CODEC_ID_ADPCM_MS;
  parameters->sample_rate = header.samplesPerSecond;
  parameters->block_align = static_cast<int>(header.bytesPerBlock);
  parameters->bits_per_coded_sample = 4;
  av_channel_layout_default(&parameters->ch_layout, header.channels);
  return Codec::Open(*parameters);
}

}  // namespace

std::unique_ptr<Decoder> NewWaveDecoder(const PlainFile& file, const WaveHeader& header) {
  if (!header.IsAdpcm()) return std::make_unique<PlainWaveDecoder>(file, header);
  std::unique_ptr<Codec> codec = OpenAdpcm(header);
  if (!codec) return nullptr;
  return std::make_unique<AdpcmWaveDecoder>(file, header, std::move(codec));
}

}  // namespace tavlo::platform
