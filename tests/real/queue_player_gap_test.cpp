#include <gtest/gtest.h>

#include "support/player_bench.h"
#include "support/sound_analysis.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

/// Silence in the middle of a document: a block that is late, or a hush.
struct QueuePlayerGapTest : testing::Test, PlayerBench {};

double SoundingSeconds(const Sound& sound) {
  double silent = 0;
  for (const Extent& pause : Pauses(sound, 0.1)) {
    silent += static_cast<double>(pause.end - pause.begin) / sound.rate;
  }
  return AudibleSeconds(sound) - silent;
}

TEST_F(QueuePlayerGapTest, RequestThatIsHeldOpenIsAGapAndNoEnd) {
  pump.Load(Tone(440, 3.2, 16000));
  pump.Play();
  loop.Advance(700ms);
  pump.HoldBack();
  loop.Advance(60s);
  EXPECT_EQ(pump.Ends, 0);
  EXPECT_EQ(pump.Requests, 3);
  // The resampler keeps a millisecond for its join with the block that is still to come.
  EXPECT_NEAR(static_cast<double>(player.PlayedSamples()), 1.5 * 16000, 32);
  pump.LetCome();
  loop.Advance(1s);
  EXPECT_NEAR(static_cast<double>(player.PlayedSamples()) / 16000, 2.48, 0.02);
  loop.Advance(2s);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_EQ(pump.Requests, pump.Blocks);
  EXPECT_NEAR(SoundingSeconds(device.Out), 3.2, 0.02);
  EXPECT_LT(LargestStep(device.Out), 3 * SlopeOfTone(440, 0.5, 48000));
}

TEST_F(QueuePlayerGapTest, OpenRequestThatBringsNoBlockIsFollowedByTheEnd) {
  pump.Load(Tone(440, 1, 16000));
  pump.Play();
  pump.HoldBack();
  loop.Advance(30s);
  EXPECT_EQ(pump.Ends, 0);
  EXPECT_EQ(player.PlayedSamples(), 16000);
  pump.LetCome();
  loop.Advance(20ms);
  EXPECT_EQ(pump.Ends, 1);
}

TEST_F(QueuePlayerGapTest, GapOfAnOpenRequestWakesThePlayerForItsReportsOnly) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  pump.HoldBack();
  loop.Advance(2s);
  const int before = device.Looks;
  loop.Advance(5s);
  EXPECT_LE(device.Looks - before, 101);
}

TEST_F(QueuePlayerGapTest, StartSeekAndStopForgetThatARequestWasOpen) {
  for (const int way : {0, 1, 2}) {
    SCOPED_TRACE(way);
    pump.Load(Tone(440, 1, 16000));
    pump.Play();
    player.HoldRequestOpen(true);
    if (way == 0) pump.Play();
    if (way == 1) pump.Seek(16000);
    if (way == 2) pump.Stop();
    const int ends = pump.Ends;
    loop.Advance(2s);
    EXPECT_EQ(pump.Ends - ends, way == 2 ? 0 : 1);
    pump.Stop();
    pump.Ends = 0;
  }
}

TEST_F(QueuePlayerGapTest, HushIsSilenceWithoutAClickAndKeepsThePlaceAndTheQueue) {
  pump.Load(Tone(440, 6, 16000));
  pump.Play();
  loop.Advance(1200ms);
  const int requests = pump.Requests;
  player.Silence();
  loop.Advance(10s);
  EXPECT_EQ(pump.Requests, requests);
  EXPECT_EQ(pump.Ends, 0);
  EXPECT_NEAR(SoundingSeconds(device.Out), 1.205, 0.006);
  EXPECT_NEAR(static_cast<double>(player.PlayedSamples()) / 16000, 1.205, 0.006);
  EXPECT_LT(LargestStep(device.Out), 3 * SlopeOfTone(440, 0.5, 48000));
  const auto stood = static_cast<double>(player.PlayedSamples());
  EXPECT_EQ(pump.Stop(), stood);
}

TEST_F(QueuePlayerGapTest, HushEndsWithTheNextStartAndNothingIsHeardTwice) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(1200ms);
  player.Silence();
  loop.Advance(1s);
  pump.Stop();
  loop.Advance(1s);
  pump.Play();
  loop.Advance(5s);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_NEAR(SoundingSeconds(device.Out), 4, 0.02);
  EXPECT_EQ(Pauses(device.Out, 0.5).size(), 1u);
}

TEST_F(QueuePlayerGapTest, SeekEndsAHush) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(1s);
  player.Silence();
  loop.Advance(1s);
  pump.Seek(48000);
  loop.Advance(2s);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_NEAR(SoundingSeconds(device.Out), 2, 0.02);
}

TEST_F(QueuePlayerGapTest, HushIsSilenceThroughADeviceThatComesBack) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(1s);
  player.Silence();
  loop.Advance(50ms);
  const double heard = AudibleSeconds(device.Out);
  device.Failed = true;
  loop.Advance(3s);
  EXPECT_EQ(device.Opens, 2);
  EXPECT_EQ(AudibleSeconds(device.Out), heard);
}

TEST_F(QueuePlayerGapTest, HushOfAPlayerThatIsStillSilencesNothingThatComes) {
  player.Silence();
  pump.Load(Tone(440, 1, 16000));
  player.Silence();
  pump.Play();
  loop.Advance(2s);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_NEAR(AudibleSeconds(device.Out), 1, 0.01);
}

TEST_F(QueuePlayerGapTest, PromptSoundsThroughAHush) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(1s);
  player.Silence();
  loop.Advance(1s);
  const Sound prompt = Tone(440, 0.5, 16000);
  playback::SampleArray block;
  block.values = prompt.samples;
  ASSERT_TRUE(player.PlayPrompt(block, 16000));
  loop.Advance(1s);
  EXPECT_NEAR(SoundingSeconds(device.Out), 1.505, 0.02);
}

}  // namespace
}  // namespace tavlo::test
