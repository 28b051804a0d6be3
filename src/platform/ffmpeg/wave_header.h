#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/ffmpeg/plain_file.h"

namespace tavlo::platform {

/// How the samples of a wave are stored.
enum class WaveCoding { Pcm8, Pcm16, Pcm24, Pcm32, Float32, Float64, MuLaw, ALaw, Ima, Ms };

/// What a RIFF/WAVE header says, after it was weighed against what the file holds.
struct WaveHeader {
  WaveCoding coding = WaveCoding::Pcm16;
  bool bigEndian = false;  ///< Of a RIFX; all others are little-endian.
  int samplesPerSecond = 0;
  int channels = 0;                  ///< As stored.
  std::uint32_t bytesPerBlock = 0;   ///< One moment of all channels, or one block of ADPCM.
  std::int64_t samplesPerBlock = 1;  ///< 1 but for ADPCM.
  std::uint64_t dataBegin = 0;
  std::uint64_t dataSize = 0;     ///< Bytes that are really there.
  std::int64_t totalSamples = 0;  ///< Exact.

  bool IsAdpcm() const { return coding == WaveCoding::Ima || coding == WaveCoding::Ms; }
  /// Samples that an ADPCM block of `bytes` holds; the last one of a file may be short.
  std::int64_t SamplesInBlock(std::uint64_t bytes) const;
};

enum class WaveVerdict {
  NoWave,       ///< Something else, or nothing.
  Broken,       ///< A wave whose header is cut off or contradicts itself.
  OtherCoding,  ///< A wave, but of a coding that is not in WaveCoding.
  Readable,
};

/// Reads the header of a wave. `head` is the beginning of the file (some 4 KB), already read; the
/// file is asked again only when a chunk header stands behind it. Chunks may come in any order. The
/// sizes in the header are claims: a data chunk that claims more than the file holds, or nothing
/// although audio follows (a recorder that was switched off), is what the file really holds.
WaveVerdict ReadWaveHeader(const PlainFile& file, Bytes head, WaveHeader& header);

}  // namespace tavlo::platform
