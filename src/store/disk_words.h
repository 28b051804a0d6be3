#pragma once

#include <string_view>

#include "store/disk.h"

namespace tavlo::store {

/// Why an operation failed, to end a sentence with: "the disk is full". For anything but Done.
std::string_view WhyNot(DiskResult result);

}  // namespace tavlo::store
