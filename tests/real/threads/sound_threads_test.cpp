#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "platform/sound/prompt_voice.h"
#include "platform/sound/queue_player.h"
#include "platform/sound/soundtouch_transform.h"
#include "support/plain_loop.h"
#include "support/sound_files.h"
#include "support/sound_pump.h"
#include "support/work_at_hand.h"
#include "threads/threaded_device.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

constexpr int kRate = 16000;
constexpr double kHertz = 440;
constexpr double kAmplitude = 0.25;

/// The whole way of the sound behind the file, with the device's thread running beside the loop's.
struct SoundThreads : testing::Test {
  SoundThreads() {
    WriteFile(folder / "prompt.wav", WaveBytes(Chirp(4000, 22050), 22050));
    prompt.SetDeviceType("WaveAudio");
  }

  bool Speak() {
    prompt.Close();
    prompt.SetFileName(folder / "prompt.wav");
    return prompt.Open() && prompt.Play();
  }
  bool PlayToTheEnd() {
    pump.Ends = 0;
    pump.Play();
    return loop.WaitUntil([&] { return pump.Ends > 0; }, kPatience);
  }
  void ExpectSoundWithinFullScale() {
    device.Close();
    for (const float value : device.Out().samples) {
      ASSERT_TRUE(std::abs(value) <= 1.0F) << value;
    }
  }

  ScratchFolder folder;
  PlainLoop loop;
  ThreadedDevice device;
  platform::QueuePlayer player{loop, device};
  WorkAtHand reading;
  platform::PromptVoice prompt{loop, player, std::make_shared<platform::FfmpegAudioFile>(),
                               reading};
  platform::SoundTouchTransform transform;
  SoundPump pump{player, transform};
};

TEST_F(SoundThreads, DocumentIsHeardWholeAndEndsOnce) {
  pump.Load(Tone(kHertz, 4, kRate, kAmplitude));
  ASSERT_TRUE(PlayToTheEnd());
  loop.Wait(100ms);
  EXPECT_EQ(pump.Ends, 1);
  EXPECT_EQ(pump.Blocks, 8);
  EXPECT_EQ(pump.Requests, pump.Blocks);
  EXPECT_EQ(player.PlayedSamples(), 4 * kRate);
  pump.Stop();
  device.Close();
  // A busy machine may stutter, which makes it longer and never shorter.
  EXPECT_GT(AudibleSeconds(device.Out()), 3.98);
}

TEST_F(SoundThreads, PromptsSoundBesideTheDocumentAndChangeNothingOfIt) {
  pump.Load(Tone(kHertz, 4, kRate, kAmplitude));
  base::Timer again(loop, "again", 30ms);
  int spoken = 0;
  again.OnTick = [&] { spoken += Speak() ? 1 : 0; };
  again.Start();
  ASSERT_TRUE(PlayToTheEnd());
  loop.Wait(100ms);
  EXPECT_GT(spoken, 3);
  EXPECT_EQ(pump.Requests, pump.Blocks);
  EXPECT_EQ(player.PlayedSamples(), 4 * kRate);
  ExpectSoundWithinFullScale();
}

TEST_F(SoundThreads, PromptThatAThreadReadsIsHeard) {
  platform::SideThread thread;
  platform::PromptVoice voice(loop, player, std::make_shared<platform::FfmpegAudioFile>(), thread);
  voice.SetDeviceType("WaveAudio");
  voice.SetFileName(folder / "prompt.wav");
  // A machine that is too busy to read it in time is asked again.
  base::Timer again(loop, "again", 2s);
  again.OnTick = [&] { EXPECT_TRUE(voice.Open() && voice.Play()); };
  again.StartDue();
  ASSERT_TRUE(loop.WaitUntil([&] { return device.Opens > 0; }, kPatience));
  again.Stop();
  loop.Wait(200ms);
  device.Close();
  EXPECT_GT(AudibleSeconds(device.Out()), 0);
}

TEST_F(SoundThreads, DeviceThatDiesIsOpenedAnewAndNoBlockIsLost) {
  pump.Load(Tone(kHertz, 6, kRate, kAmplitude));
  pump.Play();
  ASSERT_TRUE(loop.WaitUntil([&] { return player.PlayedSamples() > kRate; }, kPatience));
  device.Unplug();
  ASSERT_TRUE(loop.WaitUntil([&] { return device.Opens == 2; }, kPatience));
  ASSERT_TRUE(loop.WaitUntil([&] { return pump.Ends > 0; }, kPatience));
  EXPECT_EQ(pump.Blocks, 12);
  EXPECT_EQ(pump.Requests, pump.Blocks);
}

constexpr int kStereoSeconds = 4;

/// Does one of the things that a typist does while a document plays.
void ActOnce(SoundThreads& desk, std::mt19937& random) {
  const auto upTo = [&](unsigned end) { return static_cast<int>(random() % end); };
  switch (upTo(10)) {
    case 0:
      return desk.pump.Play();
    case 1:
      desk.pump.Stop();
      return desk.pump.Seek(upTo(kStereoSeconds * kRate));
    case 2:
      return desk.pump.Seek(upTo(kStereoSeconds * kRate));
    case 3:
      desk.pump.SpeedPercent = static_cast<float>(50 + upTo(101));
      return;
    case 4:
      return desk.player.SetVolume(upTo(65536));
    case 5:
      desk.Speak();
      return;
    case 6:
      return desk.prompt.Stop();
    case 7:
      return desk.player.SelectDevice(upTo(2));
    case 8:
      return desk.player.SetEqualizerEnabled(upTo(2) == 0);
    case 9: {
      playback::EqualizerGains gains{};
      for (std::size_t band = 0; band + 1 < gains.size(); ++band) {
        gains[band] = static_cast<float>(upTo(41) - 20);
      }
      return desk.player.SetEqualizerGains(gains);
    }
  }
}

TEST_F(SoundThreads, RestlessHandsLeaveAPlayerThatPlaysToTheEnd) {
  pump.Load(Tone(kHertz, 2 * kStereoSeconds, kRate, kAmplitude), 2);
  pump.Play();
  std::mt19937 random(20'040'309);
  for (int act = 0; act < 250; ++act) {
    ActOnce(*this, random);
    loop.Wait(std::chrono::milliseconds(random() % 20));
    ASSERT_GE(player.PlayedSamples(), 0);
  }
  pump.Load(Tone(kHertz, 2, kRate, kAmplitude));
  pump.SpeedPercent = 100;
  ASSERT_TRUE(PlayToTheEnd());
  loop.Wait(100ms);
  EXPECT_EQ(player.PlayedSamples(), 2 * kRate);
  EXPECT_TRUE(loop.Shown.empty());
  ExpectSoundWithinFullScale();
}

}  // namespace
}  // namespace tavlo::test
