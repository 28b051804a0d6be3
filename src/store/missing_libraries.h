#pragma once

#include <string>

#include "store/disk.h"
#include "store/library_inspector.h"

namespace tavlo::store {

/// Links into the root those plug-in libraries that are installed and that the root lacks, as one
/// from an earlier release does. A link that leads nowhere any more, as after the program has
/// moved, is made anew. A file that this machine can not load, as in a root that was copied from
/// another one, gives way to a link and stays beside it, its name ending in ".foreign"; any other
/// file and link is never touched. What fails is passed over, and the next start tries again.
/// `shareFolder` is as for ProvisionRoot.
void AddMissingLibraries(Disk& disk, LibraryInspector& inspector, const std::string& installRoot,
                         const std::string& shareFolder);

}  // namespace tavlo::store
