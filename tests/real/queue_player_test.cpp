#include "platform/sound/queue_player.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/player_bench.h"
#include "support/sound_analysis.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

struct QueuePlayerTest : testing::Test, PlayerBench {};

TEST_F(QueuePlayerTest, PlaysADocumentToItsEndWithOneEventForEachBlock) {
  pump.Load(Tone(440, 3.2, 16000));
  pump.Play();
  loop.Advance(5s);
  EXPECT_EQ(pump.Blocks, 7);
  EXPECT_EQ(pump.Requests, 7);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_NEAR(AudibleSeconds(device.Out), 3.2, 0.01);
  EXPECT_NEAR(Cents(PitchOf(device.Out), 440), 0, 1);
  EXPECT_LT(LargestStep(device.Out), 3 * SlopeOfTone(440, 0.5, 48000));
}

struct PlayerSpeeds : QueuePlayerTest, testing::WithParamInterface<int> {};

TEST_P(PlayerSpeeds, TellWhereTheEarIs) {
  pump.Load(Tone(440, 4, 16000));
  pump.SpeedPercent = static_cast<float>(GetParam());
  pump.Play();
  loop.Advance(1500ms);
  // The ear trails the device by 20 ms.
  EXPECT_NEAR(static_cast<double>(player.PlayedSamples()) / 16000, 1.48 * GetParam() / 100, 0.01);
  const double stopped = pump.Stop();
  EXPECT_NEAR(stopped / 16000, 1.505 * GetParam() / 100, 0.012);
  EXPECT_EQ(static_cast<double>(player.PlayedSamples()), stopped);
}

INSTANTIATE_TEST_SUITE_P(Percent, PlayerSpeeds, testing::Values(50, 100, 150));

TEST_F(QueuePlayerTest, TimerComesEvery50MillisecondsAndOnceAtTheStop) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(49ms);
  EXPECT_EQ(pump.Positions.size(), 0u);
  loop.Advance(1ms);
  EXPECT_EQ(pump.Positions.size(), 1u);
  loop.Advance(450ms);
  EXPECT_EQ(pump.Positions.size(), 10u);
  pump.Stop();
  EXPECT_EQ(pump.Positions.size(), 11u);
  loop.Advance(1s);
  EXPECT_EQ(pump.Positions.size(), 11u);
  EXPECT_NEAR(pump.LoudestLevel, 100 + 20 * std::log10(0.5), 0.1);
}

TEST_F(QueuePlayerTest, FeedSleepsUntilAReportOrTheEndOfABlock) {
  pump.Load(Tone(440, 8, 16000));
  pump.Play();
  loop.Advance(100ms);
  const int before = device.Looks;
  loop.Advance(5s);
  const int reports = 100;
  const int blocks = 10;
  EXPECT_GE(device.Looks - before, reports);
  // A block whose end was missed by a moment is looked at once more.
  EXPECT_LE(device.Looks - before, reports + 2 * blocks);
}

TEST_F(QueuePlayerTest, BlockIsAskedForSoonAfterItsEndAndTheEndIsToldSoonAfterTheLast) {
  pump.Load(Tone(440, 1, 16000));
  pump.Play();
  loop.Advance(515ms);
  EXPECT_EQ(pump.Requests, 1);
  loop.Advance(500ms);
  EXPECT_EQ(pump.Ends, 1);
}

TEST_F(QueuePlayerTest, NothingArrivesAfterAStop) {
  pump.Load(Tone(440, 1.5, 16000));
  pump.Play();
  loop.Advance(995ms);
  loop.Busy(15ms);
  device.CatchUp();
  const int requests = pump.Requests;
  pump.Stop();
  loop.Advance(5s);
  EXPECT_EQ(pump.Requests, requests);
  EXPECT_EQ(pump.Ends, 0);
}

TEST_F(QueuePlayerTest, LoopThatWasBusyMakesAGapAndNoEnd) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(700ms);
  loop.Busy(3s);
  device.CatchUp();
  loop.Advance(100ms);
  EXPECT_EQ(pump.Ends, 0);
  EXPECT_LT(player.PlayedSamples(), 16000 * 1.7);
  loop.Advance(3s);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_EQ(pump.Requests, pump.Blocks);
  EXPECT_EQ(Pauses(device.Out, 0.5).size(), 1u);
  EXPECT_LT(LargestStep(device.Out), 3 * SlopeOfTone(440, 0.5, 48000));
}

TEST_F(QueuePlayerTest, EmptyDocumentEndsAtOnce) {
  pump.Load(Sound{.rate = 16000});
  pump.Play();
  EXPECT_EQ(pump.Ends, 0);
  loop.Advance(50ms);
  EXPECT_EQ(pump.Ends, 1);
  loop.Advance(1s);
  EXPECT_EQ(pump.Ends, 1);
}

