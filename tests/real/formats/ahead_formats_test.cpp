#include <gtest/gtest.h>

#include "kinds.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "support/ahead_bench.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using playback::SampleArray;
using playback::SampleCount;

/// A file of one kind, decoded where it is called and read ahead.
struct ReadAhead : testing::TestWithParam<Kind>, AheadBench {
  void SetUp() override {
    const std::string path = folder / GetParam().file;
    ASSERT_TRUE(MakeFile(GetParam(), folder.Path(), path));
    ASSERT_TRUE(Opens(direct, path));
    ASSERT_TRUE(Opens(file, path));
  }

  /// Takes the next block of both; false when that was the end.
  bool ExpectSameBlock(SampleCount samples) {
    const SampleArray expected = direct.ReadArray(samples);
    const SampleArray block = Take(samples);
    EXPECT_FALSE(block.late);
    EXPECT_TRUE(block.values == expected.values) << expected.sourceBegin;
    EXPECT_EQ(block.channels, expected.channels);
    EXPECT_EQ(block.sourceBegin, expected.sourceBegin);
    EXPECT_EQ(block.sourceEnd, expected.sourceEnd);
    EXPECT_EQ(block.last, expected.last);
    EXPECT_EQ(file.ReadFailed(), direct.ReadFailed());
    return !expected.values.empty() && !HasFailure();
  }

  ScratchFolder folder;
  platform::FfmpegAudioFile direct;
};

TEST_P(ReadAhead, GivesTheSameBitsAsTheDecoder) {
  EXPECT_EQ(file.TotalSamples(), direct.TotalSamples());
  EXPECT_EQ(file.LengthMilliseconds(), direct.LengthMilliseconds());
  EXPECT_EQ(file.ChannelCount(), direct.ChannelCount());
  EXPECT_EQ(file.SampleRate(), direct.SampleRate());
  while (ExpectSameBlock(direct.SampleRate() / 2)) {
  }
}

TEST_P(ReadAhead, GivesTheSameBitsBehindASeek) {
  const SampleCount total = direct.TotalSamples();
  for (const SampleCount target : {total / 2, SampleCount{0}, total - 1, total / 3, total}) {
    EXPECT_EQ(file.SeekSample(target), target);
    ASSERT_EQ(direct.SeekSample(target), target);
    for (int block = 0; block < 3 && ExpectSameBlock(direct.SampleRate() / 2); ++block) {
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ReadAhead, testing::ValuesIn(AllKinds()),
                         [](const testing::TestParamInfo<Kind>& kind) {
                           return std::string(kind.param.name);
                         });

}  // namespace
}  // namespace tavlo::test
