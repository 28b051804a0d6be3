#include "platform/ffmpeg/mp3_frames.h"

#include <algorithm>
#include <array>

#include "platform/ffmpeg/bytes.h"

namespace tavlo::platform {
namespace {

constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kWindow = 64 * 1024;
/// How much of a damaged file is searched for the next frame before the rest counts as no sound.
constexpr std::uint64_t kSearch = 1024 * 1024;
/// How far behind the tags the first frame may stand. Costs a search in every file that is no
/// sound.
constexpr std::uint64_t kSearchForFirst = 64 * 1024;

/// Kilobits a second by the four bits of the header; rows: version 1 layers 1 to 3, then version 2
/// layer 1, and version 2 layers 2 and 3.
constexpr std::array<std::array<int, 15>, 5> kBitRates{{
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
}};

constexpr std::array kRates{44'100, 48'000, 32'000};

int SamplesInFrame(int version, int layer) {
  if (layer == 1) return 384;
  return layer == 3 && version != 1 ? 576 : 1152;
}

/// Bytes of ID3 tags at the beginning; several may stand behind each other.
std::uint64_t SizeOfTags(const PlainFile& file) {
  constexpr int kMostTags = 8;
  std::uint64_t offset = 0;
  for (int i = 0; i < kMostTags; ++i) {
    std::array<std::uint8_t, 10> tag;
    if (file.ReadAt(offset, tag) < tag.size() || !HasMark(tag, 0, "ID3")) break;
    std::uint64_t size = 0;
    // Seven bits in each byte, so that no size looks like the beginning of a frame.
    for (std::size_t k = 6; k < 10; ++k) size = size << 7 | (tag[k] & 0x7FU);
    const bool footer = (tag[5] & 0x10) != 0;
    offset += tag.size() + size + (footer ? tag.size() : 0);
  }
  return offset;
}

/// Whether frames follow each other from `offset`: three in a row, or two up to the end of the
/// file. A frame that is alone counts only where nothing stands around it (`begin` is where sound
/// may begin), since a frame's look alone is often chance.
std::optional<Mp3Header> ChainAt(const PlainFile& file, std::uint64_t begin, std::uint64_t offset,
                                 const std::uint8_t* bytes) {
  constexpr int kChain = 3;
  const bool scraps = offset != begin;
  const auto first = ReadMp3Header(bytes);
  if (!first || offset + first->size > file.Size()) return std::nullopt;
  Mp3Header last = *first;
  for (int i = 1; i < kChain; ++i) {
    offset += last.size;
    std::array<std::uint8_t, kHeaderSize> next;
    if (file.ReadAt(offset, next) < next.size()) {
      const bool enough = i > 1 || (!scraps && offset == file.Size());
      return enough ? first : std::nullopt;
    }
    const auto header = ReadMp3Header(next.data());
    if (!header && i > 1 && HasMark(next, 0, "TAG")) return first;
    if (!header || !header->SameStream(*first)) return std::nullopt;
    last = *header;
  }
  return first;
}

std::optional<Mp3Frame> FindFirstFrame(const PlainFile& file, std::uint64_t begin) {
  std::vector<std::uint8_t> bytes(kSearchForFirst + kHeaderSize);
  bytes.resize(file.ReadAt(begin, bytes));
  for (std::size_t i = 0; i + kHeaderSize <= bytes.size(); ++i) {
    if (bytes[i] != 0xFF) continue;
    if (const auto header = ChainAt(file, begin, begin + i, bytes.data() + i))
      return Mp3Frame{begin + i, *header};
  }
  return std::nullopt;
}

/// An encoder's tag: a first frame that holds figures instead of sound.
struct EncoderTag {
  std::uint64_t frames = 0;  ///< 0 when not told.
  std::uint64_t bytes = 0;   ///< From the tag's own frame to the end of the sound; 0 when not told.
  int startPadding = 0;
  int endPadding = 0;
};

std::optional<EncoderTag> ReadXing(Bytes frame, std::size_t at) {
  if (!HasMark(frame, at, "Xing") && !HasMark(frame, at, "Info")) return std::nullopt;
  EncoderTag tag;
  std::size_t next = at + 8;
  const auto take = [&](std::size_t size) {
    const std::size_t here = next;
    next += size;
    return next <= frame.size() ? frame.data() + here : nullptr;
  };
  if (frame.size() < next) return tag;
  const std::uint32_t flags = BigEndian32(frame.data() + at + 4);
  if ((flags & 1) != 0) {
    if (const std::uint8_t* value = take(4)) tag.frames = BigEndian32(value);
  }
  if ((flags & 2) != 0) {
    if (const std::uint8_t* value = take(4)) tag.bytes = BigEndian32(value);
  }
  if ((flags & 4) != 0) take(100);
  if ((flags & 8) != 0) take(4);
  constexpr std::size_t kPaddingInEncoderPart = 21;
  const bool encoderPart =
      HasMark(frame, next, "LAME") || HasMark(frame, next, "Lavf") || HasMark(frame, next, "Lavc");
  if (!encoderPart) return tag;
  next += kPaddingInEncoderPart;
  if (const std::uint8_t* value = take(3)) {
    tag.startPadding = value[0] << 4 | value[1] >> 4;
    tag.endPadding = (value[1] & 0x0F) << 8 | value[2];
  }
  return tag;
}

std::optional<EncoderTag> ReadEncoderTag(Bytes frame, const Mp3Header& header) {
  if (header.layer != 3) return std::nullopt;
  std::size_t sideInfo = header.channels == 1 ? 9 : 17;
  if (header.version == 1) sideInfo = header.channels == 1 ? 17 : 32;
  if (auto tag = ReadXing(frame, kHeaderSize + sideInfo)) return tag;
  constexpr std::size_t kVbriAt = kHeaderSize + 32;
  if (!HasMark(frame, kVbriAt, "VBRI") || frame.size() < kVbriAt + 18) return std::nullopt;
  EncoderTag tag;
  tag.bytes = BigEndian32(frame.data() + kVbriAt + 10);
  tag.frames = BigEndian32(frame.data() + kVbriAt + 14);
  return tag;
}

/// Whether the tag's sizes are those of this file, and not of a longer one that it was cut from or
/// of one part of several.
bool FitsFile(const EncoderTag& tag, std::uint64_t tagBegin, std::uint64_t fileSize) {
  constexpr std::uint64_t kTrailingTags = 4 * 1024;
  constexpr std::uint64_t kSmallestFrame = 24;
  if (tag.frames == 0 || tag.bytes == 0 || tag.frames > tag.bytes / kSmallestFrame) return false;
  const std::uint64_t end = tagBegin + tag.bytes;
  return end <= fileSize && fileSize - end <= kTrailingTags;
}

}  // namespace

std::optional<Mp3Header> ReadMp3Header(const std::uint8_t* at) {
  const std::uint32_t bits = BigEndian32(at);
  if (bits >> 21 != 0x7FF) return std::nullopt;
  const unsigned versionBits = bits >> 19 & 3;
  const unsigned layerBits = bits >> 17 & 3;
  const unsigned rateIndex = bits >> 12 & 15;
  const unsigned frequencyIndex = bits >> 10 & 3;
  if (versionBits == 1 || layerBits == 0 || rateIndex == 0 || rateIndex == 15 ||
      frequencyIndex == 3)
    return std::nullopt;
  Mp3Header header;
  constexpr std::array kVersions{25, 0, 2, 1};
  header.version = kVersions[versionBits];
  header.layer = static_cast<int>(4 - layerBits);
  const int halvings = header.version == 25 ? 4 : header.version;
  header.samplesPerSecond = kRates[frequencyIndex] / halvings;
  header.channels = (bits >> 6 & 3) == 3 ? 1 : 2;
  header.samples = SamplesInFrame(header.version, header.layer);
  const int row = header.version == 1 ? header.layer - 1 : std::min(header.layer + 2, 4);
  const int bitRate = kBitRates[static_cast<std::size_t>(row)][rateIndex] * 1000;
  const int padding = static_cast<int>(bits >> 9 & 1);
  if (header.layer == 1) {
    header.size =
        static_cast<std::uint32_t>((12 * bitRate / header.samplesPerSecond + padding) * 4);
  } else {
    const int size = header.samples / 8 * bitRate / header.samplesPerSecond + padding;
    header.size = static_cast<std::uint32_t>(size);
  }
  return header;
}

Mp3Walker::Mp3Walker(const PlainFile& file, std::uint64_t offset, const Mp3Header& like)
    : file_(file), offset_(offset), like_(like) {}

const std::uint8_t* Mp3Walker::HeaderBytes(std::uint64_t offset) {
  if (offset < windowBegin_ || offset + kHeaderSize > windowBegin_ + windowSize_) {
    window_.resize(kWindow);
    windowBegin_ = offset;
    windowSize_ = file_.ReadAt(offset, window_);
    if (windowSize_ < kHeaderSize) return nullptr;
  }
  return window_.data() + (offset - windowBegin_);
}

std::optional<Mp3Header> Mp3Walker::MatchAt(std::uint64_t offset) {
  const std::uint8_t* bytes = HeaderBytes(offset);
  if (bytes == nullptr) return std::nullopt;
  const auto header = ReadMp3Header(bytes);
  if (!header || !header->SameStream(like_) || offset + header->size > file_.Size())
    return std::nullopt;
  return header;
}

std::optional<Mp3Frame> Mp3Walker::Next() {
  std::optional<Mp3Frame> frame;
  if (const auto header = MatchAt(offset_)) {
    frame = Mp3Frame{offset_, *header};
  } else {
    frame = Resynchronize();
  }
  if (frame) offset_ = frame->offset + frame->header.size;
  return frame;
}

std::optional<Mp3Frame> Mp3Walker::Resynchronize() {
  const std::uint64_t end = std::min(offset_ + kSearch, file_.Size());
  for (std::uint64_t at = offset_; at < end; ++at) {
    const std::uint8_t* bytes = HeaderBytes(at);
    if (bytes == nullptr) break;
    if (*bytes != 0xFF) continue;
    const auto header = MatchAt(at);
    if (!header) continue;
    // Two bytes of chance look like a frame often enough; two frames in a row do not.
    const std::uint64_t behind = at + header->size;
    if (behind == file_.Size() || MatchAt(behind)) return Mp3Frame{at, *header};
  }
  return std::nullopt;
}

std::optional<Mp3Stream> FindMp3Stream(const PlainFile& file, Bytes head) {
  const bool tagged = HasMark(head, 0, "ID3");
  const auto first = FindFirstFrame(file, tagged ? SizeOfTags(file) : 0);
  if (!first) return std::nullopt;
  Mp3Stream stream{.format = first->header, .begin = first->offset};
  std::vector<std::uint8_t> frame(first->header.size);
  frame.resize(file.ReadAt(first->offset, frame));
  const auto tag = ReadEncoderTag(frame, first->header);
  if (!tag) return stream;
  stream.begin += first->header.size;
  constexpr int kDecoderDelay = 529;
  const bool padded = tag->startPadding != 0 || tag->endPadding != 0;
  if (padded) stream.startPadding = tag->startPadding + kDecoderDelay;
  if (FitsFile(*tag, first->offset, file.Size())) {
    const std::int64_t samples = static_cast<std::int64_t>(tag->frames) * first->header.samples;
    const int padding = tag->startPadding + std::max(tag->endPadding, kDecoderDelay * padded);
    stream.toldSamples = std::max<std::int64_t>(samples - padding, 0);
  }
  return stream;
}

std::int64_t CountMp3Samples(const PlainFile& file, const Mp3Stream& stream) {
  if (stream.toldSamples) return *stream.toldSamples;
  Mp3Walker walker(file, stream.begin, stream.format);
  std::int64_t samples = 0;
  while (const auto frame = walker.Next()) samples += frame->header.samples;
  return std::max<std::int64_t>(samples - stream.startPadding, 0);
}

}  // namespace tavlo::platform
