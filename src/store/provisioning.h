#pragma once

#include <string>

#include "store/disk.h"
#include "store/settings_database.h"

namespace tavlo::store {

/// Makes the install root of a first start out of the installed files: a settings database with its
/// rows, copies of the prompts and the fascia pictures, and links to those plug-in libraries that
/// are installed. `shareFolder` holds them under the names that they have below the root. All of it
/// is built beside the root and renamed, so that a crash leaves the whole root or none.
///
/// A root that stands already is left as it is, whatever it lacks. Returns the empty text, or a
/// text for the person that names what failed; then there is no root, or one that gives no answer.
std::string ProvisionRoot(Disk& disk, SettingsDatabases& databases, const std::string& installRoot,
                          const std::string& shareFolder);

/// The text for the person about a root that cannot be had, for a reason in whole sentences.
std::string RootFailure(const std::string& installRoot, const std::string& reason);

}  // namespace tavlo::store
