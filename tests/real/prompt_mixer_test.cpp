#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "platform/sound/rt_mixer.h"
#include "support/mixer_rate.h"
#include "support/sound_analysis.h"

namespace tavlo::test {
namespace {

using platform::FrameCount;
using platform::RtBlock;
using platform::RtMixer;

/// A document of 440 Hz and prompts of 620 Hz, each of an amplitude of a quarter.
struct PromptMixerTest : testing::Test {
  PromptMixerTest() {
    mixer.SetRate(kMixerRate);
    run = mixer.BeginRun();
  }

  void PlayDocument(FrameCount frames) {
    auto block = std::make_unique<RtBlock>();
    block->values.assign(document.samples.begin(), document.samples.begin() + frames);
    block->run = run;
    block->heardEnd = static_cast<double>(frames);
    ASSERT_TRUE(mixer.Queue(std::move(block)));
  }

  /// Begins near a crest and ends anywhere, so that a hard edge would be heard at once.
  static std::unique_ptr<RtBlock> Prompt(FrameCount frames) {
    const Sound tone = Tone(620, static_cast<double>(frames + 19) / kMixerRate, kMixerRate, 0.25);
    auto block = std::make_unique<RtBlock>();
    block->values.assign(tone.samples.begin() + 19, tone.samples.end());
    return block;
  }

  /// Renders in pieces and keeps the left ear.
  void Render(FrameCount frames, FrameCount piece = 480) {
    for (FrameCount done = 0; done < frames; done += piece) {
      const FrameCount count = std::min(piece, frames - done);
      std::vector<float> both(static_cast<std::size_t>(2 * count));
      mixer.RtRender(both.data(), count);
      for (FrameCount i = 0; i < count; ++i) {
        heard.samples.push_back(both[static_cast<std::size_t>(2 * i)]);
      }
    }
  }

  void ExpectNoClick() {
    const double slopes = SlopeOfTone(440, 0.25, kMixerRate) + SlopeOfTone(620, 0.25, kMixerRate);
    EXPECT_LT(LargestStep(heard), 2 * slopes);
  }

  RtMixer mixer;
  std::uint64_t run = 0;
  Sound document = Tone(440, 4, kMixerRate, 0.25);
  Sound heard{.rate = kMixerRate};
};

TEST_F(PromptMixerTest, PromptSoundsAloneInRampsAndIsUntouchedBetween) {
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(9600)));
  Render(14400);
  ExpectNoClick();
  const std::unique_ptr<RtBlock> same = Prompt(9600);
  for (std::size_t i = kRampFrames; i < 9600 - kRampFrames; ++i) {
    ASSERT_EQ(heard.samples[i], same->values[i]) << "frame " << i;
  }
  EXPECT_EQ(Audible(heard, 0).end, 9599u);
  EXPECT_EQ(mixer.PromptsOnTheirWay(), 0u);
}

TEST_F(PromptMixerTest, PromptSoundsOverTheDocumentWhichGoesOnUnchanged) {
  PlayDocument(48000);
  Render(4800);
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(9600)));
  Render(19200);
  ExpectNoClick();
  const std::unique_ptr<RtBlock> prompt = Prompt(9600);
  for (std::size_t i = kRampFrames; i < 9600 - kRampFrames; ++i) {
    const float both = document.samples[4800 + i] + prompt->values[i];
    ASSERT_EQ(heard.samples[4800 + i], both) << "frame " << i;
  }
  EXPECT_EQ(heard.samples[20000], document.samples[20000]);
}

TEST_F(PromptMixerTest, PromptMovesNeitherTheLevelsNorThePosition) {
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(48000)));
  Render(4800);
  EXPECT_EQ(mixer.TakePeaks()[0], 0.0F);
  EXPECT_EQ(mixer.Heard(run, mixer.RenderedFrames()), 0);
  PlayDocument(48000);
  Render(4800);
  EXPECT_NEAR(mixer.TakePeaks()[0], 0.25, 0.001);
  EXPECT_NEAR(mixer.Heard(run, mixer.RenderedFrames()), 4800, 1e-6);
}

TEST_F(PromptMixerTest, StopOfTheDocumentDoesNotCutThePrompt) {
  PlayDocument(48000);
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(9600)));
  Render(1000);
  mixer.BeginRun();
  Render(14400);
  ExpectNoClick();
  EXPECT_TRUE(mixer.Settled());
  EXPECT_EQ(Audible(heard, 0).end, 9599u);
}

