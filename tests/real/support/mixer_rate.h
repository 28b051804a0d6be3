#pragma once

#include "platform/sound/rt_mixer.h"

namespace tavlo::test {

/// What the mixer renders in its tests, in frames a second.
inline constexpr int kMixerRate = 48000;
/// A ramp of the mixer at that rate.
inline constexpr platform::FrameCount kRampFrames =
    kMixerRate * platform::RtMixer::kRampMilliseconds / 1000;

}  // namespace tavlo::test
