#pragma once

#include <functional>
#include <string>

#include "platform/disk/open_folder.h"
#include "store/folder_walk.h"

namespace tavlo::platform {

/// A folder that is open, with the plain files that stood in it then. It does not change, so
/// several walks may go over it, each on its own thread.
struct ListedFolder {
  /// Calls `goesOn` at each name.
  ListedFolder(const std::string& folder, const std::function<void()>& goesOn)
      : path(folder), open(::opendir(FolderPath(folder))), listing(ReadPlainFiles(open, goesOn)) {}

  /// How a walk over all of it ends.
  store::WalkEnd End() const {
    if (listing.processInTrouble) return store::WalkEnd::ProcessInTrouble;
    return listing.finished ? store::WalkEnd::Whole : store::WalkEnd::OutOfReach;
  }

  const std::string path;
  const OpenFolder open;
  const store::Listing listing;
};

}  // namespace tavlo::platform
