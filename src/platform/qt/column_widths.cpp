#include "platform/qt/column_widths.h"

#include <cstddef>
#include <cstdint>

namespace tavlo::platform::qt {
namespace {

/// What is still to be shared, and the sum of the wishes that share it.
struct Remainder {
  std::int64_t space = 0;
  std::int64_t wished = 0;
};

Remainder Unshared(const std::vector<int>& wishes, const std::vector<int>& widths, int space) {
  Remainder rest{space, 0};
  for (std::size_t i = 0; i < wishes.size(); ++i) {
    rest.space -= widths[i];
    if (widths[i] == 0) rest.wished += wishes[i];
  }
  return rest;
}

/// Gives their least to those whose share is below it; false when there are none left.
bool HoldToLeast(const std::vector<int>& wishes, const std::vector<int>& least, Remainder rest,
                 std::vector<int>& widths) {
  bool held = false;
  for (std::size_t i = 0; i < wishes.size(); ++i) {
    if (widths[i] > 0 || rest.space * wishes[i] >= least[i] * rest.wished) continue;
    widths[i] = least[i];
    held = true;
  }
  return held;
}

}  // namespace

std::vector<int> SharedWidths(const std::vector<int>& wishes, const std::vector<int>& least,
                              int space) {
  std::vector<int> widths(wishes.size(), 0);
  Remainder rest = Unshared(wishes, widths, space);
  while (HoldToLeast(wishes, least, rest, widths)) rest = Unshared(wishes, widths, space);
  for (std::size_t i = 0; i < wishes.size(); ++i) {
    if (widths[i] > 0 || wishes[i] == 0) continue;
    // Each takes its part of what is left, so that rounding leaves no gap at the end.
    widths[i] = static_cast<int>(rest.space * wishes[i] / rest.wished);
    rest.space -= widths[i];
    rest.wished -= wishes[i];
  }
  return widths;
}

}  // namespace tavlo::platform::qt
