#include <gtest/gtest.h>

#include <cmath>
#include <new>
#include <string>

#include "platform/sound/soundtouch_transform.h"
#include "platform/sound/stream_resampler.h"
#include "support/sound_analysis.h"

namespace tavlo::test {
namespace {

using platform::SoundTouchTransform;
using playback::SampleArray;
using playback::SampleCount;
using playback::Side;

constexpr int kRate = 16000;
constexpr SampleCount kBlock = kRate / 2;

SampleArray Block(const Sound& document, SampleCount begin, SampleCount length) {
  const auto total = static_cast<SampleCount>(document.samples.size());
  const SampleCount end = std::min(begin + length, total);
  SampleArray block{.sourceBegin = static_cast<double>(begin),
                    .sourceEnd = static_cast<double>(end),
                    .last = end == total};
  block.values.assign(document.samples.begin() + begin, document.samples.begin() + end);
  return block;
}

/// Stretches a document block by block; `speeds` go round, one for each block. Checks on the way
/// that the ranges of the blocks join.
Sound Stretched(const Sound& document, const std::vector<float>& speeds,
                std::vector<SampleArray>* blocks = nullptr) {
  SoundTouchTransform transform;
  transform.Reset(document.rate);
  Sound out{.rate = document.rate};
  double reached = 0;
  std::size_t number = 0;
  const SampleCount length = document.rate / 2;
  for (SampleCount at = 0; at < static_cast<SampleCount>(document.samples.size()); at += length) {
    SampleArray block = Block(document, at, length);
    transform.ChangeSpeed(block, speeds[number++ % speeds.size()]);
    EXPECT_DOUBLE_EQ(block.sourceBegin, reached);
    reached = block.sourceEnd;
    out.samples.insert(out.samples.end(), block.values.begin(), block.values.end());
    if (blocks != nullptr) blocks->push_back(block);
  }
  EXPECT_DOUBLE_EQ(reached, static_cast<double>(document.samples.size()));
  return out;
}

struct Speeds : testing::TestWithParam<int> {
  float percent = static_cast<float>(GetParam());
};

TEST_P(Speeds, KeepPitchAndLengthWithTheTail) {
  const Sound tone = Tone(440, 5.3, kRate);
  const Sound out = Stretched(tone, {percent});
  EXPECT_NEAR(Cents(PitchOf(out), 440), 0, 3);
  EXPECT_NEAR(AudibleSeconds(out) * percent / 100, 5.3, 0.01 * 5.3);
}

TEST_P(Speeds, DoNotClickAtJoins) {
  const Sound out = Stretched(Tone(440, 5.3, kRate), {percent});
  // The cut at the very end is the player's to fade.
  EXPECT_LT(LargestStep(out.Between(0, out.Seconds() - 0.01)), 3 * SlopeOfTone(440, 0.5, kRate));
}

TEST_P(Speeds, TellWhichPartOfTheDocumentSounds) {
  // A click every 250 ms, drowned in nothing: each must be heard where the ranges say.
  Sound clicks{.samples = std::vector<float>(kRate * 6), .rate = kRate};
  for (std::size_t at = 2000; at < clicks.samples.size() - 2000; at += 4000) {
    for (std::size_t i = 0; i < 80; ++i) {
      clicks.samples[at + i] = 0.8F * std::sin(static_cast<float>(i) * 0.8F);
    }
  }
  std::vector<SampleArray> blocks;
  Stretched(clicks, {percent}, &blocks);
  double worst = 0;
  int found = 0;
  for (const SampleArray& block : blocks) {
    std::size_t lastLoud = 0;
    for (std::size_t i = 1; i < block.values.size(); ++i) {
      if (std::abs(block.values[i]) < 0.2F) continue;
      if (lastLoud == 0 || i - lastLoud > 1000) {
        const double along = static_cast<double>(i) / static_cast<double>(block.values.size());
        const double told = block.sourceBegin + along * (block.sourceEnd - block.sourceBegin);
        const double offset = std::remainder(told - 2000, 4000);
        worst = std::max(worst, std::abs(offset) / kRate);
        ++found;
      }
      lastLoud = i;
    }
  }
  EXPECT_GT(found, 15);
  EXPECT_LT(worst, 0.018);
  RecordProperty("worst_ms", std::to_string(worst * 1000));
}

INSTANTIATE_TEST_SUITE_P(Percent, Speeds, testing::Values(50, 75, 90, 100, 110, 125, 150),
                         testing::PrintToStringParamName());

/// Rates up to the highest that a document may have: the library refuses those above 192,000 Hz.
struct HighRates : testing::TestWithParam<int> {
  int rate = GetParam();
};

TEST_P(HighRates, KeepPitchAndLengthWithTheTailAtAnySpeed) {
  const Sound tone = Tone(440, 3.3, rate);
  for (const float percent : {50.0F, 75.0F, 99.0F, 101.0F, 150.0F}) {
    SCOPED_TRACE(percent);
    const Sound out = Stretched(tone, {percent});
    EXPECT_NEAR(Cents(PitchOf(out), 440), 0, 3);
    EXPECT_NEAR(AudibleSeconds(out) * percent / 100, 3.3, 0.01 * 3.3);
    EXPECT_LT(LargestStep(out.Between(0, out.Seconds() - 0.01)), 3 * SlopeOfTone(440, 0.5, rate));
  }
}

TEST_P(HighRates, ChangeBetweenSpeedsWithoutAClickOrALoss) {
  const Sound out = Stretched(Tone(440, 4, rate), {100, 75, 100, 100, 140, 50, 100, 150});
  EXPECT_LT(LargestStep(out.Between(0, out.Seconds() - 0.01)), 3 * SlopeOfTone(440, 0.5, rate));
  double expected = 0;
  for (const double speed : {1.0, 0.75, 1.0, 1.0, 1.4, 0.5, 1.0, 1.5}) expected += 0.5 / speed;
  EXPECT_NEAR(out.Seconds(), expected, 0.01 * expected);
}

TEST_P(HighRates, AtNormalSpeedPassUnchangedToTheBit) {
  const Sound tone = Tone(440, 1, rate);
  EXPECT_EQ(Stretched(tone, {100}).samples, tone.samples);
}

TEST_P(HighRates, StretchAPairAsOne) {
  SoundTouchTransform transform;
  transform.Reset(rate);
  const Sound tone = Tone(440, 2, rate);
  for (SampleCount at = 0; at + rate / 2 <= 2 * rate; at += rate / 2) {
    SampleArray block = Block(tone, at, rate / 2);
    std::vector<float> both;
    for (const float value : block.values) both.insert(both.end(), {value, -0.5F * value});
    block.values = both;
    block.channels = 2;
    SampleArray left = transform.SplitLeft(block);
    SampleArray right = transform.SplitRight(block);
    transform.ChangeSpeed(left, 80);
    transform.ChangeSpeed(right, 80);
    const SampleArray joined = transform.JoinChannels(left, right);
    ASSERT_GT(joined.Samples(), rate / 2);
    for (std::size_t i = 0; i < joined.values.size(); i += 2) {
      ASSERT_NEAR(joined.values[i + 1], -0.5F * joined.values[i], 1e-4);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Hertz, HighRates, testing::Values(192'000, 192'001, 200'000, 384'000),
                         testing::PrintToStringParamName());

TEST(StreamResampler, FormatThatTheLibraryRefusesIsAFaultAndNoSilence) {
  const std::vector<float> samples(800, 0.5F);
  platform::StreamResampler resampler(8000, 0, 1);
  EXPECT_THROW(resampler.Convert(samples), std::bad_alloc);
}

TEST(SoundTouchTransform, AtNormalSpeedTheSamplesPassUnchangedToTheBit) {
  const Sound tone = Tone(440, 3, kRate);
  EXPECT_EQ(Stretched(tone, {100}).samples, tone.samples);
}

TEST(SoundTouchTransform, ChangesBetweenSpeedsDoNotClickOrLoseSound) {
  const Sound tone = Tone(440, 8, kRate);
  const Sound out = Stretched(tone, {100, 75, 60, 100, 100, 140, 50, 100, 150});
  EXPECT_LT(LargestStep(out.Between(0, out.Seconds() - 0.01)), 3 * SlopeOfTone(440, 0.5, kRate));
  double expected = 0;
  const std::vector<double> speeds{1, .75, .6, 1, 1, 1.4, .5, 1, 1.5};
  for (std::size_t i = 0; i < 16; ++i) expected += 0.5 / speeds[i % speeds.size()];
  EXPECT_NEAR(out.Seconds(), expected, 0.01 * expected);
}

TEST(SoundTouchTransform, AfterTheFadeBackToNormalSpeedTheSamplesAreTheDocumentsOwn) {
  const Sound tone = Tone(443, 2, kRate);
  std::vector<SampleArray> blocks;
  Stretched(tone, {80, 100}, &blocks);
  const std::vector<float>& plain = blocks[1].values;
  for (std::size_t back = 1; back < 6000; ++back) {
    ASSERT_EQ(plain[plain.size() - back], tone.samples[16000 - back]);
  }
}

TEST(SoundTouchTransform, ResetForgetsTheRunBefore) {
  SoundTouchTransform transform;
  transform.Reset(kRate);
  const Sound tone = Tone(440, 2, kRate);
  const Sound silence{.samples = std::vector<float>(2 * kRate), .rate = kRate};
  SampleArray loud = Block(tone, 0, kBlock);
  transform.ChangeSpeed(loud, 75);
  transform.Reset(kRate);
  SampleArray quiet = Block(silence, kBlock, kBlock);
  transform.ChangeSpeed(quiet, 75);
  EXPECT_EQ(quiet.sourceBegin, kBlock);
  EXPECT_EQ(LargestStep({.samples = quiet.values, .rate = kRate}), 0.0);
}

TEST(SoundTouchTransform, LastBlockOfAFewSamplesIsNoTrouble) {
  SoundTouchTransform transform;
  transform.Reset(kRate);
  const Sound tone = Tone(440, 0.5 + 0.0005, kRate);
  SampleArray first = Block(tone, 0, kBlock);
  transform.ChangeSpeed(first, 50);
  SampleArray rest = Block(tone, kBlock, kBlock);
  ASSERT_EQ(rest.Samples(), 8);
  transform.ChangeSpeed(rest, 50);
  EXPECT_NEAR(static_cast<double>(first.Samples() + rest.Samples()), 2.0 * 8008, 2);
}

TEST(SoundTouchTransform, PairIsStretchedAsOne) {
  SoundTouchTransform transform;
  transform.Reset(kRate);
  const Sound tone = Tone(440, 2, kRate);
  for (SampleCount at = 0; at < 4 * kBlock; at += kBlock) {
    SampleArray block = Block(tone, at, kBlock);
    std::vector<float> both;
    for (const float value : block.values) both.insert(both.end(), {value, -0.5F * value});
    block.values = both;
    block.channels = 2;
    SampleArray left = transform.SplitLeft(block);
    SampleArray right = transform.SplitRight(block);
    ASSERT_EQ(left.side, Side::Left);
    ASSERT_EQ(right.side, Side::Right);
    transform.ChangeSpeed(left, 80);
    transform.ChangeSpeed(right, 80);
    ASSERT_EQ(left.Samples(), right.Samples());
    ASSERT_EQ(left.sourceEnd, right.sourceEnd);
    const SampleArray joined = transform.JoinChannels(left, right);
    ASSERT_EQ(joined.channels, 2);
    ASSERT_GT(joined.Samples(), kBlock);
    for (std::size_t i = 0; i < joined.values.size(); i += 2) {
      ASSERT_NEAR(joined.values[i + 1], -0.5F * joined.values[i], 1e-5);
    }
  }
}

TEST(SoundTouchTransform, PairAtNormalSpeedComesBackToTheBit) {
  SoundTouchTransform transform;
  transform.Reset(kRate);
  SampleArray block{.values = {0.1F, 0.2F, 0.3F, 0.4F, 0.5F, 0.6F}, .channels = 2, .sourceEnd = 3};
  SampleArray left = transform.SplitLeft(block);
  SampleArray right = transform.SplitRight(block);
  EXPECT_EQ(left.values, (std::vector<float>{0.1F, 0.3F, 0.5F}));
  EXPECT_EQ(right.values, (std::vector<float>{0.2F, 0.4F, 0.6F}));
  transform.ChangeSpeed(left, 100);
  transform.ChangeSpeed(right, 100);
  EXPECT_EQ(transform.JoinChannels(left, right).values, block.values);
}

}  // namespace
}  // namespace tavlo::test
