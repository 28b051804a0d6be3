#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/time.h"

namespace tavlo::base {

/// The number value of a text: its longest numeric beginning (sign, digits, a decimal point), 0
/// when it does not begin with a number. "12ab" reads 12, the empty text reads 0.
double NumberValue(std::string_view text);

/// NumberValue, cut towards zero and clamped into the range of the result.
std::int64_t WholeNumberValue(std::string_view text);

/// A number in plain decimal form, without blanks, exponent or needless zeros.
std::string NumberText(double number);

/// Milliseconds as hours:minutes:seconds, each at least two digits. The fraction of a second is
/// dropped; what is negative reads 00:00:00; hours have no upper end.
std::string FormatHMS(double milliseconds);

/// A moment to the second. The year comes first, so that such lines sort by their text.
std::string MomentText(const CalendarTime& moment);

/// Characters of a text that is UTF-8 where it can be; a byte that is not counts as one character.
std::size_t CharacterCount(std::string_view text);

/// The first `count` characters of such a text; the whole text when it is shorter.
std::string_view FirstCharacters(std::string_view text, std::size_t count);

/// The longest beginning of such a text that has only whole characters and at most `count` bytes.
std::string_view FirstBytes(std::string_view text, std::size_t count);

/// The last `count` characters of such a text; the whole text when it is shorter.
std::string_view LastCharacters(std::string_view text, std::size_t count);

/// Whether a text ends like this, the letters a to z being one with their capitals: file names may
/// come from systems that know no case.
bool EndsInEitherCase(std::string_view text, std::string_view ending);
/// The same for how it begins.
bool StartsInEitherCase(std::string_view text, std::string_view beginning);

}  // namespace tavlo::base
