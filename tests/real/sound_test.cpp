#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <numbers>
#include <string>

#include "platform/sound/cubeb_player.h"
#include "platform/sound/soundtouch_transform.h"
#include "support/plain_loop.h"
#include "support/sound_analysis.h"
#include "support/sound_pump.h"
#include "support/sound_recorder.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

constexpr int kRate = 16000;
/// How long after a stop the recording has everything.
constexpr base::Duration kTail = 600ms;

/// A server and its recording, which start slowly, for all tests; a player for each.
struct SoundTest : testing::Test {
  static void SetUpTestSuite() {
    server = std::make_unique<SoundServer>();
    recorder = std::make_unique<SoundRecorder>();
    ready = server->Start() && recorder->Start();
  }
  static void TearDownTestSuite() {
    recorder.reset();
    server.reset();
  }
  void SetUp() override {
    ASSERT_TRUE(ready) << "the sound server or its recorder did not start";
    player = std::make_unique<platform::CubebPlayer>(loop);
    pump = std::make_unique<SoundPump>(*player, transform);
    Listen();
  }

  void Listen() { listenedFrom = recorder->Seconds(); }
  Sound Heard() { return recorder->Since(listenedFrom); }

  void PlayToTheEnd(const Sound& document, float percent) {
    pump->Load(document);
    pump->SpeedPercent = percent;
    pump->Ends = 0;
    pump->Play();
    ASSERT_TRUE(loop.WaitUntil([&] { return pump->Ends > 0; }, 30s));
    pump->Stop();
  }

  /// What was heard of `play`. A machine that is too busy to serve its sound device stutters, and
  /// no player can help it; so a recording with clicks is taken again, up to three times in all. A
  /// click of our own would be in each.
  Sound HeardOf(const std::function<void()>& play) {
    Sound heard;
    for (int tries = 0; tries < 3; ++tries) {
      Listen();
      play();
      loop.Wait(kTail);
      heard = Heard();
      if (LargestStep(heard) < 3 * SlopeOfTone(440, 0.5, heard.rate)) break;
    }
    return heard;
  }

  static std::unique_ptr<SoundServer> server;
  static std::unique_ptr<SoundRecorder> recorder;
  static bool ready;
  PlainLoop loop;
  platform::SoundTouchTransform transform;
  std::unique_ptr<platform::CubebPlayer> player;
  std::unique_ptr<SoundPump> pump;
  double listenedFrom = 0;
};

std::unique_ptr<SoundServer> SoundTest::server;
std::unique_ptr<SoundRecorder> SoundTest::recorder;
bool SoundTest::ready = false;

void ExpectNoClick(const Sound& sound) {
  const double slope = SlopeOfTone(440, 0.5, sound.rate);
  EXPECT_LT(LargestStep(sound), 3 * slope);
  testing::Test::RecordProperty("steps_per_slope", std::to_string(LargestStep(sound) / slope));
}

struct SpokenSpeeds : SoundTest, testing::WithParamInterface<int> {};

TEST_P(SpokenSpeeds, KeepPitchAndLengthAndDoNotClick) {
  constexpr double kSeconds = 4.2;
  const Sound heard =
      HeardOf([&] { PlayToTheEnd(Tone(440, kSeconds, kRate), static_cast<float>(GetParam())); });
  const double cents = Cents(PitchOf(heard), 440);
  const double document = AudibleSeconds(heard) * GetParam() / 100;
  EXPECT_NEAR(cents, 0, 3);
  EXPECT_NEAR(document, kSeconds, 0.01 * kSeconds);
  EXPECT_TRUE(Pauses(heard, 0.005).empty());
  ExpectNoClick(heard);
  RecordProperty("cents", std::to_string(cents));
  RecordProperty("seconds", std::to_string(document));
}

/// The pitch of the document climbs with its time, so that the last sound tells where it ended.
constexpr double kLowest = 300;
constexpr double kHertzPerSecond = 100;

Sound Sweep(double seconds) {
  Sound sweep{.rate = kRate};
  double phase = 0;
  for (int i = 0; i < seconds * kRate; ++i) {
    phase += 2 * std::numbers::pi * (kLowest + kHertzPerSecond * i / kRate) / kRate;
    sweep.samples.push_back(static_cast<float>(0.5 * std::sin(phase)));
  }
  return sweep;
}

TEST_P(SpokenSpeeds, LeaveThePositionWhereTheEarWas) {
  const double speed = GetParam() / 100.0;
  pump->Load(Sweep(8));
  pump->SpeedPercent = static_cast<float>(GetParam());
  pump->Play();
  loop.Wait(2300ms);
  const double stopped = pump->Stop() / kRate;
  loop.Wait(kTail);
  const Sound heard = Heard();
  // The pitch of the last 100 ms is that of their middle.
  const double end = static_cast<double>(Audible(heard, 0.02F).end) / heard.rate;
  const double pitch = PitchOf(heard.Between(end - 0.105, end - 0.005));
  const double ear = (pitch - kLowest) / kHertzPerSecond + 0.055 * speed;
  EXPECT_NEAR(stopped, ear, 0.020);
  RecordProperty("off_ms", std::to_string((stopped - ear) * 1000));
}

INSTANTIATE_TEST_SUITE_P(Percent, SpokenSpeeds, testing::Values(50, 75, 100, 125, 150));

