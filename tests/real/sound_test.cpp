#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <utility>

#include "platform/sound/cubeb_player.h"
#include "platform/sound/soundtouch_transform.h"
#include "support/effort.h"
#include "support/plain_loop.h"
#include "support/quick.h"
#include "support/sound_analysis.h"
#include "support/sound_pump.h"
#include "support/sound_recorder.h"
#include "support/sound_server.h"
#include "support/takes.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

constexpr int kRate = 16000;
/// So many seconds after a stop the recording has everything.
constexpr double kTail = 0.6;

/// A server and its recording, which start slowly, for all tests; a player for each.
struct SoundTest : testing::Test {
  static void SetUpTestSuite() {
    server = std::make_unique<SoundServer>();
    recorder = std::make_unique<SoundRecorder>();
    ready = server->StartWithPrecedence() && recorder->Start();
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
  /// How long the recording lasts so far.
  double Listened() const { return recorder->Seconds() - listenedFrom; }
  /// All of it, with what is on its way to the ear.
  Sound Heard() const {
    EXPECT_TRUE(recorder->Pass(kTail));
    return recorder->Since(listenedFrom);
  }

  void PlayToTheEnd(const Sound& document, float percent) {
    pump->Load(document);
    pump->SpeedPercent = percent;
    pump->Ends = 0;
    pump->Play();
    ASSERT_TRUE(loop.WaitUntil([&] { return pump->Ends > 0; }, kPatience));
    pump->Stop();
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
  const AmpleSupply supply;
  Retake([&] {
    Listen();
    PlayToTheEnd(Tone(440, kSeconds, kRate), static_cast<float>(GetParam()));
    const Sound heard = Heard();
    const double cents = Cents(PitchOf(heard), 440);
    const double document = AudibleSeconds(heard) * GetParam() / 100;
    EXPECT_NEAR(cents, 0, 3);
    EXPECT_NEAR(document, kSeconds, 0.01 * kSeconds);
    EXPECT_TRUE(Pauses(heard, 0.005).empty());
    ExpectNoClick(heard);
    RecordProperty("cents", std::to_string(cents));
    RecordProperty("seconds", std::to_string(document));
  });
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
  Retake([&] {
    Listen();
    pump->Load(Sweep(8));
    pump->SpeedPercent = static_cast<float>(GetParam());
    pump->Play();
    loop.Wait(2300ms);
    const double stopped = pump->Stop() / kRate;
    const Sound heard = Heard();
    // The pitch of the last 100 ms is that of their middle.
    const double end = static_cast<double>(Audible(heard, 0.02F).end) / heard.rate;
    const double pitch = PitchOf(heard.Between(end - 0.105, end - 0.005));
    const double ear = (pitch - kLowest) / kHertzPerSecond + 0.055 * speed;
    EXPECT_NEAR(stopped, ear, 0.020);
    RecordProperty("off_ms", std::to_string((stopped - ear) * 1000));
  });
}

INSTANTIATE_TEST_SUITE_P(Percent, SpokenSpeeds, testing::Values(50, 75, 100, 125, 150));

TEST_F(SoundTest, StopAndSeekAndVolumeDoNotClick) {
  Retake([&] {
    Listen();
    player->SetVolume(65535);
    pump->Load(Tone(440, 10, kRate));
    pump->SpeedPercent = 100;
    const double begin = Listened();
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
    const double lasted = Listened() - begin;
    const Sound heard = Heard();
    ExpectNoClick(heard);
    EXPECT_TRUE(Pauses(heard, 0.03).empty());
    EXPECT_NEAR(AudibleSeconds(heard), lasted, 0.06);
  });
}

TEST_F(SoundTest, StopIsQuickAndSilent) {
  Retake([&] {
    Listen();
    pump->Load(Tone(440, 10, kRate));
    const double begin = Listened();
    pump->Play();
    loop.Wait(1s);
    const double lasted = Listened() - begin;
    const Effort effort;
    pump->Stop();
    // Each wait for the device is one of a millisecond.
    EXPECT_LT(effort.Waits(), 40);
    EXPECT_LT(effort.Computed(), 40ms);
    EXPECT_NEAR(AudibleSeconds(Heard()), lasted, 0.06);
  });
}

TEST_F(SoundTest, PrimedDeviceSoundsAtOnceAndStopsAtOnce) {
  Retake([&] {
    Listen();
    pump->Load(Tone(440, 10, kRate));
    loop.Wait(500ms);
    const double before = Listened();
    pump->Play();
    loop.Wait(500ms);
    const double beforeStop = Listened();
    pump->Stop();
    const Sound heard = Heard();
    const Extent extent = Audible(heard);
    const double onset = static_cast<double>(extent.begin) / heard.rate - before;
    const double offset = static_cast<double>(extent.end) / heard.rate - beforeStop;
    EXPECT_LT(onset, 0.06);
    EXPECT_LT(offset, 0.06);
    RecordProperty("onset_ms", std::to_string(onset * 1000));
    RecordProperty("offset_ms", std::to_string(offset * 1000));
  });
}

TEST_F(SoundTest, LoopThatIsBusyForThreeSecondsMakesAGapAndNoEnd) {
  const AmpleSupply supply;
  Retake([&] {
    Listen();
    pump->Load(Tone(440, 3, kRate));
    pump->Ends = 0;
    pump->Play();
    loop.Wait(700ms);
    Sleep(3s);
    loop.Wait(100ms);
    EXPECT_EQ(pump->Ends, 0);
    EXPECT_TRUE(loop.WaitUntil([&] { return pump->Ends > 0; }, kPatience));
    pump->Stop();
    const Sound heard = Heard();
    EXPECT_EQ(Pauses(heard, 1).size(), 1u);
    ExpectNoClick(heard);
  });
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
  Retake([&] {
    Listen();
    PlayToTheEnd(Tone(440, 0.5, kRate), 100);
    EXPECT_NEAR(AudibleSeconds(Heard()), 0.5, 0.02);
  });
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
  std::unique_ptr<SoundRecorder> recorder;
  const auto start = [&] {
    recorder = std::make_unique<SoundRecorder>();
    return server.StartWithPrecedence() && recorder->Start();
  };
  PlainLoop loop;
  platform::SoundTouchTransform transform;
  std::unique_ptr<platform::CubebPlayer> player;
  std::unique_ptr<SoundPump> pump;
  playback::SampleCount reached = 0;
  Retake([&] {
    ASSERT_TRUE(start());
    player = std::make_unique<platform::CubebPlayer>(loop);
    pump = std::make_unique<SoundPump>(*player, transform);
    pump->Load(Tone(440, 30, kRate));
    pump->Play();
    loop.Wait(1500ms);
    server.Kill();
    reached = player->PlayedSamples();
    ASSERT_TRUE(loop.WaitUntil(
        [&] {
          loop.Wait(300ms);
          return std::exchange(reached, player->PlayedSamples()) == player->PlayedSamples();
        },
        kPatience));
    // What the server had for the recorder when it was killed went with it.
    EXPECT_NEAR(static_cast<double>(reached) / kRate, AudibleSeconds(recorder->Since(0)), 0.1);
    EXPECT_GT(reached, kRate);
  });
  loop.Wait(1500ms);
  EXPECT_EQ(player->PlayedSamples(), reached);
  EXPECT_EQ(pump->Ends, 0);
  EXPECT_EQ(pump->Stop(), static_cast<double>(reached));
  EXPECT_TRUE(IsQuick(1s, [&] {
    EXPECT_FALSE(player->StartOutput());
    EXPECT_LT(player->OpenStatus(), 0);
  }));

  ASSERT_TRUE(start());
  Retake([&] {
    const double from = recorder->Seconds();
    pump->Play();
    EXPECT_EQ(player->OpenStatus(), 0);
    loop.Wait(1s);
    pump->Stop();
    const auto played = static_cast<double>(player->PlayedSamples()) / kRate;
    EXPECT_GT(played, 0.9);
    EXPECT_TRUE(recorder->Pass(kTail));
    EXPECT_NEAR(AudibleSeconds(recorder->Since(from)), played, 0.1);
  });
}

}  // namespace
}  // namespace tavlo::test
