#include "pedals/serial_pedal.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/pedal_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using pedals::Pedal;
using playback::Wind;

/// With a port that tells of changes, or with one that must be polled.
struct SerialPedalTest : testing::TestWithParam<bool>, PedalBench {
  SerialPedalTest() { port.CanTell = GetParam(); }

  /// The foot moves, and the next tick sees it.
  void Hold(pedals::SerialLines lines) {
    port.Hold(lines);
    loop.Advance(50ms);
  }
  /// A hand finishes the document that is in work, as Complete, Save and Skip do.
  void LeaveDocument() {
    transport.StopCommand();
    documentInWork.DocumentPrimed = false;
    for (forms::Command* key : {&form.cmdPlay, &form.cmdStop, &form.cmdSkip}) key->Enabled = false;
  }
  /// A hand selects the next one.
  void SelectNext() { form.cmdPlay.Enabled = true; }
};

TEST_P(SerialPedalTest, SettingTheNumberGivesTheKeyboardAway) {
  config.frmConfiguration.FocusOn(config.txtSerialFootPedalComPort);
  config.txtSerialFootPedalComPort.Value = "2";
  EXPECT_EQ(config.frmConfiguration.Focused(), &config.txtFocus);
}

TEST_P(SerialPedalTest, NoPortIsOpenedForAUsbPedal) {
  config.txtSerialFootPedalComPort.Value = "1x";
  EXPECT_TRUE(port.Opened.empty());
  EXPECT_EQ(config.txtSerialFootPedalComPort.Value.Get(), "1x");
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
}

TEST_P(SerialPedalTest, ReleaseStopsOnlyWhatAPressOfItHasBegun) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  EXPECT_TRUE(serial.ReleaseStops());
  Hold({});
  Play();
  EXPECT_FALSE(serial.ReleaseStops()) << "a hand has begun it";
}

TEST_P(SerialPedalTest, NumberOfThePortIsNormalizedAndOpenedOnce) {
  config.txtUSBorSerialFootPedal.Value = "S";
  config.txtSerialFootPedalComPort.Value = "01st";
  EXPECT_EQ(config.txtSerialFootPedalComPort.Value.Get(), "1");
  EXPECT_EQ(port.Opened, std::vector<int>{1});
}

TEST_P(SerialPedalTest, NumberThatIsNoPortLeavesThePedalDeadWithoutAMessage) {
  for (const char* number : {"9", "0", "-1", "COM1", "99999999999999999999"}) {
    PedalBench bench;
    bench.ChooseSerial();
    bench.config.txtSerialFootPedalComPort.Value = number;
    EXPECT_FALSE(bench.serial.tmrSerialFootPedal.Enabled()) << number;
    EXPECT_FALSE(bench.serial.Reads()) << number;
    EXPECT_FALSE(bench.port.OpenPort()) << number;
    EXPECT_TRUE(bench.loop.Shown.empty()) << number;
  }
}

TEST_P(SerialPedalTest, LinesAreTheThreePedals) {
  WorkAt(5);
  ChooseSerial();
  Hold({.CDHolding = true});
  EXPECT_TRUE(pedal.LeftPedalDown);
  EXPECT_EQ(transport.WindDirection, Wind::Rewind);
  Hold({.DSRHolding = true});
  EXPECT_TRUE(pedal.CenterPedalDown);
  EXPECT_TRUE(engine.IsPlaying);
  Hold({.CTSHolding = true});
  EXPECT_TRUE(pedal.RightPedalDown);
  EXPECT_EQ(transport.WindDirection, Wind::Forward);
  Hold({});
  EXPECT_TRUE(Still());
}

TEST_P(SerialPedalTest, LeftAndCenterTogetherPlay) {
  WorkAt(5);
  ChooseSerial();
  Hold({.CDHolding = true, .DSRHolding = true});
  EXPECT_EQ(pedal.PedalEvent, Pedal::Center);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(SerialPedalTest, HeldPedalIsDispatchedOnce) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  const int starts = player.Starts;
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(2000ms);
  EXPECT_EQ(player.Starts, starts);
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::Center);
}

TEST_P(SerialPedalTest, ReleaseWithNothingOpenIsIgnoredAndTheNextEventCounts) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  ASSERT_TRUE(engine.IsPlaying);
  LeaveDocument();
  Hold({});
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::Center);
  SelectNext();
  Hold({.DSRHolding = true});
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::Center);
  Hold({});
  EXPECT_TRUE(Still());
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::None);
}

