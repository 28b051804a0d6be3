#pragma once

#include <string>

#include "store/settings_database.h"

namespace tavlo::platform {

/// Puts a database of our own in the place of one in another format, with all that could be read of
/// it: `old` is what stands at the path, `databases` makes and opens ours. What stood there stays
/// beside it, its name ending in ".md1", in place of one that has that name. A crash leaves the old
/// file or the new one at the path, whole. The empty text, or what failed, for a person; then the
/// old file stands where it stood.
std::string AdoptSettings(const std::string& path, store::SettingsDatabase& old,
                          store::SettingsDatabases& databases);

}  // namespace tavlo::platform
