#include "platform/sound/rt_equalizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace tavlo::test {
namespace {

using platform::BandGains;
using platform::RtEqualizer;

constexpr BandGains kLo{18, 16, 14, 12, 8, 4, 2, 0, -4, 0, 4, 10};
constexpr BandGains kMid{0, 0, 0, 2, 6, 10, 10, 6, 2, 0, 0, 0};
constexpr BandGains kHi{10, 4, 0, -4, 0, 2, 4, 8, 12, 14, 16, 18};
constexpr platform::FrameCount kPiece = 480;

/// An equalizer with an endless tone on its left ear.
struct RtEqualizerTest : testing::Test {
  void SetRate(int framesPerSecond) {
    rate = framesPerSecond;
    equalizer.SetRate(rate);
  }

  void Play(double seconds) {
    const auto frames = static_cast<platform::FrameCount>(seconds * rate);
    for (platform::FrameCount done = 0; done < frames; done += kPiece) Piece(true);
  }
  void BeSilent(double seconds) {
    const auto frames = static_cast<platform::FrameCount>(seconds * rate);
    for (platform::FrameCount done = 0; done < frames; done += kPiece) Piece(false);
  }

  void Piece(bool sounds) {
    std::vector<float> both(2 * kPiece);
    for (std::size_t i = 0; i < kPiece && sounds; ++i) {
      both[2 * i] = static_cast<float>(amplitude * std::sin(angle));
      both[2 * i + 1] = 0.25F * both[2 * i];
      angle += 2 * std::numbers::pi * hertz / rate;
    }
    in.insert(in.end(), both.begin(), both.end());
    equalizer.RtShape(both.data(), kPiece, !sounds);
    out.insert(out.end(), both.begin(), both.end());
  }

  void Forget() {
    in.clear();
    out.clear();
  }

  /// Power of the left ear, from a third of the way on.
  static double Power(const std::vector<float>& samples) {
    double power = 0;
    for (std::size_t i = samples.size() / 3 / 2 * 2; i < samples.size(); i += 2) {
      power += static_cast<double>(samples[i]) * samples[i];
    }
    return power;
  }

  /// The largest second difference, which a click makes large and a tone keeps small.
  static double Sharpest(const std::vector<float>& samples) {
    double sharpest = 0;
    for (std::size_t i = 4; i < samples.size(); i += 2) {
      const double bend = samples[i] - 2.0 * samples[i - 2] + samples[i - 4];
      sharpest = std::max(sharpest, std::abs(bend));
    }
    return sharpest;
  }