TEST_P(SerialPedalTest, AnotherPedalAfterAReleaseWithNothingOpenCounts) {
  ChooseSerial();
  WorkAt(5);
  Hold({.CDHolding = true});
  ASSERT_TRUE(Winds());
  LeaveDocument();
  Hold({});
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::Left);
  SelectNext();
  Hold({.DSRHolding = true});
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::Center);
}

TEST_P(SerialPedalTest, ReleaseWithNothingOpenDoesNotStopThePlayThatAHandBegins) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  LeaveDocument();
  Hold({});
  SelectNext();
  Play();
  loop.Advance(5000ms);
  EXPECT_TRUE(engine.IsPlaying);
  Hold({.CDHolding = true});
  EXPECT_EQ(transport.WindDirection, Wind::Rewind);
}

TEST_P(SerialPedalTest, PedalThatStaysDownWhileItsDocumentIsLeftIsNoNewPress) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  LeaveDocument();
  loop.Advance(100ms);
  SelectNext();
  loop.Advance(1000ms);
  EXPECT_TRUE(Still());
  Hold({.DSRHolding = true, .CTSHolding = true});
  Hold({.DSRHolding = true});
  EXPECT_TRUE(Still());
}

TEST_P(SerialPedalTest, FootThatChangesPedalsWithNothingOpenHasReleasedTheFirst) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  LeaveDocument();
  Hold({.CTSHolding = true});
  SelectNext();
  Hold({.DSRHolding = true});
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(SerialPedalTest, ResetForgetsAReleaseWithNothingOpen) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  LeaveDocument();
  Hold({});
  pedal.Reset();
  pedal.LastPedalEvent = Pedal::Center;
  SelectNext();
  Hold({.DSRHolding = true});
  EXPECT_TRUE(Still());
}

TEST_P(SerialPedalTest, OnlyTheCenterPedalWorksBeforeADocumentIsInWork) {
  ChooseSerial();
  form.cmdStop.Enabled = false;
  Hold({.CDHolding = true});
  Hold({.CTSHolding = true});
  EXPECT_TRUE(Still());
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::None);
  Hold({.DSRHolding = true});
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(SerialPedalTest, PressStaysPendingUntilADocumentCanBePlayed) {
  ChooseSerial();
  form.cmdStop.Enabled = false;
  form.cmdPlay.Enabled = false;
  Hold({.DSRHolding = true});
  EXPECT_TRUE(Still());
  form.cmdPlay.Enabled = true;
  loop.Advance(50ms);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(SerialPedalTest, PortThatGoesAwayLeavesThePedalsUp) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  ASSERT_TRUE(engine.IsPlaying);
  const int shown = stateShown;
  port.Plug({});
  loop.Advance(50ms);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(pedal.CenterPedalDown);
  EXPECT_FALSE(serial.Reads());
  EXPECT_EQ(stateShown, shown + 1);
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_P(SerialPedalTest, PortThatComesBackIsReadAgain) {
  ChooseSerial();
  port.Plug({});
  loop.Advance(1000ms);
  port.Plug({1});
  Hold({.DSRHolding = true});
  EXPECT_TRUE(serial.Reads());
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(SerialPedalTest, AnotherNumberClosesTheFirstPort) {
  port.Plug({1, 2});
  ChooseSerial();
  config.txtSerialFootPedalComPort.Value = "2";
  EXPECT_EQ(port.OpenPort(), 2);
  config.txtSerialFootPedalComPort.Value = "7";
  EXPECT_FALSE(port.OpenPort());
}

TEST_P(SerialPedalTest, ChosenSerialPedalIsOpenedAndChosenUsbPedalGivesThePortBack) {
  config.txtSerialFootPedalComPort.Value = "1";
  config.txtUSBorSerialFootPedal.Value = "S";
  serial.FollowChoice();
  EXPECT_EQ(port.OpenPort(), 1);
  EXPECT_TRUE(serial.tmrSerialFootPedal.Enabled());
  config.txtUSBorSerialFootPedal.Value = "U";
  serial.FollowChoice();
  EXPECT_FALSE(port.OpenPort());
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
}

TEST_P(SerialPedalTest, PortThatIsGivenBackReleasesThePedalsItHeld) {
  ChooseSerial();
  WorkAt(5);
  for (const pedals::SerialLines held :
       {pedals::SerialLines{.DSRHolding = true}, pedals::SerialLines{.CDHolding = true}}) {
    Hold(held);
    ASSERT_FALSE(Still());
    config.txtUSBorSerialFootPedal.Value = "U";
    serial.FollowChoice();
    EXPECT_TRUE(Still());
    EXPECT_EQ(pedal.LastPedalEvent, Pedal::None);
    EXPECT_EQ(config.ShapeCenterPedal.FillColour, forms::PedalShape::kUp);
    config.txtUSBorSerialFootPedal.Value = "S";
    port.Hold({});
    serial.FollowChoice();
  }
}

TEST_P(SerialPedalTest, PedalThatNothingListenedToGoesDarkWithItsPort) {
  for (const char* leave : {"choice", "number"}) {
    ChooseSerial();
    serial.OpenPort();
    form.cmdPlay.Enabled = false;
    form.cmdStop.Enabled = false;
    Hold({.CDHolding = true, .DSRHolding = true});
    ASSERT_EQ(pedal.LastPedalEvent, Pedal::None);
    ASSERT_EQ(config.ShapeLeftPedal.FillColour, forms::PedalShape::kDown);
    if (leave == std::string("choice")) {
      config.txtUSBorSerialFootPedal.Value = "U";
      serial.FollowChoice();
    } else {
      config.txtSerialFootPedalComPort.Value = "9";
    }
    EXPECT_EQ(config.ShapeLeftPedal.FillColour, forms::PedalShape::kUp) << leave;
    EXPECT_EQ(config.ShapeCenterPedal.FillColour, forms::PedalShape::kUp) << leave;
    EXPECT_FALSE(pedal.LeftPedalDown) << leave;
    EXPECT_EQ(pedal.PedalEvent, Pedal::None) << leave;
    port.Hold({});
  }
}

TEST_P(SerialPedalTest, PortThatIsGivenBackBehindAnUnheardReleaseLeavesThePlayOfAHand) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  LeaveDocument();
  Hold({});
  SelectNext();
  Play();
  config.txtUSBorSerialFootPedal.Value = "U";
  serial.FollowChoice();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::None);
}

