#pragma once

#include <string>

#include "platform/disk/file_handle.h"
#include "platform/reach/mount_table.h"
#include "platform/reach/places.h"

namespace tavlo::platform {

/// Where paths stand on this machine. Mounts that come and go are heard of at the next question.
class MountedPlaces : public Places {
 public:
  MountedPlaces();

  /// A path that is not full is one below the process's current folder.
  Place PlaceOf(const std::string& path) override;

 private:
  bool Changed() const;
  void Read();

  const FileHandle list_;
  MountTable table_{""};
};

}  // namespace tavlo::platform
