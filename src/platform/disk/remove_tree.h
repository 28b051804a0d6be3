#pragma once

#include <functional>
#include <string>

#include "store/disk.h"

namespace tavlo::platform {

/// Removes a folder and all that it holds; ends at the first thing that can not be removed. Links
/// are removed and not followed. Calls `goesOn` again and again.
store::DiskResult RemoveTree(const std::string& path, const std::function<void()>& goesOn);

}  // namespace tavlo::platform
