#pragma once

#include <algorithm>

namespace tavlo::platform {

/// A level that walks to its target in a straight line, frame by frame. A new target is walked to
/// from the level that is reached at that moment, so the sound never jumps.
class RtRamp {
 public:
  explicit RtRamp(float level = 0) : level_(level), target_(level) {}

  /// Walks to `target` in `frames` frames. Called again with the target that is under way it
  /// changes nothing.
  void RtAim(float target, int frames) {
    if (target == target_) return;
    RtAimWithin(target, frames);
  }
  /// The same, but a walk under way is bent so that it ends within `frames`.
  void RtAimWithin(float target, int frames) {
    const bool underWay = target == target_;
    if (underWay && left_ <= frames) return;
    target_ = target;
    left_ = std::max(frames, 1);
    step_ = (target_ - level_) / static_cast<float>(left_);
  }

  float RtNext() {
    if (left_ > 0) level_ = --left_ == 0 ? target_ : level_ + step_;
    return level_;
  }

  bool RtSteady() const { return left_ == 0; }
  float RtLevel() const { return level_; }
  int RtFramesLeft() const { return left_; }

 private:
  float level_;
  float target_;
  float step_ = 0;
  int left_ = 0;
};

}  // namespace tavlo::platform
