#include "platform/ffmpeg/wave_header.h"

#include <algorithm>
#include <optional>

#include "platform/ffmpeg/bytes.h"
#include "platform/ffmpeg/sound_limits.h"

namespace tavlo::platform {
namespace {

constexpr std::size_t kChunkHeaderSize = 8;
/// Real files have a handful; a file of nothing but chunks must not cost a read for each.
constexpr int kMostChunks = 256;
constexpr std::uint32_t kUnknownSize = 0xFFFFFFFF;
constexpr std::size_t kLongestFormat = 40;

struct Chunk {
  std::array<char, 4> id;
  std::uint64_t begin = 0;  ///< Of the contents.
  std::uint64_t size = 0;   ///< As claimed.

  bool Is(std::string_view name) const { return std::string_view(id.data(), id.size()) == name; }
};

/// The bytes of a file at any place: from the head where they are in it, else read.
class Source {
 public:
  Source(const PlainFile& file, Bytes head, bool bigEndian)
      : file_(file), head_(head), bigEndian_(bigEndian) {}

  template <std::size_t N>
  std::size_t Read(std::uint64_t offset, std::array<std::uint8_t, N>& target) const {
    if (offset + N <= head_.size()) {
      std::memcpy(target.data(), head_.data() + offset, N);
      return N;
    }
    return file_.ReadAt(offset, target);
  }

  std::optional<Chunk> ChunkAt(std::uint64_t offset) const {
    std::array<std::uint8_t, kChunkHeaderSize> bytes;
    if (Read(offset, bytes) < bytes.size()) return std::nullopt;
    Chunk chunk{.begin = offset + kChunkHeaderSize, .size = Number32(bytes.data() + 4)};
    std::memcpy(chunk.id.data(), bytes.data(), chunk.id.size());
    return chunk;
  }

  /// Where the chunk behind this one begins. Chunks are padded to even sizes, but not by every
  /// writer: a pad byte is zero, and no name of a chunk begins with one.
  std::uint64_t Behind(const Chunk& chunk) const {
    const std::uint64_t end = chunk.begin + chunk.size;
    if (chunk.size % 2 == 0) return end;
    std::array<std::uint8_t, 1> pad{};
    return Read(end, pad) == 1 && pad[0] != 0 ? end : end + 1;
  }

  std::uint32_t Number32(const std::uint8_t* at) const {
    return bigEndian_ ? BigEndian32(at) : LittleEndian32(at);
  }
  std::uint64_t FileSize() const { return file_.Size(); }

