#pragma once

#include <string>

namespace tavlo::platform::desktop {

/// The home that HOME names, else the one that the system knows for the user; without a trailing
/// separator, so the root is empty, as is one that nobody knows. Paths are bytes, so a home whose
/// name is no proper text is as good as any.
std::string HomeFolder();

/// The folder in the home under which everything of this user stands, without a trailing separator.
std::string InstallRoot();

/// The folder of what an installation supplies, beside the running program.
std::string ShareFolder();

/// The program that reads Access files, installed beside the running program too.
std::string AccessReader();

}  // namespace tavlo::platform::desktop
