#pragma once

#include <string>
#include <string_view>

/// What the fields of an author profile make of a typed text. They keep what would break a
/// document's name out of it.
namespace tavlo::intake {

/// The number value of the text as a whole decimal: "12a" gives 12, the empty text 0.
std::string WholeNumberOf(std::string_view typed);
/// The same for a field that is never 0: then it is 1.
std::string NumberFromOne(std::string_view typed);

/// The text cut from its end until only letters and digits of plain ASCII are left. It is the end
/// that goes and not the character that is not allowed, so one that is typed in the middle takes
/// everything behind it along. This is intended.
std::string LettersAndDigits(std::string_view typed);
/// The same for a field that is never empty: then it is "0".
std::string SubjectOf(std::string_view typed);

}  // namespace tavlo::intake
