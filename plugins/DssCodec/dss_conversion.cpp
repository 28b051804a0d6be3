#include "dss_conversion.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>

#include "wave_header.h"

namespace tavlo::dss {
namespace {

constexpr std::size_t kBlocksAtOnce = 16;

/// What a recording may lack of the length that its header tells: the second that it was rounded
/// by, and what the recorder's clock may be off.
constexpr double kRoundedSeconds = 1.5;
constexpr double kClockIsOff = 0.0025;
constexpr double kSecondsOfAFrame = 0.03;

conversion::WaveForm FormOf(int rate) {
  return {.tag = 1, .samplesPerSecond = static_cast<std::uint32_t>(rate), .bitsPerSample = 16};
}

}  // namespace

ConversionCode DssConversion::Run() {
  std::array<std::uint8_t, kMostHeaderBytes> head{};
  std::size_t got = 0;
  ConversionCode code = source_.Read(head, got);
  const Bytes read(head.data(), got);
  if (code == ConversionCode::Done) code = ReadHeader(read, header_);
  if (code != ConversionCode::Done) return code;
  // A header that claims a block too much would take the first third of a second with it.
  const bool tookSound = FrameCutter::IsSound(read.first(header_.bytes).last(kBlockBytes));
  if (tookSound) return ConversionCode::Damaged;
  cutter_.emplace(header_.mode);
  // It makes room for the true one, which has the same length.
  code = wave_.Append(*conversion::WaveHeaderBytes(FormOf(rate_), 0));
  if (code == ConversionCode::Done) code = ConvertBlocks(read.subspan(header_.bytes));
  if (code == ConversionCode::Done) code = source_.CheckUnchanged();
  if (code == ConversionCode::Done) code = CheckLength();
  return code == ConversionCode::Done ? WriteHeader() : code;
}

/// `first` is what was read of the sound together with the header: whole blocks, unless the file
/// ends there.
ConversionCode DssConversion::ConvertBlocks(Bytes first) {
  ConversionCode code = ConvertPiece(first);
  std::vector<std::uint8_t> piece(kBlocksAtOnce * kBlockBytes);
  for (std::size_t got = piece.size(); code == ConversionCode::Done && got == piece.size();) {
    code = source_.Read(piece, got);
    if (code == ConversionCode::Done) code = ConvertPiece(Bytes(piece).first(got));
  }
  if (code != ConversionCode::Done) return code;
  std::vector<Frame> frames;
  cutter_->End(frames);
  code = Sound(frames);
  return code == ConversionCode::Done ? EndRun() : code;
}

ConversionCode DssConversion::ConvertPiece(Bytes piece) {
  std::vector<Frame> frames;
  while (!piece.empty()) {
    const Bytes block = piece.first(std::min(kBlockBytes, piece.size()));
    piece = piece.subspan(block.size());
    const ConversionCode code = cutter_->Take(block, frames);
    if (code != ConversionCode::Done) return code;
  }
  return Sound(frames);
}

ConversionCode DssConversion::Sound(const std::vector<Frame>& frames) {
  for (const Frame& frame : frames) {
    ConversionCode code = Use(frame.mode);
    if (code == ConversionCode::Done) code = decoder_->Decode(frame, decoded_);
    if (code != ConversionCode::Done) return code;
  }
  return AppendSamples();
}

ConversionCode DssConversion::Use(Mode mode) {
  if (decoder_ && decoder_->CodedAs() == mode) return ConversionCode::Done;
  ConversionCode code = EndRun();
  if (code != ConversionCode::Done) return code;
  decoder_.emplace(mode);
  converter_.emplace(NativeRate(mode), rate_);
  code = decoder_->Open();
  return code == ConversionCode::Done ? converter_->Open() : code;
}

ConversionCode DssConversion::EndRun() {
  if (!decoder_) return ConversionCode::Done;
  const ConversionCode code = AppendSamples();
  if (code != ConversionCode::Done) return code;
  const ConversionCode ended = converter_->End(samples_);
  decoder_.reset();
  converter_.reset();
  return ended == ConversionCode::Done ? AppendSamples() : ended;
}

ConversionCode DssConversion::AppendSamples() {
  if (!decoded_.empty()) {
    seconds_ += static_cast<double>(decoded_.size()) / NativeRate(decoder_->CodedAs());
    const ConversionCode code = converter_->Convert(decoded_, samples_);
    decoded_.clear();
    if (code != ConversionCode::Done) return code;
  }
  static_assert(std::endian::native == std::endian::little, "a wave stores the low byte first");
  const Bytes bytes(reinterpret_cast<const std::uint8_t*>(samples_.data()), 2 * samples_.size());
  soundBytes_ += bytes.size();
  if (!conversion::WaveHeaderBytes(FormOf(rate_), soundBytes_)) return ConversionCode::TooLong;
  const ConversionCode code = wave_.Append(bytes);
  samples_.clear();
  return code;
}

/// The source goes after a success, so a recording of which a part is missing is none: its rest may
/// still be on its way.
ConversionCode DssConversion::CheckLength() const {
  const std::uint64_t soundSize = source_.Size() - header_.bytes;
  if (!header_.toldSeconds) {
    const bool whole = seconds_ > 0 && soundSize % kBlockBytes == 0;
    return whole ? ConversionCode::Done : ConversionCode::CutOff;
  }
  const double told = *header_.toldSeconds;
  const double least =
      told * (1 - kClockIsOff) - kRoundedSeconds - kSecondsOfAFrame * cutter_->LostFrames();
  return seconds_ >= least ? ConversionCode::Done : ConversionCode::CutOff;
}

ConversionCode DssConversion::WriteHeader() {
  const auto header = conversion::WaveHeaderBytes(FormOf(rate_), soundBytes_);
  if (!header) return ConversionCode::TooLong;
  return wave_.ReplaceFront(*header);
}

}  // namespace tavlo::dss
