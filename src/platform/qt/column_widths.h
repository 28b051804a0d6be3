#pragma once

#include <vector>

namespace tavlo::platform::qt {

/// Shares out the space in proportion to the wishes. A share that would be below its least grows to
/// it at the cost of the others; when not even the leasts fit, each gets its least. A wish of 0
/// gets nothing. Space and leasts are in one unit, which is that of the result; the wishes may be
/// in any.
std::vector<int> SharedWidths(const std::vector<int>& wishes, const std::vector<int>& least,
                              int space);

}  // namespace tavlo::platform::qt
