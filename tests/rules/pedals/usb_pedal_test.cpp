#include "pedals/usb_pedal.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "support/pedal_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using pedals::Pedal;
using playback::Wind;

/// With a watcher that tells of reports, or with one that must be polled.
struct UsbPedalTest : testing::TestWithParam<bool>, PedalBench {
  UsbPedalTest() {
    watcher.CanTell = GetParam();
    usb.StartWatch();
  }

  /// The pedal reports, and the next tick reads it.
  void Report(std::uint8_t bits) {
    watcher.Report(bits);
    loop.Advance(50ms);
  }
  void Deliver(std::vector<std::uint8_t> bytes, std::optional<std::int32_t> told = {}) {
    watcher.Deliver(std::move(bytes), told);
    loop.Advance(50ms);
  }
};

TEST_P(UsbPedalTest, WatchThatDoesNotStartLeavesThePollOffAndSaysNothing) {
  PedalBench bench;
  bench.watcher.CanStart = false;
  bench.usb.StartWatch();
  bench.loop.Advance(1000ms);
  EXPECT_EQ(bench.usb.MyMonitor, 0);
  EXPECT_FALSE(bench.usb.TmrHIDRead.Enabled());
  EXPECT_TRUE(bench.loop.Shown.empty());
}

TEST_P(UsbPedalTest, CenterPedalPlaysWhileItIsDown) {
  Report(2);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(pedal.CenterPedalDown);
  EXPECT_EQ(config.ShapeCenterPedal.FillColour.Get(), forms::PedalShape::kDown);
  loop.Advance(2000ms);
  EXPECT_TRUE(engine.IsPlaying);
  Report(0);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(pedal.CenterPedalDown);
  EXPECT_EQ(config.ShapeCenterPedal.FillColour.Get(), forms::PedalShape::kUp);
}

TEST_P(UsbPedalTest, UsbPedalWorksThoughSerialIsChosen) {
  config.txtUSBorSerialFootPedal.Value = "S";
  Report(2);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(UsbPedalTest, EveryReportIsActedOnThoughNothingChanged) {
  Report(2);
  const int starts = player.Starts;
  Report(2);
  EXPECT_EQ(player.Starts, starts + 1);
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::None);
}

TEST_P(UsbPedalTest, PressAndReleaseBetweenTwoLooksAreBothActedOn) {
  WorkAt(5);
  watcher.Press({1, 0});
  loop.Advance(100ms);
  EXPECT_EQ(Second(), 2);
  EXPECT_TRUE(Still());
  EXPECT_EQ(prompts, std::vector<std::string>{"RewindTone"});
}

TEST_P(UsbPedalTest, LeftAndRightTogetherWindForward) {
  WorkAt(5);
  Report(5);
  EXPECT_TRUE(pedal.LeftPedalDown);
  EXPECT_TRUE(pedal.RightPedalDown);
  EXPECT_EQ(pedal.PedalEvent, Pedal::Right);
  EXPECT_EQ(transport.WindDirection, Wind::Forward);
}

