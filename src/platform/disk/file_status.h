#pragma once

#include <sys/stat.h>

#include <cstdint>

#include "store/disk.h"

/// What the kernel tells of an open file.
namespace tavlo::platform {

/// A moment in nanoseconds since 1970.
std::int64_t NanosecondsOf(const timespec& moment);

store::FileFacts FactsOf(const struct stat& status);

/// The later one of the last writing and the last change of anything, since not every file system
/// notes the second.
std::int64_t ChangedAtOf(const struct stat& status);

/// Whether the owner of a file may write it.
bool IsWritable(const struct stat& status);
/// Makes an open file writable for its owner.
store::DiskResult MakeWritable(int handle, const struct stat& status);

}  // namespace tavlo::platform
