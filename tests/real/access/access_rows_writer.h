#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "access/access_file.h"

namespace tavlo::test {

/// Appends a whole number, the byte that counts least first.
template <typename Number>
void Put(std::string& bytes, Number number, std::size_t size = sizeof(Number)) {
  const auto plain = static_cast<std::uint64_t>(number);
  for (std::size_t byte = 0; byte < size; ++byte) {
    bytes.push_back(static_cast<char>(plain >> (8 * byte)));
  }
}

/// Bytes that a column has in every row; 0 for one whose length differs from row to row, and for a
/// truth, which is a bit of the row's mask.
std::size_t FixedSize(AccessType type);

/// A text as the file keeps it.
std::string StoredText(const AccessFileForm& form, const std::string& text);

/// Puts a long value away and gives the number of its place.
struct LongValues {
  /// One row of a page that nothing else uses.
  std::function<std::uint32_t(const std::string& bytes)> keep;
  /// The most bytes of such a row.
  std::size_t room;
};

/// One row of a table, as it stands in a page.
std::string StoredRow(const AccessFileForm& form, const std::vector<AccessColumn>& columns,
                      const AccessRow& values, const LongValues& longValues);

}  // namespace tavlo::test
