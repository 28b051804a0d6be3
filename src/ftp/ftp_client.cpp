#include "ftp/ftp_client.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

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

}  // namespace

std::string fceMatchFile(std::string_view listing, std::size_t start, std::string_view name,
                         std::size_t longest) {
  listing.remove_prefix(std::min(start, listing.size()));
  while (true) {
    const std::size_t end = listing.find('\r');
    if (end == listing.npos) return {};
    if (listing.substr(0, end) == name) return std::string(name.substr(0, longest));
    listing.remove_prefix(std::min(end + 2, listing.size()));
  }
}

std::int64_t fceFileLength(std::string_view line, int first, int last) {
  const std::vector<std::string_view> columns = Columns(line.substr(0, line.find('\0')));
  // The last column is the name, which may be a number, too.
  const int end = std::min(last, static_cast<int>(columns.size()) - 1);
  std::int64_t length = 0;
  bool found = false;
  for (int column = first; column <= end; ++column) {
    const auto number = WholeNumber(columns[static_cast<std::size_t>(column - 1)]);
    // Owner and group may be numbers and stand before the length, the day stands behind the month.
    if (!number && found) break;
    if (!number) continue;
    length = *number;
    found = true;
  }
  return length;
}

}  // namespace tavlo::ftp
