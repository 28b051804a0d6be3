#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tavlo::platform::qt {

/// What the text of the byte count says.
struct ByteCount {
  std::int64_t bytes = 0;
  std::optional<int> percent;  ///< From 0 to 100; nothing where the length is not known.
};

/// Reads "0", " 12345 bytes" and " 12345 bytes  45%"; nothing from a text without figures.
std::optional<ByteCount> ReadByteCount(std::string_view text);

}  // namespace tavlo::platform::qt
