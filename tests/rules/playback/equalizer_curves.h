#pragma once

#include <array>

#include "forms/sound_pages.h"

namespace tavlo::test {

using Values = std::array<int, forms::kEqualizerBands>;

/// The curves of the three keys of the page, in decibels, lowest band first.
constexpr Values kLo{-18, -16, -14, -12, -8, -4, -2, 0, 4, 0, -4, -10};
constexpr Values kMid{0, 0, 0, -2, -6, -10, -10, -6, -2, 0, 0, 0};
constexpr Values kHi{-10, -4, 0, 4, 0, -2, -4, -8, -12, -14, -16, -18};

}  // namespace tavlo::test
