#pragma once

#include "store/disk.h"

namespace tavlo::platform {

/// What an errno means to the rules; 0 is Done.
store::DiskResult ResultOf(int error);

/// The result of a call that gives 0, or -1 and errno.
store::DiskResult ResultOfCall(int returned);

/// Whether an errno tells of the process and not of a file: it has no handles or memory left.
bool IsOfTheProcess(int error);

}  // namespace tavlo::platform
