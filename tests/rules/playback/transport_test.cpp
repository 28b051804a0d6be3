#include "playback/transport.h"

#include <gtest/gtest.h>

#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using forms::Shape;
using playback::Wind;
using Prompts = std::vector<std::string>;

struct TransportTest : testing::Test, PlaybackBench {
  /// A document in work, stopped at a sample.
  void StoppedAt(double sample) {
    Play();
    form.cmdStop.Press(By::Hand);
    documentInWork.CurrentSamplePosition = sample;
    prompts.clear();
  }
};

TEST_F(TransportTest, FirstPlayOpensTheDocumentAndSounds) {
  Play();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(documentInWork.DocumentPrimed);
  EXPECT_TRUE(window.PlayRequested);
  EXPECT_EQ(file.Seeks.back(), 0);
  EXPECT_EQ(player.Volumes.back(), 50'000);
}

TEST_F(TransportTest, PlayLocksTheListAndFreesTheTransport) {
  Play();
  EXPECT_FALSE(form.listViewInQueue.Enabled);
  EXPECT_FALSE(form.mnuFile.Enabled);
  EXPECT_FALSE(form.mnuView.Enabled);
  EXPECT_FALSE(form.mnuReport.Enabled);
  for (const forms::Command* ready :
       {&form.cmdSkip, &form.cmdSave, &form.cmdSkipBeg, &form.cmdRewind, &form.cmdStop,
        &form.cmdForward, &form.cmdSkipEnd}) {
    EXPECT_TRUE(ready->Enabled) << ready->Name;
  }
  EXPECT_TRUE(form.cmdStop.Visible);
  EXPECT_FALSE(form.cmdImportCompleteSnipetStop.Visible);
  EXPECT_EQ(form.frmMain.Focused(), &form.txtFocus);
}

TEST_F(TransportTest, PlayAfterStopGoesOnWhereTheEarWas) {
  Play();
  loop.Advance(3s);
  form.cmdStop.Press(By::Hand);
  const double stopped = documentInWork.CurrentSamplePosition;
  EXPECT_NEAR(stopped, 24'000, 160);
  loop.Advance(60s);
  Play();
  EXPECT_EQ(file.Seeks.back(), static_cast<SampleCount>(stopped));
  EXPECT_EQ(file.OpenCount, 1);
}

TEST_F(TransportTest, EveryRestartTakesTheAutoBackspaceOnce) {
  config.sliderABS.Value = 20;
  StoppedAt(40'000);
  Play();
  EXPECT_EQ(file.Seeks.back(), 24'000);
}

TEST_F(TransportTest, BackspaceAtTheBeginningStaysAtZero) {
  config.sliderABS.Value = 20;
  StoppedAt(0);
  Play();
  EXPECT_EQ(file.Seeks.back(), 0);
}

TEST_F(TransportTest, BackspaceOfZeroStillRestartsThroughASeek) {
  StoppedAt(12'345);
  const auto seeks = file.Seeks.size();
  Play();
  EXPECT_EQ(file.Seeks.size(), seeks + 1);
  EXPECT_EQ(file.Seeks.back(), 12'345);
}

TEST_F(TransportTest, FirstPlayTakesNoBackspace) {
  config.sliderABS.Value = 20;
  documentInWork.SavedPosition = 40'000;
  Play();
  EXPECT_EQ(file.Seeks.back(), 40'000);
}

TEST_F(TransportTest, SavedPositionBeyondTheEndIsCutToIt) {
  documentInWork.SavedPosition = 1'000'000;
  Play();
  EXPECT_EQ(file.Seeks.back(), 80'000);
}

TEST_F(TransportTest, PreviewBeforeItDoesNotCancelTheSavedPosition) {
  documentInWork.SavedPosition = 40'000;
  ASSERT_TRUE(preview.Prepare(loop, "/doc.wav"));
  ASSERT_EQ(preview.Start(), playback::Primed::Yes);
  loop.Advance(2s);
  Play();
  EXPECT_EQ(file.Seeks.back(), 40'000);
}

TEST_F(TransportTest, SavedPositionCountsForTheFirstPlayOnly) {
  documentInWork.SavedPosition = 40'000;
  Play();
  form.cmdStop.Press(By::Hand);
  documentInWork.CurrentSamplePosition = 8000;
  Play();
  EXPECT_EQ(file.Seeks.back(), 8000);
}

TEST_F(TransportTest, PlayIsRefusedWhileAListChangeWaits) {
  {
    const window::ListPause waiting(window.guards);
    Play();
    EXPECT_FALSE(engine.IsPlaying);
  }
  const window::ListTransition moving(window.guards);
  Play();
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(form.frmMain.Focused(), &form.txtFocus);
}

TEST_F(TransportTest, ButtonsDoNothingWhileADocumentIsBeingMoved) {
  StoppedAt(40'000);
  const window::ListTransition moving(window.guards);
  for (forms::Command* button :
       {&form.cmdRewind, &form.cmdForward, &form.cmdSkipBeg, &form.cmdSkipEnd, &form.cmdStop}) {
    button->Press(By::Hand);
  }
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 40'000);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(TransportTest, NegativeStatusLeavesPlaySilently) {
  file.InTrouble = true;
  Play();
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(documentInWork.DocumentPrimed);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(form.cmdSkip.Enabled);
}

TEST_F(TransportTest, DocumentThatCanNotBePlayedIsExplainedAndMayBeCompleted) {
  file.Sounds.clear();
  Play();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Unrecognized Audio Format");
  EXPECT_EQ(loop.Shown[0].text,
            "This file can not be played.\nYou may press Complete to remove it from the queue.");
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(TransportTest, DocumentThatIsGoneIsSaidToBeSoAndNotOfferedToComplete) {
  file.OutOfReach = {"/doc.wav"};
  form.cmdComplete.Enabled = true;
  Play();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - File Not Found");
  EXPECT_EQ(loop.Shown[0].text,
            "This file is no longer there, or its folder can not be reached.\n"
            "Press Refresh to see what waits.");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Information);
  EXPECT_EQ(form.lblFileLengthHMS.Value.Get(), "00:00:00");
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_FALSE(form.cmdSkip.Enabled);
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(TransportTest, DocumentInWorkThatIsOutOfReachCanBePlayedOnceItIsBack) {
  StoppedAt(40'000);
  engine.CloseFile();
  file.OutOfReach = {"/doc.wav"};
  form.cmdComplete.Enabled = true;
  form.cmdPlay.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - File Not Found");
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 40'000);

  file.OutOfReach.clear();
  form.cmdPlay.Press(By::Hand);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(file.Seeks.back(), 40'000);
}

TEST_F(TransportTest, PlayOpensTheDocumentAgainWhenAScanClosedIt) {
  Play();
  form.cmdStop.Press(By::Hand);
  engine.CloseFile();
  Play();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(file.OpenCount, 2);
}

TEST_F(TransportTest, DocumentInWorkThatWasClosedGoesOnWhereTheEarWas) {
  documentInWork.SavedPosition = 8000;
  StoppedAt(40'000);
  player.StatusAfterStart = -1;
  Play();
  ASSERT_FALSE(engine.IsPlaying);
  player.StatusAfterStart = 0;
  Play();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(file.Seeks.back(), 40'000);
}

TEST_F(TransportTest, PlayOfAMinimizedWindowKeepsThePlaceOfTheMiniPlayer) {
  config.txtMinimizeMiniPlayer.Value = "Y";
  window.PlayerLeftText = "3000";
  Play();
  form.cmdPlay.Press();
  EXPECT_EQ(window.PlayerLeftText, "3000");
  EXPECT_EQ(placesStored, 0);
}

TEST_F(TransportTest, WindBeyondAllMeasureStaysInTheDocument) {
  config.txtWindIncrement.Value = "-" + std::string(300, '9');
  StoppedAt(40'000);
  form.cmdRewind.Press(By::Hand);
  EXPECT_EQ(form.slPosition.Value, 100);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
}

TEST_F(TransportTest, WindOfANegativeDistanceStaysInTheDocumentToo) {
  config.txtWindIncrement.Value = "-3";
  StoppedAt(40'000);
  form.cmdForward.Press(By::Hand);
  loop.Advance(5s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 0);
  form.cmdRewind.Press(By::Hand);
  loop.Advance(5s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
}

TEST_F(TransportTest, PlayShrinksTheWindowToThePlayerWhereItLastStood) {
  window.PlayerLeftText = "3000";
  window.PlayerTopText = "1500";
  Play();
  EXPECT_FALSE(form.frameFiles.Visible);
  EXPECT_EQ(form.frmMain.Height, 840 + form.framePlayer.Height);
  EXPECT_EQ(form.frmMain.Left, 3000);
  EXPECT_EQ(form.frmMain.Top, 1500);
  EXPECT_EQ(placesStored, 0);
}

TEST_F(TransportTest, PlayInTheMiniPlayerRemembersItsPlace) {
  Play();
  form.frmMain.Left = 4500;
  form.frmMain.Top = 750;
  Play();
  EXPECT_EQ(window.PlayerLeftText, "4500");
  EXPECT_EQ(form.txtPlayerTop.Value.Get(), "750");
  EXPECT_EQ(placesStored, 1);
}

TEST_F(TransportTest, PlayMinimizesTheWindowWhenToldTo) {
  config.txtMinimizeMiniPlayer.Value = "Y";
  Play();
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Minimized);
}

TEST_F(TransportTest, RewindJumpsBackWithAToneAndGoesOnAfterASecond) {
  StoppedAt(60'000);
  form.cmdRewind.Press(By::Hand);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 36'000);
  EXPECT_EQ(form.slPosition.Value, 45);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:04");
  EXPECT_EQ(prompts, Prompts{"RewindTone"});
  loop.Advance(999ms);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 36'000);
  loop.Advance(1ms);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 12'000);
  EXPECT_EQ(prompts.size(), 2u);
}

TEST_F(TransportTest, RewindNearTheStartStopsAtZeroAndSaysRewindEnd) {
  StoppedAt(10'000);
  form.cmdRewind.Press(By::Hand);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 0);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:00");
  EXPECT_EQ(form.slPosition.Value, 0);
  EXPECT_EQ(prompts, Prompts{"RewindEnd"});
  EXPECT_FALSE(transport.tmrRewindForward.Enabled());
}

TEST_F(TransportTest, WindJumpThatLandsExactlyOnAnEndIsNotThereYet) {
  StoppedAt(48'000);
  form.cmdRewind.Press(By::Hand);
  loop.Advance(1s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 0);
  EXPECT_TRUE(transport.tmrRewindForward.Enabled());
  EXPECT_EQ(prompts.back(), "RewindTone");
  loop.Advance(1s);
  EXPECT_EQ(prompts.back(), "RewindEnd");
  EXPECT_FALSE(transport.tmrRewindForward.Enabled());
}

TEST_F(TransportTest, ForwardTickThatLandsExactlyOnTheEndIsNotThereYet) {
  StoppedAt(32'000);
  form.cmdComplete.Enabled = false;
  form.cmdForward.Press(By::Hand);
  loop.Advance(1s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
  EXPECT_EQ(form.slPosition.Value, 100);
  EXPECT_TRUE(transport.tmrRewindForward.Enabled());
  EXPECT_EQ(prompts, (Prompts{"ForwardTone", "ForwardTone"}));
  EXPECT_FALSE(form.cmdComplete.Enabled);
  loop.Advance(1s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
  EXPECT_EQ(prompts.back(), "ForwardEnd");
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_FALSE(transport.tmrRewindForward.Enabled());
}

TEST_F(TransportTest, RewindThatTheSliderDoesNotShowFreesTheWaysOutOfADocument) {
  // A jump of three seconds is less than half a percent of this one.
  Lay({.samples = 8'000'000, .rate = 8000});
  StoppedAt(8'000'000);
  const auto waysOut = {&form.cmdSkip, &form.cmdComplete, &form.cmdSave};
  for (forms::Command* way : waysOut) way->Enabled = false;
  form.cmdRewind.Press(By::Hand);
  ASSERT_EQ(form.slPosition.Value, 100);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 7'976'000);
  for (const forms::Command* way : waysOut) EXPECT_TRUE(way->Enabled) << way->Name;
}

TEST_F(TransportTest, RewindThatTheSliderShowsLeavesTheWaysOutAsTheyAre) {
  StoppedAt(80'000);
  const auto waysOut = {&form.cmdSkip, &form.cmdComplete, &form.cmdSave};
  for (forms::Command* way : waysOut) way->Enabled = false;
  form.cmdRewind.Press(By::Hand);
  ASSERT_EQ(form.slPosition.Value, 70);
  for (const forms::Command* way : waysOut) EXPECT_FALSE(way->Enabled) << way->Name;
}

TEST_F(TransportTest, ForwardOneJumpShortOfTheEndReportsTheEndAtOnce) {
  StoppedAt(56'000);
  form.cmdForward.Press(By::Hand);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:10");
  EXPECT_EQ(form.slPosition.Value, 100);
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(prompts, Prompts{"ForwardEnd"});
  EXPECT_FALSE(transport.tmrRewindForward.Enabled());
}

TEST_F(TransportTest, ForwardToTheEndRestoresAMinimizedWindowAtItsPlace) {
  window.PlayerLeftText = "1200";
  StoppedAt(20'000);
  form.frmMain.WindowShape = Shape::Minimized;
  form.cmdForward.Press();
  loop.Advance(1s);
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Minimized);
  loop.Advance(1s);
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Normal);
  EXPECT_EQ(form.frmMain.Left, 1200);
}

TEST_F(TransportTest, HeldWindAcceleratesAndFallsSilentAtItsFastest) {
  config.txtAccelerateWindIncrement.Value = "Y";
  config.txtWindIncrement.Value = "1";
  Lay({.samples = 8'000'000, .rate = 8000});
  StoppedAt(0);
  form.cmdForward.Press(By::Hand);
  const int expected[] = {1000, 1000, 750, 750, 750, 750, 600, 600, 600,
                          600,  600,  300, 300, 300, 300, 300, 300, 100};
  for (const int interval : expected) {
    loop.Advance(std::chrono::duration_cast<base::Duration>(transport.tmrRewindForward.Interval()));
    EXPECT_EQ(transport.tmrRewindForward.Interval(), std::chrono::milliseconds{interval})
        << transport.WindTickCount;
  }
  EXPECT_EQ(prompts.size(), 19u);
  loop.Advance(1s);
  EXPECT_EQ(prompts.size(), 19u);
  EXPECT_EQ(transport.WindTickCount, 28);
}

TEST_F(TransportTest, WindWithoutAccelerationKeepsItsSecond) {
  Lay({.samples = 8'000'000, .rate = 8000});
  StoppedAt(0);
  form.cmdForward.Press(By::Hand);
  loop.Advance(30s);
  EXPECT_EQ(transport.WindTickCount, 30);
  EXPECT_EQ(prompts.size(), 31u);
}

TEST_F(TransportTest, WindOfNoDistanceStillTicks) {
  config.txtWindIncrement.Value = "0";
  StoppedAt(40'000);
  form.cmdForward.Press(By::Hand);
  loop.Advance(3s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 40'000);
  EXPECT_EQ(transport.WindTickCount, 3);
}

TEST_F(TransportTest, StopEndsAWindAndKeepsThePosition) {
  StoppedAt(60'000);
  form.cmdRewind.Press(By::Hand);
  form.cmdStop.Press(By::Hand);
  loop.Advance(10s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 36'000);
  EXPECT_EQ(transport.WindDirection, Wind::None);
}

TEST_F(TransportTest, PlayKeyShowsStopWhileTheDocumentSoundsOrWinds) {
  EXPECT_FALSE(form.DeckRuns);
  Play();
  EXPECT_TRUE(form.DeckRuns);
  form.cmdStop.Press(By::Hand);
  EXPECT_FALSE(form.DeckRuns);
  documentInWork.CurrentSamplePosition = 40'000;
  form.cmdRewind.Press(By::Hand);
  EXPECT_TRUE(form.DeckRuns);
  form.cmdStop.Press(By::Hand);
  EXPECT_FALSE(form.DeckRuns);
}

TEST_F(TransportTest, SkipToBeginningForgetsThePedalsPresses) {
  StoppedAt(40'000);
  transport.LastRewindPressTime = 5;
  transport.LastForwardPressTime = 6;
  form.cmdSkipBeg.Press(By::Hand);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 0);
  EXPECT_EQ(prompts, Prompts{"RewindEnd"});
  EXPECT_EQ(transport.LastRewindPressTime, 0);
  EXPECT_EQ(transport.LastForwardPressTime, 0);
}

TEST_F(TransportTest, SkipToBeginningEndsAWindAndSaysRewindEnd) {
  StoppedAt(40'000);
  form.cmdForward.Press(By::Hand);
  form.cmdSkipBeg.Press(By::Hand);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 0);
  EXPECT_EQ(form.slPosition.Value, 0);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:00");
  EXPECT_EQ(transport.WindDirection, Wind::None);
  EXPECT_FALSE(form.DeckRuns);
  loop.Advance(5s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 0);
  EXPECT_EQ(prompts, (Prompts{"ForwardTone", "RewindEnd"}));
}

TEST_F(TransportTest, SkipToEndEndsAWindAndSaysForwardEnd) {
  StoppedAt(40'000);
  form.cmdRewind.Press(By::Hand);
  form.cmdSkipEnd.Press(By::Hand);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
  EXPECT_EQ(form.slPosition.Value, 100);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:10");
  EXPECT_EQ(transport.WindDirection, Wind::None);
  EXPECT_FALSE(form.DeckRuns);
  loop.Advance(5s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
  EXPECT_EQ(prompts, (Prompts{"RewindTone", "ForwardEnd"}));
}

TEST_F(TransportTest, SkipToEndRestoresAMinimizedWindowAndOffersComplete) {
  StoppedAt(0);
  form.frmMain.WindowShape = Shape::Minimized;
  form.cmdSkipEnd.Press();
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:10");
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Normal);
}

TEST_F(TransportTest, PlayAfterTheEndReachesTheEndAgain) {
  StoppedAt(80'000);
  Play();
  loop.Advance(100ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(prompts, Prompts{"ForwardEnd"});
}

}  // namespace
}  // namespace tavlo::test
