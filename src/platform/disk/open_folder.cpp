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

/// The plain files whose names begin with a dot, or those whose names do not.
store::Listing ReadFiles(const OpenFolder& folder, bool withDot,
                         const std::function<void()>& goesOn) {
  if (!folder) return {.processInTrouble = IsOfTheProcess(errno)};
  store::Listing listing{.started = true};
  errno = 0;
  while (const dirent* const entry = ::readdir(folder.get())) {
    if ((entry->d_name[0] == '.') == withDot && IsPlainFile(folder.get(), *entry)) {
      listing.names.emplace_back(entry->d_name);
    }
    goesOn();
    errno = 0;
  }
  listing.finished = errno == 0;
  listing.processInTrouble = IsOfTheProcess(errno);
  return listing;
}

}  // namespace

store::Listing ReadPlainFiles(const OpenFolder& folder, const std::function<void()>& goesOn) {
  return ReadFiles(folder, false, goesOn);
}

store::Listing ReadDotFiles(const OpenFolder& folder, const std::function<void()>& goesOn) {
  return ReadFiles(folder, true, goesOn);
}

}  // namespace tavlo::platform
