#include "frame_cutter.h"

#include <algorithm>
#include <utility>

namespace tavlo::dss {
namespace {

constexpr std::size_t kStandardPlayBytes = 41;
/// By the two lowest bits of the first byte.
constexpr std::array<std::size_t, 4> kLongPlayBytes{24, 20, 4, 1};

constexpr std::uint8_t kSwapBit = 0x80;

std::size_t FrameBytes(Mode mode, std::uint8_t first) {
  return mode == Mode::StandardPlay ? kStandardPlayBytes : kLongPlayBytes[first & 3];
}

std::size_t MostFrameBytes(Mode mode) {
  return mode == Mode::StandardPlay ? kStandardPlayBytes : kLongPlayBytes[0];
}

/// Standard play is stored as words of two bytes, the later one first.
std::vector<std::uint8_t> InOrder(Mode mode, Bytes raw) {
  std::vector<std::uint8_t> bytes(raw.begin(), raw.end());
  if (mode == Mode::LongPlay) return bytes;
  bytes.resize(bytes.size() / 2 * 2);
  for (std::size_t i = 0; i < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  return bytes;
}

Frame FrameOf(Mode mode, Bytes first, Bytes second = {}) {
  Frame frame{.mode = mode, .size = first.size() + second.size()};
  const auto end = std::copy(first.begin(), first.end(), frame.bytes.begin());
  std::copy(second.begin(), second.end(), end);
  return frame;
}

}  // namespace

Bytes FrameCutter::Block::Continuation() const {
  const Bytes all(bytes);
  return all.subspan(kBlockHeaderBytes, std::min(begin, all.size()) - kBlockHeaderBytes);
}

ConversionCode FrameCutter::Read(Bytes raw, Block& block) const {
  if (raw.size() < kBlockHeaderBytes) return ConversionCode::CutOff;
  const std::optional<Mode> mode = ModeFrom(raw[4]);
  if (!mode) return ConversionCode::UnknownCoding;
  if (expected_ && *mode != *expected_) return ConversionCode::Damaged;
  block.mode = *mode;
  block.frameCount = raw[2];
  // The place is counted in words; the swap bit says that the frame begins inside of one.
  const std::size_t insideWord = (raw[0] & kSwapBit) != 0 ? 1 : 0;
  block.begin = std::size_t{2} * raw[1] + insideWord;
  const bool sane = block.begin >= kBlockHeaderBytes &&
                    block.begin - kBlockHeaderBytes < MostFrameBytes(block.mode);
  if (!sane) return ConversionCode::Damaged;
  block.bytes = InOrder(block.mode, raw);
  const std::size_t own = kBlockBytes - block.begin;
  const std::size_t mostFrames =
      block.mode == Mode::StandardPlay ? own / kStandardPlayBytes + 1 : own;
  return block.frameCount <= mostFrames ? ConversionCode::Done : ConversionCode::Damaged;
}

ConversionCode FrameCutter::Take(Bytes raw, std::vector<Frame>& frames) {
  Block block;
  const ConversionCode code = Read(raw, block);
  if (code != ConversionCode::Done) return code;
  expected_.reset();
  Cut(&block, frames);
  held_ = std::move(block);
  return ConversionCode::Done;
}

void FrameCutter::End(std::vector<Frame>& frames) { Cut(nullptr, frames); }

/// A frame that the two blocks complete together shows that the first of them was full, so all that
/// stands in it is sound. Otherwise its count says how much is.
void FrameCutter::Cut(const Block* next, std::vector<Frame>& frames) {
  if (!held_) return;
  const Block& block = *held_;
  const Bytes bytes(block.bytes);
  std::vector<Frame> whole;
  std::size_t at = std::min(block.begin, bytes.size());
  while (at < bytes.size()) {
    const std::size_t size = FrameBytes(block.mode, bytes[at]);
    if (size > bytes.size() - at) break;
    whole.push_back(FrameOf(block.mode, bytes.subspan(at, size)));
    at += size;
  }
  const Bytes rest = bytes.subspan(at);
  const Bytes continuation =
      next != nullptr && next->mode == block.mode ? next->Continuation() : Bytes();
  const bool joins = !rest.empty() && !continuation.empty() &&
                     rest.size() + continuation.size() == FrameBytes(block.mode, rest[0]);
  if (joins) {
    whole.push_back(FrameOf(block.mode, rest, continuation));
  } else {
    if (block.frameCount > whole.size() || !continuation.empty()) ++lostFrames_;
    whole.resize(std::min(whole.size(), block.frameCount));
  }
  frames.insert(frames.end(), whole.begin(), whole.end());
  held_.reset();
}

}  // namespace tavlo::dss
