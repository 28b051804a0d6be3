#pragma once

#include <string>
#include <vector>

namespace tavlo::platform::desktop {

/// Starts the program in that file in a session of its own, and returns once it runs, or false when
/// it can not run. No shell is asked, not even for a script that names none. Any thread; it stalls
/// as long as the file does.
bool StartDetached(const std::string& file, const std::vector<std::string>& arguments);

}  // namespace tavlo::platform::desktop