TEST_P(UsbPedalTest, OnlyTheCenterPedalWorksBeforeADocumentIsInWork) {
  form.cmdStop.Enabled = false;
  Report(1);
  Report(4);
  Report(0);
  EXPECT_TRUE(prompts.empty());
  EXPECT_TRUE(Still());
  Report(2);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(UsbPedalTest, ReportsAreDroppedWhileNothingCanBePlayed) {
  form.cmdStop.Enabled = false;
  form.cmdPlay.Enabled = false;
  Report(2);
  EXPECT_TRUE(pedal.CenterPedalDown);
  form.cmdPlay.Enabled = true;
  loop.Advance(1000ms);
  EXPECT_TRUE(Still());
}

TEST_P(UsbPedalTest, PressAfterAReleaseThatNothingListenedToCounts) {
  Report(2);
  ASSERT_TRUE(engine.IsPlaying);
  transport.StopCommand();
  form.cmdStop.Enabled = false;
  form.cmdPlay.Enabled = false;
  Report(0);
  form.cmdPlay.Enabled = true;
  Report(2);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(UsbPedalTest, ReportOfAnotherNumberIsIgnoredWhole) {
  Deliver({0, 2, 0});
  ASSERT_TRUE(engine.IsPlaying);
  Deliver({1, 0, 0});
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(pedal.CenterPedalDown);
}

TEST_P(UsbPedalTest, BitsThatAreNoPedalCountAsAllUp) {
  Report(2);
  Report(0xF8);
  EXPECT_TRUE(Still());
  EXPECT_EQ(pedal.PedalEvent, Pedal::None);
}

TEST_P(UsbPedalTest, SizeOfAReportIsLearntFromTheFirstCountThatTells) {
  struct Case {
    std::size_t count;
    int size;
  };
  for (const Case& c : {Case{3, 3}, Case{9, 3}, Case{1, 3}, Case{5, 3}, Case{2, 2}, Case{4, 2},
                        Case{8, 2}, Case{6, 0}, Case{12, 0}, Case{96, 0}, Case{100, 2}}) {
    PedalBench bench;
    bench.usb.StartWatch();
    bench.watcher.Deliver(std::vector<std::uint8_t>(c.count));
    bench.loop.Advance(50ms);
    EXPECT_EQ(bench.usb.HIDReportSize, c.size) << c.count;
  }
}

TEST_P(UsbPedalTest, BytesAreDroppedUntilTheSizeIsKnown) {
  Deliver({0, 2, 0, 0, 2, 0});
  EXPECT_TRUE(Still());
  EXPECT_FALSE(pedal.CenterPedalDown);
  Deliver({0, 2, 0});
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(UsbPedalTest, SizeIsNeverLearntAgain) {
  Deliver({0, 2, 0});
  Deliver({0, 0, 0, 2});
  EXPECT_EQ(usb.HIDReportSize, 3);
}

TEST_P(UsbPedalTest, ReportsOfTwoBytesAreReadToo) {
  Deliver({0, 2, 0, 0});
  EXPECT_EQ(usb.HIDReportSize, 2);
  EXPECT_EQ(player.Starts, 1);
  EXPECT_TRUE(Still());
}

TEST_P(UsbPedalTest, HalfAReportRoundsToAnEvenNumberOfReports) {
  WorkAt(5);
  usb.HIDReportSize = 2;
  Deliver({0, 1, 0, 0, 0});
  EXPECT_TRUE(Still());
  EXPECT_EQ(prompts.size(), 1u);
  // Of seven bytes the fourth report's second byte stands beyond the count.
  Deliver({0, 0, 0, 0, 0, 2, 0});
  EXPECT_EQ(pedal.PedalEvent, Pedal::None);
  EXPECT_TRUE(Still());
}

TEST_P(UsbPedalTest, CountBeyondTheRoomForAReadIsCutToIt) {
  Deliver({0, 2, 0});
  for (const std::int32_t told : {101, 999, std::numeric_limits<std::int32_t>::max()}) {
    const int starts = player.Starts;
    // Behind what was delivered the room is empty, which says that the pedal is up.
    Deliver({0, 2, 0, 0, 2, 0}, told);
    EXPECT_EQ(player.Starts, starts + 2) << told;
    EXPECT_TRUE(Still()) << told;
    EXPECT_FALSE(pedal.CenterPedalDown) << told;
  }
}

TEST_P(UsbPedalTest, CountOfNothingAndLessIsNoReport) {
  Deliver({0, 2, 0});
  ASSERT_TRUE(engine.IsPlaying);
  for (const std::int32_t told : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    Deliver({0, 0, 0}, told);
    EXPECT_TRUE(engine.IsPlaying) << told;
  }
}

TEST_P(UsbPedalTest, ReadThatFailsJustEndsTheTick) {
  watcher.CanRead = false;
  Report(2);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(usb.InReadHIDBuffer);
  watcher.CanRead = true;
  loop.Advance(50ms);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(UsbPedalTest, ThousandReportsBetweenTwoLooksAreHandledInOrder) {
  WorkAt(5);
  for (int press = 0; press < 499; ++press) watcher.Press({2, 0});
  watcher.Press({1, 0});
  loop.Advance(2000ms);
  EXPECT_FALSE(watcher.HasReports());
  EXPECT_EQ(player.Starts, 500);
  EXPECT_EQ(prompts, std::vector<std::string>{"RewindTone"});
  EXPECT_TRUE(Still());
}

TEST_P(UsbPedalTest, PulledCableReleasesThePedals) {
  Report(2);
  ASSERT_TRUE(engine.IsPlaying);
  watcher.Unplug();
  loop.Advance(50ms);
  EXPECT_TRUE(Still());
  EXPECT_EQ(usb.Presence(), pedals::UsbPresence::NoPedal);
}

TEST_P(UsbPedalTest, ReadIsUnderWayUntilItsReportsHaveBeenHandled) {
  file.Sounds.clear();
  std::optional<bool> inRead;
  loop.Expect({.meanwhile = [&] { inRead = usb.InReadHIDBuffer; }});
  Report(2);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(inRead, true);
  EXPECT_FALSE(usb.InReadHIDBuffer);
}

TEST_P(UsbPedalTest, SlowTickDoesNotStack) {
  file.Sounds.clear();
  loop.Expect({.delay = 1000ms});
  Report(2);
  EXPECT_EQ(watcher.Reads, 1);
  loop.Advance(50ms);
  EXPECT_EQ(watcher.Reads, 2);
}

TEST_P(UsbPedalTest, StopReadingEndsThePollWithoutAWord) {
  usb.StopReading();
  loop.Advance(1000ms);
  EXPECT_EQ(watcher.Reads, 0);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_NE(usb.MyMonitor, 0);
}

TEST_P(UsbPedalTest, StopReadingWaitsForAReadThatIsUnderWay) {
  usb.InReadHIDBuffer = true;
  base::Timer readEnds(loop, "readEnds", 500ms);
  readEnds.OnTick = [this] { usb.InReadHIDBuffer = false; };
  readEnds.Start();
  const base::MonotonicTime before = loop.Now();
  usb.StopReading();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - USB");
  EXPECT_EQ(loop.Shown[0].text, "Waiting for USB foot pedal read to complete");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::None);
  EXPECT_EQ(loop.Now() - before, 600ms);
}

TEST_P(UsbPedalTest, StopFromWithinAReadComesToAnEnd) {
  file.Sounds.clear();
  loop.Expect({.meanwhile = [this] { usb.StopReading(); }});
  Report(2);
  ASSERT_EQ(loop.Shown.size(), 2u);
  loop.Advance(5000ms);
  EXPECT_FALSE(usb.InReadHIDBuffer);
  EXPECT_FALSE(usb.TmrHIDRead.Enabled());
  EXPECT_EQ(watcher.Reads, 1);
}

TEST_P(UsbPedalTest, StopWatchEndsTheWatchOnce) {
  usb.StopWatch();
  EXPECT_EQ(usb.MyMonitor, 0);
  EXPECT_FALSE(watcher.Watching());
  usb.StopWatch();
  EXPECT_EQ(watcher.Stops, 1);
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_P(UsbPedalTest, WatchThatCannotBeEndedIsTold) {
  watcher.CanStop = false;
  usb.StopWatch();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - USB");
  EXPECT_EQ(loop.Shown[0].text, "Cannot close USB (HID) monitor");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::None);
}

TEST_P(UsbPedalTest, WatchEndsWithItsOwner) {
  {
    pedals::UsbPedal another(loop, pedal, watcher);
    another.StartWatch();
    ASSERT_TRUE(watcher.Watching());
  }
  EXPECT_FALSE(watcher.Watching());
}

INSTANTIATE_TEST_SUITE_P(Watcher, UsbPedalTest, testing::Bool(), [](const auto& kind) {
  return kind.param ? "ThatTells" : "ThatIsPolled";
});

struct PolledUsbPedal : testing::Test, PedalBench {
  PolledUsbPedal() {
    watcher.CanTell = false;
    usb.StartWatch();
  }
};

TEST_F(PolledUsbPedal, WatchIsStartedForThePedalAndPolled) {
  EXPECT_EQ(watcher.Picked, (std::vector<int>{255, 12, 3}));
  EXPECT_NE(usb.MyMonitor, 0);
  loop.Advance(49ms);
  EXPECT_EQ(watcher.Reads, 0);
  loop.Advance(1ms);
  EXPECT_EQ(watcher.Reads, 1);
  loop.Advance(500ms);
  EXPECT_EQ(watcher.Reads, 11);
}

/// A pedal at rest under a watcher that tells of reports.
struct ToldUsbPedal : testing::Test, PedalBench {
  ToldUsbPedal() {
    usb.StartWatch();
    loop.Advance(1000ms);
  }

  /// The pedal reports, and the loop turns once.
  void Report(std::uint8_t bits) {
    watcher.Report(bits);
    loop.Yield();
  }
};

TEST_F(ToldUsbPedal, NothingTicksWhileNothingComes) {
  const int reads = watcher.Reads;
  loop.Advance(60'000ms);
  EXPECT_EQ(watcher.Reads, reads);
  EXPECT_FALSE(usb.TmrHIDRead.Enabled());
  Report(2);
  loop.Advance(1000ms);
  const int readsUnderTheFoot = watcher.Reads;
  loop.Advance(3000ms);
  EXPECT_EQ(watcher.Reads, readsUnderTheFoot);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldUsbPedal, PressAndReleaseAreLookedAtWhenTheyCome) {
  Report(2);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(777ms);
  Report(0);
  EXPECT_TRUE(Still());
}

TEST_F(ToldUsbPedal, WhatFollowsWithinAnIntervalWaitsForTheNextTick) {
  Report(2);
  loop.Advance(20ms);
  Report(0);
  loop.Advance(29ms);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(1ms);
  EXPECT_TRUE(Still());
}

TEST_F(ToldUsbPedal, ReportThatComesWhileTheLoopBreathesWaitsForTheEndOfTheBreath) {
  watcher.Report(2);
  loop.Breathe();
  EXPECT_TRUE(Still());
  EXPECT_FALSE(pedal.CenterPedalDown);
  loop.Yield();
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldUsbPedal, PedalThatIsPluggedInIsShownAtOnce) {
  const int shown = stateShown;
  watcher.Plug(pedals::UsbPresence::NoPermission);
  loop.Yield();
  EXPECT_EQ(stateShown, shown + 1);
  loop.Advance(1000ms);
  EXPECT_FALSE(usb.TmrHIDRead.Enabled());
}

TEST_F(ToldUsbPedal, WatcherThatFailsToBeReadIsReadUntilItCanBe) {
  watcher.CanRead = false;
  Report(2);
  EXPECT_TRUE(Still());
  loop.Advance(500ms);
  EXPECT_TRUE(usb.TmrHIDRead.Enabled());
  watcher.CanRead = true;
  loop.Advance(50ms);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ToldUsbPedal, ReportAfterTheLastReadOfAnExitIsNotActedOn) {
  usb.StopReading();
  Report(2);
  loop.Advance(1000ms);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(usb.TmrHIDRead.Enabled());
}

}  // namespace
}  // namespace tavlo::test
