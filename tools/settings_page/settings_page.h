#pragma once

#include <ostream>

namespace tavlo {

/// Prints the page of the guide that lists all settings. False, with a line on standard error, when
/// a field has a control and nothing says what that is called.
bool PrintSettingsPage(std::ostream& out);

}  // namespace tavlo
