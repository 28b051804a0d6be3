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

/// Renames the selected Queue document so that its name carries the position, and puts the new name
/// into `selectedQueueFile`. Silent: when the file cannot be moved the old name stays selected.
void WriteSavedPosition(double position, std::string& selectedQueueFile, const WorkFolders& folders,
                        FileMoves& moves);

}  // namespace tavlo::store
