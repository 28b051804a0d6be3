#pragma once

#include <string>

#include "store/file_moves.h"
#include "store/work_folders.h"

namespace tavlo::store {

/// The name of a document with `position` (in samples) in its saved position: the field before the
/// name's last blank. A position that a name cannot hold is cut to the last that it can. A name
/// that has a tail thus gets it in the tail's minute. The name as it was when its blanks do not
/// stand as the grammar wants them.
std::string WithSavedPosition(const std::string& name, double position);

/// The name under which a document is completed: at position 0, or as it is where that would be
/// longer than a name may be.
std::string CompletedName(const std::string& name);

/// Renames the selected Queue document so that its name carries the position, and puts the new name
/// into `selectedQueueFile`. Done also when the name is to stay as it is. Anything else: the old
/// name stays selected. AlreadyThere: something waits under the new name, and is left alone.
Moved WriteSavedPosition(double position, std::string& selectedQueueFile,
                         const WorkFolders& folders, FileMoves& moves);

}  // namespace tavlo::store
