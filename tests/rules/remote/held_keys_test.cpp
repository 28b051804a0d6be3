// A held key acts as a pedal does, from down to up: the release stops what the press began, and
// nothing else.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "support/hand.h"
#include "support/remote_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using playback::Wind;
using remote::AfarAction;

struct HeldKeysTest : testing::Test, RemoteBench {
  void Pedal(pedals::Pedal pedal) {
    Rooms().footPedal.PedalEvent = pedal;
    Rooms().footPedal.DispatchPedalEvent();
  }
  base::MessageBox Box() const { return {.title = "Tavlo Deck", .text = "A box"}; }
  /// Play tells of the document that is selected with a box, until the document is mended.
  void SelectOneThatCanNotBeOpened() {
    StartUntilReady();
    ClickRow(0);
    loop.Advance(20s);
    Engine().CloseFile();
    InWork().DocumentPrimed = false;
    sound_ = file.Sounds.extract(InWork().CurrentDocumentPath);
  }
  void Mend() { file.Sounds.insert(std::move(sound_)); }

 private:
  decltype(file.Sounds)::node_type sound_;
};

TEST_F(HeldKeysTest, PlayWhileHeldPlaysFromDownToUp) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays());
  loop.Advance(2s);
  EXPECT_TRUE(Plays());
  Up(AfarAction::PlayHeld);
  EXPECT_TRUE(Still());
  EXPECT_NEAR(Second(), 4 - 1.5 + 2, 0.1);
}

TEST_F(HeldKeysTest, WindsAccelerateAndEndWithTheirKeys) {
  for (const auto& [key, wind] : {std::pair{AfarAction::RewindHeld, Wind::Rewind},
                                  std::pair{AfarAction::ForwardHeld, Wind::Forward}}) {
    RemoteBench bench;
    bench.WorkOn(5);
    bench.config.txtWindIncrement.Value = "1";
    bench.Down(key);
    EXPECT_EQ(bench.Rooms().transport.WindDirection, wind);
    bench.loop.Advance(1500ms);
    EXPECT_EQ(bench.Rooms().transport.WindDirection, wind);
    bench.Up(key);
    EXPECT_TRUE(bench.Still());
    EXPECT_DOUBLE_EQ(bench.Second(), wind == Wind::Forward ? 7 : 3);
  }
}

TEST_F(HeldKeysTest, FirstPlayPutsTheSelectedDocumentInWorkAndTheReleaseLetsItStand) {
  StartUntilReady();
  ClickRow(0);
  Down(AfarAction::PlayHeld);
  EXPECT_TRUE(form.cmdSkip.Enabled);
  Up(AfarAction::PlayHeld);
  EXPECT_TRUE(Still());
  EXPECT_TRUE(form.cmdSkip.Enabled);
}

TEST_F(HeldKeysTest, PressAndReleaseInOnePassAreBothHeard) {
  WorkOn();
  const int starts = player.Starts;
  keys.Down(AfarAction::PlayHeld);
  keys.Up(AfarAction::PlayHeld);
  Settle();
  EXPECT_EQ(player.Starts, starts + 1);
  EXPECT_TRUE(Still());
}

TEST_F(HeldKeysTest, ReleaseOfAKeyThatBeganNothingStopsNothing) {
  StartUntilReady();
  ClickRow(0);
  ASSERT_TRUE(Plays()) << "a preview";
  Down(AfarAction::RewindHeld);
  Up(AfarAction::RewindHeld);
  EXPECT_TRUE(Plays());
}

TEST_F(HeldKeysTest, ReleaseStopsUnderAMessageBox) {
  for (const AfarAction key :
       {AfarAction::PlayHeld, AfarAction::RewindHeld, AfarAction::ForwardHeld}) {
    RemoteBench bench;
    bench.WorkOn(5);
    bench.Down(key);
    ASSERT_FALSE(bench.Still());
    bench.loop.Expect({.delay = 100ms, .meanwhile = [&] {
                         bench.Up(key);
                         EXPECT_TRUE(bench.Still());
                       }});
    bench.loop.Show({.title = "Tavlo Deck", .text = "A box"});
    EXPECT_TRUE(bench.Still());
  }
}

