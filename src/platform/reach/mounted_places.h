#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/disk/file_handle.h"
#include "platform/reach/mount_table.h"
#include "platform/reach/places.h"

namespace tavlo::platform {

/// Where paths stand on this machine. Mounts that come and go are heard of at the next question,
/// and so is a link at the end of a path. A link on the way to its folder that is led elsewhere is
/// heard of `kRemembered` later: who goes through a folder asks for each of its files, and several
/// times.
class MountedPlaces : public Places {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;
  /// Short beside what a place takes to stall, long beside what a file takes.
  static constexpr std::chrono::milliseconds kRemembered{20};

  explicit MountedPlaces(Clock clock = std::chrono::steady_clock::now);

  /// A path that is not full is one below the process's current folder.
  Place PlaceOf(const std::string& path) override;
  Place PlaceOfEntry(const std::string& path) override;
  /// Where the disks and shares stand that hold files of persons, in the order of their paths.
  std::vector<std::string> DisksAndShares();

 private:
  bool Changed() const;
  void Read();
  Place PlaceOf(const std::string& path, bool followsLinks);
  MountTable::Spot SpotOfFolder(const std::string& path);

  struct Remembered {
    MountTable::Spot spot;
    std::chrono::steady_clock::time_point since;
  };

  const Clock clock_;
  const FileHandle list_;
  MountTable table_{""};
  std::map<std::string, Remembered> folders_;  ///< By their paths.
};

}  // namespace tavlo::platform