TEST_F(PromptMixerTest, NewPromptFadesOutTheOneBeforeAndSoundsWhole) {
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(48000)));
  Render(2000);
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(4800)));
  EXPECT_FALSE(mixer.Settled());
  Render(48000);
  ExpectNoClick();
  EXPECT_EQ(Audible(heard, 0).end, static_cast<std::size_t>(2000 + kRampFrames + 4800 - 1));
  EXPECT_EQ(mixer.PromptsOnTheirWay(), 0u);
}

TEST_F(PromptMixerTest, StopIsSilentAfterOneRampAndLeavesTheDocument) {
  PlayDocument(48000);
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(48000)));
  Render(4800);
  mixer.StopPrompt();
  Render(4800);
  ExpectNoClick();
  for (std::size_t i = 4800 + kRampFrames; i < 9600; ++i) {
    ASSERT_EQ(heard.samples[i], document.samples[i]) << "frame " << i;
  }
}

TEST_F(PromptMixerTest, StopOfNothingChangesNothing) {
  mixer.StopPrompt();
  Render(480);
  EXPECT_TRUE(mixer.Settled());
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(4800)));
  Render(9600);
  mixer.StopPrompt();
  EXPECT_TRUE(mixer.Settled());
}

TEST_F(PromptMixerTest, VolumeIsOneForBothAndReachesTheEarRamped) {
  PlayDocument(48000);
  ASSERT_TRUE(mixer.PlayPrompt(Prompt(24000)));
  Render(4800);
  mixer.SetVolume(0.25F);
  Render(4800);
  ExpectNoClick();
  const float both = document.samples[9000] + Prompt(24000)->values[9000];
  EXPECT_NEAR(heard.samples[9000], 0.25F * both, 1e-6);
}

TEST_F(PromptMixerTest, HundredPromptsInAMomentLeaveNothingBehind) {
  for (int i = 0; i < 100; ++i) {
    ASSERT_TRUE(mixer.PlayPrompt(Prompt(2400)));
    Render(i % 5 * 100, 100);
  }
  Render(2400 + 480);
  ExpectNoClick();
  EXPECT_EQ(mixer.PromptsOnTheirWay(), 0u);
  EXPECT_TRUE(mixer.Settled());
  const std::size_t asked = heard.samples.size();
  Render(4800);
  EXPECT_LE(Audible(heard, 0).end, asked);
}

TEST_F(PromptMixerTest, PromptsThatAreNotRenderedAreRefusedInTheEndAndSoundAgainLater) {
  std::size_t taken = 0;
  while (mixer.PlayPrompt(Prompt(480))) ++taken;
  EXPECT_EQ(taken, RtMixer::kMaxBlocks);
  Render(480);
  EXPECT_TRUE(mixer.PlayPrompt(Prompt(480)));
  Render(960);
  EXPECT_EQ(mixer.PromptsOnTheirWay(), 0u);
}

TEST_F(PromptMixerTest, EveryPromptOfABusyLoopIsHeardOrFadedWhileTheDeviceWorks) {
  std::atomic<bool> playing{true};
  std::thread device([&] {
    std::vector<float> both(2 * 128);
    while (playing) mixer.RtRender(both.data(), 128);
  });
  for (int i = 0; i < 2000; ++i) {
    while (!mixer.PlayPrompt(Prompt(300))) {
    }
    if (i % 7 == 0) mixer.StopPrompt();
    mixer.SetVolume(static_cast<float>(i % 10) / 10);
  }
  while (mixer.PromptsOnTheirWay() > 0) {
  }
  playing = false;
  device.join();
  EXPECT_TRUE(mixer.Settled());
}

TEST(PromptRace, FirstBlockOfARunIsNeverTakenForALeftover) {
  RtMixer mixer;
  mixer.SetRate(kMixerRate);
  std::atomic<bool> playing{true};
  std::atomic<int> begun{0};
  std::thread device([&] {
    std::vector<float> both(2 * 64);
    bool sounding = false;
    while (playing) {
      mixer.RtRender(both.data(), 64);
      const bool sounds = both[2 * 63] != 0;
      if (sounds && !sounding) ++begun;
      sounding = sounds;
    }
  });
  constexpr int kPrompts = 3000;
  for (int i = 0; i < kPrompts; ++i) {
    auto block = std::make_unique<RtBlock>();
    block->values.assign(256, 0.5F);
    while (mixer.PromptsOnTheirWay() > 0) {
    }
    ASSERT_TRUE(mixer.PlayPrompt(std::move(block)));
  }
  while (mixer.PromptsOnTheirWay() > 0) {
  }
  playing = false;
  device.join();
  EXPECT_EQ(begun, kPrompts);
}

}  // namespace
}  // namespace tavlo::test
