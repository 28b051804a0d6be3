#pragma once

#include "store/disk.h"
#include "store/document_name.h"
#include "store/file_moves.h"
#include "store/rescue_count.h"
#include "store/work_folders.h"

namespace tavlo::store {

/// What a list of documents needs of the files that it shows.
struct DocumentFiles {
  Disk& disk;
  WorkFolders& folders;
  DocumentNames& names;
  FileMoves& moves;
  RescueCount& rescued;
};

}  // namespace tavlo::store
