#include <gtest/gtest.h>

#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""s;
using store::DiskResult;

struct PlaysOn : testing::Test, PlaybackBench {
  PlaysOn() { disk.WithFileSystemAt("/share").WithFile("/share/other.wav"); }

  void PlayForASecond(SampleCount samples) {
    Lay({.samples = samples});
    Play();
    loop.Advance(1s);
  }
};

TEST_F(PlaysOn, DocumentGoesOnWhileAnotherFolderGivesNoAnswer) {
  PlayForASecond(800'000);
  const auto heard = player.PlayedSamples();
  const double before = documentInWork.CurrentSamplePosition;
  disk.Places.Stall("/share");
  EXPECT_EQ(disk.Delete("/share/other.wav"), DiskResult::OutOfReach);
  EXPECT_EQ(player.PlayedSamples() - heard, 5 * 8000);
  EXPECT_EQ(documentInWork.CurrentSamplePosition - before, 5 * 8000);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(PlaysOn, DocumentThatEndsInTheMeantimeEndsAsEver) {
  PlayForASecond(3 * 8000);
  disk.Places.Stall("/share");
  EXPECT_EQ(disk.Delete("/share/other.wav"), DiskResult::OutOfReach);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(prompts.back(), "ForwardEnd");
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

}  // namespace
}  // namespace tavlo::test
