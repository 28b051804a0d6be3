#pragma once

#include "forms/configuration_form.h"
#include "store/work_folders.h"
#include "window/configuration_page.h"
#include "window/folder_browser.h"

namespace tavlo::window {

/// The page of the folders that work comes from.
class PathChoices : public ConfigurationPage {
 public:
  PathChoices(forms::ConfigurationForm& config, const store::WorkFolders& folders,
              store::BrowsableFolders& browsable);

  forms::Pane& Frame() override { return config_.frameConfigAlternatePath; }
  void WindowOpens() override;
  void ComesToFront() override { browser_.OfferPlaces(); }

 private:
  void FocusAway() { config_.frmConfiguration.FocusOn(config_.txtFocus); }

  forms::ConfigurationForm& config_;
  const store::WorkFolders& folders_;
  FolderBrowser browser_;
};

}  // namespace tavlo::window
