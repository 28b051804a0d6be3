#pragma once

#include <functional>
#include <string>

#include "store/disk.h"

namespace tavlo::platform {

/// Removes a folder and all that it holds; ends at the first thing that can not be removed. Links
/// are removed and not followed. On any thread; waits for the disk, and calls `goesOn` on the same
/// thread, once for each thing that is to be removed.
store::DiskResult RemoveTree(const std::string& path, const std::function<void()>& goesOn);

}  // namespace tavlo::platform