  RtEqualizer equalizer;
  int rate = 48000;
  double hertz = 1000;
  double amplitude = 0.01;
  double angle = 0;
  std::vector<float> in;
  std::vector<float> out;
};

TEST_F(RtEqualizerTest, OffPassesTheSoundToTheBit) {
  equalizer.SetCurve(kLo);
  Play(0.5);
  EXPECT_EQ(out, in);
}

TEST_F(RtEqualizerTest, SwitchedOffItPassesTheSoundToTheBitAgain) {
  equalizer.SetCurve(kLo);
  equalizer.SetEnabled(true);
  Play(0.3);
  equalizer.SetEnabled(false);
  Play(0.05);
  Forget();
  Play(0.3);
  EXPECT_EQ(out, in);
}

TEST_F(RtEqualizerTest, SoundsAsTheCurveSaysAtEachCentreAndRate) {
  equalizer.SetEnabled(true);
  for (const int each : {44100, 22050, 11025, 8000}) {
    for (const BandGains& curve : {kLo, kMid, kHi}) {
      for (std::size_t band = 0; band < curve.size(); ++band) {
        if (2 * platform::kEqualizerCentres[band] >= each) continue;
        SetRate(each);
        equalizer.SetCurve(curve);
        hertz = platform::kEqualizerCentres[band];
        Forget();
        Play(1);
        EXPECT_NEAR(10 * std::log10(Power(out) / Power(in)), curve[band], 0.3) << each << hertz;
      }
    }
  }
}

TEST_F(RtEqualizerTest, NewCurveIsHeardWithinThirtyMillisecondsAndDoesNotClick) {
  equalizer.SetEnabled(true);
  equalizer.SetCurve(kMid);
  amplitude = 0.1;
  Play(0.5);
  const double mid = Sharpest(out);
  Forget();
  equalizer.SetCurve({});
  Play(0.03);
  EXPECT_LT(Sharpest(out), 1.1 * mid);
  Forget();
  Play(0.1);
  EXPECT_NEAR(10 * std::log10(Power(out) / Power(in)), 0, 0.1);
}

TEST_F(RtEqualizerTest, SwitchOnAndOffDoesNotClick) {
  equalizer.SetCurve(kMid);
  hertz = 500;
  amplitude = 0.1;
  equalizer.SetEnabled(true);
  Play(0.3);
  const double shaped = Sharpest(out);
  for (int turn = 0; turn < 20; ++turn) {
    equalizer.SetEnabled(turn % 2 == 1);
    Play(0.02);
  }
  EXPECT_LT(Sharpest(out), 1.5 * shaped);
}

TEST_F(RtEqualizerTest, DraggingEveryBandWhileItPlaysStaysFinite) {
  equalizer.SetEnabled(true);
  amplitude = 0.5;
  for (int turn = 0; turn < 300; ++turn) {
    BandGains curve{};
    for (std::size_t band = 0; band < curve.size(); ++band) {
      curve[band] = static_cast<double>((turn * 7 + static_cast<int>(band) * 13) % 41 - 20);
    }
    equalizer.SetCurve(curve);
    Play(0.01);
  }
  for (const float sample : out) ASSERT_LE(std::abs(sample), 0.9);
}

TEST_F(RtEqualizerTest, BoostStaysBelowTheCeiling) {
  equalizer.SetEnabled(true);
  equalizer.SetCurve({20, 20, 20, 20, 20, 20, 20, 20, 20, 20, 20, 20});
  amplitude = 0.9;
  Play(1);
  for (const float sample : out) {
    ASSERT_LE(std::abs(sample), platform::RtLimiter::kCeiling * 1.0001);
  }
}

/// What one equalizer makes of a sound whose right ear is `right` of its left one, piece by piece.
std::vector<float> ShapeEars(const std::vector<float>& right) {
  RtEqualizer equalizer;
  equalizer.SetCurve(kLo);
  equalizer.SetEnabled(true);
  std::vector<float> out;
  double angle = 0;
  for (const float share : right) {
    std::vector<float> both(2 * kPiece);
    for (std::size_t i = 0; i < kPiece; ++i) {
      both[2 * i] = static_cast<float>(0.1 * std::sin(angle));
      both[2 * i + 1] = share * both[2 * i];
      angle += 2 * std::numbers::pi * 100 / 48000;
    }
    equalizer.RtShape(both.data(), kPiece, false);
    out.insert(out.end(), both.begin(), both.end());
  }
  return out;
}

TEST(RtEqualizer, OneChannelSoundsOnBothEarsAsTwoWould) {
  const std::vector<float> one = ShapeEars({1, 1, 1, 1});
  const std::vector<float> two = ShapeEars({0, 0, 0, 0});
  for (std::size_t i = 0; i < one.size(); i += 2) {
    ASSERT_EQ(one[i], two[i]) << i;
    ASSERT_EQ(one[i + 1], two[i]) << i;
  }
}

TEST(RtEqualizer, EarsThatPartLaterKeepWhatBothHaveHeard) {
  const std::vector<float> parted = ShapeEars({1, 1, 0, 0});
  const std::vector<float> together = ShapeEars({1, 1, 1, 1});
  // Past what the limiter still holds.
  const std::size_t part = 2 * (2 * kPiece + 100);
  for (std::size_t i = 0; i < parted.size(); i += 2) ASSERT_EQ(parted[i], together[i]) << i;
  // What the filters still hold rings on in the ear that fell silent.
  double ringing = 0;
  for (std::size_t i = part; i < part + 200; i += 2) {
    ringing = std::max<double>(ringing, std::abs(parted[i + 1]));
  }
  EXPECT_GT(ringing, 0.01);
}

TEST_F(RtEqualizerTest, WhatRingsIsSilentSoonAfterTheSound) {
  equalizer.SetEnabled(true);
  equalizer.SetCurve(kLo);
  hertz = 31;
  Play(0.5);
  Forget();
  BeSilent(0.1);
  for (std::size_t i = 2 * 480; i < out.size(); ++i) ASSERT_EQ(out[i], 0) << i;
}

}  // namespace
}  // namespace tavlo::test
