#pragma once

#include <string>

namespace tavlo::platform::desktop {

/// Has the desktop's file manager show a folder and does not wait for it. `folder` is a full path
/// of bytes. False when there is nothing on the search path that would start. A desktop that takes
/// the folder and then shows nothing is not found out.
bool OpenFolder(const std::string& folder);

}  // namespace tavlo::platform::desktop
