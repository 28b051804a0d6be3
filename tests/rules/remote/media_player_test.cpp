// What the desktop's bus is told of the deck, and what it may ask for.
#include "remote/media_player.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "support/hand.h"
#include "support/remote_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using remote::MediaState;
using remote::Microseconds;
using remote::PlaybackStatus;
using What = remote::MediaCommand::What;

constexpr Microseconds kSecond = 1'000'000;
constexpr auto kMost = std::numeric_limits<Microseconds>::max();
constexpr auto kLeast = std::numeric_limits<Microseconds>::min();

struct MediaPlayerTest : testing::Test, RemoteBench {};

TEST_F(MediaPlayerTest, StatusIsStoppedUntilADocumentIsInWorkThenPlayingOrPaused) {
  StartUntilReady();
  EXPECT_EQ(bus.Look().status, PlaybackStatus::Stopped);
  ClickRow(0);
  ASSERT_TRUE(Plays());
  EXPECT_EQ(bus.Look().status, PlaybackStatus::Stopped) << "a preview is no work";
  EXPECT_EQ(bus.Position(), 0);
  form.cmdPlay.Press(By::Hand);
  EXPECT_EQ(bus.Look().status, PlaybackStatus::Playing);
  form.cmdForward.Press(By::Hand);
  EXPECT_EQ(bus.Look().status, PlaybackStatus::Paused) << "nothing sounds in a wind";
  form.cmdStop.Press(By::Hand);
  EXPECT_EQ(bus.Look().status, PlaybackStatus::Paused);
  form.cmdSkip.Press(By::Hand);
  EXPECT_EQ(bus.Look().status, PlaybackStatus::Stopped);
  EXPECT_EQ(bus.Position(), 0);
}

TEST_F(MediaPlayerTest, TellsOfTheDocumentWhatTheWindowShows) {
  Drop(Document().By("Aaron").About("knee").Department(4).At("1 2 2003 4 5 6").Priority().Name());
  WorkOn();
  const MediaState state = bus.Look();
  EXPECT_EQ(state.artist, "Aaron");
  EXPECT_EQ(state.title, "Subject: knee, Dept: 4, Work: 17, 01/02/2003, priority");
  EXPECT_EQ(state.length, 10 * kSecond);
  EXPECT_EQ(bus.Position(), 4 * kSecond);
  EXPECT_NE(state.track, 0u);
  EXPECT_TRUE(state.canPlay && state.canPause && state.canSeek && state.canGoNext &&
              state.canGoPrevious);
}

TEST_F(MediaPlayerTest, TellsOfNothingWhereNothingIsSelected) {
  StartUntilReady();
  EXPECT_EQ(bus.Look(), (MediaState{.volume = bus.Look().volume}));
  EXPECT_FALSE(bus.Look().canPlay);
}

TEST_F(MediaPlayerTest, SelectedDocumentCanBePlayedWhateverItsNameHolds) {
  const std::string names[] = {"x.wav", "secret_name-of a patient.mp3",
                               "0007 0  1234 3 9 2004 14 5 12 2 0 17 cardio 0 P_.wav",
                               "\xFF\xFE\xC3.wav"};
  for (const std::string& dropped : names) {
    DeckBench bench;
    bench.Drop(dropped);
    bench.StartUntilReady();
    bench.ClickRow(0);
    const MediaState state = bench.bus.Look();
    EXPECT_TRUE(state.canPlay) << dropped;
    EXPECT_NE(state.track, 0u) << dropped;
    for (const std::string& said : {state.title, state.artist}) {
      EXPECT_EQ(said.find(dropped), std::string::npos) << said;
      EXPECT_EQ(said.find(kRoot), std::string::npos) << said;
      EXPECT_EQ(said.find(".wav"), std::string::npos) << said;
    }
  }
}

TEST_F(MediaPlayerTest, NameThatDoesNotParseIsNotTold) {
  DeckBench bench;
  bench.Drop("secret_name-of a patient.wav");
  bench.StartUntilReady();
  bench.ClickRow(0);
  const MediaState state = bench.bus.Look();
  EXPECT_EQ(state.artist, "Unknown");
  EXPECT_EQ(state.title.find("secret"), std::string::npos) << state.title;
  EXPECT_TRUE(state.title.starts_with("Subject: 0, Dept: 1, Work: 0, ")) << state.title;
}

TEST_F(MediaPlayerTest, DocumentsOfOtherListsAreNotTold) {
  StartUntilReady();
  ClickRow(0);
  ASSERT_NE(bus.Look().title, "");
  form.mnuViewCompleted.Press(By::Hand);
  form.listViewCompleted.RowClick(0);
  ASSERT_TRUE(Plays());
  const MediaState state = bus.Look();
  EXPECT_EQ(state.title, "");
  EXPECT_EQ(state.artist, "");
  EXPECT_EQ(state.track, 0u);
  EXPECT_EQ(state.length, 0);
  EXPECT_FALSE(state.canPlay);
}

