#pragma once

#include <string>

#include "store/disk.h"
#include "store/settings_store.h"
#include "store/work_folders.h"

namespace tavlo::store {

/// A root that was copied from another machine, on which its user's home had another name, has
/// paths in its settings that lead into that home. Each path below the deck of a home beside this
/// user's that is not on this machine is taken to mean the same place below this root, and stored
/// so. Any other path is kept: the folder may be there, or may be a share that is away.
///
/// Runs at each start, before the settings are shown. Gives what the quiet line should say of it;
/// the empty text when nothing was stored.
std::string FollowMovedRoot(Disk& disk, const WorkFolders& folders, SettingsStore& settings);

}  // namespace tavlo::store
