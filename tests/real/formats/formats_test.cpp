#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>

#include "kinds.h"
#include "platform/disk/posix_disk.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "store/folder_walk.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using platform::FfmpegAudioFile;
using playback::SampleArray;
using playback::SampleCount;

std::string NameOf(const testing::TestParamInfo<Kind>& kind) { return kind.param.name; }

/// A file of one kind, and all of its sound.
struct Plays : testing::TestWithParam<Kind> {
  void SetUp() override {
    path = folder / GetParam().file;
    ASSERT_TRUE(MakeFile(GetParam(), folder.Path(), path));
    reference = ReferenceOf(GetParam(), path);
    ASSERT_FALSE(reference.empty());
    ASSERT_TRUE(Opens(file, path));
  }

  SampleCount ReferenceSamples() const {
    return static_cast<SampleCount>(reference.size()) / GetParam().channels;
  }
  /// Reads all from the present position on; only the block that reaches the end may say so.
  std::vector<float> ReadToTheEnd() {
    std::vector<float> all;
    bool last = false;
    for (;;) {
      const SampleArray block = file.ReadArray(4001);
      if (block.values.empty()) break;
      EXPECT_FALSE(last);
      last = block.last;
      all.insert(all.end(), block.values.begin(), block.values.end());
    }
    EXPECT_EQ(last, !all.empty());
    return all;
  }
  /// Seeks, and holds what is heard there against the same place of the whole sound.
  void ExpectAt(SampleCount target, const std::vector<float>& whole) {
    constexpr SampleCount kHeard = 3000;
    ASSERT_EQ(file.SeekSample(target), target);
    const SampleArray block = file.ReadArray(kHeard);
    EXPECT_EQ(block.Samples(), std::min(kHeard, file.TotalSamples() - target)) << target;
    EXPECT_EQ(block.sourceBegin, static_cast<double>(target));
    const std::vector<float> rest(whole.begin() + target * GetParam().channels, whole.end());
    EXPECT_LE(LargestDifference(block.values, rest), GetParam().traits.seekTolerance) << target;
  }
  /// Beginning, end, both sides of where packets of the usual sizes meet, and twenty places drawn.
  std::vector<SampleCount> Places() {
    const SampleCount total = file.TotalSamples();
    std::vector<SampleCount> places{0, total - 1, total / 2, 0};
    for (const SampleCount packet : {160, 320, 576, 960, 1024, 1152, 2048, 4096}) {
      for (const SampleCount aside : {-1, 0, 1}) places.push_back(10 * packet + aside);
    }
    std::mt19937 chance(7);
    for (int i = 0; i < 20; ++i) places.push_back(static_cast<SampleCount>(chance()) % total);
    std::erase_if(places, [&](SampleCount place) { return place >= total; });
    return places;
  }

  ScratchFolder folder;
  FfmpegAudioFile file;
  std::string path;
  std::vector<float> reference;
};

TEST_P(Plays, FromTheFirstSampleToTheLastAndFromAnyPlace) {
  const Kind& kind = GetParam();
  EXPECT_EQ(file.SampleRate(), kind.traits.decodedRate != 0 ? kind.traits.decodedRate : kind.rate);
  ASSERT_EQ(file.ChannelCount(), kind.channels);
  EXPECT_EQ(file.TotalSamples(), ReferenceSamples());
  EXPECT_EQ(file.LengthMilliseconds(), ReferenceSamples() * 1000 / file.SampleRate());

  const std::vector<float> whole = ReadToTheEnd();
  ASSERT_EQ(static_cast<SampleCount>(whole.size()), file.TotalSamples() * kind.channels);
  EXPECT_LE(LargestDifference(whole, reference), 0.00001F);

  for (const SampleCount place : Places()) ExpectAt(place, whole);
  EXPECT_EQ(file.SeekSample(file.TotalSamples() + 1000), file.TotalSamples());
  EXPECT_TRUE(file.ReadArray(100).values.empty());

  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(ReadToTheEnd(), whole) << "the same once more";
}

