#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavlo::store {

/// Where somebody may begin to look for a folder: at home, or on a disk or share that is mounted.
struct StartingPlace {
  std::string name;    ///< What it is called on the screen.
  std::string folder;  ///< Full path, without a separator at its end unless it is the root.
};

/// The folders of the machine, for who chooses one. Called on the loop's thread.
class BrowsableFolders {
 public:
  virtual ~BrowsableFolders() = default;

  /// In the order in which they are offered, the person's home first. Asks nothing of any of them,
  /// so one may turn out to be empty, closed or out of reach.
  virtual std::vector<StartingPlace> StartingPlaces() = 0;
  /// The names of the folders in a folder, links to folders among them and those whose names begin
  /// with a dot not. In no order. Nothing when it cannot be read, or gives no answer.
  virtual std::optional<std::vector<std::string>> FoldersIn(const std::string& folder) = 0;
};

}  // namespace tavlo::store
