#include <algorithm>

#include "fuzz/promise.h"
#include "fuzz/scratch_file.h"
#include "platform/ffmpeg/mp3_frames.h"

namespace tavlo::fuzz {
namespace {

void CheckHeader(const platform::Mp3Header& header) {
  constexpr std::uint32_t kSmallest = 24;
  constexpr std::uint32_t kLargest = 2881;
  Promise(header.size >= kSmallest && header.size <= kLargest, "a frame has a frame's size");
  Promise(header.layer >= 1 && header.layer <= 3, "a frame has a layer");
  Promise(header.channels == 1 || header.channels == 2, "a frame has one channel or two");
  Promise(header.samplesPerSecond >= 8000 && header.samplesPerSecond <= 48'000,
          "a frame has a rate of its versions");
  Promise(header.samples == 384 || header.samples == 576 || header.samples == 1152,
          "a frame has a length of its layers");
}

void CheckStream(const platform::PlainFile& file, const platform::Mp3Stream& stream) {
  CheckHeader(stream.format);
  Promise(platform::CountMp3Samples(file, stream) >= 0, "no length is negative");
  Promise(stream.begin <= file.Size(), "the stream begins inside the file");
  platform::Mp3Walker walker(file, stream.begin, stream.format);
  std::uint64_t end = stream.begin;
  while (const auto frame = walker.Next()) {
    CheckHeader(frame->header);
    Promise(frame->header.SameStream(stream.format), "every frame is of the stream");
    Promise(frame->offset >= end, "the walk goes forward");
    end = frame->offset + frame->header.size;
    Promise(end <= file.Size(), "a frame that was found is whole");
    Promise(walker.Offset() == end, "the walk stands behind the frame");
  }
}

void Check(std::span<const std::uint8_t> input) {
  static const ScratchFile scratch;
  scratch.Hold(input);
  platform::PlainFile file;
  Promise(file.Open(scratch.Path()) == platform::PlainFile::Trouble::None, "a plain file opens");
  const auto head = input.first(std::min<std::size_t>(input.size(), 4096));
  if (const auto stream = platform::FindMp3Stream(file, head)) CheckStream(file, *stream);
  if (input.size() < 4) return;
  if (const auto header = platform::ReadMp3Header(input.data())) CheckHeader(*header);
}

}  // namespace
}  // namespace tavlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tavlo::fuzz::Promptness promptness;
  tavlo::fuzz::Check({data, size});
  return 0;
}
