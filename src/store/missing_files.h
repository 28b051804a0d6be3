#pragma once

#include <string>

#include "store/disk.h"

/// What an older root lacks of the installed files. Each file appears whole or not at all, and one
/// that stands there is never touched. What fails is passed over. `shareFolder` is as for
/// ProvisionRoot.
namespace tavlo::store {

/// Copies into the root those prompts that are installed and that the root lacks, as one from an
/// earlier release does. A user's own recordings stay. What failed, or gives no answer, the next
/// start tries again.
void AddMissingPrompts(Disk& disk, const std::string& installRoot, const std::string& shareFolder);

/// Copies the installed fascia pictures into a root that has none at all. Where there is one the
/// user has chosen what to keep, and a picture that was thrown away does not come back.
void AddMissingFascia(Disk& disk, const std::string& installRoot, const std::string& shareFolder);

}  // namespace tavlo::store
