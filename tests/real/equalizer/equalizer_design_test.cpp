#include "platform/sound/equalizer_design.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

namespace tavlo::test {
namespace {

using platform::BandGains;
using platform::DesignEqualizer;
using platform::EqualizerDesign;
using platform::kEqualizerBands;
using platform::kEqualizerCentres;

struct Curve {
  std::string name;
  BandGains gains;
};

const Curve kCurves[] = {
    {"Lo", {18, 16, 14, 12, 8, 4, 2, 0, -4, 0, 4, 10}},
    {"Mid", {0, 0, 0, 2, 6, 10, 10, 6, 2, 0, 0, 0}},
    {"Hi", {10, 4, 0, -4, 0, 2, 4, 8, 12, 14, 16, 18}},
    {"AllUp", {20, 20, 20, 20, 20, 20, 20, 20, 20, 20, 20, 20}},
    {"AllDown", {-20, -20, -20, -20, -20, -20, -20, -20, -20, -20, -20, -20}},
};
constexpr int kRates[] = {48000, 44100, 22050, 11025, 8000};

/// By how much the response misses the curve at the centres below half the rate.
double WorstMiss(const BandGains& curve, int rate) {
  const EqualizerDesign design = DesignEqualizer(curve, rate);
  double worst = 0;
  for (std::size_t band = 0; band < kEqualizerBands; ++band) {
    if (2 * kEqualizerCentres[band] >= rate) continue;
    const double response = ResponseOf(design, kEqualizerCentres[band], rate);
    worst = std::max(worst, std::abs(response - curve[band]));
  }
  return worst;
}

TEST(EqualizerDesign, MeetsEachCurveAtTheCentresAtEveryRate) {
  for (const Curve& curve : kCurves) {
    for (const int rate : kRates)
      EXPECT_LT(WorstMiss(curve.gains, rate), 0.05) << curve.name << rate;
  }
}

TEST(EqualizerDesign, FollowsNearlyAnyCurveThatSlidersCanDraw) {
  constexpr int kCurvesDrawn = 500;
  std::mt19937 chance(7);
  std::uniform_int_distribution gain(-20, 20);
  int missed = 0;
  for (int drawn = 0; drawn < kCurvesDrawn; ++drawn) {
    BandGains curve;
    for (double& band : curve) band = gain(chance);
    const double miss = WorstMiss(curve, 48000);
    EXPECT_LT(miss, 3);
    if (miss > 1) ++missed;
  }
  EXPECT_LT(missed, kCurvesDrawn / 100);
}

TEST(EqualizerDesign, SolvesTheBandsTogetherSinceEachAloneWouldMiss) {
  // The bottom three bands of "Lo" add up where they overlap.
  const EqualizerDesign together = DesignEqualizer(kCurves[0].gains, 48000);
  double apart = 0;
  for (std::size_t band = 0; band < kEqualizerBands; ++band) {
    BandGains alone{};
    alone[band] = kCurves[0].gains[band];
    EqualizerDesign one = DesignEqualizer(alone, 48000);
    for (std::size_t other = 0; other < kEqualizerBands; ++other) {
      if (other != band) one[other].on = false;
    }
    apart += ResponseOf(one, 62, 48000);
  }
  EXPECT_GT(apart - 16, 3);
  EXPECT_NEAR(ResponseOf(together, 62, 48000), 16, 0.05);
}

TEST(EqualizerDesign, BandsFromHalfTheRateUpDoNothing) {
  const EqualizerDesign design = DesignEqualizer(kCurves[3].gains, 8000);
  for (std::size_t band = 0; band < kEqualizerBands; ++band) {
    EXPECT_EQ(design[band].on, kEqualizerCentres[band] < 4000) << kEqualizerCentres[band];
  }
}

TEST(EqualizerDesign, FlatPassesEverythingToTheBit) {
  for (const platform::PeakingFilter& filter : DesignEqualizer({}, 44100)) EXPECT_EQ(filter.mix, 0);
}

TEST(EqualizerDesign, StaysBoundedBetweenTheCentres) {
  for (const Curve& curve : kCurves) {
    const EqualizerDesign design = DesignEqualizer(curve.gains, 48000);
    const auto [low, high] = std::minmax_element(curve.gains.begin(), curve.gains.end());
    for (double hertz = 20; hertz < 20000; hertz *= 1.02) {
      const double response = ResponseOf(design, hertz, 48000);
      EXPECT_LT(response, std::max(*high, 0.0) + 3) << curve.name << ' ' << hertz;
      EXPECT_GT(response, std::min(*low, 0.0) - 3) << curve.name << ' ' << hertz;
    }
  }
}

}  // namespace
}  // namespace tavlo::test
