#pragma once

#include <string>
#include <string_view>

namespace tavlo::base {

/// A text as one line of UTF-8, for a file that people read line by line. Control characters,
/// whatever breaks a line or turns its direction, and bytes that are no UTF-8 become "\x" and two
/// hexadecimal digits for each of their bytes, so they still tell one name from another.
std::string OneLine(std::string_view text);

/// The same without what is spelled there: what of a stranger's text a person may be shown.
std::string ShownPart(std::string_view text);

}  // namespace tavlo::base
