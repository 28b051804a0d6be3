#include <gtest/gtest.h>

#include "support/ahead_bench.h"

namespace tavlo::test {
namespace {

using playback::OpenResult;
using playback::SampleArray;

struct UnreadFileTest : testing::Test, AheadBench {
  /// A file of ten seconds as a walk hands it over that has measured it already.
  static store::HeldFile Measured() {
    return {.path = "/gone/a.wav",
            .opened = store::DiskResult::Done,
            .measured = store::MeasuredSound{.outcome = store::MeasuredSound::Outcome::Opened,
                                             .samplesPerSecond = 8000,
                                             .channels = 1,
                                             .totalSamples = 80'000}};
  }
};

TEST_F(UnreadFileTest, LengthThatAWalkMeasuredIsKnownThoughNothingIsOpen) {
  ASSERT_EQ(file.OpenHeldFile(Measured()), OpenResult::Opened);
  EXPECT_EQ(file.LengthMilliseconds(), 10'000);
  EXPECT_EQ(file.Readers(), 0U);
  EXPECT_EQ(errands.Asked, 0);
}

TEST_F(UnreadFileTest, SoundBehindAMeasuredLengthCanNotBeReadAndSaysSo) {
  ASSERT_EQ(file.OpenHeldFile(Measured()), OpenResult::Opened);
  EXPECT_EQ(file.SeekSample(90'000), 80'000);
  const SampleArray block = file.ReadArray(4000);
  EXPECT_TRUE(block.values.empty());
  EXPECT_FALSE(block.late) << "it would be waited for without an end";
  EXPECT_TRUE(file.ReadFailed()) << "it is no end that was heard";
}

TEST_F(UnreadFileTest, NothingFailsOnceItIsClosed) {
  ASSERT_EQ(file.OpenHeldFile(Measured()), OpenResult::Opened);
  EXPECT_TRUE(file.ReadArray(4000).values.empty());
  file.CloseFile();
  EXPECT_TRUE(file.ReadArray(4000).values.empty());
  EXPECT_FALSE(file.ReadFailed());
}

}  // namespace
}  // namespace tavlo::test
