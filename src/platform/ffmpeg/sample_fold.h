#pragma once

#include <algorithm>

/// From the channels of a file to the one or two that are played.
namespace tavlo::platform {

inline int FoldedChannels(int stored) { return std::min(stored, 2); }

/// A sample as the rest of the program may rely on it: within -1 to 1, and a number. A value that
/// is not a number would stay in every filter behind it for good.
inline float Tamed(float value) {
  if (!(value >= -1.0F)) return value < -1.0F ? -1.0F : 0.0F;
  return std::min(value, 1.0F);
}

/// Folds one moment of `stored` channels into `played` (1 or 2). Of more than two, the first is
/// left and the second right; all others are heard on both sides, since in a recording with a
/// microphone for each speaker any channel may hold the only voice. Never louder than full scale.
inline void FoldMoment(const float* values, int stored, int played, float* target) {
  if (stored == played) {
    std::copy_n(values, stored, target);
    return;
  }
  const float left = values[0];
  const float right = stored > 1 ? values[1] : left;
  if (played == 1) {
    target[0] = (left + right) / 2;
    return;
  }
  constexpr float kShared = 0.7F;
  float shared = 0;
  for (int channel = 2; channel < stored; ++channel) shared += kShared * values[channel];
  const float whole = 1 + kShared * static_cast<float>(std::max(stored - 2, 0));
  target[0] = (left + shared) / whole;
  target[1] = (right + shared) / whole;
}

}  // namespace tavlo::platform