TEST_F(HeldKeysTest, KeyThatGoesDownUnderABoxBeginsNothingThenOrLater) {
  WorkOn();
  loop.Expect({.delay = 100ms, .meanwhile = [&] { Down(AfarAction::PlayHeld); }});
  loop.Show(Box());
  EXPECT_TRUE(Still());
  loop.Advance(1s);
  EXPECT_TRUE(Still());
  Up(AfarAction::PlayHeld);
  Down(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays());
}

TEST_F(HeldKeysTest, ReleaseLeavesWhatAHandHasBegunMeanwhile) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  form.cmdStop.Press(By::Hand);
  form.cmdPlay.Press(By::Hand);
  Up(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays());
}

TEST_F(HeldKeysTest, ReleaseLeavesWhatAFootHasBegunMeanwhile) {
  WorkOn();
  Down(AfarAction::ForwardHeld);
  Pedal(pedals::Pedal::Center);
  Up(AfarAction::ForwardHeld);
  EXPECT_TRUE(Plays());
  Pedal(pedals::Pedal::None);
  EXPECT_TRUE(Still());
}

TEST_F(HeldKeysTest, FootThatGoesUpStopsWhatAKeyHasBegunAndTheReleaseIsNoSecondStop) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  Pedal(pedals::Pedal::None);
  EXPECT_TRUE(Still());
  form.cmdForward.Press(By::Hand);
  Up(AfarAction::PlayHeld);
  EXPECT_TRUE(Winds());
}

TEST_F(HeldKeysTest, ReleaseStopsWhatItsPressBeganAlsoWhereASeekOrAnotherSpeedCameBetween) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  Drag(form.slPosition, 20);
  Drag(form.Slider1, 20);
  ASSERT_TRUE(Plays());
  Up(AfarAction::PlayHeld);
  EXPECT_TRUE(Still());
}

TEST_F(HeldKeysTest, PressOverWhatPlaysBeginsAnewAndItsReleaseStops) {
  WorkOn();
  form.cmdPlay.Press(By::Hand);
  Down(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays());
  Up(AfarAction::PlayHeld);
  EXPECT_TRUE(Still());
}

TEST_F(HeldKeysTest, OfTwoKeysTheLaterOneActsAndOnlyItsReleaseStops) {
  struct Case {
    AfarAction first, second;
  };
  for (const Case& c : {Case{AfarAction::PlayHeld, AfarAction::RewindHeld},
                        Case{AfarAction::RewindHeld, AfarAction::PlayHeld},
                        Case{AfarAction::RewindHeld, AfarAction::ForwardHeld}}) {
    for (const bool firstUpFirst : {true, false}) {
      RemoteBench bench;
      bench.WorkOn(6);
      bench.Down(c.first);
      bench.Down(c.second);
      const auto begun = bench.Rooms().transport.RunUnderWay();
      ASSERT_TRUE(begun);
      bench.Up(firstUpFirst ? c.first : c.second);
      EXPECT_EQ(bench.Rooms().transport.RunUnderWay() == begun, firstUpFirst);
      bench.Up(firstUpFirst ? c.second : c.first);
      EXPECT_TRUE(bench.Still());
    }
  }
}

TEST_F(HeldKeysTest, DocumentThatReachedItsEndMeanwhileIsLeftThere) {
  WorkOn(9);
  Down(AfarAction::PlayHeld);
  loop.Advance(10s);
  EXPECT_TRUE(Still());
  EXPECT_TRUE(form.cmdComplete.Enabled);
  const int stops = player.Stops;
  Up(AfarAction::PlayHeld);
  EXPECT_EQ(player.Stops, stops);
  EXPECT_DOUBLE_EQ(Second(), 10);
}