TEST_F(QueuePlayerTest, SeekGoesOnFromTheNewPlaceWithoutAClickAndDropsOldEvents) {
  pump.Load(Tone(440, 10, 16000));
  pump.Play();
  loop.Advance(700ms);
  EXPECT_EQ(pump.Requests, 1);
  pump.Seek(16000 * 5 + 9);
  EXPECT_EQ(player.PlayedSamples(), 0);
  loop.Advance(450ms);
  EXPECT_EQ(pump.Requests, 1);
  EXPECT_NEAR(pump.Positions.back() / 16000, 5.42, 0.02);
  EXPECT_LT(LargestStep(device.Out), 3 * SlopeOfTone(440, 0.5, 48000));
}

TEST_F(QueuePlayerTest, SeekToTheEndIsFollowedByTheEnd) {
  pump.Load(Tone(440, 10, 16000));
  pump.Play();
  loop.Advance(700ms);
  pump.Seek(160000);
  loop.Advance(50ms);
  EXPECT_EQ(pump.Ends, 1);
}

TEST_F(QueuePlayerTest, EndWaitsForAHandlerThatHasAMessageBoxOpen) {
  pump.Load(Tone(440, 1, 16000));
  player.OnEndArrayPlay = [&] {
    loop.Expect({.delay = 2s});
    loop.Show({.text = "?"});
    EXPECT_EQ(pump.Ends, 0);
  };
  pump.Play();
  loop.Advance(2450ms);
  EXPECT_EQ(pump.Requests, 1);
  EXPECT_EQ(loop.Shown.size(), 1u);
  loop.Advance(100ms);
  EXPECT_EQ(pump.Ends, 1);
}

TEST_F(QueuePlayerTest, StereoDocumentOfTheDevicesRatePassesToTheBit) {
  Sound stereo{.rate = 48000};
  for (int i = 0; i < 48000; ++i) {
    stereo.samples.insert(stereo.samples.end(), {0.3F, 0.2F});
  }
  pump.Load(stereo, 2);
  pump.Play();
  loop.Advance(500ms);
  EXPECT_EQ(device.Out.samples.at(20000), 0.3F);
}

TEST_F(QueuePlayerTest, MachineWithoutSoundStaysSilentAndSaysSoByItsStatus) {
  device.Names.clear();
  device.Reachable = false;
  platform::QueuePlayer silent(loop, device);
  EXPECT_EQ(silent.DeviceCount(), 0);
  EXPECT_FALSE(silent.DeviceHasMixer());
  EXPECT_EQ(silent.DeviceName(), "");
  silent.SetOutputFormat(8000, 1);
  EXPECT_EQ(silent.MillisecondsToSamples(500), 4000);
  EXPECT_EQ(silent.SamplesToMilliseconds(4000), 500);
  EXPECT_TRUE(silent.StartOutput());
  EXPECT_LT(silent.OpenStatus(), 0);
  silent.QueueArray({.values = {0.1F}});
  silent.ClearQueue();
  silent.StopOutput();
  silent.SelectDevice(0);
  silent.SetVolume(70000);
  EXPECT_EQ(silent.PlayedSamples(), 0);
}

TEST_F(QueuePlayerTest, DeviceThatDiesEndsTheSoundAndKeepsThePosition) {
  pump.Load(Tone(440, 10, 16000));
  pump.Play();
  loop.Advance(1s);
  device.Failed = true;
  device.Reachable = false;
  loop.Advance(5s);
  EXPECT_EQ(pump.Ends, 0);
  const auto reached = static_cast<double>(player.PlayedSamples());
  EXPECT_NEAR(reached / 16000, 1, 0.06);
  EXPECT_EQ(pump.Stop(), reached);
  EXPECT_FALSE(player.StartOutput());
  EXPECT_LT(player.OpenStatus(), 0);
  device.Reachable = true;
  EXPECT_TRUE(player.StartOutput());
  EXPECT_EQ(player.OpenStatus(), 0);
}

TEST_F(QueuePlayerTest, DeviceThatComesBackGoesOnWhereItStopped) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(1s);
  device.Failed = true;
  device.Reachable = false;
  loop.Advance(3s);
  device.Reachable = true;
  loop.Advance(1100ms);
  EXPECT_GT(player.PlayedSamples(), 16000);
  loop.Advance(4s);
  EXPECT_EQ(pump.Ends, 1);
}

TEST_F(QueuePlayerTest, DeviceThatRanDryUnderASoundIsOpenedAgainAndGoesOn) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(1s);
  device.RanDry = true;
  EXPECT_EQ(device.Opens, 1);
  loop.Advance(50ms);
  EXPECT_EQ(device.Opens, 2);
  loop.Advance(950ms);
  EXPECT_EQ(device.Opens, 2);
  EXPECT_NEAR(static_cast<double>(player.PlayedSamples()) / 16000, 2, 0.06);
  loop.Advance(3s);
  EXPECT_EQ(pump.Ends, 1);
}

