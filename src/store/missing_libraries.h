#pragma once

#include <string>

#include "store/disk.h"

namespace tavlo::store {

/// Links into the root those plug-in libraries that are installed and that the root lacks, as one
/// from an earlier release does. A library that stands there is never touched; a link that leads
/// nowhere any more, as after the program has moved, is made anew. What fails is passed over, and
/// the next start tries again. `shareFolder` is as for ProvisionRoot.
void AddMissingLibraries(Disk& disk, const std::string& installRoot,
                         const std::string& shareFolder);

}  // namespace tavlo::store
