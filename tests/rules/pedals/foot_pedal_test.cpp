#include "pedals/foot_pedal.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/pedal_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using forms::PedalShape;
using pedals::Pedal;
using playback::Wind;

using Prompts = std::vector<std::string>;

struct FootPedalTest : testing::Test, PedalBench {};

TEST_F(FootPedalTest, OfSeveralPedalsTheLastOneInOrderCounts) {
  struct Case {
    bool left, center, right;
    Pedal event;
  };
  for (const Case& c :
       {Case{false, false, false, Pedal::None}, Case{true, false, false, Pedal::Left},
        Case{false, true, false, Pedal::Center}, Case{false, false, true, Pedal::Right},
        Case{true, true, false, Pedal::Center}, Case{true, false, true, Pedal::Right},
        Case{false, true, true, Pedal::Right}, Case{true, true, true, Pedal::Right}}) {
    pedal.Take(c.left, c.center, c.right);
    EXPECT_EQ(pedal.PedalEvent, c.event) << c.left << c.center << c.right;
    EXPECT_EQ(pedal.LeftPedalDown, c.left);
    EXPECT_EQ(pedal.CenterPedalDown, c.center);
    EXPECT_EQ(pedal.RightPedalDown, c.right);
  }
}

TEST_F(FootPedalTest, PedalsThatAreDownAreLit) {
  pedal.Take(true, false, true);
  EXPECT_EQ(config.ShapeLeftPedal.FillColour.Get(), 0xFFFFC0u);
  EXPECT_EQ(config.ShapeCenterPedal.FillColour.Get(), 0xC0C0C0u);
  EXPECT_EQ(config.ShapeRightPedal.FillColour.Get(), 0xFFFFC0u);
  pedal.Take(false, false, false);
  EXPECT_EQ(config.ShapeLeftPedal.FillColour.Get(), PedalShape::kUp);
  EXPECT_EQ(config.ShapeRightPedal.FillColour.Get(), PedalShape::kUp);
}

TEST_F(FootPedalTest, CenterPedalPlaysWhileItIsDown) {
  Dispatch(Pedal::Center);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(window.PlayRequested);
  loop.Advance(3000ms);
  EXPECT_TRUE(engine.IsPlaying);
  Dispatch(Pedal::None);
  EXPECT_TRUE(Still());
  EXPECT_NEAR(Second(), 3.0, 0.1);
}

TEST_F(FootPedalTest, ReleaseStopsADocumentInWorkAndNoPreview) {
  ASSERT_EQ(preview.Start(), playback::Primed::Yes);
  ASSERT_TRUE(engine.IsPlaying);
  EXPECT_FALSE(pedal.ReleaseStops());
  Dispatch(Pedal::Center);
  EXPECT_TRUE(pedal.ReleaseStops());
}

TEST_F(FootPedalTest, CenterPedalIsRefusedWhileADocumentIsMoved) {
  const window::ListTransition moving(window.guards);
  Dispatch(Pedal::Center);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(window.PlayRequested);
}

TEST_F(FootPedalTest, CenterPedalIsRefusedWhileAListChangeWaits) {
  const window::ListPause waiting(window.guards);
  Dispatch(Pedal::Center);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(window.PlayRequested);
}

TEST_F(FootPedalTest, SidePedalsAreRefusedWhileADocumentIsMovedAndNoTimeIsRecorded) {
  for (const char* doublePress : {"Y", "N"}) {
    config.txtSkipBegEnd.Value = doublePress;
    WorkAt(5);
    const window::ListTransition moving(window.guards);
    for (const Pedal side : {Pedal::Left, Pedal::Right}) {
      Tap(side);
      loop.Advance(200ms);
      Dispatch(side);
    }
    EXPECT_EQ(Second(), 5);
    EXPECT_TRUE(Still());
    EXPECT_EQ(transport.WindDirection, Wind::None);
    EXPECT_TRUE(prompts.empty());
    EXPECT_EQ(transport.LastRewindPressTime, 0);
    EXPECT_EQ(transport.LastForwardPressTime, 0);
  }
}

TEST_F(FootPedalTest, ReleaseStillStopsWhileADocumentIsMoved) {
  WorkAt(5);
  Dispatch(Pedal::Left);
  ASSERT_TRUE(Winds());
  const window::ListTransition moving(window.guards);
  Dispatch(Pedal::None);
  EXPECT_TRUE(Still());
}

TEST_F(FootPedalTest, PressForgetsTheNoticeBeforeItActs) {
  std::vector<std::string> stood;
  voice.OnUse = [&] { stood.push_back(form.lblNotice.Value); };
  WorkAt(5);
  for (const Pedal press : {Pedal::Left, Pedal::Center, Pedal::Right}) {
    stood.clear();
    window.Say("It was not stored.");
    Dispatch(press);
    EXPECT_EQ(form.lblNotice.Value.Get(), "");
    ASSERT_FALSE(stood.empty());
    EXPECT_EQ(stood.front(), "");
  }
}

