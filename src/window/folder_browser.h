#pragma once

#include <string>
#include <vector>

#include "forms/configuration_form.h"
#include "store/browsable_folders.h"

namespace tavlo::window {

/// The two lists in which a hand looks for a folder: places to begin at, and the folders in the one
/// that is browsed. `lblBrowsedFolder` says which that is.
class FolderBrowser {
 public:
  FolderBrowser(forms::ConfigurationForm& config, store::BrowsableFolders& folders);

  /// Offers the places that there are now. What is browsed stays as it is; the first time it is the
  /// first of them.
  void OfferPlaces();

 private:
  void ShowPlace();
  void EnterPlace();
  void EnterRow();
  bool Enter(const std::string& folder);
  void List(const std::string& folder, std::vector<std::string> names);
  int PlaceOf(const std::string& folder) const;

  forms::ConfigurationForm& config_;
  store::BrowsableFolders& folders_;
  std::vector<store::StartingPlace> places_;
  /// The place that was chosen last, while it can not be read.
  std::string unreadable_;
};

}  // namespace tavlo::window
