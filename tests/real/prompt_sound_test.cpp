#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <tuple>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "platform/sound/cubeb_player.h"
#include "platform/sound/prompt_voice.h"
#include "platform/sound/soundtouch_transform.h"
#include "support/effort.h"
#include "support/plain_loop.h"
#include "support/sound_analysis.h"
#include "support/sound_files.h"
#include "support/sound_pump.h"
#include "support/sound_recorder.h"
#include "support/sound_server.h"
#include "support/takes.h"
#include "support/work_at_hand.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

constexpr int kRate = 16000;
constexpr double kPromptHertz = 620;
constexpr double kAmplitude = 0.25;
/// So many seconds after an end the recording has everything.
constexpr double kTail = 0.6;

/// Prompts on a sound server of our own, whose silent device is recorded.
struct PromptSoundTest : testing::Test {
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
    voice = std::make_unique<platform::PromptVoice>(loop, *player, file, reading);
    pump = std::make_unique<SoundPump>(*player, transform);
    voice->SetDeviceType("WaveAudio");
  }

  std::string Lay(const std::string& name, double seconds) {
    const Sound tone = Tone(kPromptHertz, seconds, kRate, kAmplitude);
    std::vector<std::int16_t> values;
    for (const float value : tone.samples) {
      values.push_back(static_cast<std::int16_t>(std::lround(value * 32767)));
    }
    WriteFile(folder / name, WaveBytes(values, kRate));
    return folder / name;
  }
  bool Open(const std::string& path) {
    voice->Close();
    voice->SetFileName(path);
    return voice->Open();
  }
  bool Speak(const std::string& path) { return Open(path) && voice->Play(); }
  void PlayDocument(double seconds) {
    pump->Load(Tone(440, seconds, kRate, kAmplitude));
    pump->Play();
  }

  void Listen() { listenedFrom = recorder->Seconds(); }
  /// How long the recording lasts so far.
  double Listened() const { return recorder->Seconds() - listenedFrom; }
  /// All of it, with what is on its way to the ear.
  Sound Heard() const {
    EXPECT_TRUE(recorder->Pass(kTail));
    return recorder->Since(listenedFrom);
  }
  static double Click(const Sound& sound) {
    return 2 * (SlopeOfTone(440, kAmplitude, sound.rate) +
                SlopeOfTone(kPromptHertz, kAmplitude, sound.rate));
  }
  static void ExpectNoClick(const Sound& sound) {
    EXPECT_LT(LargestStep(sound), Click(sound));
    RecordProperty("steps_per_click", std::to_string(LargestStep(sound) / Click(sound)));
  }

  static std::unique_ptr<SoundServer> server;
  static std::unique_ptr<SoundRecorder> recorder;
  static bool ready;
  ScratchFolder folder;
  PlainLoop loop;
  std::shared_ptr<playback::AudioFile> file = std::make_shared<platform::FfmpegAudioFile>();
  platform::SideThread reading;
  platform::SoundTouchTransform transform;
  std::unique_ptr<platform::CubebPlayer> player;
  std::unique_ptr<platform::PromptVoice> voice;
  std::unique_ptr<SoundPump> pump;
  double listenedFrom = 0;
};

std::unique_ptr<SoundServer> PromptSoundTest::server;
std::unique_ptr<SoundRecorder> PromptSoundTest::recorder;
bool PromptSoundTest::ready = false;

TEST_F(PromptSoundTest, PromptOpensTheDeviceAndSoundsToItsEnd) {
  const std::string prompt = Lay("a.wav", 0.8);
  Retake([&] {
    Listen();
    EXPECT_TRUE(Speak(prompt));
    loop.Wait(1s);
    const Sound heard = Heard();
    EXPECT_NEAR(AudibleSeconds(heard), 0.8, 0.02);
    EXPECT_NEAR(Cents(PitchOf(heard), kPromptHertz), 0, 3);
    ExpectNoClick(heard);
  });
}

TEST_F(PromptSoundTest, PromptOverAPlayingDocumentDoesNotClick) {
  const std::string prompt = Lay("a.wav", 0.5);
  Retake([&] {
    Listen();
    const double begin = Listened();
    PlayDocument(5);
    loop.Wait(500ms);
    EXPECT_TRUE(Speak(prompt));
    loop.Wait(200ms);
    EXPECT_TRUE(Speak(prompt));
    loop.Wait(100ms);
    voice->Stop();
    player->SetVolume(20000);
    loop.Wait(200ms);
    player->SetVolume(65535);
    loop.Wait(200ms);
    pump->Stop();
    const double lasted = Listened() - begin;
    const Sound heard = Heard();
    EXPECT_NEAR(AudibleSeconds(heard), lasted, 0.06);
    EXPECT_TRUE(Pauses(heard, 0.03).empty());
    ExpectNoClick(heard);
  });
}