TEST_F(MediaPlayerTest, FinishedDocumentIsNotToldAnyMore) {
  for (const auto key : {&forms::MainForm::cmdSave, &forms::MainForm::cmdSkip}) {
    RemoteBench bench;
    bench.WorkOn();
    ASSERT_NE(bench.bus.Look().title, "");
    (bench.form.*key).Press(By::Hand);
    EXPECT_EQ(bench.bus.Look().title, "");
    EXPECT_EQ(bench.bus.Look().track, 0u);
  }
}

TEST_F(MediaPlayerTest, EachSelectionHasANumberOfItsOwn) {
  StartUntilReady();
  ClickRow(0);
  const auto first = bus.Look().track;
  form.cmdPlay.Press(By::Hand);
  EXPECT_EQ(bus.Look().track, first) << "work is no selection";
  form.cmdSkip.Press(By::Hand);
  EXPECT_EQ(bus.Look().track, 0u);
  ClickRow(1);
  const auto second = bus.Look().track;
  EXPECT_GT(second, first);
  form.cmdUpdateFileList.Press(By::Hand);
  bus.Look();
  ClickRow(1);
  EXPECT_GT(bus.Look().track, second) << "the same document, selected again";
}

TEST_F(MediaPlayerTest, WhatTheTypistKeepsPrivateIsNotTold) {
  WorkOn();
  config.txtBusSaysNothing.Value = "Y";
  const MediaState state = bus.Look();
  EXPECT_EQ(state.status, PlaybackStatus::Paused);
  EXPECT_EQ(state.title + state.artist, "");
  EXPECT_EQ(state.track, 0u);
  EXPECT_EQ(state.length, 0);
  EXPECT_EQ(bus.Position(), 0);
  EXPECT_FALSE(state.canSeek);
  EXPECT_TRUE(state.canPlay) << "media keys work as before";
  Ask({.what = What::Seek, .time = kSecond});
  Ask({.what = What::SetPosition, .time = kSecond, .track = 0});
  EXPECT_DOUBLE_EQ(Second(), 4);
  Ask(What::Play);
  EXPECT_TRUE(Plays());
  bus.Look();
  loop.Advance(1s);
  bus.Look();
  EXPECT_EQ(bus.JumpsTold, 0);
  config.txtBusSaysNothing.Value = "N";
  EXPECT_NE(bus.Look().title, "");
}

TEST_F(MediaPlayerTest, RateIsTheSliderOfTheSpeed) {
  struct Case {
    double rate;
    int percent;
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const Case& c : {Case{0.5, 50}, Case{1.5, 150}, Case{1, 100}, Case{0.87, 87}, Case{0.1, 50},
                        Case{-1, 50}, Case{-kInfinity, 50}, Case{7, 150}, Case{kInfinity, 150},
                        Case{1e308, 150}, Case{5e-324, 50}, Case{std::nan(""), 110}}) {
    RemoteBench bench;
    bench.WorkOn();
    Drag(bench.form.Slider1, 10);
    bench.Ask({.what = What::SetRate, .number = c.rate});
    EXPECT_EQ(bench.Engine().PlaySpeedPercent, c.percent) << c.rate;
    EXPECT_EQ(bench.form.Slider1.Value, c.percent - 100) << c.rate;
    EXPECT_EQ(bench.form.txtSpeed.Value.Get(), std::to_string(c.percent));
    EXPECT_DOUBLE_EQ(bench.bus.Look().rate, c.percent / 100.0);
  }
}

TEST_F(MediaPlayerTest, RateOfZeroStopsAndChangesNoSpeed) {
  for (const double zero : {0.0, -0.0}) {
    RemoteBench bench;
    bench.WorkOn();
    bench.form.cmdPlay.Press(By::Hand);
    bench.Ask({.what = What::SetRate, .number = zero});
    EXPECT_TRUE(bench.Still());
    EXPECT_EQ(bench.Engine().PlaySpeedPercent, 100);
  }
}

