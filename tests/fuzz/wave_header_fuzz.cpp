#include <algorithm>
#include <tuple>

#include "fuzz/promise.h"
#include "fuzz/scratch_file.h"
#include "platform/ffmpeg/sound_limits.h"
#include "platform/ffmpeg/wave_header.h"

namespace tavlo::fuzz {
namespace {

using platform::WaveHeader;
using platform::WaveVerdict;

void CheckReadable(const WaveHeader& header, std::uint64_t size) {
  Promise(platform::IsPlayable(header.samplesPerSecond, header.channels), "the format is playable");
  Promise(header.bytesPerBlock > 0 && header.samplesPerBlock > 0, "a block holds something");
  Promise(header.dataBegin <= size && header.dataSize <= size - header.dataBegin,
          "the sound lies inside the file");
  Promise(header.totalSamples >= 0, "no length is negative");
  const std::uint64_t blocks = header.dataSize / header.bytesPerBlock + (header.IsAdpcm() ? 1 : 0);
  Promise(header.totalSamples <= static_cast<std::int64_t>(blocks) * header.samplesPerBlock,
          "no sample lies behind the data");
}

auto Figures(const WaveHeader& header) {
  return std::tuple(header.coding, header.samplesPerSecond, header.channels, header.bytesPerBlock,
                    header.samplesPerBlock, header.dataBegin, header.dataSize, header.totalSamples);
}

void Check(std::span<const std::uint8_t> input) {
  static const ScratchFile scratch;
  scratch.Hold(input);
  platform::PlainFile file;
  Promise(file.Open(scratch.Path()) == platform::PlainFile::Trouble::None, "a plain file opens");
  WaveHeader header;
  const WaveVerdict verdict = platform::ReadWaveHeader(
      file, input.first(std::min<std::size_t>(input.size(), 4096)), header);
  if (verdict == WaveVerdict::Readable) CheckReadable(header, file.Size());

  WaveHeader again;
  const WaveVerdict other =
      platform::ReadWaveHeader(file, input.first(std::min<std::size_t>(input.size(), 12)), again);
  Promise(verdict == other, "a short head gives the same verdict");
  Promise(verdict != WaveVerdict::Readable || Figures(header) == Figures(again),
          "a short head gives the same figures");
}

}  // namespace
}  // namespace tavlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tavlo::fuzz::Promptness promptness;
  tavlo::fuzz::Check({data, size});
  return 0;
}
