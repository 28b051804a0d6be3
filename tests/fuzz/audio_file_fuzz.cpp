#include <algorithm>

#include "fuzz/promise.h"
#include "fuzz/scratch_file.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "platform/ffmpeg/sound_limits.h"

namespace tavlo::fuzz {
namespace {

using playback::SampleArray;
using playback::SampleCount;

/// What is read of one input: a small file may stand for hours of silence.
constexpr SampleCount kMostRead = 200'000;

/// Reads the next samples; returns how many came.
SampleCount Read(platform::FfmpegAudioFile& file, SampleCount wanted, SampleCount from) {
  const SampleArray block = file.ReadArray(wanted);
  Promise(block.Samples() <= wanted, "no more samples come than were wanted");
  Promise(block.channels == file.ChannelCount(), "samples have the file's channels");
  Promise(block.values.size() % static_cast<std::size_t>(block.channels) == 0,
          "only whole moments come");
  Promise(block.sourceBegin == static_cast<double>(from), "samples begin where the last ended");
  Promise(block.sourceEnd - block.sourceBegin == static_cast<double>(block.Samples()),
          "a block covers its own length");
  const bool loud = std::all_of(block.values.begin(), block.values.end(),
                                [](float value) { return value >= -1.0F && value <= 1.0F; });
  Promise(loud, "every value is a number within full scale");
  return block.Samples();
}

void ReadFrom(platform::FfmpegAudioFile& file, SampleCount target, SampleCount atMost) {
  SampleCount position = file.SeekSample(target);
  Promise(position >= -kMostRead, "a seek does not land far in front of the file");
  for (SampleCount read = 0; read < atMost;) {
    const SampleCount got = Read(file, 4000, position);
    if (got == 0) return;
    position += got;
    read += got;
  }
}

void Use(platform::FfmpegAudioFile& file) {
  const SampleCount total = file.TotalSamples();
  Promise(total >= 0 && file.LengthMilliseconds() >= 0, "no length is negative");
  Promise(file.ChannelCount() == 1 || file.ChannelCount() == 2, "one channel or two come");
  Promise(platform::IsPlayable(file.SampleRate(), 1), "the rate is playable");
  ReadFrom(file, 0, kMostRead);
  ReadFrom(file, total / 2, 8000);
  ReadFrom(file, total, 8000);
  ReadFrom(file, 1, 8000);
}

void Check(std::span<const std::uint8_t> input) {
  static const ScratchFile anyName;
  static const ScratchFile voxName(".vox");
  // The bytes of a vox file say nothing of themselves; every second length is one.
  const ScratchFile& scratch = input.size() % 2 == 0 ? anyName : voxName;
  scratch.Hold(input);
  platform::FfmpegAudioFile file;
  const playback::OpenResult result = file.OpenFile(scratch.Path());
  if (result == playback::OpenResult::Opened) Use(file);
  Promise(result != playback::OpenResult::OutOfReach, "no file that is there is out of reach");
  Promise(file.OpenStatus() == 0, "no file is trouble of the process");
}

}  // namespace
}  // namespace tavlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tavlo::fuzz::Promptness promptness;
  tavlo::fuzz::Check({data, size});
  return 0;
}
