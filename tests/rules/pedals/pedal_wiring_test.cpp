#include <gtest/gtest.h>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using base::operator""ms;
using base::operator""s;
using forms::By;

/// The pedals in the whole program.
struct PedalWiringTest : testing::Test, DeckBench {
  void ChooseSerial() {
    PlaceSettings({{"USBorSerialFootPedal", "S"}, {"SerialFootPedalComPort", "1"}});
  }
  void StartWithADocument() {
    Drop(Document().Name());
    StartUntilReady();
    ClickRow(0);
    loop.Advance(6s);
  }
  void Report(std::uint8_t bits) {
    usbWatcher.Report(bits);
    loop.Advance(100ms);
  }
};

TEST_F(PedalWiringTest, UsbPedalPlaysTheSelectedDocument) {
  StartWithADocument();
  ASSERT_FALSE(Engine().IsPlaying);
  Report(2);
  EXPECT_TRUE(Engine().IsPlaying);
  EXPECT_TRUE(form.cmdSkip.Enabled);
  Report(0);
  EXPECT_FALSE(Engine().IsPlaying);
  EXPECT_FALSE(deck.Built()->transport.tmrRewindForward.Enabled());
}

TEST_F(PedalWiringTest, SerialPedalIsOpenedAsTheSettingsLoad) {
  ChooseSerial();
  StartWithADocument();
  EXPECT_EQ(serialPort.Opened, std::vector<int>{1});
  serialPort.Hold({.DSRHolding = true});
  loop.Advance(100ms);
  EXPECT_TRUE(Engine().IsPlaying);
  EXPECT_EQ(config.lblPedalState.Value.Get(), "Port 1 is being read.");
}

TEST_F(PedalWiringTest, SidePedalInTheMomentOfSavingChangesNeitherThePositionNorTheDeck) {
  StartWithADocument();
  Report(2);
  Report(0);
  InWork().CurrentSamplePosition = 40'000;
  loop.Post([this] {
    pedals::FootPedal& pedal = deck.Built()->footPedal;
    pedal.Take(true, false, false);
    ASSERT_TRUE(pedal.MayDispatch());
    pedal.DispatchPedalEvent();
  });
  form.cmdSave.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(InQueue()), std::vector<std::string>{Document().Saved(40'000).Name()});
  EXPECT_EQ(deck.Built()->transport.WindDirection, playback::Wind::None);
  EXPECT_FALSE(deck.Built()->transport.tmrRewindForward.Enabled());
  loop.Advance(5s);
  EXPECT_EQ(InWork().CurrentSamplePosition, 40'000);
}

TEST_F(PedalWiringTest, SerialPedalLiftedAfterCompletePlaysTheNextDocumentAtItsNextPress) {
  ChooseSerial();
  Drop(Document().By("Other").Name());
  StartWithADocument();
  serialPort.Hold({.DSRHolding = true});
  loop.Advance(11s);
  ASSERT_TRUE(form.cmdComplete.Enabled);
  form.cmdComplete.Press(By::Hand);
  serialPort.Hold({});
  loop.Advance(100ms);
  ClickRow(0);
  loop.Advance(6s);
  ASSERT_FALSE(Engine().IsPlaying);
  serialPort.Hold({.DSRHolding = true});
  loop.Advance(100ms);
  EXPECT_TRUE(Engine().IsPlaying);
}

TEST_F(PedalWiringTest, ChosenKindOfPedalTakesEffectAtOnce) {
  PlaceSettings({{"SerialFootPedalComPort", "1"}});
  StartUntilReady();
  EXPECT_TRUE(serialPort.Opened.empty());
  EXPECT_EQ(config.lblPedalState.Value.Get(), "A USB pedal is ready.");
  form.mnuConfiguration.Press();
  config.optionSerial.Click();
  EXPECT_EQ(serialPort.OpenPort(), 1);
  EXPECT_EQ(config.lblPedalState.Value.Get(), "Port 1 is being read.");
  config.optionUSB.Click();
  EXPECT_FALSE(serialPort.OpenPort());
  EXPECT_EQ(config.lblPedalState.Value.Get(), "A USB pedal is ready.");
}

TEST_F(PedalWiringTest, PedalLightsWhileTheConfigurationShows) {
  StartUntilReady();
  form.mnuConfiguration.Press();
  Report(1);
  EXPECT_EQ(config.ShapeLeftPedal.FillColour.Get(), forms::PedalShape::kDown);
  Report(0);
  EXPECT_EQ(config.ShapeLeftPedal.FillColour.Get(), forms::PedalShape::kUp);
}

TEST_F(PedalWiringTest, WatchThatDoesNotStartLeavesTheRestOfTheStart) {
  usbWatcher.CanStart = false;
  StartUntilReady();
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(PedalWiringTest, ExitEndsPollsAndWatch) {
  StartUntilReady();
  loop.Expect({.reply = Reply::Yes});
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  EXPECT_FALSE(usbWatcher.Watching());
  EXPECT_FALSE(deck.Built()->usbPedal.TmrHIDRead.Enabled());
  EXPECT_FALSE(deck.Built()->serialPedal.tmrSerialFootPedal.Enabled());
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(PedalWiringTest, ExitTellsOfAWatchThatDoesNotEndAndGoesOn) {
  StartUntilReady();
  usbWatcher.CanStop = false;
  loop.Expect({.reply = Reply::Yes});
  form.frmMain.CloseRequest();
  ASSERT_EQ(loop.Shown.size(), 2u);
  EXPECT_EQ(loop.Shown[1].text, "Cannot close USB (HID) monitor");
  EXPECT_EQ(ended, 0);
}

TEST_F(PedalWiringTest, DocumentThatAFootBeginsUnderTheExitQuestionKeepsTheProgram) {
  StartWithADocument();
  loop.Expect({.reply = Reply::Yes, .delay = 1s, .meanwhile = [this] { usbWatcher.Report(2); }});
  form.frmMain.CloseRequest();
  ASSERT_EQ(loop.Shown.size(), 2u);
  EXPECT_EQ(loop.Shown[1].text,
            "You must Skip, Save, or Complete this dictation before you may exit the Tavlo Deck");
  EXPECT_FALSE(ended.has_value());
  EXPECT_FALSE(Engine().IsPlaying);
  Report(0);
  Report(2);
  EXPECT_TRUE(Engine().IsPlaying);
}

TEST_F(PedalWiringTest, OlderRootGetsTheWatcherLibrary) {
  disk.WithFile("/usr/share/tavlodeck/PedalWatch.so", "watch");
  StartUntilReady();
  EXPECT_EQ(disk.LinkTarget(kRoot + "/PedalWatch.so"), "/usr/share/tavlodeck/PedalWatch.so");
}

}  // namespace
}  // namespace tavlo::test
