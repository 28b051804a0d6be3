#include "platform/disk/open_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/disk/disk_result.h"

namespace tavlo::platform {
namespace {

/// What cannot be asked counts as one: opening it decides.
bool IsPlainFile(DIR* folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_REG;
  struct stat status;
  return ::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
         S_ISREG(status.st_mode);
}

}  // namespace

store::Listing ReadPlainFiles(const OpenFolder& folder, const std::function<void()>& goesOn) {
  if (!folder) return {.processInTrouble = IsOfTheProcess(errno)};
  store::Listing listing{.started = true};
  errno = 0;
  while (const dirent* const entry = ::readdir(folder.get())) {
    if (entry->d_name[0] != '.' && IsPlainFile(folder.get(), *entry)) {
      listing.names.emplace_back(entry->d_name);
    }
    goesOn();
    errno = 0;
  }
  listing.finished = errno == 0;
  listing.processInTrouble = IsOfTheProcess(errno);
  return listing;
}

}  // namespace tavlo::platform
