#pragma once

#include <string>

#include "store/library_inspector.h"

namespace tavlo::platform {

/// What the head of a file says of the machine that it is for, which must be that of this program.
/// A link is followed. May stall with the disk.
store::LibraryFit FitByHead(const std::string& path);

}  // namespace tavlo::platform