TEST_F(MediaPlayerTest, VolumeIsTheSliderOfTheVolume) {
  StartUntilReady();
  struct Case {
    double volume;
    int value;
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const Case& c :
       {Case{0.5, 32'768}, Case{std::nan(""), 32'768}, Case{1, 65'535}, Case{0, 0}, Case{2, 65'535},
        Case{-3, 0}, Case{kInfinity, 65'535}, Case{-kInfinity, 0}}) {
    Ask({.what = What::SetVolume, .number = c.volume});
    EXPECT_EQ(form.sldVol.Value, c.value) << c.volume;
    EXPECT_EQ(form.txtVolume.Value.Get(), std::to_string(c.value)) << c.volume;
    EXPECT_NEAR(bus.Look().volume, c.value / 65'535.0, 1e-9);
  }
}

TEST_F(MediaPlayerTest, SlidersAreLeftToTheHandThatHoldsOne) {
  WorkOn();
  form.cmdPlay.Press(By::Hand);
  form.slPosition.Press();
  Ask({.what = What::SetRate, .number = 0.8});
  Ask({.what = What::SetVolume, .number = 0.1});
  Tap(remote::AfarAction::Faster);
  EXPECT_EQ(Engine().PlaySpeedPercent, 100);
  EXPECT_TRUE(Engine().SliderDragging) << "the position stands still under the hand";
  form.slPosition.Release();
  Ask({.what = What::SetRate, .number = 0.8});
  EXPECT_EQ(Engine().PlaySpeedPercent, 80);
}

TEST_F(MediaPlayerTest, SpeedFromAfarNeverFreezesTheDisplayOfTheNextDocument) {
  WorkOn();
  loop.Post([this] {
    bus.Ask({.what = What::SetRate, .number = 0.8});
    keys.Down(remote::AfarAction::Faster);
  });
  form.cmdSave.Press(By::Hand);
  EXPECT_FALSE(Engine().SliderDragging);
  EXPECT_EQ(form.Slider1.Value, 0);
}

TEST_F(MediaPlayerTest, NextAndPreviousAreOneJumpOfAWind) {
  WorkOn(5);
  config.txtWindIncrement.Value = "2";
  Ask(What::Next);
  EXPECT_TRUE(Still());
  EXPECT_DOUBLE_EQ(Second(), 7);
  EXPECT_TRUE(promptControl.Sounded.back().find("ForwardTone") != std::string::npos);
  Ask(What::Previous);
  Ask(What::Previous);
  EXPECT_TRUE(Still());
  EXPECT_DOUBLE_EQ(Second(), 3);
  loop.Advance(5s);
  EXPECT_DOUBLE_EQ(Second(), 3);
  for (int jumps = 0; jumps < 5; ++jumps) Ask(What::Next);
  EXPECT_DOUBLE_EQ(Second(), 10);
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

TEST_F(MediaPlayerTest, RaiseBringsTheWindowThatIsInFrontOfTheOthers) {
  WorkOn();
  const auto before = form.frmMain.FrontVersion();
  Ask(What::Raise);
  EXPECT_GT(form.frmMain.FrontVersion(), before);
  EXPECT_TRUE(Rooms().mainWindow.MiniPlayerShows()) << "the mini-player stays one";
  form.frmMain.WindowShape = forms::Shape::Minimized;
  Ask(What::Raise);
  EXPECT_EQ(form.frmMain.WindowShape, forms::Shape::Normal);
  form.cmdEQ.Press(By::Hand);
  const auto page = config.frmConfiguration.FrontVersion();
  Ask(What::Raise);
  EXPECT_GT(config.frmConfiguration.FrontVersion(), page);
  EXPECT_FALSE(form.frmMain.Visible);
}

TEST_F(MediaPlayerTest, RaiseRestoresTheFullWindow) {
  StartUntilReady();
  form.frmMain.WindowShape = forms::Shape::Minimized;
  const forms::Twips height = form.frmMain.Height;
  Ask(What::Raise);
  EXPECT_EQ(form.frmMain.WindowShape, forms::Shape::Normal);
  EXPECT_EQ(form.frmMain.Height, height);
}

TEST_F(MediaPlayerTest, RaiseLeavesAMessageBoxWhereItIs) {
  StartUntilReady();
  form.frmMain.WindowShape = forms::Shape::Minimized;
  const auto before = form.frmMain.FrontVersion();
  loop.Expect({.delay = 100ms, .meanwhile = [&] { Ask(What::Raise); }});
  loop.Show({.title = "Tavlo Deck", .text = "A box"});
  EXPECT_EQ(form.frmMain.FrontVersion(), before);
  EXPECT_EQ(form.frmMain.WindowShape, forms::Shape::Minimized);
}

TEST_F(MediaPlayerTest, QuitAsksAsTheWindowDoes) {
  WorkOn();
  Ask(What::Quit);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].text,
            "You must Skip, Save, or Complete this dictation before you may exit the Tavlo Deck");
  EXPECT_FALSE(ended);
  form.cmdSkip.Press(By::Hand);
  loop.Expect({.reply = base::Reply::No});
  Ask(What::Quit);
  EXPECT_FALSE(ended);
  loop.Expect({.reply = base::Reply::Yes});
  Ask(What::Quit);
  EXPECT_EQ(ended, 0);
}

TEST_F(MediaPlayerTest, QuitUnderTheConfigurationIsDroppedWithoutAWord) {
  StartUntilReady();
  form.mnuConfiguration.Press(By::Hand);
  Ask(What::Quit);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(ended);
}

TEST_F(MediaPlayerTest, FirstCommandIsDoneAtOnceAndThoseBehindItAtAPersonsPace) {
  WorkOn(5);
  config.txtWindIncrement.Value = "1";
  for (int asked = 0; asked < 3; ++asked) bus.Ask(What::Next);
  loop.Yield();
  EXPECT_DOUBLE_EQ(Second(), 6);
  loop.Advance(19ms);
  EXPECT_DOUBLE_EQ(Second(), 6);
  loop.Advance(1ms);
  EXPECT_DOUBLE_EQ(Second(), 7);
  bus.Ask(What::Next);
  loop.Advance(20ms);
  EXPECT_DOUBLE_EQ(Second(), 8);
  loop.Advance(20ms);
  EXPECT_DOUBLE_EQ(Second(), 9);
}

TEST_F(MediaPlayerTest, CallerThatNeverRestsIsFollowedAtAPersonsPace) {
  WorkOn(0);
  config.txtWindIncrement.Value = "0.125";
  for (int millisecond = 0; millisecond < 190; ++millisecond) {
    bus.Ask(What::Next);
    loop.Advance(1ms);
  }
  EXPECT_DOUBLE_EQ(Second(), 0.125 * 10);
}

TEST_F(MediaPlayerTest, FloodIsCutToWhatMayWait) {
  WorkOn(0);
  config.txtWindIncrement.Value = "0.125";
  for (int asked = 0; asked < 10'000; ++asked) bus.Ask(What::Next);
  loop.Advance(1s);
  EXPECT_DOUBLE_EQ(Second(), 0.125 * remote::MediaPlayer::kMostWaiting);
}

TEST_F(MediaPlayerTest, FloodOfAllKindsLeavesTheDeckAndItsDocumentsWhereTheyAre) {
  WorkOn(5);
  const auto names = disk.NamesIn(InQueue());
  for (int round = 0; round < 50; ++round) {
    for (int asked = 0; asked < 1000; ++asked) {
      // Quit shows a box for each, which another test looks at.
      bus.Ask({.what = static_cast<What>(asked % static_cast<int>(What::Quit)),
               .time = asked % 2 ? kLeast : kMost,
               .track = 99,
               .number = asked % 3 ? std::nan("") : -1e308});
    }
    loop.Advance(10ms);
  }
  loop.Advance(1s);
  EXPECT_EQ(disk.NamesIn(InQueue()), names);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(form.cmdSkip.Enabled);
  Ask(What::Pause);
  EXPECT_TRUE(Still());
}

TEST_F(MediaPlayerTest, SliderThatIsDrawnOnCountsWhereItStandsLast) {
  StartUntilReady();
  const std::size_t before = player.Volumes.size();
  for (int step = 0; step <= 100; ++step)
    bus.Ask({.what = What::SetVolume, .number = step / 100.0});
  Settle();
  EXPECT_EQ(form.sldVol.Value, 65'535);
  EXPECT_EQ(player.Volumes.size(), before + 1);
}

TEST_F(MediaPlayerTest, CommandsThatWaitAreDoneUnderABoxAndDoNothingThere) {
  WorkOn();
  loop.Expect({.delay = 1000ms, .meanwhile = [&] {
                 for (const What what : {What::Play, What::Next, What::Quit}) bus.Ask(what);
               }});
  loop.Show({.title = "Tavlo Deck", .text = "A box"});
  loop.Advance(1s);
  EXPECT_TRUE(Still());
  EXPECT_DOUBLE_EQ(Second(), 4);
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(MediaPlayerTest, NothingIsTakenBehindTheEnd) {
  StartUntilReady();
  remote::MediaPlayer& media = Rooms().mediaPlayer;
  media.Take({.what = What::Quit});
  media.End();
  media.Take({.what = What::Quit});
  loop.Advance(1s);
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(MediaPlayerTest, CommandsOfABusThatHasGoneAreNotHeard) {
  WorkOn();
  bus.SetThere(false);
  EXPECT_FALSE(bus.Ask(What::Play));
  bus.SetThere(true);
  EXPECT_TRUE(bus.Ask(What::Play));
  Settle();
  EXPECT_TRUE(Plays());
}

}  // namespace
}  // namespace tavlo::test