TEST_F(HeldKeysTest, WindThatReachedAnEndMeanwhileIsOver) {
  WorkOn(9);
  Down(AfarAction::ForwardHeld);
  EXPECT_FALSE(Winds());
  EXPECT_TRUE(form.cmdComplete.Enabled);
  form.cmdPlay.Press(By::Hand);
  const bool plays = Plays();
  Up(AfarAction::ForwardHeld);
  EXPECT_EQ(Plays(), plays);
}

TEST_F(HeldKeysTest, ReleaseLeavesThePreviewOfTheNextDocument) {
  StartUntilReady();
  config.txtAutoQueueJob.Value = "Y";
  WorkAt(9.8);
  form.cmdSkipEnd.Press(By::Hand);
  Down(AfarAction::RewindHeld);
  ASSERT_TRUE(Winds());
  form.cmdComplete.Press(By::Hand);
  ASSERT_TRUE(Plays());
  ASSERT_FALSE(form.cmdSkip.Enabled) << "a preview";
  Up(AfarAction::RewindHeld);
  EXPECT_TRUE(Plays());
}

TEST_F(HeldKeysTest, ReleaseWhileTheDocumentIsMovedLeavesThePreviewOfTheNextOne) {
  StartUntilReady();
  config.txtAutoQueueJob.Value = "Y";
  WorkAt(4);
  Down(AfarAction::PlayHeld);
  base::Timer later(loop, "later", 200ms);
  later.OnTick = [&] {
    later.Stop();
    keys.Up(AfarAction::PlayHeld);
  };
  later.Start();
  form.cmdSave.Press(By::Hand);
  EXPECT_FALSE(keys.IsDown(AfarAction::PlayHeld));
  EXPECT_TRUE(Plays());
}

TEST_F(HeldKeysTest, KeyThatIsLetGoUnderTheBoxOfItsOwnPressLeavesTheRunOfAFoot) {
  SelectOneThatCanNotBeOpened();
  loop.Expect({.delay = 100ms, .meanwhile = [&] {
                 Mend();
                 Pedal(pedals::Pedal::Center);
                 ASSERT_TRUE(Plays());
                 Up(AfarAction::PlayHeld);
                 EXPECT_TRUE(Plays()) << "it is the foot's";
               }});
  Down(AfarAction::PlayHeld);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(Plays());
  Pedal(pedals::Pedal::None);
  EXPECT_TRUE(Still());
}

TEST_F(HeldKeysTest, WhatAFootBeganUnderTheBoxOfAPressIsNotOfThatKeyLater) {
  SelectOneThatCanNotBeOpened();
  loop.Expect({.delay = 100ms, .meanwhile = [&] {
                 Mend();
                 Pedal(pedals::Pedal::Center);
               }});
  Down(AfarAction::PlayHeld);
  ASSERT_TRUE(Plays());
  Up(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays());
}

TEST_F(HeldKeysTest, KeyThatIsLetGoUnderTheBoxOfAPressThatFailedBehindItsStartStopsAtOnce) {
  WorkOn();
  // The sound has begun when the place of the mini-player can not be kept.
  form.frmMain.Left = 777;
  form.frmMain.Top = 777;
  form.txtPlayerTop.OnChange = [] { throw std::runtime_error("no room"); };
  loop.Expect({.delay = 100ms, .meanwhile = [&] {
                 ASSERT_TRUE(Plays());
                 Up(AfarAction::PlayHeld);
                 EXPECT_TRUE(Still());
               }});
  Down(AfarAction::PlayHeld);
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(Still());
}

TEST_F(HeldKeysTest, ReleaseThatCameWithItsPressIsHeardUnderTheBoxOfThatPress) {
  WorkOn();
  form.frmMain.Left = 777;
  form.frmMain.Top = 777;
  form.txtPlayerTop.OnChange = [] { throw std::runtime_error("no room"); };
  loop.Expect({.delay = 100ms, .meanwhile = [&] {
                 ASSERT_TRUE(Plays());
                 Settle();
                 EXPECT_TRUE(Still());
               }});
  keys.Down(AfarAction::PlayHeld);
  keys.Up(AfarAction::PlayHeld);
  Settle();
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(Still());
}

