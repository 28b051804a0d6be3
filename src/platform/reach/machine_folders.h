#pragma once

#include <string>

#include "platform/reach/mounted_places.h"
#include "platform/reach/place_errands.h"
#include "store/browsable_folders.h"

namespace tavlo::platform {

/// The folders of this machine. One that stalls is waited for as all others are.
class MachineFolders : public store::BrowsableFolders {
 public:
  /// Both must outlive it. `home` is a full path; where it is empty nobody's home is offered.
  MachineFolders(PlaceErrands& errands, MountedPlaces& mounts, std::string home);

  std::vector<store::StartingPlace> StartingPlaces() override;
  std::optional<std::vector<std::string>> FoldersIn(const std::string& folder) override;

 private:
  bool LeadsToAFolder(const std::string& link);

  PlaceErrands& errands_;
  MountedPlaces& mounts_;
  const std::string home_;
};

}  // namespace tavlo::platform
