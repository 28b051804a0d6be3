#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "store/browsable_folders.h"

namespace tavlo::test {

/// Folders that somebody may look through. One that is not among them cannot be read.
class SimulatedFolders : public store::BrowsableFolders {
 public:
  std::vector<store::StartingPlace> places = {{"Home", "/home/typist"}, {"Computer", "/"}};
  /// Full paths of folders, and the names of those in them.
  std::map<std::string, std::vector<std::string>> folders = {
      {"/", {"home", "mnt"}},
      {"/home", {"typist"}},
      {"/home/typist", {"work", "Desk", "archive"}},
      {"/home/typist/work", {}}};

  std::vector<store::StartingPlace> StartingPlaces() override { return places; }
  std::optional<std::vector<std::string>> FoldersIn(const std::string& folder) override {
    const auto found = folders.find(folder);
    if (found == folders.end()) return {};
    return found->second;
  }
};

}  // namespace tavlo::test