TEST_F(FootPedalTest, ReleaseAndRefusedPressLeaveTheNotice) {
  WorkAt(5);
  window.Say("It was not stored.");
  Dispatch(Pedal::None);
  {
    const window::ListTransition moving(window.guards);
    for (const Pedal press : {Pedal::Left, Pedal::Center, Pedal::Right}) Dispatch(press);
  }
  const window::ListPause waiting(window.guards);
  Dispatch(Pedal::Center);
  EXPECT_EQ(form.lblNotice.Value.Get(), "It was not stored.");
}

TEST_F(FootPedalTest, SidePedalsWindWhileTheyAreDown) {
  WorkAt(5);
  Dispatch(Pedal::Left);
  EXPECT_EQ(transport.WindDirection, Wind::Rewind);
  EXPECT_EQ(Second(), 2);
  Dispatch(Pedal::None);
  EXPECT_TRUE(Still());
  Dispatch(Pedal::Right);
  EXPECT_EQ(transport.WindDirection, Wind::Forward);
  EXPECT_EQ(Second(), 5);
  Dispatch(Pedal::None);
  EXPECT_TRUE(Still());
}

TEST_F(FootPedalTest, SwappedPedalsWindTheOtherWay) {
  config.txtSwapRewFwdPedals.Value = "Y";
  WorkAt(5);
  Dispatch(Pedal::Left);
  EXPECT_EQ(transport.WindDirection, Wind::Forward);
  Dispatch(Pedal::None);
  Dispatch(Pedal::Right);
  EXPECT_EQ(transport.WindDirection, Wind::Rewind);
}

TEST_F(FootPedalTest, AnythingButNIsSwapped) {
  config.txtSwapRewFwdPedals.Value = "";
  WorkAt(5);
  Dispatch(Pedal::Left);
  EXPECT_EQ(transport.WindDirection, Wind::Forward);
}

TEST_F(FootPedalTest, SecondPressOfTheLeftPedalSkipsToTheBeginning) {
  WorkAt(5);
  Tap(Pedal::Left);
  loop.Advance(200ms);
  Dispatch(Pedal::Left);
  EXPECT_EQ(Second(), 0);
  EXPECT_TRUE(Still());
  EXPECT_EQ(prompts, (Prompts{"RewindTone", "RewindEnd"}));
}

TEST_F(FootPedalTest, SecondPressOfTheRightPedalSkipsToTheEnd) {
  WorkAt(2);
  Tap(Pedal::Right);
  loop.Advance(200ms);
  Dispatch(Pedal::Right);
  EXPECT_EQ(Second(), 10);
  EXPECT_TRUE(Still());
  EXPECT_EQ(prompts, (Prompts{"ForwardTone", "ForwardEnd"}));
}

TEST_F(FootPedalTest, SecondPressOfASwappedPedalSkipsTheOtherWay) {
  config.txtSwapRewFwdPedals.Value = "Y";
  WorkAt(5);
  Tap(Pedal::Left);
  loop.Advance(200ms);
  Dispatch(Pedal::Left);
  EXPECT_EQ(Second(), 10);
  Dispatch(Pedal::None);
  loop.Advance(1000ms);
  Tap(Pedal::Right);
  loop.Advance(200ms);
  Dispatch(Pedal::Right);
  EXPECT_EQ(Second(), 0);
}

TEST_F(FootPedalTest, SecondPressCountsStrictlyBetweenATenthAndHalfASecond) {
  struct Case {
    base::Duration between;
    bool isDouble;
  };
  for (const Case& c : {Case{100ms, false}, Case{101ms, true}, Case{499ms, true},
                        Case{500ms, false}, Case{2000ms, false}}) {
    PedalBench bench;
    bench.WorkAt(9);
    bench.Tap(Pedal::Left);
    bench.loop.Advance(c.between - 50ms);
    bench.Dispatch(Pedal::Left);
    EXPECT_EQ(bench.Second(), c.isDouble ? 0 : 3) << c.between.count();
    EXPECT_EQ(bench.Winds(), !c.isDouble) << c.between.count();
  }
}

TEST_F(FootPedalTest, PressesOfDifferentPedalsAreNoDoublePress) {
  WorkAt(5);
  Tap(Pedal::Left);
  loop.Advance(200ms);
  Dispatch(Pedal::Right);
  EXPECT_EQ(transport.WindDirection, Wind::Forward);
  EXPECT_EQ(Second(), 5);
}

TEST_F(FootPedalTest, PressTimeBelongsToThePedalThoughItsDirectionIsSwappedBetween) {
  WorkAt(5);
  Tap(Pedal::Left);
  config.txtSwapRewFwdPedals.Value = "Y";
  loop.Advance(200ms);
  Dispatch(Pedal::Left);
  EXPECT_EQ(Second(), 10);
}

