#include "intake/profile_filters.h"

#include <algorithm>

#include "base/text.h"

namespace tavlo::intake {
namespace {

bool IsLetterOrDigit(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

}  // namespace

std::string WholeNumberOf(std::string_view typed) {
  return std::to_string(base::WholeNumberValue(typed));
}

std::string NumberFromOne(std::string_view typed) {
  const std::string number = WholeNumberOf(typed);
  return number == "0" ? "1" : number;
}

std::string LettersAndDigits(std::string_view typed) {
  // Cutting from the end until none is left leaves what stands in front of the first one.
  return std::string(typed.begin(), std::ranges::find_if_not(typed, IsLetterOrDigit));
}

std::string SubjectOf(std::string_view typed) {
  const std::string subject = LettersAndDigits(typed);
  return subject.empty() ? "0" : subject;
}

}  // namespace tavlo::intake
