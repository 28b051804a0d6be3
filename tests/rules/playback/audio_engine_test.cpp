#include "playback/audio_engine.h"

#include <gtest/gtest.h>

#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using playback::Primed;
using playback::Side;

struct AudioEngineTest : testing::Test, PlaybackBench {};

TEST_F(AudioEngineTest, StartUpWithoutASoundCardSaysSoAndGoesOn) {
  player.Devices = 0;
  engine.InitializeNCTcontrol();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Sound Card");
  EXPECT_EQ(loop.Shown[0].text, "A sound card can not be found");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Critical);
  EXPECT_TRUE(config.DeviceCombo.Rows().empty());
}

TEST_F(AudioEngineTest, StartUpListsEveryDeviceOnceThoughItAsksForOneBeyondTheLast) {
  player.Devices = 2;
  engine.InitializeNCTcontrol();
  ASSERT_EQ(config.DeviceCombo.Rows().size(), 2u);
  EXPECT_EQ(config.DeviceCombo.TextAt(1, 0), "Device 1");
}

TEST_F(AudioEngineTest, StoredDeviceIsSelectedWhenTheListReachesIt) {
  player.Devices = 3;
  config.txtMixerSelection.Value = "1";
  engine.InitializeNCTcontrol();
  EXPECT_EQ(player.CurrentDevice(), 1);
}

TEST_F(AudioEngineTest, StoredDeviceBeyondTheListGivesTheFirst) {
  player.Devices = 2;
  config.txtMixerSelection.Value = "7";
  engine.InitializeNCTcontrol();
  EXPECT_EQ(player.CurrentDevice(), 0);
}

TEST_F(AudioEngineTest, StoredDeviceOfOneBeyondTheListGivesTheFirst) {
  player.Devices = 3;
  config.txtMixerSelection.Value = "3";
  engine.InitializeNCTcontrol();
  EXPECT_EQ(player.CurrentDevice(), 0);
}

TEST_F(AudioEngineTest, StoredDeviceBelowTheListGivesTheFirst) {
  player.Devices = 2;
  config.txtMixerSelection.Value = "-4294967295";
  engine.InitializeNCTcontrol();
  EXPECT_EQ(player.CurrentDevice(), 0);
}

