#include "store/purge_date.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>

namespace tavlo::store {
namespace {

/// Counted from the start of the name.
constexpr int kBlanksBeforeTheMonth = 4;
constexpr int kNoon = 12;
constexpr int kLastMinuteOrSecond = 59;

std::optional<int> NumberOfDigits(std::string_view text) {
  int number = 0;
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (text.empty() || !std::all_of(text.begin(), text.end(), isDigit)) return {};
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc()) return {};
  return number;
}

/// The text before the next blank, which is taken off with it. Nothing when there is no blank.
std::optional<std::string_view> TakeField(std::string_view& text) {
  const auto blank = text.find(' ');
  if (blank == text.npos) return {};
  const auto field = text.substr(0, blank);
  text.remove_prefix(blank + 1);
  return field;
}

/// Month, day, year, hour, minute, second.
std::optional<std::array<int, 6>> NumbersOf(std::string_view name) {
  for (int blank = 0; blank < kBlanksBeforeTheMonth; ++blank) {
    if (!TakeField(name)) return {};
  }
  std::array<int, 6> numbers{};
  for (int& number : numbers) {
    const auto field = TakeField(name);
    const auto value = field ? NumberOfDigits(*field) : std::nullopt;
    if (!value) return {};
    number = *value;
  }
  return numbers;
}

/// The hour of the day of an hour that is told on a clock of twelve, which calls its 0 a 12.
std::optional<int> HourOfTheDay(int hour) {
  const bool afternoon = hour > kNoon;
  const int onTheClock = afternoon ? hour - kNoon : hour;
  if (onTheClock > kNoon) return {};
  return onTheClock % kNoon + (afternoon ? kNoon : 0);
}

std::chrono::year_month_day DayOf(const base::CalendarTime& moment) {
  return {std::chrono::year(moment.year), std::chrono::month(static_cast<unsigned>(moment.month)),
          std::chrono::day(static_cast<unsigned>(moment.day))};
}

std::chrono::sys_time<std::chrono::seconds> SecondOf(const base::CalendarTime& moment) {
  return std::chrono::sys_days(DayOf(moment)) + std::chrono::hours(moment.hour) +
         std::chrono::minutes(moment.minute) + std::chrono::seconds(moment.second);
}

/// Calendars of the library end at the year 32767, and months and days at 255.
bool DayExists(int year, int month, int day) {
  return year <= 9999 && month <= 12 && day <= 31 &&
         DayOf({.year = year, .month = month, .day = day}).ok();
}

}  // namespace

std::optional<base::CalendarTime> PurgeDate(std::string_view name) {
  const auto numbers = NumbersOf(name);
  if (!numbers) return {};
  const auto& [month, day, year, hour, minute, second] = *numbers;
  const auto hourOfTheDay = HourOfTheDay(hour);
  const bool exists = DayExists(year, month, day) && hourOfTheDay &&
                      minute <= kLastMinuteOrSecond && second <= kLastMinuteOrSecond;
  if (!exists) return {};
  return base::CalendarTime{.year = year,
                            .month = month,
                            .day = day,
                            .hour = *hourOfTheDay,
                            .minute = minute,
                            .second = second};
}

std::int64_t MinutesBetween(const base::CalendarTime& from, const base::CalendarTime& to) {
  return std::chrono::floor<std::chrono::minutes>(SecondOf(to) - SecondOf(from)).count();
}

}  // namespace tavlo::store
