#include "playback/sound_shaping.h"

#include <gtest/gtest.h>

#include "support/hand.h"
#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct SoundShapingTest : testing::Test, PlaybackBench {
  SoundShapingTest() { Play(); }
  void SpeedTo(int value) { Drag(form.Slider1, value); }
};

TEST_F(SoundShapingTest, SpeedRunsFromFiftyToOneHundredAndFifty) {
  SpeedTo(-50);
  EXPECT_EQ(engine.PlaySpeedPercent, 50);
  EXPECT_EQ(form.txtSpeed.Value.Get(), "50");
  SpeedTo(50);
  EXPECT_EQ(engine.PlaySpeedPercent, 150);
}

TEST_F(SoundShapingTest, NewSpeedReachesTheNextBlockRead) {
  SpeedTo(50);
  const auto calls = transform.Calls.size();
  loop.Advance(600ms);
  ASSERT_GT(transform.Calls.size(), calls);
  EXPECT_EQ(transform.Calls.back().speedPercent, 150.0f);
}

TEST_F(SoundShapingTest, NormalSpeedPutsEverythingBack) {
  SpeedTo(-30);
  form.cmdNormalSpeed.Press(By::Hand);
  EXPECT_EQ(form.Slider1.Value, 0);
  EXPECT_EQ(engine.PlaySpeedPercent, 100);
  EXPECT_EQ(form.txtSpeed.Value.Get(), "100");
  EXPECT_EQ(form.frmMain.Focused(), &form.txtFocus);
}

TEST_F(SoundShapingTest, NothingChangesWhileADocumentIsBeingMoved) {
  SpeedTo(-30);
  const window::ListTransition moving(window.guards);
  form.cmdNormalSpeed.Press(By::Hand);
  SpeedTo(20);
  EXPECT_EQ(engine.PlaySpeedPercent, 70);
  const auto volumes = player.Volumes.size();
  form.sldVol.Release();
  EXPECT_EQ(player.Volumes.size(), volumes);
}

TEST_F(SoundShapingTest, ReleasedVolumeIsHeardAndStored) {
  form.sldVol.Press();
  form.sldVol.Change(12'345);
  EXPECT_NE(player.Volumes.back(), 12'345);
  form.sldVol.Release();
  EXPECT_EQ(player.Volumes.back(), 12'345);
  EXPECT_EQ(form.txtVolume.Value.Get(), "12345");
}

TEST_F(SoundShapingTest, StoredSpeedAndVolumeAreInForceAfterAStart) {
  form.txtSpeed.Value = "85";
  form.txtVolume.Value = "30000";
  shaping.ApplyStored();
  EXPECT_EQ(form.Slider1.Value, -15);
  EXPECT_EQ(engine.PlaySpeedPercent, 85);
  EXPECT_EQ(form.sldVol.Value, 30'000);
  EXPECT_EQ(player.Volumes.back(), 30'000);
}

TEST_F(SoundShapingTest, StoredNonsenseIsCutToTheSlidersRange) {
  form.txtSpeed.Value = "99999999999999999999";
  form.txtVolume.Value = "-4";
  shaping.ApplyStored();
  EXPECT_EQ(engine.PlaySpeedPercent, 150);
  EXPECT_EQ(form.sldVol.Value, 0);
}

}  // namespace
}  // namespace tavlo::test
