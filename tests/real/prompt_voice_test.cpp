#include "platform/sound/prompt_voice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "platform/sound/soundtouch_transform.h"
#include "support/simulated_loop.h"
#include "support/sound_analysis.h"
#include "support/sound_files.h"
#include "support/sound_pump.h"
#include "support/stand_in_device.h"
#include "support/work_at_hand.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

constexpr int kRate = 22050;
constexpr double kPromptHertz = 620;
constexpr double kAmplitude = 0.25;

std::string WaveOf(const Sound& sound) {
  std::vector<std::int16_t> values;
  for (const float value : sound.samples) {
    values.push_back(static_cast<std::int16_t>(std::lround(value * 32767)));
  }
  return WaveBytes(values, sound.rate);
}

/// Decodes waves, and counts how often it was asked to.
class CountingFile : public platform::FfmpegAudioFile {
 public:
  int Opens = 0;
  playback::SampleCount Read = 0;
  playback::OpenResult OpenFile(const std::string& path) override {
    ++Opens;
    return FfmpegAudioFile::OpenFile(path);
  }
  playback::SampleArray ReadArray(playback::SampleCount samples) override {
    playback::SampleArray block = FfmpegAudioFile::ReadArray(samples);
    Read += block.Samples();
    return block;
  }
};

struct PromptVoiceTest : testing::Test {
  PromptVoiceTest() {
    clock.OnTick = [this] { device.CatchUp(); };
    clock.Start();
    voice.SetDeviceType("WaveAudio");
  }

  /// A prompt file of 620 Hz.
  std::string Lay(const std::string& name, double seconds) {
    WriteFile(folder / name, WaveOf(Tone(kPromptHertz, seconds, kRate, kAmplitude)));
    return folder / name;
  }
  bool Open(const std::string& path) {
    voice.Close();
    voice.SetFileName(path);
    return voice.Open();
  }
  bool Speak(const std::string& path) { return Open(path) && voice.Play(); }
  bool Tone50(const std::string& path) {
    if (!Open(path)) return false;
    voice.SetFrom(0);
    voice.SetTo(50);
    return voice.Play();
  }
  void PlayDocument(double seconds) {
    pump.Load(Tone(440, seconds, 16000, kAmplitude));
    pump.Play();
  }
  void ExpectNoClick() {
    const double slopes =
        SlopeOfTone(440, kAmplitude, 48000) + SlopeOfTone(kPromptHertz, kAmplitude, 48000);
    EXPECT_LT(LargestStep(device.Out), 2 * slopes);
  }

  ScratchFolder folder;
  SimulatedLoop loop;
  StandInDevice device{loop};
  base::Timer clock{loop, "device", 5ms, base::TimerKind::Feed};
  platform::QueuePlayer player{loop, device};
  std::shared_ptr<CountingFile> file = std::make_shared<CountingFile>();
  WorkAtHand reading;
  platform::PromptVoice voice{loop, player, file, reading};
  platform::SoundTouchTransform transform;
  SoundPump pump{player, transform};
};

TEST_F(PromptVoiceTest, PromptOpensTheDeviceAndSoundsToItsEnd) {
  EXPECT_TRUE(Speak(Lay("a.wav", 0.7)));
  EXPECT_TRUE(device.IsOpen());
  loop.Advance(2s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.7, 0.01);
  EXPECT_NEAR(Cents(PitchOf(device.Out), kPromptHertz), 0, 1);
  ExpectNoClick();
}

TEST_F(PromptVoiceTest, PointsBoundWhatSoundsAndTheNextOpenForgetsThem) {
  // Each tenth of a second is one step louder than the one before.
  Sound stairs = Tone(kPromptHertz, 0.4, kRate, 1);
  for (std::size_t i = 0; i < stairs.samples.size(); ++i) {
    stairs.samples[i] *= 0.1F * static_cast<float>(1 + i * 10 / kRate);
  }
  WriteFile(folder / "stairs.wav", WaveOf(stairs));
  ASSERT_TRUE(Open(folder / "stairs.wav"));
  voice.SetFrom(100);
  voice.SetTo(200);
  EXPECT_TRUE(voice.Play());
  loop.Advance(1s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.1, 0.005);
  float loudest = 0;
  for (const float value : device.Out.samples) loudest = std::max(loudest, value);
  EXPECT_NEAR(loudest, 0.2, 0.005);
  device.Out.samples.clear();
  EXPECT_TRUE(Speak(folder / "stairs.wav"));
  loop.Advance(1s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.4, 0.005);
}

