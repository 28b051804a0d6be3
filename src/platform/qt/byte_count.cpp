#include "platform/qt/byte_count.h"

#include <algorithm>

#include "base/text.h"

namespace tavlo::platform::qt {

std::optional<ByteCount> ReadByteCount(std::string_view text) {
  const std::size_t begin = text.find_first_of("0123456789");
  if (begin == text.npos) return std::nullopt;
  ByteCount count{.bytes = base::WholeNumberValue(text.substr(begin))};
  const std::size_t end = text.rfind('%');
  if (end == text.npos) return count;
  const std::size_t blank = text.find_last_of(' ', end);
  if (blank == text.npos) return count;
  const std::int64_t percent = base::WholeNumberValue(text.substr(blank + 1, end - blank - 1));
  count.percent = static_cast<int>(std::clamp<std::int64_t>(percent, 0, 100));
  return count;
}

}  // namespace tavlo::platform::qt
