#pragma once

#include <new>
#include <string>

#include "conversion_code.h"

namespace tavlo::conversion {

/// Runs a conversion of two paths behind a C call, across which nothing may be thrown.
template <typename Conversion>
ConversionCode AsCCall(const char* source, const char* destination, Conversion convert) {
  if (source == nullptr || destination == nullptr) return ConversionCode::BadCall;
  try {
    return convert(std::string(source), std::string(destination));
  } catch (const std::bad_alloc&) {
    return ConversionCode::NoMemory;
  }
}

}  // namespace tavlo::conversion
