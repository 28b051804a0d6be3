#pragma once

#include <array>
#include <cstddef>

#include "forms/configuration_form.h"
#include "support/simulated_audio.h"

namespace tavlo::test {

/// A curve of the equalizer with the sign of its sliders.
using EqualizerCurve = std::array<int, forms::kEqualizerBands>;

inline constexpr EqualizerCurve kLoCurve{-18, -16, -14, -12, -8, -4, -2, 0, 4, 0, -4, -10};

/// What the sliders of the page show.
inline EqualizerCurve ShownCurve(const forms::EqualizerPage& page) {
  EqualizerCurve curve{};
  for (std::size_t band = 0; band < curve.size(); ++band) curve[band] = page.sldEQ[band].Value;
  return curve;
}

/// What the player was last told, which must have been told something.
inline EqualizerCurve ToldCurve(const SimulatedPlayer& player) {
  EqualizerCurve curve{};
  for (std::size_t band = 0; band < curve.size(); ++band) {
    curve[band] = -static_cast<int>(player.Gains.back()[band]);
  }
  return curve;
}

}  // namespace tavlo::test
