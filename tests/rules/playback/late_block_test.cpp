#include <gtest/gtest.h>

#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using playback::Primed;

/// A document whose folder gives its blocks late, or stops giving any.
struct LateBlockTest : testing::Test, PlaybackBench {
  void Start(double sample = 0) {
    ASSERT_EQ(engine.Prime(), Primed::Yes);
    documentInWork.DocumentPrimed = true;
    documentInWork.CurrentSamplePosition = sample;
    engine.StartPlay();
  }
  /// Eight tenths of a second are in flight when the folder stops to answer.
  void StallInMidPlay() {
    Start();
    loop.Advance(1200ms);
    file.Stall();
  }
  std::string Notice() const { return form.lblNotice.Value.Get(); }
  void ExpectEveryBlockOnceFrom(double sample) {
    for (const SampleArray& block : player.Queued) {
      EXPECT_EQ(block.sourceBegin, sample);
      sample = block.sourceEnd;
    }
  }
  static constexpr double kStalledAt = 16'000;
  static constexpr const char* kLate =
      "The sound of this document is late. It plays on when its folder answers.";
};

TEST_F(LateBlockTest, BlockThatStaysAwayIsAGapAndNoEnd) {
  StallInMidPlay();
  loop.Advance(60s);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(player.BlocksInFlight(), 0);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, kStalledAt, 1);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_TRUE(prompts.empty());
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(LateBlockTest, PlayingGoesOnWhereTheEarWasWhenTheFolderAnswers) {
  StallInMidPlay();
  loop.Advance(60s);
  file.GoOn();
  EXPECT_EQ(player.BlocksInFlight(), 2);
  loop.Advance(1s);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, kStalledAt + 8000, 500);
  loop.Advance(20s);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(prompts, std::vector<std::string>{"ForwardEnd"});
  ExpectEveryBlockOnceFrom(0);
  EXPECT_EQ(player.Queued.back().sourceEnd, 80'000);
}

