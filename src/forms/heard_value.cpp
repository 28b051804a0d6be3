#include "forms/heard_value.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace tavlo::forms {

double HeardValue(const Span& span, int value) {
  const Scale& scale = span.heard;
  const double share = 1.0 * (value - span.minimum) / (span.maximum - span.minimum);
  const double heard = scale.atMinimum + share * (scale.atMaximum - scale.atMinimum);
  // Adding zero turns a negative zero into one without a sign.
  return std::round(heard / scale.step) * scale.step + 0.0;
}

std::string HeardWords(const Span& span, int value) {
  std::ostringstream words;
  words << HeardValue(span, value) << ' ' << span.heard.unit;
  return words.str();
}

int ValueHeardAs(const Span& span, double heard) {
  const Scale& scale = span.heard;
  const double share = (heard - scale.atMinimum) / (scale.atMaximum - scale.atMinimum);
  const double value = span.minimum + share * (span.maximum - span.minimum);
  return span.Nearest(std::llround(std::clamp(value, -1e9, 1e9)));
}

}  // namespace tavlo::forms