TEST_F(PromptVoiceTest, PointsThatHoldNothingAreSilent) {
  ASSERT_TRUE(Open(Lay("a.wav", 0.2)));
  voice.SetFrom(100);
  voice.SetTo(100);
  EXPECT_FALSE(voice.Play());
  voice.SetTo(50);
  EXPECT_FALSE(voice.Play());
  voice.SetFrom(5000);
  voice.SetTo(6000);
  EXPECT_FALSE(voice.Play());
  voice.SetFrom(-7);
  voice.SetTo(1'000'000'000);
  EXPECT_TRUE(voice.Play());
}

TEST_F(PromptVoiceTest, PromptOverADocumentDoesNotClickAndLeavesItsPosition) {
  PlayDocument(4);
  loop.Advance(1s);
  EXPECT_TRUE(Speak(Lay("a.wav", 0.5)));
  loop.Advance(1s);
  EXPECT_NEAR(static_cast<double>(player.PlayedSamples()) / 16000, 1.98, 0.01);
  loop.Advance(3s);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_EQ(pump.Requests, pump.Blocks);
  EXPECT_NEAR(AudibleSeconds(device.Out), 4, 0.01);
  ExpectNoClick();
}

TEST_F(PromptVoiceTest, NewPromptClosesTheOneBeforeWithoutAClick) {
  EXPECT_TRUE(Speak(Lay("long.wav", 3)));
  loop.Advance(333ms);
  EXPECT_TRUE(Speak(Lay("short.wav", 0.2)));
  loop.Advance(2s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.333 + 0.005 + 0.2, 0.02);
  ExpectNoClick();
}

TEST_F(PromptVoiceTest, StopAndCloseAreSilentAtOnceWithoutAClick) {
  EXPECT_TRUE(Speak(Lay("a.wav", 3)));
  loop.Advance(300ms);
  voice.Stop();
  loop.Advance(300ms);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.305, 0.01);
  EXPECT_TRUE(voice.Play());
  loop.Advance(100ms);
  voice.Close();
  EXPECT_FALSE(voice.Play());
  loop.Advance(300ms);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.705, 0.02);
  ExpectNoClick();
}

TEST_F(PromptVoiceTest, HundredTonesInAFastWindAreDecodedOnceAndLeaveNothingBehind) {
  const std::string tone = Lay("RewindTone.wav", 0.3);
  for (int i = 0; i < 100; ++i) {
    EXPECT_TRUE(Tone50(tone));
    loop.Advance(i % 3 * 10ms);
  }
  loop.Advance(1s);
  EXPECT_EQ(file->Read, kRate / 20);
  const std::size_t last = Audible(device.Out).end;
  EXPECT_LT(static_cast<double>(last) / 48000, 0.99 + 0.065);
  ExpectNoClick();
}

TEST_F(PromptVoiceTest, ToneBehindASpokenPromptOfTheSameFileIsStillCut) {
  const std::string path = Lay("a.wav", 1);
  EXPECT_TRUE(Tone50(path));
  loop.Advance(1s);
  EXPECT_TRUE(Speak(path));
  loop.Advance(2s);
  device.Out.samples.clear();
  EXPECT_TRUE(Tone50(path));
  loop.Advance(1s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.05, 0.005);
}

TEST_F(PromptVoiceTest, StopOfTheDocumentDoesNotCutThePrompt) {
  PlayDocument(4);
  loop.Advance(500ms);
  EXPECT_TRUE(Speak(Lay("a.wav", 1)));
  loop.Advance(200ms);
  pump.Stop();
  loop.Advance(2s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 1.5, 0.02);
  ExpectNoClick();
}

