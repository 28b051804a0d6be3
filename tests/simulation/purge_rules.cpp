#include "simulation/purge_rules.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <sstream>
#include <vector>

namespace tavlo::simulation {
namespace {

constexpr std::size_t kFieldsOfAHead = 16;
constexpr std::size_t kMonth = 4;
constexpr std::size_t kLongestNumber = 4;

std::vector<std::string> FieldsOf(const std::string& name) {
  std::vector<std::string> fields;
  std::istringstream text(name);
  for (std::string field; std::getline(text, field, ' ');) fields.push_back(field);
  return fields;
}

bool IsNumber(const std::string& text) {
  return !text.empty() && text.size() <= kLongestNumber &&
         std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<std::chrono::sys_days> DayOf(int year, int month, int day) {
  const std::chrono::year_month_day date{std::chrono::year{year},
                                         std::chrono::month{static_cast<unsigned>(month)},
                                         std::chrono::day{static_cast<unsigned>(day)}};
  if (month > 12 || day > 31 || !date.ok()) return {};
  return std::chrono::sys_days{date};
}

}  // namespace

std::optional<std::int64_t> AgeByName(const std::string& name, const base::CalendarTime& now) {
  const std::vector<std::string> fields = FieldsOf(name);
  if (fields.size() < kFieldsOfAHead) return {};
  std::array<int, 6> told{};
  for (std::size_t at = 0; at < told.size(); ++at) {
    if (!IsNumber(fields[kMonth + at])) return {};
    told[at] = std::stoi(fields[kMonth + at]);
  }
  const auto& [month, day, year, hour, minute, second] = told;
  const auto dictated = DayOf(year, month, day);
  const auto today = DayOf(now.year, now.month, now.day);
  if (!dictated || !today || hour > 24 || minute > 59 || second > 59) return {};
  const int hourMeant = hour == 12 ? 0 : hour == 24 ? 12 : hour;
  const std::chrono::seconds age = *today - *dictated + std::chrono::hours{now.hour - hourMeant} +
                                   std::chrono::minutes{now.minute - minute} +
                                   std::chrono::seconds{now.second - second};
  return std::chrono::floor<std::chrono::minutes>(age).count();
}

}  // namespace tavlo::simulation
