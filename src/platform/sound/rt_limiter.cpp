#include "platform/sound/rt_limiter.h"

#include <algorithm>
#include <cmath>

namespace tavlo::platform {
namespace {

/// What is left of a release counts as nothing; far below anything heard.
constexpr double kReleased = 1e-6;

}  // namespace

void RtLimiter::SetRate(int framesPerSecond) {
  const auto frames = static_cast<std::size_t>(std::lround(kAheadSeconds * framesPerSecond));
  ahead_ = std::clamp<std::size_t>(frames, 1, kMostAhead);
  release_ = 1 - std::exp(-1 / (kReleaseSeconds * std::max(framesPerSecond, 1)));
  RtReset();
}

void RtLimiter::RtReset() {
  delayed_ = {};
  walk_.fill(1);
  walkSum_ = static_cast<double>(ahead_);
  wholeSince_ = ahead_;
  released_ = 1;
  at_ = 0;
  heldCount_ = 0;
}

void RtLimiter::RtLimit(float& left, float& right) {
  const double peak = std::max(std::abs(left), std::abs(right));
  const double lowest = RtLowestGain(peak > kCeiling ? kCeiling / peak : 1);
  released_ = lowest < released_ ? lowest : released_ + (lowest - released_) * release_;
  if (1 - released_ < kReleased) released_ = 1;

  walkSum_ += released_ - walk_[at_];
  walk_[at_] = released_;
  wholeSince_ = released_ == 1 ? wholeSince_ + 1 : 0;
  // The sum forgets what rounding left in it as soon as there is nothing to sum.
  if (wholeSince_ >= ahead_) walkSum_ = static_cast<double>(ahead_);
  const auto gain = static_cast<float>(walkSum_ / static_cast<double>(ahead_));

  delayed_[at_] = {left, right};
  at_ = (at_ + 1) % ahead_;
  left = delayed_[at_][0] * gain;
  right = delayed_[at_][1] * gain;
}

/// The lowest gain of the last ahead_ frames, this one included.
double RtLimiter::RtLowestGain(double gain) {
  while (heldCount_ > 0 && held_[(heldFirst_ + heldCount_ - 1) % kMostAhead].gain >= gain) {
    --heldCount_;
  }
  held_[(heldFirst_ + heldCount_++) % kMostAhead] = {frame_, gain};
  if (held_[heldFirst_].frame + static_cast<FrameCount>(ahead_) <= frame_) {
    heldFirst_ = (heldFirst_ + 1) % kMostAhead;
    --heldCount_;
  }
  ++frame_;
  return held_[heldFirst_].gain;
}

}  // namespace tavlo::platform
