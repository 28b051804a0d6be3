#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
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

constexpr double kHertz = 440;
constexpr double kAmplitude = 0.5;

/// Cuts a tone into blocks and renders what becomes of them.
struct MixerTest : testing::Test {
  MixerTest() {
    mixer.SetRate(kMixerRate);
    run = mixer.BeginRun();
  }

  /// Queues the next `frames` frames of an endless tone that play `documentSamples` of a document.
  void QueueTone(FrameCount frames, double documentSamples) {
    auto block = std::make_unique<RtBlock>();
    const auto begin = tone.samples.begin() + toneAt;
    block->values.assign(begin, begin + frames);
    toneAt += frames;
    Queue(std::move(block), documentSamples);
  }

  void Queue(std::unique_ptr<RtBlock> block, double documentSamples) {
    block->run = run;
    block->heardBegin = documentAt;
    documentAt += documentSamples;
    block->heardEnd = documentAt;
    ASSERT_TRUE(mixer.Queue(std::move(block)));
  }

  void BeginRun() {
    run = mixer.BeginRun();
    documentAt = 0;
  }

  /// Renders in pieces of `piece` frames and keeps the left ear.
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

  int FreedBlocks() {
    int count = 0;
    while (mixer.TakeFreed()) ++count;
    return count;
  }

  double AllHeard() { return mixer.Heard(run, mixer.RenderedFrames()); }

  void ExpectNoClick() {
    EXPECT_LT(LargestStep(heard), 3 * SlopeOfTone(kHertz, kAmplitude, kMixerRate));
  }

  RtMixer mixer;
  std::uint64_t run = 0;
  Sound tone = Tone(kHertz, 20, kMixerRate, kAmplitude);
  FrameCount toneAt = 25;  // Near the crest, where a hard cut would be heard at once.
  double documentAt = 0;
  Sound heard{.rate = kMixerRate};
};

TEST_F(MixerTest, SoundBeginsAndEndsInRampsAndIsUntouchedBetween) {
  QueueTone(4800, 4800);
  Render(9600);
  ExpectNoClick();
  EXPECT_LT(std::abs(heard.samples.front()), 0.01F);
  for (FrameCount i = kRampFrames; i < 4800 - kRampFrames; ++i) {
    const auto at = static_cast<std::size_t>(i);
    ASSERT_EQ(heard.samples[at], tone.samples[at + 25]) << "frame " << i;
  }
  EXPECT_EQ(heard.samples[4799], 0.0F);
  EXPECT_EQ(heard.samples[4800], 0.0F);
}

TEST_F(MixerTest, HardCutWouldBeTakenForAClick) {
  Sound cut = tone.Between(0, 0.1);
  cut.samples.insert(cut.samples.end(), tone.samples.begin() + 25, tone.samples.begin() + 4800);
  EXPECT_GT(LargestStep(cut), 3 * SlopeOfTone(kHertz, kAmplitude, kMixerRate));
}

TEST_F(MixerTest, BlocksOfARunJoinWithoutATrace) {
  for (int i = 0; i < 5; ++i) QueueTone(1001, 1001);
  Render(5005, 333);
  for (std::size_t i = kRampFrames; i < 5005 - kRampFrames; ++i) {
    ASSERT_EQ(heard.samples[i], tone.samples[i + 25]) << "frame " << i;
  }
}

TEST_F(MixerTest, MonoBlockReachesBothEarsAndStereoBlockEachItsOwn) {
  auto mono = std::make_unique<RtBlock>();
  mono->values.assign(2000, 0.25F);
  Queue(std::move(mono), 2000);
  auto stereo = std::make_unique<RtBlock>();
  stereo->channels = 2;
  for (int i = 0; i < 2000; ++i) stereo->values.insert(stereo->values.end(), {0.5F, -0.125F});
  Queue(std::move(stereo), 2000);
  std::vector<float> both(2 * 4000);
  mixer.RtRender(both.data(), 4000);
  EXPECT_EQ(both[2 * 1000], 0.25F);
  EXPECT_EQ(both[2 * 1000 + 1], 0.25F);
  EXPECT_EQ(both[2 * 3000], 0.5F);
  EXPECT_EQ(both[2 * 3000 + 1], -0.125F);
}

TEST_F(MixerTest, NewRunFadesTheOldOneOutAndDropsIt) {
  QueueTone(48000, 48000);
  QueueTone(48000, 48000);
  Render(4800);
  BeginRun();
  toneAt += 57;
  EXPECT_FALSE(mixer.Settled());
  QueueTone(4800, 4800);
  Render(480);
  EXPECT_TRUE(mixer.Settled());
  Render(9600);
  ExpectNoClick();
  EXPECT_EQ(FreedBlocks(), 3);
  EXPECT_EQ(Audible(heard).end / 480, (4800 + 4800u) / 480);
}

TEST_F(MixerTest, StopIsSilentAfterOneRamp) {
  QueueTone(48000, 48000);
  Render(4800);
  BeginRun();
  Render(4800);
  ExpectNoClick();
  EXPECT_LE(Audible(heard, 0).end, static_cast<std::size_t>(4800 + kRampFrames));
  EXPECT_GT(Audible(heard, 0).end, static_cast<std::size_t>(4800 + kRampFrames / 2));
}

TEST_F(MixerTest, StopInTheMiddleOfTheFirstRampDoesNotClick) {
  QueueTone(48000, 48000);
  Render(kRampFrames / 2, kRampFrames / 2);
  BeginRun();
  Render(4800);
  ExpectNoClick();
}

