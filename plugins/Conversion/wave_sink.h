#pragma once

#include <cstdint>
#include <span>

#include "conversion_code.h"

namespace tavlo::conversion {

/// What a conversion makes. One thread at a time.
class WaveSink {
 public:
  virtual ~WaveSink() = default;

  /// Bytes behind those that were appended before.
  virtual ConversionCode Append(std::span<const std::uint8_t> bytes) = 0;
  /// Bytes in the place of the first ones.
  virtual ConversionCode ReplaceFront(std::span<const std::uint8_t> bytes) = 0;
};

}  // namespace tavlo::conversion