TEST_F(SoundTest, StopAndSeekAndVolumeDoNotClick) {
  const Sound heard = HeardOf([&] {
    player->SetVolume(65535);
    pump->Load(Tone(440, 10, kRate));
    pump->SpeedPercent = 100;
    pump->Play();
    loop.Wait(730ms);
    pump->Seek(kRate * 4 + 11);
    loop.Wait(600ms);
    pump->SpeedPercent = 70;
    pump->Seek(kRate * 2 + 5);
    loop.Wait(700ms);
    player->SetVolume(20000);
    loop.Wait(200ms);
    pump->Stop();
  });
  ExpectNoClick(heard);
  EXPECT_TRUE(Pauses(heard, 0.03).empty());
  EXPECT_NEAR(AudibleSeconds(heard), 2.23, 0.06);
}

TEST_F(SoundTest, StopIsQuickAndSilent) {
  pump->Load(Tone(440, 10, kRate));
  pump->Play();
  loop.Wait(1s);
  const auto before = loop.Now();
  pump->Stop();
  EXPECT_LT(loop.Now() - before, 40ms);
  loop.Wait(kTail);
  EXPECT_NEAR(AudibleSeconds(Heard()), 1.0, 0.06);
}

TEST_F(SoundTest, PrimedDeviceSoundsAtOnceAndStopsAtOnce) {
  pump->Load(Tone(440, 10, kRate));
  loop.Wait(500ms);
  const double before = recorder->Seconds() - listenedFrom;
  pump->Play();
  loop.Wait(500ms);
  const double beforeStop = recorder->Seconds() - listenedFrom;
  pump->Stop();
  loop.Wait(kTail);
  const Sound heard = Heard();
  const Extent extent = Audible(heard);
  const double onset = static_cast<double>(extent.begin) / heard.rate - before;
  const double offset = static_cast<double>(extent.end) / heard.rate - beforeStop;
  EXPECT_LT(onset, 0.06);
  EXPECT_LT(offset, 0.06);
  RecordProperty("onset_ms", std::to_string(onset * 1000));
  RecordProperty("offset_ms", std::to_string(offset * 1000));
}

TEST_F(SoundTest, LoopThatIsBusyForThreeSecondsMakesAGapAndNoEnd) {
  const Sound heard = HeardOf([&] {
    pump->Load(Tone(440, 3, kRate));
    pump->Ends = 0;
    pump->Play();
    loop.Wait(700ms);
    Sleep(3s);
    loop.Wait(100ms);
    EXPECT_EQ(pump->Ends, 0);
    EXPECT_TRUE(loop.WaitUntil([&] { return pump->Ends > 0; }, 10s));
    pump->Stop();
  });
  EXPECT_EQ(Pauses(heard, 1).size(), 1u);
  ExpectNoClick(heard);
}

TEST_F(SoundTest, DevicesAreListedBehindTheDefault) {
  ASSERT_EQ(player->DeviceCount(), 2);
  EXPECT_EQ(player->CurrentDevice(), 0);
  EXPECT_EQ(player->DeviceName(), "System default");
  player->SelectDevice(1);
  EXPECT_TRUE(player->DeviceHasMixer());
  EXPECT_NE(player->DeviceName().find("ull"), std::string::npos) << player->DeviceName();
  player->SelectDevice(2);
  EXPECT_FALSE(player->DeviceHasMixer());
  EXPECT_EQ(player->CurrentDevice(), 1);
  PlayToTheEnd(Tone(440, 0.5, kRate), 100);
  loop.Wait(kTail);
  EXPECT_NEAR(AudibleSeconds(Heard()), 0.5, 0.02);
}

TEST(SoundWithoutAServer, SaysSoAtTheStartWithoutAFaultAndStaysCalm) {
  SoundServer::HideServers();
  PlainLoop loop;
  platform::CubebPlayer player(loop);
  EXPECT_EQ(player.DeviceCount(), 0);
  player.SetOutputFormat(kRate, 1);
  EXPECT_TRUE(player.StartOutput());
  EXPECT_LT(player.OpenStatus(), 0);
  player.StopOutput();
  EXPECT_EQ(player.PlayedSamples(), 0);
}

TEST(SoundOfADyingServer, EndsAndKeepsThePositionAndComesBackWithIt) {
  SoundServer server;
  ASSERT_TRUE(server.Start());
  auto recorder = std::make_unique<SoundRecorder>();
  ASSERT_TRUE(recorder->Start());
  PlainLoop loop;
  platform::CubebPlayer player(loop);
  platform::SoundTouchTransform transform;
  SoundPump pump(player, transform);
  pump.Load(Tone(440, 30, kRate));
  pump.Play();
  loop.Wait(1500ms);
  server.Kill();
  loop.Wait(300ms);
  const auto reached = player.PlayedSamples();
  EXPECT_NEAR(static_cast<double>(reached), 1.5 * kRate, 0.1 * kRate);
  loop.Wait(1500ms);
  EXPECT_EQ(player.PlayedSamples(), reached);
  EXPECT_EQ(pump.Ends, 0);
  const auto before = loop.Now();
  EXPECT_EQ(pump.Stop(), static_cast<double>(reached));
  EXPECT_FALSE(player.StartOutput());
  EXPECT_LT(player.OpenStatus(), 0);
  EXPECT_LT(loop.Now() - before, 1s);

  ASSERT_TRUE(server.Start());
  recorder = std::make_unique<SoundRecorder>();
  ASSERT_TRUE(recorder->Start());
  pump.Play();
  EXPECT_EQ(player.OpenStatus(), 0);
  loop.Wait(1s);
  EXPECT_NEAR(static_cast<double>(player.PlayedSamples()), kRate, 0.1 * kRate);
  pump.Stop();
  loop.Wait(kTail);
  EXPECT_NEAR(AudibleSeconds(recorder->Since(0)), 1, 0.1);
}

}  // namespace
}  // namespace tavlo::test
