#pragma once

#include <string>
#include <vector>

namespace tavlo::platform::desktop {

/// The files that a start was given on its command line, as full paths: a relative one is meant
/// from the folder in which the program was started. There are no options, so each argument is a
/// file whatever it begins with; an empty one is none. Paths are bytes and are not looked at.
std::vector<std::string> GivenFiles(int argc, const char* const* argv);

}  // namespace tavlo::platform::desktop
