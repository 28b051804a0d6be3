#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "conversion_code.h"

namespace tavlo::conversion {

/// What is converted, read from front to back. One thread at a time.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  /// In bytes, as it was when it was opened.
  virtual std::uint64_t Size() const = 0;
  /// Fills `target` and writes how many bytes came: fewer at the end alone.
  virtual ConversionCode Read(std::span<std::uint8_t> target, std::size_t& got) = 0;
  /// SourceChanged when all that was read is not what was there when it was opened, or it has been
  /// written to since.
  virtual ConversionCode CheckUnchanged() const = 0;
};

}  // namespace tavlo::conversion