TEST_P(Plays, TheSameWhenItWasMeasuredAsAWalkHeldIt) {
  const std::vector<float> whole = ReadToTheEnd();
  FfmpegAudioFile measured;
  {
    platform::PosixDisk disk;
    const auto walk = disk.Walk(folder / "");
    while (walk->Next() && walk->Name() != GetParam().file) continue;
    ASSERT_EQ(measured.OpenHeldFile(walk->Open()), playback::OpenResult::Opened);
  }
  EXPECT_EQ(measured.OpenStatus(), 0);
  EXPECT_EQ(measured.TotalSamples(), file.TotalSamples());
  EXPECT_EQ(measured.SampleRate(), file.SampleRate());
  EXPECT_EQ(measured.ChannelCount(), file.ChannelCount());
  EXPECT_EQ(measured.LengthMilliseconds(), file.LengthMilliseconds());
  EXPECT_EQ(ReadAll(measured), whole) << "read once the walk has let go of it";
}

INSTANTIATE_TEST_SUITE_P(EveryFormat, Plays, testing::ValuesIn(AllKinds()), NameOf);

/// A file that lost its end: the transfer broke off, or the recorder's card was full.
struct PlaysWhenCut : Plays {
  /// A decode of the part, for the samples of its source do not say where it was cut.
  std::vector<float> PartReference(const std::string& part) const {
    Kind kind = GetParam();
    if (kind.traits.reference == Reference::Source) kind.traits.reference = Reference::Ffmpeg;
    return ReferenceOf(kind, part);
  }
};

TEST_P(PlaysWhenCut, AsLongAsWhatIsLeft) {
  const Kind& kind = GetParam();
  const std::string bytes = ReadFile(path);
  const SampleCount uncut = file.TotalSamples();
  for (const std::size_t percent : {60, 90}) {
    SCOPED_TRACE(percent);
    const std::string part = folder / ("cut_" + std::string(kind.file));
    WriteFile(part, bytes.substr(0, bytes.size() * percent / 100));
    ASSERT_TRUE(Opens(file, part));
    const SampleCount total = file.TotalSamples();
    EXPECT_LT(total, uncut);
    const std::vector<float> left = ReadToTheEnd();
    EXPECT_EQ(static_cast<SampleCount>(left.size()), total * kind.channels);

    const std::vector<float> expected = PartReference(part);
    // FFmpeg's tool guesses at a frame that was cut in two; what is guessed is no dictation.
    const double mostOff = 0.05 * file.SampleRate() * kind.channels;
    EXPECT_NEAR(static_cast<double>(left.size()), static_cast<double>(expected.size()), mostOff);
    EXPECT_LE(LargestDifference(left, expected), 0.00001F);
    ExpectAt(total / 2, left);
    ExpectAt(total - 1, left);
  }
}

std::vector<Kind> KindsThatPlayWhenCut() {
  std::vector<Kind> kinds = AllKinds();
  std::erase_if(kinds, [](const Kind& kind) { return !kind.traits.playsWhenCut; });
  return kinds;
}

INSTANTIATE_TEST_SUITE_P(EveryFormat, PlaysWhenCut, testing::ValuesIn(KindsThatPlayWhenCut()),
                         NameOf);

TEST(HoursWithoutAHeader, AreMeasuredWithABreathEveryFewFramesAndCannotBeReadMeanwhile) {
  // Two hours of frames of 20 ms that say nothing but their length.
  constexpr int kFrames = 2 * 60 * 60 * 50;
  std::string frame(32, char{0});
  frame.front() = char{0x3C};
  std::string bytes = "#!AMR\n";
  for (int i = 0; i < kFrames; ++i) bytes += frame;
  const ScratchFolder folder;
  WriteFile(folder / "hours.amr", bytes);

  int breaths = 0;
  std::unique_ptr<FfmpegAudioFile> file;
  file = std::make_unique<FfmpegAudioFile>([&] {
    ++breaths;
    EXPECT_TRUE(file->ReadArray(1).values.empty());
    EXPECT_EQ(file->SeekSample(100), 0);
  });
  ASSERT_TRUE(Opens(*file, folder / "hours.amr"));
  EXPECT_EQ(file->LengthMilliseconds(), 2 * 60 * 60 * 1000);
  constexpr int kFramesOfABreath = 2048;
  EXPECT_GT(breaths, kFrames / kFramesOfABreath);

  const int measured = breaths;
  EXPECT_EQ(file->ReadArray(8000).Samples(), 8000);
  EXPECT_EQ(breaths, measured) << "reading on is the player's own work";
}

}  // namespace
}  // namespace tavlo::test
