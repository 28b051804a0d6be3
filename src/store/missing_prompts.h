#pragma once

#include <string>

#include "store/disk.h"

namespace tavlo::store {

/// Copies into the root those prompts that are installed and that the root lacks, as one from an
/// earlier release does. A file that stands there is never touched, so a user's own recordings
/// stay. Each appears whole or not at all; what fails is passed over, and the next start tries
/// again. `shareFolder` is as for ProvisionRoot.
void AddMissingPrompts(Disk& disk, const std::string& installRoot, const std::string& shareFolder);

}  // namespace tavlo::store
