#pragma once

#include <new>
#include <string>

#include "conversion_code.h"

namespace tavlo::conversion {

/// Runs what takes paths behind a C call, across which nothing may be thrown.
template <typename Work, typename... Paths>
ConversionCode AsCCall(Work work, Paths... paths) {
  if ((... || !paths)) return ConversionCode::BadCall;
  try {
    return work(std::string(paths)...);
  } catch (const std::bad_alloc&) {
    return ConversionCode::NoMemory;
  }
}

}  // namespace tavlo::conversion
