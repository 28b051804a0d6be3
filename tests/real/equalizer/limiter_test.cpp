#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "platform/sound/rt_limiter.h"

namespace tavlo::test {
namespace {

constexpr int kRate = 48000;

struct LimiterTest : testing::Test {
  LimiterTest() { limiter.SetRate(kRate); }

  /// The left ear of what comes out for `in` on both ears.
  std::vector<float> Limit(const std::vector<float>& in) {
    std::vector<float> out;
    for (const float sample : in) {
      float left = sample;
      float right = sample;
      limiter.RtLimit(left, right);
      out.push_back(left);
    }
    return out;
  }

  static std::vector<float> Tone(double amplitude, double hertz, double seconds) {
    std::vector<float> samples(static_cast<std::size_t>(seconds * kRate));
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i) / kRate;
      samples[i] = static_cast<float>(amplitude * std::sin(angle));
    }
    return samples;
  }

  static double Loudest(const std::vector<float>& samples) {
    double loudest = 0;
    for (const float sample : samples) loudest = std::max<double>(loudest, std::abs(sample));
    return loudest;
  }

  platform::RtLimiter limiter;
};

TEST_F(LimiterTest, PassesWhatIsBelowTheCeilingToTheBit) {
  const std::vector<float> in = Tone(0.89, 440, 0.5);
  const std::vector<float> out = Limit(in);
  const std::size_t delay = limiter.Delay();
  EXPECT_LT(delay, kRate * 2 / 1000U);
  for (std::size_t i = delay; i < in.size(); ++i) ASSERT_EQ(out[i], in[i - delay]) << i;
}

TEST_F(LimiterTest, NothingPassesTheCeiling) {
  std::mt19937 chance(11);
  std::uniform_real_distribution<float> sample(-1, 1);
  std::vector<float> in(4 * kRate);
  for (std::size_t i = 0; i < in.size(); ++i) {
    const bool burst = i / 3000 % 3 == 1;
    in[i] = sample(chance) * (burst ? 12.0F : 0.7F);
  }
  EXPECT_LE(Loudest(Limit(in)), platform::RtLimiter::kCeiling * 1.00001);
}

TEST_F(LimiterTest, LoudToneStaysATone) {
  // Twenty decibels too loud; a clipper would leave a square wave, 30 % of it harmonics.
  const std::vector<float> out = Limit(Tone(10, 200, 1));
  double signal = 0;
  double cosine = 0;
  double power = 0;
  for (std::size_t i = kRate / 2; i < kRate; ++i) {
    const double angle = 2 * std::numbers::pi * 200 * static_cast<double>(i) / kRate;
    signal += out[i] * std::sin(angle);
    cosine += out[i] * std::cos(angle);
    power += static_cast<double>(out[i]) * out[i];
  }
  const double fundamental = (signal * signal + cosine * cosine) * 2 / (kRate / 2.0);
  EXPECT_GT(fundamental / power, 0.995);
}

TEST_F(LimiterTest, ComesBackToTheBitAfterAPeak) {
  Limit(Tone(4, 300, 0.1));
  Limit(Tone(0.5, 300, 2));
  const std::vector<float> in = Tone(0.5, 300, 0.1);
  const std::vector<float> out = Limit(in);
  for (std::size_t i = limiter.Delay(); i < in.size(); ++i) {
    ASSERT_EQ(out[i], in[i - limiter.Delay()]) << i;
  }
}

TEST_F(LimiterTest, BothEarsGoDownTogether) {
  float left = 0;
  float right = 0;
  for (int i = 0; i < kRate / 10; ++i) {
    left = 2;
    right = 0.2F;
    limiter.RtLimit(left, right);
  }
  EXPECT_NEAR(left / right, 10, 1e-4);
}

}  // namespace
}  // namespace tavlo::test
