#include <gtest/gtest.h>

#include <vector>

#include "support/pedal_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;

struct PolledSerialPedal : testing::Test, PedalBench {
  PolledSerialPedal() { port.CanTell = false; }
};

TEST_F(PolledSerialPedal, PortIsOpenedAndPolledWhenItsNumberIsSet) {
  ChooseSerial();
  EXPECT_EQ(port.Opened, std::vector<int>{1});
  EXPECT_TRUE(serial.tmrSerialFootPedal.Enabled());
  EXPECT_TRUE(serial.Reads());
  loop.Advance(49ms);
  EXPECT_EQ(port.Reads, 0);
  loop.Advance(1ms);
  EXPECT_EQ(port.Reads, 1);
  loop.Advance(500ms);
  EXPECT_EQ(port.Reads, 11);
}

/// A pedal at rest on a port that tells of changes, with a document selected.
struct ToldSerialPedal : testing::Test, PedalBench {
  ToldSerialPedal() {
    ChooseSerial();
    loop.Advance(1000ms);
  }

  /// The foot moves, and the loop turns once.
  void Hold(pedals::SerialLines lines) {
    port.Hold(lines);
    loop.Yield();
  }
};

TEST_F(ToldSerialPedal, NothingTicksWhileNothingIsHeldAndNothingComes) {
  const int reads = port.Reads;
  loop.Advance(60'000ms);
  EXPECT_EQ(port.Reads, reads);
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
  Hold({.DSRHolding = true});
  loop.Advance(1000ms);
  Hold({});
  loop.Advance(1000ms);
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
}

TEST_F(ToldSerialPedal, PressAndReleaseAreLookedAtWhenTheyCome) {
  Hold({.DSRHolding = true});
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(777ms);
  Hold({});
  EXPECT_TRUE(Still());
}

TEST_F(ToldSerialPedal, WhatFollowsAChangeWithinAnIntervalWaitsForTheNextTick) {
  Hold({.DSRHolding = true});
  loop.Advance(3ms);
  Hold({});
  loop.Advance(3ms);
  Hold({.DSRHolding = true});
  loop.Advance(20ms);
  Hold({});
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(23ms);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(1ms);
  EXPECT_TRUE(Still());
  EXPECT_EQ(player.Starts, 1);
}

TEST_F(ToldSerialPedal, ContactThatIsOpenAgainWhenItIsLookedAtDoesNotDelayItsNextChange) {
  port.TellsAtOnce = false;
  port.Hold({.DSRHolding = true});
  port.Hold({});
  port.Tell();
  loop.Advance(1ms);
  EXPECT_TRUE(Still());
  port.Hold({.DSRHolding = true});
  port.Tell();
  loop.Yield();
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldSerialPedal, ChangeThatGoesUntoldBehindAnotherIsSeenWithinAnInterval) {
  port.TellsAtOnce = false;
  port.Hold({.DSRHolding = true});
  port.Hold({});
  port.Tell();
  loop.Advance(1ms);
  ASSERT_TRUE(Still());
  port.Lines = {.DSRHolding = true};
  loop.Advance(49ms);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldSerialPedal, ReleaseThatGoesUntoldIsSeenWithinAnInterval) {
  Hold({.DSRHolding = true});
  loop.Advance(5000ms);
  port.Lines = {};
  loop.Advance(50ms);
  EXPECT_TRUE(Still());
}

TEST_F(ToldSerialPedal, PressThatNothingCouldActOnIsLookedAtOnceADocumentCanBePlayed) {
  form.cmdStop.Enabled = false;
  form.cmdPlay.Enabled = false;
  Hold({.DSRHolding = true});
  loop.Advance(60'000ms);
  EXPECT_TRUE(Still());
  form.cmdPlay.Enabled = true;
  loop.Advance(50ms);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldSerialPedal, ReleaseThatNothingCouldActOnLetsTheTicksRestAndTheNextPressCount) {
  Hold({.DSRHolding = true});
  transport.StopCommand();
  for (forms::Command* key : {&form.cmdPlay, &form.cmdStop}) key->Enabled = false;
  loop.Advance(1000ms);
  Hold({});
  loop.Advance(1000ms);
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
  form.cmdPlay.Enabled = true;
  Hold({.DSRHolding = true});
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldSerialPedal, ChangeWhileTheLoopBreathesWaitsForTheEndOfTheBreath) {
  port.Hold({.DSRHolding = true});
  loop.Breathe();
  EXPECT_TRUE(Still());
  EXPECT_FALSE(pedal.CenterPedalDown);
  loop.Yield();
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldSerialPedal, ChangeUnderTheBoxOfATickWaitsForItsEnd) {
  file.Sounds.clear();
  const int reads = port.Reads;
  loop.Expect({.delay = 1000ms, .meanwhile = [this] { port.Hold({}); }});
  Hold({.DSRHolding = true});
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(port.Reads, reads + 1);
  loop.Advance(50ms);
  EXPECT_EQ(port.Reads, reads + 2);
  EXPECT_FALSE(pedal.CenterPedalDown);
}

TEST_F(ToldSerialPedal, PortThatGoesIsShownAtOnceAndReadUntilItIsBack) {
  const int shown = stateShown;
  port.Plug({});
  loop.Yield();
  EXPECT_FALSE(serial.Reads());
  EXPECT_EQ(stateShown, shown + 1);
  loop.Advance(5000ms);
  EXPECT_TRUE(serial.tmrSerialFootPedal.Enabled());
  port.Plug({1});
  loop.Advance(500ms);
  EXPECT_TRUE(serial.Reads());
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
}

TEST_F(ToldSerialPedal, PortThatCanWaitNoMoreIsPolled) {
  port.CanTell = false;
  Hold({.DSRHolding = true});
  loop.Advance(1000ms);
  port.Lines = {};
  loop.Advance(1000ms);
  EXPECT_TRUE(Still());
  EXPECT_TRUE(serial.tmrSerialFootPedal.Enabled());
  port.Lines = {.DSRHolding = true};
  loop.Advance(50ms);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldSerialPedal, ChangeAfterTheEndOfTheTicksIsNotActedOn) {
  serial.Stop();
  Hold({.DSRHolding = true});
  loop.Advance(1000ms);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
}

}  // namespace
}  // namespace tavlo::test
