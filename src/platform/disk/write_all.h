#pragma once

#include <cstddef>

namespace tavlo::platform {

/// Writes all of it. False, with the reason in errno, when it could not be.
bool WriteAll(int handle, const char* bytes, std::size_t count);

}  // namespace tavlo::platform
