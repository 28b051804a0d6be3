#pragma once

#include <dirent.h>

#include <functional>
#include <memory>
#include <string>

#include "store/disk.h"

namespace tavlo::platform {

/// What a folder is called in a call of the kernel: the empty path means the current folder.
inline const char* FolderPath(const std::string& folder) {
  return folder.empty() ? "." : folder.c_str();
}

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

/// What stands in a folder that was just opened. Of null, the reason in errno is told. Calls
/// `goesOn` at each name.
store::Listing ReadPlainFiles(const OpenFolder& folder, const std::function<void()>& goesOn);
/// The same for the files whose names begin with a dot.
store::Listing ReadDotFiles(const OpenFolder& folder, const std::function<void()>& goesOn);

}  // namespace tavlo::platform