TEST_F(QueuePlayerTest, DeviceThatRanDryInSilenceStaysAsItIs) {
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(1s);
  pump.Stop();
  device.RanDry = true;
  loop.Advance(1s);
  pump.Play();
  loop.Advance(1s);
  EXPECT_EQ(device.Opens, 1);
}

TEST_F(QueuePlayerTest, DeviceIsOpenedWithTheFormatAndGivenBackWhenIdle) {
  EXPECT_FALSE(device.IsOpen());
  pump.Load(Tone(440, 4, 16000));
  EXPECT_TRUE(device.IsOpen());
  pump.Play();
  loop.Advance(120s);
  EXPECT_TRUE(device.IsOpen());
  pump.Stop();
  loop.Advance(59s);
  EXPECT_TRUE(device.IsOpen());
  loop.Advance(1s);
  EXPECT_FALSE(device.IsOpen());
  EXPECT_TRUE(player.StartOutput());
  EXPECT_TRUE(device.IsOpen());
}

TEST_F(QueuePlayerTest, DeviceThatAPromptAloneHasOpenedIsGivenBackSoonBehindIt) {
  const Sound prompt = Tone(440, 2, 16000);
  playback::SampleArray block;
  block.values = prompt.samples;
  ASSERT_TRUE(player.PlayPrompt(block, 16000));
  EXPECT_TRUE(device.IsOpen());
  loop.Advance(2900ms);
  EXPECT_TRUE(device.IsOpen());
  loop.Advance(100ms);
  EXPECT_FALSE(device.IsOpen());

  pump.Load(Tone(440, 4, 16000));
  loop.Advance(30s);
  ASSERT_TRUE(player.PlayPrompt(block, 16000));
  loop.Advance(29s);
  EXPECT_TRUE(device.IsOpen()) << "it waits for the document's first sound";
  loop.Advance(1s);
  EXPECT_FALSE(device.IsOpen());
}

TEST_F(QueuePlayerTest, SelectionOfADeviceMovesTheSoundAndRefusesWhatIsNotThere) {
  EXPECT_EQ(player.DeviceCount(), 3);
  EXPECT_EQ(player.CurrentDevice(), 0);
  player.SelectDevice(3);
  EXPECT_FALSE(player.DeviceHasMixer());
  EXPECT_EQ(player.CurrentDevice(), 0);
  player.SelectDevice(1);
  EXPECT_TRUE(player.DeviceHasMixer());
  EXPECT_EQ(player.DeviceName(), "Headset");
  EXPECT_EQ(device.Opens, 0);
  pump.Load(Tone(440, 4, 16000));
  EXPECT_EQ(device.OpenIndex, 1);
  pump.Play();
  loop.Advance(1s);
  player.SelectDevice(2);
  EXPECT_EQ(device.OpenIndex, 2);
  loop.Advance(1s);
  EXPECT_NEAR(static_cast<double>(player.PlayedSamples()) / 16000, 1.98, 0.03);
}

TEST_F(QueuePlayerTest, DeviceThatComesStandsBehindTheOthersAndCanBeSelected) {
  player.AddDevices({"Speakers", "Monitor", "Headset"});
  EXPECT_EQ(player.DeviceNames(),
            (std::vector<std::string>{"System default", "Headset", "Speakers", "Monitor"}));
  player.AddDevices({"Second monitor", "Monitor"});
  ASSERT_EQ(player.DeviceCount(), 5);
  player.SelectDevice(4);
  EXPECT_EQ(player.DeviceName(), "Second monitor");
  pump.Load(Tone(440, 4, 16000));
  EXPECT_EQ(device.OpenIndex, 4);
}

TEST(DeviceNames, OfSeveralDevicesOfOneNameEachIsListed) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(platform::WithNewNames({"default", "Headset"}, {"Headset", "Headset"}),
            (Names{"default", "Headset", "Headset"}));
  EXPECT_EQ(platform::WithNewNames({"default", "Headset", "Headset"}, {"Headset"}),
            (Names{"default", "Headset", "Headset"}));
  EXPECT_EQ(platform::WithNewNames({}, {}), Names{});
}

TEST_F(QueuePlayerTest, VolumeIsLinearInAmplitude) {
  player.SetVolume(65535 / 4);
  pump.Load(Tone(440, 4, 16000));
  pump.Play();
  loop.Advance(1s);
  float peak = 0;
  for (const float value : device.Out.samples) peak = std::max(peak, value);
  EXPECT_NEAR(peak, 0.125, 0.001);
}

}  // namespace
}  // namespace tavlo::test