TEST_P(SerialPedalTest, NumberOfNoPortReleasesThePedalsOfThePortBefore) {
  ChooseSerial();
  WorkAt(5);
  Hold({.DSRHolding = true});
  ASSERT_FALSE(Still());
  config.txtSerialFootPedalComPort.Value = "9";
  EXPECT_TRUE(Still());
}

TEST_P(SerialPedalTest, PortThatIsOpenedAnewUnderAHeldPedalPlaysOn) {
  ChooseSerial();
  WorkAt(5);
  Hold({.DSRHolding = true});
  serial.OpenPort();
  loop.Advance(100ms);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(player.Starts, 2);
  Hold({});
  EXPECT_TRUE(Still());
}

TEST_P(SerialPedalTest, UsbPedalThatPlaysIsNotStoppedByAPortThatIsGivenBack) {
  ChooseSerial();
  WorkAt(5);
  watcher.Plug(pedals::UsbPresence::Ready);
  usb.StartWatch();
  watcher.Report(2);
  loop.Advance(50ms);
  ASSERT_TRUE(engine.IsPlaying);
  config.txtUSBorSerialFootPedal.Value = "U";
  serial.FollowChoice();
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_P(SerialPedalTest, SlowTickDoesNotStack) {
  config.txtMinimizeMiniPlayer.Value = "N";
  file.Sounds.clear();
  ChooseSerial();
  loop.Expect({.delay = 1000ms});
  Hold({.DSRHolding = true});
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(port.Reads, 1);
  loop.Advance(50ms);
  EXPECT_EQ(port.Reads, 2);
}

TEST_P(SerialPedalTest, StopInTheMiddleOfATickEndsThePoll) {
  file.Sounds.clear();
  ChooseSerial();
  loop.Expect({.meanwhile = [this] { serial.Stop(); }});
  Hold({.DSRHolding = true});
  ASSERT_EQ(loop.Shown.size(), 1u);
  loop.Advance(1000ms);
  EXPECT_EQ(port.Reads, 1);
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
}

TEST_P(SerialPedalTest, LinesThatStayUpDoNotStopAUsbPedal) {
  ChooseSerial();
  usb.StartWatch();
  watcher.Report(2);
  loop.Advance(1000ms);
  EXPECT_TRUE(engine.IsPlaying);
}

INSTANTIATE_TEST_SUITE_P(Port, SerialPedalTest, testing::Bool(), [](const auto& kind) {
  return kind.param ? "ThatTells" : "ThatIsPolled";
});

TEST(SerialPedal, GivesThePortBackWithItsEnd) {
  PedalBench bench;
  {
    pedals::SerialPedal another(bench.loop, bench.config, bench.pedal, bench.port);
    bench.ChooseSerial();
    ASSERT_EQ(bench.port.OpenPort(), 1);
  }
  EXPECT_FALSE(bench.port.OpenPort());
}

}  // namespace
}  // namespace tavlo::test
