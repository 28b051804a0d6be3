#pragma once

#include <string>
#include <string_view>

namespace tavlo::platform {

/// The text in a form that a bus takes, and that harms no terminal or panel that shows it: as the
/// windows show it on one line, and without the code points that a bus refuses.
std::string ToBusText(std::string_view text);

}  // namespace tavlo::platform