TEST_F(HeldKeysTest, ReleaseThatWaitsBehindAnEventThatFailedIsHeardUnderItsBox) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  form.cmdNormalSpeed.OnPress = [] { throw std::runtime_error("no room"); };
  loop.Expect({.delay = 100ms, .meanwhile = [&] {
                 ASSERT_TRUE(Plays());
                 Settle();
                 EXPECT_TRUE(Still());
               }});
  keys.Down(AfarAction::NormalSpeed);
  keys.Up(AfarAction::PlayHeld);
  Settle();
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(HeldKeysTest, HeldKeyIsOnePressHoweverOftenItIsTold) {
  WorkOn();
  const int starts = player.Starts;
  Rooms().farHand.Press(AfarAction::PlayHeld);
  Rooms().farHand.Press(AfarAction::PlayHeld);
  EXPECT_EQ(player.Starts, starts + 1);
  Rooms().farHand.Release(AfarAction::PlayHeld);
  EXPECT_TRUE(Still());
  form.cmdPlay.Press(By::Hand);
  Rooms().farHand.Release(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays());
}

TEST_F(HeldKeysTest, HandKnowsWhetherItsReleaseWouldStopSomething) {
  WorkOn();
  remote::FarHand& hand = Rooms().farHand;
  EXPECT_FALSE(hand.ReleaseStops());
  Down(AfarAction::PlayHeld);
  EXPECT_TRUE(hand.ReleaseStops());
  form.cmdPlay.Press(By::Hand);
  EXPECT_FALSE(hand.ReleaseStops()) << "what sounds now is a hand's";
  Up(AfarAction::PlayHeld);
  Down(AfarAction::PlayStop);
  EXPECT_FALSE(hand.ReleaseStops());
}

TEST_F(HeldKeysTest, CompleteSaveAndSkipSpeakAsAlways) {
  struct Case {
    AfarAction key;
    const char* prompt;
  };
  for (const Case& c : {Case{AfarAction::Complete, "Complete.wav"},
                        Case{AfarAction::Save, "Save.wav"}, Case{AfarAction::Skip, "Return.wav"}}) {
    RemoteBench bench;
    bench.WorkOn();
    bench.form.cmdSkipEnd.Press(By::Hand);
    bench.promptControl.Sounded.clear();
    bench.Tap(c.key);
    ASSERT_FALSE(bench.promptControl.Sounded.empty()) << c.prompt;
    EXPECT_TRUE(bench.promptControl.Sounded.front().ends_with(c.prompt));
    EXPECT_FALSE(bench.form.cmdSkip.Enabled);
  }
}

TEST_F(HeldKeysTest, SecondPressThatWaitedBehindACompleteIsNotForTheNextDocument) {
  StartUntilReady();
  config.txtAutoQueueJob.Value = "Y";
  WorkAt(4);
  form.cmdSkipEnd.Press(By::Hand);
  const std::string& next = form.listViewInQueue.TextAt(1, forms::document_column::FileName);
  file.Sounds.erase(InQueue() + next);
  for (int press = 0; press < 2; ++press) {
    keys.Down(AfarAction::Complete);
    keys.Up(AfarAction::Complete);
  }
  Settle();
  ASSERT_EQ(loop.Shown.size(), 1u) << "that the next one can not be played";
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(disk.NamesIn(InQueue()).size(), 2u);
  EXPECT_EQ(disk.NamesIn(Completed()).size(), 2u);
}

TEST_F(HeldKeysTest, CompleteIsRefusedBeforeTheEndAndWithoutADocument) {
  WorkOn();
  Tap(AfarAction::Complete);
  EXPECT_TRUE(form.cmdSkip.Enabled);
  Tap(AfarAction::Skip);
  Tap(AfarAction::Complete);
  Tap(AfarAction::Save);
  EXPECT_EQ(disk.NamesIn(Completed()).size(), 1u);
  EXPECT_EQ(disk.NamesIn(InQueue()).size(), 3u);
}

}  // namespace
}  // namespace tavlo::test