TEST_F(PromptSoundTest, StopOfTheDocumentDoesNotCutThePrompt) {
  const std::string prompt = Lay("a.wav", 1);
  Retake([&] {
    Listen();
    const double begin = Listened();
    PlayDocument(5);
    loop.Wait(500ms);
    const double spoken = Listened() - begin;
    EXPECT_TRUE(Speak(prompt));
    loop.Wait(200ms);
    pump->Stop();
    loop.Wait(1s);
    const Sound heard = Heard();
    EXPECT_NEAR(AudibleSeconds(heard), spoken + 1, 0.06);
    const Sound rest = heard.Between(static_cast<double>(Audible(heard).end) / heard.rate - 0.6,
                                     static_cast<double>(Audible(heard).end) / heard.rate - 0.1);
    EXPECT_NEAR(Cents(PitchOf(rest), kPromptHertz), 0, 3);
    ExpectNoClick(heard);
  });
}

TEST_F(PromptSoundTest, HundredTonesInAFastWindEndWithTheLastOne) {
  const std::string tone = Lay("RewindTone.wav", 0.3);
  Retake([&] {
    Listen();
    for (int i = 0; i < 100; ++i) {
      ASSERT_TRUE(Open(tone));
      voice->SetFrom(0);
      voice->SetTo(50);
      EXPECT_TRUE(voice->Play());
      loop.Wait(i % 3 * 10ms);
    }
    loop.Wait(200ms);
    const Sound heard = Heard();
    EXPECT_GT(AudibleSeconds(heard), 0.9);
    const std::size_t last = Audible(heard).end;
    EXPECT_LT(static_cast<double>(last),
              static_cast<double>(heard.samples.size()) - 0.6 * heard.rate);
    ExpectNoClick(heard);
  });
}

TEST_F(PromptSoundTest, CloseIsQuickAndSilent) {
  const std::string prompt = Lay("a.wav", 5);
  Retake([&] {
    Listen();
    const double begin = Listened();
    EXPECT_TRUE(Speak(prompt));
    loop.Wait(700ms);
    const double lasted = Listened() - begin;
    const Effort effort;
    voice->Close();
    // Each wait for the device would be one of a millisecond.
    EXPECT_LT(effort.Waits(), 10);
    EXPECT_LT(effort.Computed(), 10ms);
    const Sound heard = Heard();
    EXPECT_NEAR(AudibleSeconds(heard), lasted, 0.08);
    ExpectNoClick(heard);
  });
}

TEST_F(PromptSoundTest, MissingRecordingIsSilentAndTheDocumentPlaysOn) {
  Retake([&] {
    Listen();
    PlayDocument(1);
    loop.Wait(300ms);
    // That it is missing is known once it has been looked for, beside the loop.
    std::ignore = Speak(folder / "missing.wav");
    loop.Wait(1s);
    pump->Stop();
    const Sound heard = Heard();
    EXPECT_NEAR(AudibleSeconds(heard), 1, 0.02);
    ExpectNoClick(heard);
  });
}

TEST(PromptWithoutAServer, IsSilentAndQuick) {
  SoundServer::HideServers();
  PlainLoop loop;
  platform::CubebPlayer player(loop);
  WorkAtHand reading;
  platform::PromptVoice voice(loop, player, std::make_shared<platform::FfmpegAudioFile>(), reading);
  const ScratchFolder folder;
  WriteFile(folder / "a.wav", WaveBytes(Chirp(8000, 8000)));
  voice.SetDeviceType("WaveAudio");
  voice.SetFileName(folder / "a.wav");
  const Effort effort;
  for (int i = 0; i < 100; ++i) {
    EXPECT_TRUE(voice.Open());
    EXPECT_FALSE(voice.Play());
  }
  // A server that is not there is not looked for each time, let alone waited for.
  EXPECT_LT(effort.Waits(), 100);
  EXPECT_LT(effort.Computed(), 500ms);
}

}  // namespace
}  // namespace tavlo::test
