#include "platform/reach/machine_folders.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "platform/disk/open_folder.h"

namespace tavlo::platform {
namespace {

struct FoldersAndLinks {
  std::vector<std::string> folders;
  std::vector<std::string> links;  ///< What they lead to is not known.
};

bool IsFolder(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Whether an entry is a folder or a link, also where the file system tells neither by its name.
mode_t KindOf(const OpenFolder& folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return DTTOIF(entry.d_type);
  struct stat status;
  const int at = ::dirfd(folder.get());
  return ::fstatat(at, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 ? status.st_mode & S_IFMT
                                                                        : 0;
}

/// Nothing when the folder cannot be opened or read to its end.
std::optional<FoldersAndLinks> Read(const std::string& path, Errands::Sign& sign) {
  const OpenFolder folder(::opendir(path.c_str()));
  if (!folder) return {};
  FoldersAndLinks found;
  while (true) {
    errno = 0;
    const dirent* const entry = ::readdir(folder.get());
    if (!entry) break;
    sign.Give();
    if (entry->d_name[0] == '.') continue;
    const mode_t kind = KindOf(folder, *entry);
    if (kind == S_IFDIR) found.folders.emplace_back(entry->d_name);
    if (kind == S_IFLNK) found.links.emplace_back(entry->d_name);
  }
  if (errno != 0) return {};
  return found;
}

std::string NameOfMount(const std::string& point) {
  return point.substr(point.rfind('/') + 1) + " (" + point + ")";
}

}  // namespace

MachineFolders::MachineFolders(PlaceErrands& errands, MountedPlaces& mounts, std::string home)
    : errands_(errands), mounts_(mounts), home_(std::move(home)) {}

std::vector<store::StartingPlace> MachineFolders::StartingPlaces() {
  std::vector<store::StartingPlace> places;
  if (!home_.empty()) places.push_back({.name = "Home", .folder = home_});
  places.push_back({.name = "Computer", .folder = "/"});
  for (const std::string& point : mounts_.DisksAndShares()) {
    places.push_back({.name = NameOfMount(point), .folder = point});
  }
  return places;
}

std::optional<std::vector<std::string>> MachineFolders::FoldersIn(const std::string& folder) {
  const auto read = std::make_shared<std::optional<FoldersAndLinks>>();
  const bool answered =
      errands_.Run(folder, [read, folder](Errands::Sign& sign) { *read = Read(folder, sign); });
  if (!answered || !*read) return {};
  std::vector<std::string> folders = std::move((*read)->folders);
  const std::string before = folder.ends_with('/') ? folder : folder + "/";
  for (std::string& link : (*read)->links) {
    if (LeadsToAFolder(before + link)) folders.push_back(std::move(link));
  }
  return folders;
}

/// A link to where a call may stall counts as one to a folder: many links to a server that is away
/// would each be waited for, and who enters it learns whether it is one.
bool MachineFolders::LeadsToAFolder(const std::string& link) {
  return errands_.PlaceOf(link).mayStall || IsFolder(link);
}

}  // namespace tavlo::platform
