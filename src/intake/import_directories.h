#pragma once

#include <string>

#include "base/message_box.h"
#include "store/work_folders.h"

/// Files without demographics wait in one of 26 directories. Number 0 is the import folder itself,
/// 1 to 25 are the folders of that name in it. A directory is named by its number as text.
namespace tavlo::intake {

inline constexpr int kImportDirectories = 26;

/// Full path of a directory, with a trailing separator.
std::string ImportDirectoryPath(const store::WorkFolders& folders, const std::string& directory);

/// What a list shows whose directory cannot be walked over.
base::MessageBox ImportPathFault(const store::WorkFolders& folders, const std::string& directory);

}  // namespace tavlo::intake
