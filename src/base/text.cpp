#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace tavlo::base {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t NumericPrefixLength(std::string_view text) {
  std::size_t at = 0;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  std::size_t digits = 0;
  bool pointSeen = false;
  for (; at < text.size(); ++at) {
    if (IsDigit(text[at])) {
      ++digits;
    } else if (text[at] == '.' && !pointSeen) {
      pointSeen = true;
    } else {
      break;
    }
  }
  return digits > 0 ? at : 0;
}

/// Length in bytes of the UTF-8 character at the beginning of `text`, 1 for a byte that begins
/// none.
std::size_t FirstCharacterLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80                   ? 1
                             : lead >= 0xC2 && lead < 0xE0 ? 2
                             : lead >= 0xE0 && lead < 0xF0 ? 3
                             : lead >= 0xF0 && lead < 0xF5 ? 4
                                                           : 1;
  if (length > text.size()) return 1;
  for (std::size_t i = 1; i < length; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 1;
  }
  return length;
}

char Lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                              : character;
}

}  // namespace

double NumberValue(std::string_view text) {
  text = text.substr(0, NumericPrefixLength(text));
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto read =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (read.ec == std::errc::result_out_of_range) {
    // A number with only zeros in front of its point is out of range because it is too small.
    if (text.find_first_of("123456789") > text.find('.')) return 0;
    return text.starts_with('-') ? -std::numeric_limits<double>::max()
                                 : std::numeric_limits<double>::max();
  }
  return value;
}

std::int64_t WholeNumberValue(std::string_view text) {
  // 2^63 itself does not fit, so the clamp stays a little below it.
  constexpr double kLimit = 9.2e18;
  return static_cast<std::int64_t>(std::clamp(std::trunc(NumberValue(text)), -kLimit, kLimit));
}

std::string NumberText(double number) {
  char text[400];
  const auto written =
      std::to_chars(text, text + sizeof text, number == 0 ? 0.0 : number, std::chars_format::fixed);
  return {text, written.ptr};
}

std::string FormatHMS(double milliseconds) {
  const double whole = std::clamp(std::floor(milliseconds / 1000.0), 0.0,
                                  double{std::numeric_limits<std::int32_t>::max()});
  const auto seconds = static_cast<std::int64_t>(whole);
  const auto twoDigits = [](std::int64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  return twoDigits(seconds / 3600) + ":" + twoDigits(seconds / 60 % 60) + ":" +
         twoDigits(seconds % 60);
}

std::string MomentText(const CalendarTime& moment) {
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", moment.year, moment.month,
                moment.day, moment.hour, moment.minute, moment.second);
  return text;
}

std::size_t CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(FirstCharacterLength(text));
  return count;
}

std::string_view FirstCharacters(std::string_view text, std::size_t count) {
  std::size_t length = 0;
  for (; count > 0 && length < text.size(); --count) {
    length += FirstCharacterLength(text.substr(length));
  }
  return text.substr(0, length);
}

std::string_view FirstBytes(std::string_view text, std::size_t count) {
  if (text.size() <= count) return text;
  constexpr std::size_t kLongestCharacter = 4;
  for (std::size_t back = 1; back < kLongestCharacter && back <= count; ++back) {
    const std::size_t begin = count - back;
    if (FirstCharacterLength(text.substr(begin)) > back) return text.substr(0, begin);
  }
  return text.substr(0, count);
}

std::string_view LastCharacters(std::string_view text, std::size_t count) {
  std::size_t surplus = CharacterCount(text);
  for (; surplus > count; --surplus) text.remove_prefix(FirstCharacterLength(text));
  return text;
}

bool EndsInEitherCase(std::string_view text, std::string_view ending) {
  if (text.size() < ending.size()) return false;
  return std::ranges::equal(text.substr(text.size() - ending.size()), ending, {}, Lower, Lower);
}

bool StartsInEitherCase(std::string_view text, std::string_view beginning) {
  return std::ranges::equal(text.substr(0, beginning.size()), beginning, {}, Lower, Lower);
}

}  // namespace tavlo::base