TEST_F(AudioEngineTest, PrimingShowsTheLengthAndMeasuresTheDocument) {
  EXPECT_EQ(engine.Prime(), Primed::Yes);
  EXPECT_EQ(form.lblFileLengthHMS.Value.Get(), "00:00:10");
  EXPECT_EQ(documentInWork.FileLength, 80'000);
  EXPECT_EQ(documentInWork.SamplesPerSecond, 8000);
  EXPECT_EQ(engine.BufferSampleCount, 4000);
}

TEST_F(AudioEngineTest, SecondOfAnOddRateCountsWholeThousands) {
  Lay({.samples = 110'250, .rate = 11'025});
  EXPECT_EQ(engine.Prime(), Primed::Yes);
  EXPECT_EQ(documentInWork.SamplesPerSecond, 11'000);
  Lay({.samples = 220'500, .rate = 22'050});
  EXPECT_EQ(engine.Prime(), Primed::Yes);
  EXPECT_EQ(documentInWork.SamplesPerSecond, 22'000);
}

TEST_F(AudioEngineTest, DocumentOfLessThanAMillisecondIsEmpty) {
  Lay({.samples = 7, .rate = 8000});
  EXPECT_EQ(engine.Prime(), Primed::Empty);
  Lay({.samples = 0, .rate = 8000});
  EXPECT_EQ(engine.Prime(), Primed::Empty);
}

TEST_F(AudioEngineTest, NegativeStatusChangesNeitherPositionNorLength) {
  file.InTrouble = true;
  documentInWork.CurrentSamplePosition = 123;
  form.lblFileLengthHMS.Value = "00:00:07";
  EXPECT_EQ(engine.Prime(), Primed::Refused);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 123);
  EXPECT_EQ(form.lblFileLengthHMS.Value.Get(), "00:00:07");
}

TEST_F(AudioEngineTest, StartKeepsTwoBlocksInFlight) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(player.BlocksInFlight(), 2);
  loop.Advance(600ms);
  EXPECT_EQ(player.BlocksInFlight(), 2);
  EXPECT_EQ(player.Queued.size(), 3u);
}

TEST_F(AudioEngineTest, StartShowsThePositionAndFreesSpeedAndEqualizer) {
  for (const SampleCount samples : {80'000, 0}) {
    Lay({.samples = samples});
    static_cast<void>(engine.Prime());
    form.lblFilePositionHMS.Visible = false;
    const std::initializer_list<forms::Control*> freed = {&form.lblSpeed, &form.cmdEQ,
                                                          &form.cmdNormalSpeed};
    for (forms::Control* control : freed) control->Enabled = false;
    engine.StartPlay();
    EXPECT_EQ(engine.IsPlaying, samples > 0);
    EXPECT_TRUE(form.lblFilePositionHMS.Visible) << samples;
    for (const forms::Control* control : freed) {
      EXPECT_TRUE(control->Enabled) << control->Name << samples;
    }
    engine.StopPlay();
  }
}

TEST_F(AudioEngineTest, BlocksAtNormalSpeedAreTheFilesSamplesBitForBit) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(20s);
  std::vector<float> all;
  for (const SampleArray& block : player.Queued) {
    all.insert(all.end(), block.values.begin(), block.values.end());
  }
  ASSERT_EQ(all.size(), 80'000u);
  for (std::size_t i = 0; i < all.size(); ++i) ASSERT_EQ(all[i], static_cast<float>(i));
}

TEST_F(AudioEngineTest, NormalSpeedStillGoesThroughTheStretcher) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  ASSERT_EQ(transform.Calls.size(), 2u);
  EXPECT_EQ(transform.Calls[0].speedPercent, 100.0f);
  EXPECT_EQ(transform.Resets, 1);
}

TEST_F(AudioEngineTest, BothChannelsOfAStereoDocumentGoThroughTheStretcherAtOneSpeed) {
  Lay({.samples = 80'000, .rate = 8000, .channels = 2});
  engine.PlaySpeedPercent = 75;
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  ASSERT_EQ(transform.Calls.size(), 4u);
  EXPECT_EQ(transform.Calls[0].side, Side::Left);
  EXPECT_EQ(transform.Calls[1].side, Side::Right);
  EXPECT_EQ(transform.Calls[0].speedPercent, 75.0f);
  EXPECT_EQ(transform.Calls[1].speedPercent, 75.0f);
  EXPECT_EQ(player.Queued[0].channels, 2);
}

TEST_F(AudioEngineTest, DocumentWithoutSamplesDoesNotStart) {
  Lay({.samples = 0});
  static_cast<void>(file.OpenFile("/doc.wav"));
  engine.StartPlay();
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(player.Starts, 0);
}

TEST_F(AudioEngineTest, DeviceThatRefusesTheFormatLeadsToTheConfiguration) {
  player.TakesFormat = false;
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  EXPECT_FALSE(engine.IsPlaying);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Audio Hardware");
  EXPECT_EQ(loop.Shown[0].text,
            "The audio hardware currently selected does not support speed adjusted playback of "
            "this document\n\n\rPlease choose a different Audio Hardware selection from the Mixer "
            "tab of the Configuration menu and then try again");
  EXPECT_FALSE(form.frmMain.Visible);
  EXPECT_TRUE(config.frmConfiguration.Visible);
}

TEST_F(AudioEngineTest, NegativePlayerStatusClosesTheFileQuietly) {
  player.StatusAfterStart = -1;
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(AudioEngineTest, EndOfTheDocumentStopsOnceAndOffersComplete) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(9900ms);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(prompts.empty());
  loop.Advance(5s);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
  EXPECT_EQ(form.slPosition.Value, 100);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:10");
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(prompts, std::vector<std::string>{"ForwardEnd"});
}

TEST_F(AudioEngineTest, EndOfTheDocumentBringsAMinimizedWindowBackAtThePlayersHeight) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  form.frmMain.WindowShape = forms::Shape::Minimized;
  loop.Advance(11s);
  EXPECT_EQ(form.frmMain.WindowShape, forms::Shape::Normal);
  EXPECT_EQ(form.frmMain.Height, 840 + form.framePlayer.Height);
}

TEST_F(AudioEngineTest, BusyLoopOfThreeSecondsMakesAGapAndNoEnd) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(100ms);
  loop.Busy(3s);
  loop.Advance(500ms);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(prompts.empty());
  loop.Advance(10s);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(prompts.size(), 1u);
}

TEST_F(AudioEngineTest, StopLeavesThePositionWhereTheEarWas) {
  for (const int speed : {50, 100, 150}) {
    engine.PlaySpeedPercent = speed;
    documentInWork.CurrentSamplePosition = 8000;
    ASSERT_EQ(engine.Prime(), Primed::Yes);
    engine.StartPlay();
    loop.Advance(1234ms);
    engine.StopPlay();
    const double expected = 8000 + 1.234 * 8000 * speed / 100;
    EXPECT_NEAR(documentInWork.CurrentSamplePosition, expected, 0.02 * 8000) << speed;
  }
}

TEST_F(AudioEngineTest, LevelOfFortyOrLessShowsTheSameAsFortyOne) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  for (const double level : {0.0, 40.0, 41.0}) {
    player.Level = level;
    loop.Advance(60ms);
    EXPECT_EQ(form.MeterLeft.Value, 2) << level;
  }
  player.Level = 100;
  loop.Advance(60ms);
  EXPECT_EQ(form.MeterRight.Value, 100);
}