TEST_F(PromptVoiceTest, StoppedDeviceIsGivenBackOnlyAfterThePromptHasSounded) {
  PlayDocument(2);
  loop.Advance(1s);
  pump.Stop();
  loop.Advance(59s);
  device.Out.samples.clear();
  EXPECT_TRUE(Speak(Lay("a.wav", 3)));
  loop.Advance(3900ms);
  EXPECT_NEAR(AudibleSeconds(device.Out), 3, 0.01);
  EXPECT_TRUE(device.IsOpen());
  loop.Advance(100ms);
  EXPECT_FALSE(device.IsOpen());
}

struct Unplayable : PromptVoiceTest, testing::WithParamInterface<const char*> {};

TEST_P(Unplayable, FileIsSilentAndDisturbsNothing) {
  WriteFile(folder / "words.wav", "These are words and no sound.");
  WriteFile(folder / "nothing.wav", "");
  WriteFile(folder / "header.wav", WaveBytes({}));
  WriteFile(folder / "cut.wav", WaveBytes({1, 2, 3}).substr(0, 30));
  PlayDocument(2);
  loop.Advance(500ms);
  EXPECT_FALSE(Speak(folder / GetParam()));
  loop.Advance(3s);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_NEAR(AudibleSeconds(device.Out), 2, 0.01);
  EXPECT_TRUE(Speak(Lay("a.wav", 0.1)));
}

INSTANTIATE_TEST_SUITE_P(Files, Unplayable,
                         testing::Values("missing.wav", "words.wav", "nothing.wav", "header.wav",
                                         "cut.wav", "."));

TEST_F(PromptVoiceTest, PromptThatIsReadBesideTheLoopSoundsWhenItHasCome) {
  reading.Stalls = true;
  EXPECT_TRUE(Speak(Lay("a.wav", 0.4)));
  loop.Advance(400ms);
  EXPECT_EQ(AudibleSeconds(device.Out), 0);
  reading.Answer();
  loop.Advance(20ms);
  EXPECT_GT(AudibleSeconds(device.Out), 0);
  loop.Advance(1s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.4, 0.01);
}

TEST_F(PromptVoiceTest, PromptIsLookedForWhileTheLoopOnlyBreathes) {
  reading.Stalls = true;
  EXPECT_TRUE(Speak(Lay("a.wav", 0.4)));
  reading.Answer();
  loop.Busy(5ms);
  loop.Breathe();
  EXPECT_TRUE(device.IsOpen());
}

TEST_F(PromptVoiceTest, PromptThatComesTooLateIsSilentAndIsNotLookedForAnyMore) {
  reading.Stalls = true;
  EXPECT_TRUE(Speak(Lay("a.wav", 0.4)));
  loop.Advance(platform::PromptVoice::kInTime + 20ms);
  reading.Answer();
  clock.Stop();
  EXPECT_EQ(loop.Timers().NextDue(), std::nullopt);
  clock.Start();
  loop.Advance(2s);
  EXPECT_FALSE(device.IsOpen());
}

TEST_F(PromptVoiceTest, StopAndCloseForgetAPromptThatIsOnItsWay) {
  reading.Stalls = true;
  for (void (platform::PromptVoice::*const end)() :
       {&platform::PromptVoice::Stop, &platform::PromptVoice::Close}) {
    EXPECT_TRUE(Speak(Lay("a.wav", 0.4)));
    (voice.*end)();
    reading.Answer();
    loop.Advance(1s);
    EXPECT_FALSE(device.IsOpen());
  }
}

TEST_F(PromptVoiceTest, OfTwoPromptsThatAreOnTheirWayTheLastOneSounds) {
  reading.Stalls = true;
  EXPECT_TRUE(Speak(Lay("long.wav", 3)));
  EXPECT_TRUE(Speak(Lay("short.wav", 0.2)));
  reading.Answer();
  loop.Advance(2s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.2, 0.01);
}