TEST_F(LateBlockTest, BlocksThatAreLateAtNormalSpeedAreTheFilesSamplesBitForBit) {
  file.TakeTime(loop, 700ms);
  Start();
  loop.Advance(60s);
  std::vector<float> all;
  for (const SampleArray& block : player.Queued) {
    all.insert(all.end(), block.values.begin(), block.values.end());
  }
  ASSERT_EQ(all.size(), 80'000u);
  for (std::size_t i = 0; i < all.size(); ++i) ASSERT_EQ(all[i], static_cast<float>(i));
  EXPECT_GT(file.LateBlocks, 20);
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

TEST_F(LateBlockTest, BlockThatIsLateByLessThanWhatIsInFlightIsNotHeard) {
  file.TakeTime(loop, 300ms);
  Start();
  loop.Advance(300ms);
  EXPECT_EQ(player.BlocksInFlight(), 1);
  loop.Advance(9990ms);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(100ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

TEST_F(LateBlockTest, PressOnAStalledDocumentIsSilenceAndTheLineSaysSoAfterTwoSeconds) {
  file.Stall();
  Play();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdStop.Enabled);
  loop.Advance(1999ms);
  EXPECT_EQ(Notice(), "");
  loop.Advance(1ms);
  EXPECT_EQ(Notice(), kLate);
  EXPECT_TRUE(form.lblNotice.Visible);
  EXPECT_TRUE(player.Queued.empty());
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(LateBlockTest, GapInMidPlayIsSaidAfterTwoSecondsOfSilence) {
  StallInMidPlay();
  // Until then the two blocks in flight are heard.
  loop.Advance(800ms + 1990ms);
  EXPECT_EQ(Notice(), "");
  loop.Advance(20ms);
  EXPECT_EQ(Notice(), kLate);
}

TEST_F(LateBlockTest, LineGoesWhenTheSoundComes) {
  StallInMidPlay();
  loop.Advance(10s);
  ASSERT_EQ(Notice(), kLate);
  file.GoOn();
  EXPECT_EQ(Notice(), "");
  EXPECT_FALSE(form.lblNotice.Visible);
  loop.Advance(5s);
  EXPECT_EQ(Notice(), "");
}

TEST_F(LateBlockTest, LineGoesWithTheStopAndComesNoMore) {
  StallInMidPlay();
  loop.Advance(10s);
  form.cmdStop.Enabled = true;
  transport.StopCommand();
  EXPECT_EQ(Notice(), "");
  loop.Advance(10s);
  EXPECT_EQ(Notice(), "");
}

TEST_F(LateBlockTest, LineThatACommandClearedIsSaidAgainWhileTheGapLasts) {
  StallInMidPlay();
  loop.Advance(10s);
  window.ForgetNotice();
  loop.Advance(2s);
  EXPECT_EQ(Notice(), kLate);
}

TEST_F(LateBlockTest, StopDuringAGapLeavesThePositionWhereTheEarWasAndForgetsTheBlock) {
  StallInMidPlay();
  loop.Advance(5s);
  transport.StopCommand();
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(player.IsRunning());
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, kStalledAt, 1);
  const std::size_t queued = player.Queued.size();
  file.GoOn();
  loop.Advance(5s);
  EXPECT_EQ(player.Queued.size(), queued);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(LateBlockTest, PlayAfterAStopDuringAGapTakesUpWhereTheEarWas) {
  StallInMidPlay();
  loop.Advance(5s);
  transport.StopCommand();
  file.GoOn();
  player.Queued.clear();
  Play();
  ASSERT_EQ(player.Queued.size(), 2u);
  ExpectEveryBlockOnceFrom(kStalledAt);
}

TEST_F(LateBlockTest, PlayOnADocumentThatIsStalledYetIsSilenceFromTheSamePlace) {
  StallInMidPlay();
  loop.Advance(5s);
  transport.StopCommand();
  player.Queued.clear();
  Play();
  loop.Advance(30s);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, kStalledAt, 1);
  file.GoOn();
  loop.Advance(400ms);
  ExpectEveryBlockOnceFrom(kStalledAt);
  EXPECT_EQ(player.BlocksInFlight(), 2);
}

TEST_F(LateBlockTest, SeekDuringAGapForgetsTheBlocksOfTheOldPlace) {
  StallInMidPlay();
  loop.Advance(5s);
  player.Queued.clear();
  form.slPosition.Enabled = true;
  form.slPosition.Press();
  form.slPosition.Change(50);
  form.slPosition.Release();
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 40'000);
  loop.Advance(5s);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 40'000);
  file.GoOn();
  EXPECT_EQ(player.Queued.size(), 2u);
  loop.Advance(20s);
  ExpectEveryBlockOnceFrom(40'000);
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

TEST_F(LateBlockTest, WindDuringAGapGoesFromWhereTheEarWas) {
  StallInMidPlay();
  loop.Advance(5s);
  transport.RewindCommand();
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, 0, 1);
  transport.ForwardCommand();
  loop.Advance(1s);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, 48'000, 1);
  EXPECT_EQ(Notice(), "");
  transport.StopCommand();
  file.GoOn();
  player.Queued.clear();
  Play();
  loop.Advance(100ms);
  ExpectEveryBlockOnceFrom(48'000);
}

TEST_F(LateBlockTest, GapShortBeforeTheEndEndsWhenTheRestWasHeard) {
  Start();
  loop.Advance(8700ms);
  file.Stall();
  loop.Advance(60s);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, 76'000, 1);
  file.GoOn();
  loop.Advance(400ms);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(200ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(player.FurthestHeard, 80'000);
}

TEST_F(LateBlockTest, StallBehindTheLastBlockIsNoGap) {
  Start();
  loop.Advance(9200ms);
  ASSERT_EQ(player.Queued.back().sourceEnd, 80'000);
  file.Stall();
  loop.Advance(1s);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

TEST_F(LateBlockTest, CompleteIsNotOfferedAfterAGapThatNeverEnded) {
  StallInMidPlay();
  loop.Advance(120s);
  transport.StopCommand();
  loop.Advance(10s);
  engine.CloseFile();
  loop.Advance(10s);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(LateBlockTest, LateReadThatFailsIsAnEndThatWasNotHeard) {
  StallInMidPlay();
  loop.Advance(5s);
  file.Sounds["/doc.wav"].readable = 16'000;
  file.GoOn();
  loop.Advance(100ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(Notice(), "The rest of this document can not be read.");
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, kStalledAt, 1);
}

TEST_F(LateBlockTest, LateReadThatThrowsIsAnEndThatWasNotHeard) {
  StallInMidPlay();
  loop.Advance(5s);
  file.ReadThrows = true;
  file.GoOn();
  loop.Advance(100ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(Notice(), "The rest of this document can not be read.");
}

TEST_F(LateBlockTest, PreviewThatStallsEndsByItsTimerAndOffersNothing) {
  ASSERT_TRUE(preview.Prepare(loop, "/doc.wav"));
  file.Stall();
  ASSERT_EQ(preview.Start(), Primed::Yes);
  loop.Advance(5999ms);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(Notice(), kLate);
  loop.Advance(1ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(Notice(), "");
  EXPECT_FALSE(form.cmdComplete.Enabled);
  file.GoOn();
  loop.Advance(10s);
  EXPECT_TRUE(player.Queued.empty());
}

TEST_F(LateBlockTest, AnotherDocumentDuringAGapIsHeardAndNothingOfTheOldOne) {
  StallInMidPlay();
  loop.Advance(5s);
  file.Sounds["/other.wav"] = {.samples = 24'000};
  ASSERT_TRUE(preview.Prepare(loop, "/other.wav"));
  player.Queued.clear();
  file.GoOn();
  ASSERT_EQ(preview.Start(), Primed::Yes);
  loop.Advance(500ms);
  ExpectEveryBlockOnceFrom(0);
  EXPECT_EQ(Notice(), "");
}

TEST_F(LateBlockTest, BlockThatComesWhileTheLoopOnlyBreathesIsHeard) {
  StallInMidPlay();
  loop.Advance(5s);
  file.GoOnUntold();
  loop.Busy(60ms);
  loop.Breathe();
  EXPECT_EQ(player.BlocksInFlight(), 2);
}

TEST_F(LateBlockTest, PauseDuringAGapForgetsTheBlockAndGoesOnFromTheEar) {
  StallInMidPlay();
  loop.Advance(5s);
  engine.PausePlay();
  file.GoOn();
  player.Queued.clear();
  loop.Advance(5s);
  EXPECT_TRUE(player.Queued.empty());
  engine.PausePlay();
  ExpectEveryBlockOnceFrom(kStalledAt);
  EXPECT_EQ(player.BlocksInFlight(), 2);
}

TEST_F(LateBlockTest, FileClosedDuringAGapEndsThereAndSaysSo) {
  StallInMidPlay();
  loop.Advance(5s);
  engine.CloseFile();
  loop.Advance(100ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_EQ(Notice(), "The rest of this document can not be read.");
}

TEST_F(LateBlockTest, BlockThatBeginsElsewhereThanTheSeekSaidTellsThePosition) {
  file.Stall();
  file.LandsAt = 39'000;
  Start(40'000);
  loop.Advance(1s);
  EXPECT_EQ(engine.PlayStartSample, 40'000);
  file.GoOn();
  EXPECT_EQ(engine.PlayStartSample, 39'000);
  loop.Advance(1s);
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, 47'000, 500);
}

TEST_F(LateBlockTest, DeckWithoutALateBlockHasNoTimerForIt) {
  StallInMidPlay();
  loop.Advance(5s);
  file.GoOn();
  loop.Advance(30s);
  ASSERT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(loop.Timers().NextDue().has_value());
}

}  // namespace
}  // namespace tavlo::test