TEST_F(AudioEngineTest, StopEmptiesTheLevelBars) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(200ms);
  EXPECT_GT(form.MeterLeft.Value, 2);
  engine.StopPlay();
  EXPECT_EQ(form.MeterLeft.Value, 0);
  EXPECT_EQ(form.MeterRight.Value, 0);
}

TEST_F(AudioEngineTest, TimeLabelTrailsByTheHalfSecondAheadOfTheEar) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(3400ms);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:02");
  loop.Advance(200ms);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:03");
}

TEST_F(AudioEngineTest, TimerScalesTheTextWholeTheLabelInPartAndThePositionNotAtAll) {
  struct Case {
    int speed;
    SampleCount played;
    std::string text;
    int slider;
    double position;
    std::string label;
  };
  for (const Case& c : {Case{150, 16'000, "6000", 40, 32'000, "00:00:04"},
                        Case{50, 32'000, "3000", 60, 48'000, "00:00:03"}}) {
    ASSERT_EQ(engine.Prime(), Primed::Yes);
    engine.PlaySpeedPercent = c.speed;
    engine.PlayStartSample = 16'000;
    player.OnTimer(c.played, 70, 70);
    EXPECT_EQ(engine.FilePositionText, c.text);
    EXPECT_EQ(form.slPosition.Value, c.slider);
    EXPECT_EQ(documentInWork.CurrentSamplePosition, c.position);
    EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), c.label);
  }
}

TEST_F(AudioEngineTest, HeldSliderFreezesThePositionWhileTheTimeLabelGoesOn) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(1s);
  const int slider = form.slPosition.Value;
  const double before = documentInWork.CurrentSamplePosition;
  engine.SliderDragging = true;
  loop.Advance(3s);
  EXPECT_EQ(form.slPosition.Value, slider);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, before);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:03");
}

TEST_F(AudioEngineTest, PauseLeavesThePositionWhereTheEarWas) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(2s);
  engine.PausePlay();
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, 16'000, 160);
}

TEST_F(AudioEngineTest, StopOfAPausedDocumentLeavesNothingPaused) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  engine.PausePlay();
  engine.StopPlay();
  EXPECT_FALSE(engine.IsPaused);
}

TEST_F(AudioEngineTest, FileClosedUnderASoundingBlockLeavesTheSliderWhereItStood) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(2s);
  const int shown = form.slPosition.Value;
  engine.CloseFile();
  loop.Advance(100ms);
  EXPECT_EQ(form.slPosition.Value, shown);
}

TEST_F(AudioEngineTest, PauseKeepsPlayingStateAndGoesOnWhereTheEarWas) {
  ASSERT_EQ(engine.Prime(), Primed::Yes);
  engine.StartPlay();
  loop.Advance(2s);
  engine.PausePlay();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(engine.IsPaused);
  EXPECT_NEAR(engine.PlayStartSample, 16'000, 160);
  EXPECT_FALSE(player.IsRunning());
  engine.PausePlay();
  EXPECT_FALSE(engine.IsPaused);
  EXPECT_EQ(file.Seeks.back(), static_cast<SampleCount>(engine.PlayStartSample));
  EXPECT_TRUE(player.IsRunning());
}

}  // namespace
}  // namespace tavlo::test