TEST_F(PromptVoiceTest, DocumentPlaysOnWhileAPromptIsReadAndTheToneThatIsKeptNeedsNoReading) {
  const std::string tone = Lay("RewindTone.wav", 0.3);
  EXPECT_TRUE(Tone50(tone));
  loop.Advance(1s);
  device.Out.samples.clear();
  reading.Stalls = true;
  PlayDocument(2);
  EXPECT_TRUE(Speak(Lay("a.wav", 0.4)));
  loop.Advance(3s);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_NEAR(AudibleSeconds(device.Out), 2, 0.01);
  const int asked = reading.Asked;
  EXPECT_TRUE(Tone50(tone));
  EXPECT_EQ(reading.Asked, asked);
}

TEST_F(PromptVoiceTest, FileThatGoesAfterItWasOpenedIsSilent) {
  const std::string path = Lay("a.wav", 0.5);
  ASSERT_TRUE(Open(path));
  WriteFile(path, "");
  EXPECT_FALSE(voice.Play());
}

TEST_F(PromptVoiceTest, DocumentInThePlaceOfAPromptIsCutTo30Seconds) {
  EXPECT_TRUE(Speak(Lay("a.wav", 40)));
  EXPECT_EQ(file->Read, 30 * kRate);
  loop.Advance(35s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 30, 0.05);
}

TEST_F(PromptVoiceTest, DeviceOfAnotherTypeIsNotThere) {
  voice.SetDeviceType("CDAudio");
  EXPECT_FALSE(Open(Lay("a.wav", 0.5)));
  EXPECT_FALSE(voice.Play());
}

TEST_F(PromptVoiceTest, MachineWithoutSoundIsSilentAndIsNotAskedAgainAndAgain) {
  device.Reachable = false;
  const std::string tone = Lay("RewindTone.wav", 0.3);
  for (int i = 0; i < 30; ++i) {
    EXPECT_FALSE(Tone50(tone));
    loop.Advance(100ms);
  }
  EXPECT_EQ(device.Tries, 3);
  device.Names.clear();
  platform::QueuePlayer silent(loop, device);
  platform::PromptVoice without(loop, silent, file, reading);
  without.SetDeviceType("WaveAudio");
  without.SetFileName(tone);
  EXPECT_TRUE(without.Open());
  EXPECT_FALSE(without.Play());
  without.Close();
  EXPECT_EQ(device.Tries, 3);
}

TEST_F(PromptVoiceTest, PromptEndsWithADeviceThatDiesAndTheNextOneIsWhole) {
  EXPECT_TRUE(Speak(Lay("long.wav", 5)));
  loop.Advance(500ms);
  device.Failed = true;
  loop.Advance(500ms);
  device.Out.samples.clear();
  EXPECT_TRUE(Speak(Lay("a.wav", 0.4)));
  EXPECT_EQ(device.Opens, 2);
  loop.Advance(3s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.4, 0.01);
  EXPECT_NEAR(Cents(PitchOf(device.Out), kPromptHertz), 0, 3);
}

TEST_F(PromptVoiceTest, PromptDoesNotFollowToAnotherDevice) {
  EXPECT_TRUE(Speak(Lay("long.wav", 5)));
  loop.Advance(500ms);
  player.SelectDevice(1);
  loop.Advance(3s);
  EXPECT_NEAR(AudibleSeconds(device.Out), 0.5, 0.02);
}

TEST_F(PromptVoiceTest, PromptUnderADeviceThatIsLookedForIsSilentAndTheDocumentComesBack) {
  PlayDocument(3);
  loop.Advance(1s);
  device.Failed = true;
  device.Reachable = false;
  loop.Advance(500ms);
  EXPECT_FALSE(Speak(Lay("a.wav", 0.4)));
  device.Reachable = true;
  loop.Advance(5s);
  EXPECT_EQ(pump.Ends, 1);
}

TEST_F(PromptVoiceTest, MasterVolumeIsThePromptsToo) {
  player.SetVolume(65535 / 5);
  EXPECT_TRUE(Speak(Lay("a.wav", 0.5)));
  loop.Advance(1s);
  float loudest = 0;
  for (const float value : device.Out.samples) loudest = std::max(loudest, value);
  EXPECT_NEAR(loudest, 0.05, 0.001);
}

}  // namespace
}  // namespace tavlo::test
