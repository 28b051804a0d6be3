#pragma once

#include "forms/controls.h"

namespace tavlo::test {

/// A hand takes a slider, moves it to the value in one go and lets it go there.
inline void Drag(forms::Range& slider, int value) {
  slider.Press();
  slider.Change(value);
  slider.Release();
}

}  // namespace tavlo::test
