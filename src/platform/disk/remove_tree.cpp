#include "platform/disk/remove_tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/disk/disk_result.h"
#include "platform/disk/file_handle.h"
#include "platform/disk/open_folder.h"

namespace tavlo::platform {
namespace {

using store::DiskResult;

/// What a folder holds. The reason in errno when `complete` is false.
struct Contents {
  bool complete = false;
  std::vector<std::string> names;
};

Contents NamesIn(DIR* folder) {
  Contents contents;
  errno = 0;
  while (const dirent* const entry = ::readdir(folder)) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") contents.names.emplace_back(name);
  }
  contents.complete = errno == 0;
  return contents;
}

OpenFolder OpenIn(int parent, const std::string& name) {
  FileHandle handle(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
  if (!handle) return {};
  OpenFolder folder(::fdopendir(handle.Get()));
  if (folder) std::ignore = handle.Release();
  return folder;
}

DiskResult RemoveIn(int parent, const std::string& name, const std::function<void()>& goesOn) {
  goesOn();
  if (::unlinkat(parent, name.c_str(), 0) == 0) return DiskResult::Done;
  if (errno != EISDIR && errno != EPERM) return ResultOf(errno);
  const int refused = errno;
  const OpenFolder folder = OpenIn(parent, name);
  // What is no folder was refused for another reason.
  if (!folder) return ResultOf(errno == ENOTDIR ? refused : errno);
  const Contents contents = NamesIn(folder.get());
  if (!contents.complete) return ResultOf(errno);
  for (const std::string& inner : contents.names) {
    const DiskResult removed = RemoveIn(::dirfd(folder.get()), inner, goesOn);
    // Somebody else may be removing, too.
    if (removed != DiskResult::Done && removed != DiskResult::NotFound) return removed;
  }
  return ResultOfCall(::unlinkat(parent, name.c_str(), AT_REMOVEDIR));
}

}  // namespace

DiskResult RemoveTree(const std::string& path, const std::function<void()>& goesOn) {
  return RemoveIn(AT_FDCWD, path, goesOn);
}

}  // namespace tavlo::platform
