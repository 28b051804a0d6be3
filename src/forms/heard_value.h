#pragma once

#include <string>

#include "forms/controls.h"

namespace tavlo::forms {

/// The value of a range as it is said, in the unit of its scale and rounded to its step.
double HeardValue(const Span& span, int value);

/// The same as words: "84 percent".
std::string HeardWords(const Span& span, int value);

/// The value of the range that is nearest to what was said, within the bounds.
int ValueHeardAs(const Span& span, double heard);

}  // namespace tavlo::forms
