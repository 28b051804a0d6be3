#pragma once

#include <string>

#include "store/settings_database.h"

namespace tavlo::platform {

/// Opens an old release's database that is in Access format. All that can be read of it is read at
/// once and kept; every write is refused. Where the file is damaged that may be a part of it, with
/// whole values only.
///
/// `reader` is the path of the program that reads such files, in a process of its own with limits
/// on time and memory: the library for them was not written for files that somebody made up. It is
/// given four seconds, during which this call blocks, so it belongs on the thread of an errand.
store::OpenedDatabase OpenAccessDatabase(const std::string& path, const std::string& reader);

}  // namespace tavlo::platform
