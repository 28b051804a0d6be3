#include "ftp/ftp_client.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "base/text.h"

namespace tavlo::ftp {
namespace {

std::vector<std::string_view> Columns(std::string_view line) {
  std::vector<std::string_view> columns;
  while (true) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t\r\n"), line.size()));
    if (line.empty()) return columns;
    const std::size_t end = std::min(line.find_first_of(" \t\r\n"), line.size());
    columns.push_back(line.substr(0, end));
    line.remove_prefix(end);
  }
}

std::optional<std::int64_t> WholeNumber(std::string_view column) {
  std::int64_t number = 0;
  const char* const end = column.data() + column.size();
  const auto read = std::from_chars(column.data(), end, number);
  if (read.ec != std::errc{} || read.ptr != end || number < 0) return {};
  return number;
}

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

bool IsTime(std::string_view column) { return column.find(':') != column.npos; }

/// A day of the month stands between the month's name and a year or a time.
bool IsDay(std::string_view before, std::int64_t number, std::string_view behind) {
  const bool year = behind.size() == 4 && std::ranges::all_of(behind, IsDigit);
  return number >= 1 && number <= 31 && !WholeNumber(before) && (year || IsTime(behind));
}

/// Some servers write "type=file;size=7;" instead of columns.
bool HoldsFacts(std::string_view column) {
  return column.ends_with(';') && column.find('=') != column.npos;
}

std::int64_t LengthFact(std::string_view facts) {
  constexpr std::string_view kSize = "size=";
  while (!facts.empty()) {
    const std::string_view fact = facts.substr(0, facts.find(';'));
    if (base::StartsInEitherCase(fact, kSize)) {
      return WholeNumber(fact.substr(kSize.size())).value_or(0);
    }
    facts.remove_prefix(std::min(fact.size() + 1, facts.size()));
  }
  return 0;
}

}  // namespace

std::vector<std::string_view> LinesOf(std::string_view listing) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  // Each CR ends a line, and what stands behind it is taken for its LF.
  for (std::size_t end = 0; end < listing.size(); ++end) {
    if (listing[end] != '\r') continue;
    lines.push_back(start < end ? listing.substr(start, end - start) : std::string_view());
    start = end + 2;
  }
  return lines;
}

std::string fceMatchFile(std::string_view listing, std::size_t start, std::string_view name,
                         std::size_t longest) {
  listing.remove_prefix(std::min(start, listing.size()));
  const std::vector<std::string_view> lines = LinesOf(listing);
  const bool stands = std::ranges::find(lines, name) != lines.end();
  return stands ? std::string(name.substr(0, longest)) : std::string();
}

std::int64_t fceFileLength(std::string_view line, int first, int last) {
  line = line.substr(0, line.find_first_of(std::string_view("\r\n\0", 3)));
  const std::vector<std::string_view> columns = Columns(line);
  if (columns.empty()) return 0;
  if (HoldsFacts(columns.front())) return LengthFact(columns.front());
  // A line that begins with the date has the length right behind it, and the name may be numbers.
  if (IsDigit(columns.front().front())) last = std::min(first, last);
  // The last column is the name, which may be a number, too.
  const int end = std::min(last, static_cast<int>(columns.size()) - 1);
  std::optional<std::int64_t> length;
  int lengthIn = 0;
  for (int column = first; column <= end; ++column) {
    const auto at = static_cast<std::size_t>(column - 1);
    const auto number = WholeNumber(columns[at]);
    const std::string_view before = at == 0 ? std::string_view() : columns[at - 1];
    const bool date = IsTime(columns[at]) || (number && IsDay(before, *number, columns[at + 1]));
    if (number && !date) {
      length = number;
      lengthIn = column;
      continue;
    }
    // In the first column it may have been the owner's, with a word for the group behind it.
    if (length && (date || lengthIn > first)) break;
  }
  return length.value_or(0);
}

}  // namespace tavlo::ftp