TEST_F(MixerTest, QueueThatRunsDryAndFillsAgainDoesNotClick) {
  for (const FrameCount gap : {0, 1, 100, 239, 240, 241, 5000}) {
    QueueTone(4800, 4800);
    Render(4800 + gap, 96);
    toneAt += gap;
  }
  // The next block comes while the ramp of the one before is under way.
  QueueTone(480, 480);
  Render(384, 96);
  QueueTone(480, 480);
  Render(960, 96);
  ExpectNoClick();
}

TEST_F(MixerTest, VolumeReachesTheEarRamped) {
  QueueTone(48000, 48000);
  Render(4800);
  mixer.SetVolume(0.1F);
  Render(4800);
  mixer.SetVolume(1);
  Render(4800);
  ExpectNoClick();
  EXPECT_NEAR(heard.samples[9500], 0.1F * tone.samples[9525], 1e-6);
  EXPECT_NEAR(heard.samples[14000], tone.samples[14025], 1e-6);
}

TEST_F(MixerTest, PeaksAreTheLoudestSinceTheyWereTakenAndIgnoreTheVolume) {
  mixer.SetVolume(0);
  QueueTone(48000, 48000);
  Render(4800);
  EXPECT_NEAR(mixer.TakePeaks()[0], kAmplitude, 0.001);
  EXPECT_EQ(mixer.TakePeaks()[1], 0.0F);
  EXPECT_EQ(LargestStep(heard), 0.0);
}

struct PositionMap : MixerTest, testing::WithParamInterface<int> {};

TEST_P(PositionMap, CountsDocumentSamplesAtAnySpeed) {
  const double speed = GetParam() / 100.0;
  for (int i = 0; i < 3; ++i) QueueTone(4800, 4800 * speed);
  Render(9000);
  EXPECT_NEAR(mixer.Heard(run, 0), 0, 1e-6);
  EXPECT_NEAR(mixer.Heard(run, 1200), 1200 * speed, 1e-6);
  EXPECT_NEAR(mixer.Heard(run, 6000), 6000 * speed, 1e-6);
  EXPECT_NEAR(AllHeard(), 9000 * speed, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(Speeds, PositionMap, testing::Values(50, 100, 150));

TEST_F(MixerTest, SilenceOfADryQueueDoesNotCount) {
  QueueTone(4800, 2400);
  Render(48000);
  EXPECT_NEAR(AllHeard(), 2400, 1e-6);
  QueueTone(4800, 2400);
  Render(2400);
  EXPECT_NEAR(AllHeard(), 3600, 1e-6);
}

TEST_F(MixerTest, PositionOfAStoppedRunIsWhereItsRampEnded) {
  QueueTone(48000, 24000);
  Render(4800);
  const std::uint64_t stopped = run;
  BeginRun();
  Render(9600);
  EXPECT_NEAR(mixer.Heard(stopped, mixer.RenderedFrames()), (4800.0 + kRampFrames) / 2, 1e-6);
  EXPECT_EQ(AllHeard(), 0);
}

TEST_F(MixerTest, NewRunCountsFromNothing) {
  QueueTone(48000, 48000);
  Render(4800);
  BeginRun();
  QueueTone(4800, 4800);
  Render(480);
  EXPECT_NEAR(AllHeard(), 480.0 - kRampFrames, 1e-6);
}

TEST_F(MixerTest, EveryBlockComesBackOnceWhetherPlayedOrDropped) {
  for (int i = 0; i < 3; ++i) QueueTone(480, 480);
  QueueTone(0, 0);
  Render(480 * 2);
  EXPECT_EQ(FreedBlocks(), 2);
  Render(480);
  EXPECT_EQ(FreedBlocks(), 2);
  QueueTone(48000, 48000);
  BeginRun();
  Render(480);
  EXPECT_EQ(FreedBlocks(), 1);
  Render(480);
  EXPECT_EQ(FreedBlocks(), 0);
}

TEST_F(MixerTest, BlockThatFindsNoRoomIsRefused) {
  for (std::size_t i = 0; i < RtMixer::kMaxBlocks; ++i) QueueTone(1, 1);
  EXPECT_FALSE(mixer.Queue(std::make_unique<RtBlock>()));
  Render(480);
  EXPECT_FALSE(mixer.Queue(std::make_unique<RtBlock>()));
  EXPECT_EQ(FreedBlocks(), static_cast<int>(RtMixer::kMaxBlocks));
  EXPECT_TRUE(mixer.Queue(std::make_unique<RtBlock>()));
}

TEST_F(MixerTest, LoopAndDeviceMayWorkAtOnce) {
  std::atomic<bool> playing{true};
  std::thread device([&] {
    std::vector<float> both(2 * 128);
    while (playing) mixer.RtRender(both.data(), 128);
  });
  int queued = 0;
  int freed = 0;
  double before = 0;
  while (queued < 3000) {
    if (queued - freed < 20) {
      toneAt = 0;
      QueueTone(200, 200);
      ++queued;
    }
    freed += FreedBlocks();
    mixer.SetVolume(static_cast<float>(queued % 10) / 10);
    mixer.TakePeaks();
    const double now = AllHeard();
    ASSERT_GE(now, before);
    before = now;
    if (queued % 500 == 0) {
      BeginRun();
      before = 0;
    }
  }
  while (freed < queued) freed += FreedBlocks();
  playing = false;
  device.join();
  EXPECT_EQ(freed, queued);
  EXPECT_TRUE(mixer.Settled());
}

}  // namespace
}  // namespace tavlo::test
