#include "pedals/serial_pedal.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/pedal_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using pedals::Pedal;
using playback::Wind;

struct SerialPedalTest : testing::Test, PedalBench {
  /// The foot moves, and the next poll sees it.
  void Hold(pedals::SerialLines lines) {
    port.Lines = lines;
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

TEST_F(SerialPedalTest, PortIsOpenedAndPolledWhenItsNumberIsSet) {
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

TEST_F(SerialPedalTest, SettingTheNumberGivesTheKeyboardAway) {
  config.frmConfiguration.FocusOn(config.txtSerialFootPedalComPort);
  config.txtSerialFootPedalComPort.Value = "2";
  EXPECT_EQ(config.frmConfiguration.Focused(), &config.txtFocus);
}

TEST_F(SerialPedalTest, NoPortIsOpenedForAUsbPedal) {
  config.txtSerialFootPedalComPort.Value = "1x";
  EXPECT_TRUE(port.Opened.empty());
  EXPECT_EQ(config.txtSerialFootPedalComPort.Value.Get(), "1x");
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
}

TEST_F(SerialPedalTest, NumberOfThePortIsNormalizedAndOpenedOnce) {
  config.txtUSBorSerialFootPedal.Value = "S";
  config.txtSerialFootPedalComPort.Value = "01st";
  EXPECT_EQ(config.txtSerialFootPedalComPort.Value.Get(), "1");
  EXPECT_EQ(port.Opened, std::vector<int>{1});
}

TEST_F(SerialPedalTest, NumberThatIsNoPortLeavesThePedalDeadWithoutAMessage) {
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

TEST_F(SerialPedalTest, LinesAreTheThreePedals) {
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

TEST_F(SerialPedalTest, LeftAndCenterTogetherPlay) {
  WorkAt(5);
  ChooseSerial();
  Hold({.CDHolding = true, .DSRHolding = true});
  EXPECT_EQ(pedal.PedalEvent, Pedal::Center);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(SerialPedalTest, HeldPedalIsDispatchedOnce) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  const int starts = player.Starts;
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(2000ms);
  EXPECT_EQ(player.Starts, starts);
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::Center);
}

TEST_F(SerialPedalTest, ReleaseWithNothingOpenIsIgnoredAndTheNextEventCounts) {
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

TEST_F(SerialPedalTest, AnotherPedalAfterAReleaseWithNothingOpenCounts) {
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

TEST_F(SerialPedalTest, ReleaseWithNothingOpenDoesNotStopThePlayThatAHandBegins) {
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

TEST_F(SerialPedalTest, PedalThatStaysDownWhileItsDocumentIsLeftIsNoNewPress) {
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

TEST_F(SerialPedalTest, FootThatChangesPedalsWithNothingOpenHasReleasedTheFirst) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  LeaveDocument();
  Hold({.CTSHolding = true});
  SelectNext();
  Hold({.DSRHolding = true});
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(SerialPedalTest, ResetForgetsAReleaseWithNothingOpen) {
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

TEST_F(SerialPedalTest, OnlyTheCenterPedalWorksBeforeADocumentIsInWork) {
  ChooseSerial();
  form.cmdStop.Enabled = false;
  Hold({.CDHolding = true});
  Hold({.CTSHolding = true});
  EXPECT_TRUE(Still());
  EXPECT_EQ(pedal.LastPedalEvent, Pedal::None);
  Hold({.DSRHolding = true});
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(SerialPedalTest, PressStaysPendingUntilADocumentCanBePlayed) {
  ChooseSerial();
  form.cmdStop.Enabled = false;
  form.cmdPlay.Enabled = false;
  Hold({.DSRHolding = true});
  EXPECT_TRUE(Still());
  form.cmdPlay.Enabled = true;
  loop.Advance(50ms);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(SerialPedalTest, PortThatGoesAwayLeavesThePedalsUp) {
  ChooseSerial();
  Hold({.DSRHolding = true});
  ASSERT_TRUE(engine.IsPlaying);
  const int shown = stateShown;
  port.Existing.clear();
  loop.Advance(50ms);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(pedal.CenterPedalDown);
  EXPECT_FALSE(serial.Reads());
  EXPECT_EQ(stateShown, shown + 1);
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(SerialPedalTest, PortThatComesBackIsReadAgain) {
  ChooseSerial();
  port.Existing.clear();
  loop.Advance(1000ms);
  port.Existing = {1};
  Hold({.DSRHolding = true});
  EXPECT_TRUE(serial.Reads());
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(SerialPedalTest, AnotherNumberClosesTheFirstPort) {
  port.Existing = {1, 2};
  ChooseSerial();
  config.txtSerialFootPedalComPort.Value = "2";
  EXPECT_EQ(port.OpenPort(), 2);
  config.txtSerialFootPedalComPort.Value = "7";
  EXPECT_FALSE(port.OpenPort());
}

TEST_F(SerialPedalTest, ChosenSerialPedalIsOpenedAndChosenUsbPedalGivesThePortBack) {
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

TEST_F(SerialPedalTest, PortThatIsGivenBackReleasesThePedalsItHeld) {
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
    port.Lines = {};
    serial.FollowChoice();
  }
}

TEST_F(SerialPedalTest, PedalThatNothingListenedToGoesDarkWithItsPort) {
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
    port.Lines = {};
  }
}

TEST_F(SerialPedalTest, PortThatIsGivenBackBehindAnUnheardReleaseLeavesThePlayOfAHand) {
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

TEST_F(SerialPedalTest, NumberOfNoPortReleasesThePedalsOfThePortBefore) {
  ChooseSerial();
  WorkAt(5);
  Hold({.DSRHolding = true});
  ASSERT_FALSE(Still());
  config.txtSerialFootPedalComPort.Value = "9";
  EXPECT_TRUE(Still());
}

TEST_F(SerialPedalTest, PortThatIsOpenedAnewUnderAHeldPedalPlaysOn) {
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

TEST_F(SerialPedalTest, UsbPedalThatPlaysIsNotStoppedByAPortThatIsGivenBack) {
  ChooseSerial();
  WorkAt(5);
  watcher.Pedal = pedals::UsbPresence::Ready;
  usb.StartWatch();
  watcher.Report(2);
  loop.Advance(50ms);
  ASSERT_TRUE(engine.IsPlaying);
  config.txtUSBorSerialFootPedal.Value = "U";
  serial.FollowChoice();
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(SerialPedalTest, SlowTickDoesNotStack) {
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

TEST_F(SerialPedalTest, StopInTheMiddleOfATickEndsThePoll) {
  file.Sounds.clear();
  ChooseSerial();
  loop.Expect({.meanwhile = [this] { serial.Stop(); }});
  Hold({.DSRHolding = true});
  ASSERT_EQ(loop.Shown.size(), 1u);
  loop.Advance(1000ms);
  EXPECT_EQ(port.Reads, 1);
  EXPECT_FALSE(serial.tmrSerialFootPedal.Enabled());
}

TEST_F(SerialPedalTest, LinesThatStayUpDoNotStopAUsbPedal) {
  ChooseSerial();
  usb.StartWatch();
  watcher.Report(2);
  loop.Advance(1000ms);
  EXPECT_TRUE(engine.IsPlaying);
}

}  // namespace
}  // namespace tavlo::test
