#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace tavlo::test {

/// The layouts that old releases wrote: pages of 2 kB with texts of code page 1252, and pages of 4
/// kB with texts of two bytes a letter.
enum class Jet { Three, Four };

/// What a column holds, by the number that the file has for it. Only the fourth layout has Numeric.
enum class AccessType : std::uint8_t {
  Bool = 1,
  Byte = 2,
  Int = 3,
  Long = 4,
  Money = 5,
  Single = 6,
  Double = 7,
  Date = 8,
  Text = 10,
  Ole = 11,
  Memo = 12,
  Numeric = 16,
};

/// Nothing is null. Texts are UTF-8, the content of an Ole column is bytes; a moment counts in
/// days, a Numeric in hundredths.
using AccessValue = std::variant<std::monostate, bool, double, std::string>;
using AccessRow = std::vector<AccessValue>;

struct AccessColumn {
  std::string name;
  AccessType type = AccessType::Text;
};

struct AccessTable {
  std::string name;
  std::vector<AccessColumn> columns;
  std::vector<AccessRow> rows;
  /// Rows that were deleted, whose bytes are there still.
  std::set<std::size_t> deleted = {};
};

struct AccessFileForm {
  Jet layout = Jet::Four;
  /// The fourth layout may keep letters of one byte as such.
  bool compressedTexts = false;
  /// All pages but the first are hidden with this key; 0 for a file that is plain.
  std::uint32_t key = 0;
};

/// The bytes of an Access file with these tables, which the tests make up themselves: a memo stands
/// in its row, in a page of its own or in a chain of pages, as its length asks for.
std::string AccessFileBytes(const AccessFileForm& form, const std::vector<AccessTable>& tables);

}  // namespace tavlo::test