TEST_F(FootPedalTest, WithoutDoublePressEveryPressWindsAndNoTimeIsRecorded) {
  config.txtSkipBegEnd.Value = "N";
  WorkAt(9);
  Tap(Pedal::Left);
  loop.Advance(200ms);
  Tap(Pedal::Left);
  EXPECT_EQ(Second(), 3);
  loop.Advance(200ms);
  Tap(Pedal::Right);
  EXPECT_EQ(transport.LastRewindPressTime, 0);
  EXPECT_EQ(transport.LastForwardPressTime, 0);
}

TEST_F(FootPedalTest, AnythingButNAllowsTheDoublePress) {
  config.txtSkipBegEnd.Value = "";
  WorkAt(9);
  Tap(Pedal::Left);
  loop.Advance(200ms);
  Dispatch(Pedal::Left);
  EXPECT_EQ(Second(), 0);
}

TEST_F(FootPedalTest, SkipForgetsThePressOfTheOtherPedal) {
  WorkAt(5);
  Tap(Pedal::Right);
  Tap(Pedal::Left);
  loop.Advance(150ms);
  Tap(Pedal::Left);
  ASSERT_EQ(Second(), 0);
  EXPECT_EQ(transport.LastForwardPressTime, 0);
  loop.Advance(100ms);
  Dispatch(Pedal::Right);
  EXPECT_EQ(Second(), 3);
  EXPECT_EQ(transport.WindDirection, Wind::Forward);
}

TEST_F(FootPedalTest, PressThatSkipsIsRecordedBehindItsSkip) {
  WorkAt(9);
  Tap(Pedal::Left);
  loop.Advance(200ms);
  Dispatch(Pedal::Left);
  EXPECT_EQ(transport.LastRewindPressTime, loop.WallClock().SecondsSinceMidnight());
  EXPECT_EQ(transport.LastForwardPressTime, 0);
  Dispatch(Pedal::None);
  loop.Advance(200ms);
  prompts.clear();
  Dispatch(Pedal::Left);
  EXPECT_EQ(prompts, Prompts{"RewindEnd"});
}

TEST_F(FootPedalTest, PressAfterASkipByButtonIsNoSecondPress) {
  WorkAt(5);
  Tap(Pedal::Left);
  loop.Advance(100ms);
  form.cmdSkipEnd.Press(forms::By::Hand);
  loop.Advance(100ms);
  Dispatch(Pedal::Left);
  EXPECT_EQ(Second(), 7);
  EXPECT_EQ(transport.WindDirection, Wind::Rewind);
}

TEST_F(FootPedalTest, FirstPressAfterMidnightIsNoSecondPress) {
  WorkAt(9);
  loop.SetWallClock({.year = 2004, .month = 3, .day = 9, .millisecond = 300});
  Dispatch(Pedal::Left);
  EXPECT_EQ(Second(), 6);
  EXPECT_TRUE(Winds());
}

TEST_F(FootPedalTest, PressesOnBothSidesOfMidnightArePlainWinds) {
  WorkAt(9);
  loop.SetWallClock({.year = 2004,
                     .month = 3,
                     .day = 9,
                     .hour = 23,
                     .minute = 59,
                     .second = 59,
                     .millisecond = 900});
  Tap(Pedal::Left);
  loop.Advance(200ms);
  Dispatch(Pedal::Left);
  EXPECT_EQ(Second(), 3);
  EXPECT_TRUE(Winds());
}

TEST_F(FootPedalTest, OnlyTheCenterPedalMayDispatchBeforeADocumentIsInWork) {
  form.cmdStop.Enabled = false;
  for (const Pedal event : {Pedal::None, Pedal::Left, Pedal::Center, Pedal::Right}) {
    pedal.PedalEvent = event;
    EXPECT_EQ(pedal.MayDispatch(), event == Pedal::Center);
  }
  form.cmdPlay.Enabled = false;
  pedal.PedalEvent = Pedal::Center;
  EXPECT_FALSE(pedal.MayDispatch());
  form.cmdStop.Enabled = true;
  for (const Pedal event : {Pedal::None, Pedal::Left, Pedal::Center, Pedal::Right}) {
    pedal.PedalEvent = event;
    EXPECT_TRUE(pedal.MayDispatch());
  }
}

TEST_F(FootPedalTest, ResetForgetsEventAndPresses) {
  WorkAt(5);
  Tap(Pedal::Left);
  Tap(Pedal::Right);
  pedal.PedalEvent = Pedal::Right;
  pedal.LastPedalEvent = Pedal::Right;
  pedal.Reset();
  EXPECT_EQ(pedal.PedalEvent, Pedal::None);
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::None);
  EXPECT_EQ(transport.LastRewindPressTime, 0);
  EXPECT_EQ(transport.LastForwardPressTime, 0);
}

}  // namespace
}  // namespace tavlo::test
