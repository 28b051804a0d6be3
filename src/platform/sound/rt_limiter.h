#pragma once

#include <array>
#include <cstddef>

#include "platform/sound/rt_block.h"

namespace tavlo::platform {

/// Keeps both ears below a ceiling without the harshness of clipping: it sees a peak kAhead before
/// it is heard, walks down to meet it, and comes back slowly. What stays below the ceiling passes
/// unchanged to the bit, later by Delay(). For the rendering thread alone.
class RtLimiter {
 public:
  static constexpr double kCeiling = 0.8912509381337456;  ///< -1 dBFS.
  static constexpr double kAheadSeconds = 0.0015;
  static constexpr double kReleaseSeconds = 0.08;

  /// Frames a second, up to 384000. Forgets what it holds.
  void SetRate(int framesPerSecond);
  /// Forgets what it holds.
  void RtReset();
  /// Frames by which the sound is late.
  std::size_t Delay() const { return ahead_ - 1; }

  /// Limits one frame in place.
  void RtLimit(float& left, float& right);

 private:
  static constexpr std::size_t kMostAhead = 1024;
  struct Held {
    FrameCount frame = 0;
    double gain = 1;
  };

  double RtLowestGain(double gain);

  std::size_t ahead_ = 72;
  double release_ = 0;
  FrameCount frame_ = 0;
  std::size_t at_ = 0;
  std::array<std::array<float, 2>, kMostAhead> delayed_{};
  // Gains of the frames ahead that no later one undercuts, lowest first.
  std::array<Held, kMostAhead> held_{};
  std::size_t heldFirst_ = 0;
  std::size_t heldCount_ = 0;
  double released_ = 1;
  // The walk is the mean of the gains that were released lately.
  std::array<double, kMostAhead> walk_{};
  double walkSum_ = 0;
  std::size_t wholeSince_ = 0;  ///< Frames in a row whose gain was 1.
};

}  // namespace tavlo::platform