 private:
  const PlainFile& file_;
  Bytes head_;
  bool bigEndian_;
};

bool IsChunkName(const Chunk& chunk) {
  return std::all_of(chunk.id.begin(), chunk.id.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// Whether nothing but whole chunks stands from `offset` to the end of the file.
bool OnlyChunksFollow(const Source& source, std::uint64_t offset) {
  for (int i = 0; i < kMostChunks && offset < source.FileSize(); ++i) {
    const auto chunk = source.ChunkAt(offset);
    if (!chunk || !IsChunkName(*chunk)) return false;
    offset = source.Behind(*chunk);
  }
  return offset == source.FileSize() || offset == source.FileSize() + 1;
}

/// Takes the coding from the contents of the format chunk. The widths decide how many bytes a
/// sample has; the block size in the header only repeats that, and some writers get it wrong.
WaveVerdict ReadFormat(Bytes format, WaveHeader& header) {
  constexpr unsigned kPcm = 1, kMs = 2, kFloat = 3, kALaw = 6, kMuLaw = 7, kIma = 0x11;
  constexpr unsigned kExtensible = 0xFFFE;
  unsigned tag = LittleEndian16(format.data());
  header.channels = LittleEndian16(format.data() + 2);
  const std::uint32_t rate = LittleEndian32(format.data() + 4);
  const unsigned blockSize = LittleEndian16(format.data() + 12);
  const unsigned bits = LittleEndian16(format.data() + 14);
  if (tag == kExtensible && format.size() >= 26) tag = LittleEndian16(format.data() + 24);
  if (rate > kHighestRate || !IsPlayable(static_cast<int>(rate), header.channels))
    return WaveVerdict::Broken;
  header.samplesPerSecond = static_cast<int>(rate);

  unsigned sampleSize = (bits + 7) / 8;
  if (tag == kPcm && sampleSize >= 1 && sampleSize <= 4) {
    constexpr std::array kWidths{WaveCoding::Pcm8, WaveCoding::Pcm16, WaveCoding::Pcm24,
                                 WaveCoding::Pcm32};
    header.coding = kWidths[sampleSize - 1];
  } else if (tag == kFloat && (bits == 32 || bits == 64)) {
    header.coding = bits == 32 ? WaveCoding::Float32 : WaveCoding::Float64;
  } else if (tag == kMuLaw || tag == kALaw) {
    header.coding = tag == kMuLaw ? WaveCoding::MuLaw : WaveCoding::ALaw;
    sampleSize = 1;
  } else if ((tag == kIma || tag == kMs) && bits == 4 && header.channels <= 2) {
    header.coding = tag == kIma ? WaveCoding::Ima : WaveCoding::Ms;
    header.bytesPerBlock = blockSize;
    header.samplesPerBlock = header.SamplesInBlock(blockSize);
    return header.samplesPerBlock > 1 ? WaveVerdict::Readable : WaveVerdict::Broken;
  } else {
    return WaveVerdict::OtherCoding;
  }
  header.bytesPerBlock = sampleSize * static_cast<unsigned>(header.channels);
  return WaveVerdict::Readable;
}

/// Makes the numbers of a big-endian format chunk little-endian ones.
void TurnNumbers(std::array<std::uint8_t, kLongestFormat>& format) {
  struct Place {
    std::size_t offset, size;
  };
  constexpr std::array kPlaces{Place{0, 2},  Place{2, 2},  Place{4, 4},  Place{8, 4},
                               Place{12, 2}, Place{14, 2}, Place{16, 2}, Place{18, 2},
                               Place{20, 4}, Place{24, 2}};
  for (const Place& place : kPlaces) {
    const auto begin = format.begin() + static_cast<std::ptrdiff_t>(place.offset);
    std::reverse(begin, begin + static_cast<std::ptrdiff_t>(place.size));
  }
}

/// What the walk over the chunks has found.
struct Found {
  std::optional<Chunk> format;
  std::optional<Chunk> data;
  std::uint64_t longDataSize = 0;  ///< Of a file over 4 GB; 0 when not said.
  std::uint64_t factSamples = 0;   ///< 0 when not said.
};

/// Cuts the claim of the data chunk to what the file holds.
void WeighData(const Source& source, Found& found) {
  Chunk& data = *found.data;
  if (data.size == kUnknownSize && found.longDataSize != 0) data.size = found.longDataSize;
  const std::uint64_t held =
      source.FileSize() > data.begin ? source.FileSize() - data.begin : std::uint64_t{0};
  if (data.size == 0 && !OnlyChunksFollow(source, data.begin)) data.size = held;
  data.size = std::min(data.size, held);
}

Found WalkChunks(const Source& source) {
  constexpr std::uint64_t kFirstChunk = 12;
  Found found;
  std::uint64_t offset = kFirstChunk;
  for (int i = 0; i < kMostChunks && !(found.format && found.data); ++i) {
    const auto chunk = source.ChunkAt(offset);
    if (!chunk) break;
    if (chunk->Is("fmt ") && !found.format) {
      found.format = chunk;
    } else if (chunk->Is("data") && !found.data) {
      found.data = chunk;
      WeighData(source, found);
    } else if (chunk->Is("ds64")) {
      std::array<std::uint8_t, 16> sizes;
      if (source.Read(chunk->begin, sizes) == sizes.size())
        found.longDataSize = LittleEndian64(sizes.data() + 8);
    } else if (chunk->Is("fact")) {
      std::array<std::uint8_t, 4> samples;
      if (source.Read(chunk->begin, samples) == samples.size())
        found.factSamples = source.Number32(samples.data());
    }
    offset = source.Behind(chunk->Is("data") ? *found.data : *chunk);
  }
  return found;
}

void CountSamples(const Found& found, WaveHeader& header) {
  header.dataBegin = found.data->begin;
  header.dataSize = found.data->size;
  const std::uint64_t blocks = header.dataSize / header.bytesPerBlock;
  header.totalSamples = static_cast<std::int64_t>(blocks) * header.samplesPerBlock;
  if (!header.IsAdpcm()) return;
  header.totalSamples += header.SamplesInBlock(header.dataSize % header.bytesPerBlock);
  // The last block is filled up with silence; only the fact chunk knows where the sound ends.
  const auto fact = static_cast<std::int64_t>(found.factSamples);
  if (fact <= header.totalSamples && fact > header.totalSamples - header.samplesPerBlock)
    header.totalSamples = fact;
}

}  // namespace

std::int64_t WaveHeader::SamplesInBlock(std::uint64_t bytes) const {
  const auto size = static_cast<std::int64_t>(bytes);
  // Each channel's part of a block begins with a state that holds the first samples themselves.
  if (coding == WaveCoding::Ima)
    return size < 4 * channels ? 0 : 1 + (size - 4 * channels) / (4 * channels) * 8;
  if (coding == WaveCoding::Ms)
    return size < 7 * channels ? 0 : 2 + (size - 7 * channels) * 2 / channels;
  return 1;
}

WaveVerdict ReadWaveHeader(const PlainFile& file, Bytes head, WaveHeader& header) {
  const bool bigEndian = HasMark(head, 0, "RIFX");
  const bool riff = bigEndian || HasMark(head, 0, "RIFF") || HasMark(head, 0, "RF64");
  if (!riff || !HasMark(head, 8, "WAVE")) return WaveVerdict::NoWave;
  const Source source(file, head, bigEndian);
  const Found found = WalkChunks(source);
  if (!found.format || !found.data) return WaveVerdict::Broken;

  constexpr std::size_t kShortestFormat = 16;
  std::array<std::uint8_t, kLongestFormat> format{};
  const std::size_t size =
      std::min<std::size_t>(source.Read(found.format->begin, format), found.format->size);
  if (size < kShortestFormat) return WaveVerdict::Broken;
  if (bigEndian) TurnNumbers(format);
  const WaveVerdict verdict = ReadFormat({format.data(), size}, header);
  // Of the big-endian kind only plain samples are ever written.
  if (bigEndian && header.IsAdpcm()) return WaveVerdict::Broken;
  header.bigEndian = bigEndian;
  if (verdict == WaveVerdict::Readable) CountSamples(found, header);
  return verdict;
}

}  // namespace tavlo::platform
