#include "playback/position_display.h"

#include <gtest/gtest.h>

#include "support/hand.h"
#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct PositionDisplayTest : testing::Test, PlaybackBench {
  void DragTo(int value) { Drag(form.slPosition, value); }
};

TEST_F(PositionDisplayTest, ReleaseWhilePlayingSeeksAndPlaysOn) {
  Play();
  loop.Advance(1s);
  DragTo(50);
  EXPECT_EQ(player.Clears, 1);
  EXPECT_EQ(file.Seeks.back(), 40'000);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 40'000);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(player.BlocksInFlight(), 2);
  loop.Advance(1s);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, 48'000, 500);
}

TEST_F(PositionDisplayTest, SeekStartsTheStretcherAnew) {
  Play();
  const int resets = transform.Resets;
  DragTo(50);
  EXPECT_EQ(transform.Resets, resets + 1);
}

TEST_F(PositionDisplayTest, ReleaseAtTheEndWhilePlayingEndsTheDocument) {
  Play();
  loop.Advance(1s);
  DragTo(100);
  loop.Advance(100ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(prompts.back(), "ForwardEnd");
}

TEST_F(PositionDisplayTest, ReleaseAtZeroWhenStoppedStaysAtZeroOnTheNextPlay) {
  config.sliderABS.Value = 30;
  Play();
  loop.Advance(5s);
  form.cmdStop.Press(By::Hand);
  DragTo(0);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 0);
  Play();
  EXPECT_EQ(file.Seeks.back(), 0);
}

TEST_F(PositionDisplayTest, ReleaseWhenStoppedLeavesTheTimeLabelUntilTheNextRun) {
  Play();
  loop.Advance(3s);
  form.cmdStop.Press(By::Hand);
  const std::string shown = form.lblFilePositionHMS.Value;
  DragTo(80);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 64'000);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), shown);
}

TEST_F(PositionDisplayTest, SeekInADocumentOfManyHoursDoesNotWrap) {
  Lay({.samples = 44'100LL * 3600 * 40, .rate = 44'100});
  Play();
  DragTo(99);
  EXPECT_EQ(file.Seeks.back(), 44'100LL * 3600 * 40 / 100 * 99);
}

TEST_F(PositionDisplayTest, PressEndsAWind) {
  Play();
  form.cmdStop.Press(By::Hand);
  documentInWork.CurrentSamplePosition = 40'000;
  form.cmdForward.Press(By::Hand);
  ASSERT_TRUE(transport.tmrRewindForward.Enabled());
  form.slPosition.Press();
  EXPECT_FALSE(transport.tmrRewindForward.Enabled());
}

TEST_F(PositionDisplayTest, ReleaseWhileADocumentIsBeingMovedLeavesTheDisplayFrozen) {
  Play();
  form.slPosition.Press();
  {
    const window::ListTransition moving(window.guards);
    form.slPosition.Release();
    EXPECT_TRUE(engine.SliderDragging);
    EXPECT_EQ(player.Clears, 0);
  }
  form.slPosition.Press();
  form.slPosition.Release();
  EXPECT_FALSE(engine.SliderDragging);
}

TEST_F(PositionDisplayTest, PressOnTheSpeedSliderFreezesThePositionToo) {
  Play();
  loop.Advance(1s);
  const int shown = form.slPosition.Value;
  form.Slider1.Press();
  loop.Advance(3s);
  EXPECT_EQ(form.slPosition.Value, shown);
  form.Slider1.Release();
  loop.Advance(100ms);
  EXPECT_GT(form.slPosition.Value, shown);
}

TEST_F(PositionDisplayTest, DoubleClickOnTheStatusBarStepsTheMiniPlayersHeight) {
  form.txtTitleBarHeight.Value = "500";
  Play();
  form.StatusBar1.DoubleClick();
  EXPECT_EQ(form.txtTitleBarHeight.Value.Get(), "525");
  EXPECT_EQ(form.frmMain.Height, 525 + form.framePlayer.Height);
}

TEST_F(PositionDisplayTest, DoubleClickWithTheLargeWindowDoesNothing) {
  form.StatusBar1.DoubleClick();
  EXPECT_EQ(form.txtTitleBarHeight.Value.Get(), "840");
}

TEST(NextTitleBarHeight, RunsThroughItsRingAndBackToTheBeginning) {
  int height = 500;
  std::vector<int> ring;
  do {
    ring.push_back(height);
    height = playback::NextTitleBarHeight(height);
  } while (height != 500 && ring.size() < 100);
  const std::vector<int> expected{500, 525, 550, 575, 600, 574, 549, 499, 474, 449, 424, 399,
                                  374, 349, 324, 300, 325, 350, 375, 400, 425, 450, 475};
  EXPECT_EQ(ring, expected);
}

TEST(NextTitleBarHeight, AnyOtherHeightGoesToTheBeginning) {
  EXPECT_EQ(playback::NextTitleBarHeight(475), 500);
  EXPECT_EQ(playback::NextTitleBarHeight(0), 500);
  EXPECT_EQ(playback::NextTitleBarHeight(840), 500);
}

}  // namespace
}  // namespace tavlo::test
