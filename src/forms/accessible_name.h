#pragma once

#include <string>

#include "forms/controls.h"

namespace tavlo::forms {

/// What a screen reader calls a control: the name that the form gives it for this, else its caption
/// without the ampersand, else its tooltip. A caption without a letter, such as an arrow, does not
/// count as a name.
std::string AccessibleName(const Command& command);
std::string AccessibleName(const Choice& choice);
std::string AccessibleName(const Range& range);
std::string AccessibleName(const Table& table);
/// A text box; a label is its own name.
std::string AccessibleName(const Text& box);

}  // namespace tavlo::forms
