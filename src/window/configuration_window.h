#pragma once

#include <vector>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "store/work_folders.h"
#include "window/configuration_page.h"
#include "window/main_window.h"
#include "window/settings_binding.h"

namespace tavlo::window {

/// Opens and closes the configuration window and turns its pages. A change on a page is in effect
/// at once; closing saves it.
class ConfigurationWindow {
 public:
  ConfigurationWindow(MainWindow& window, SettingsBinding& settings, store::WorkFolders& folders);

  /// The window was asked for by the equalizer button of the player.
  bool ConfigOpenOnEqualizer = false;

  /// Offers a page, which must outlive the window.
  void Register(ConfigurationPage& page);
  /// Saves, hides the window and shows the main one.
  void SaveConfiguration(ConfigurationExit exit);
  /// For the end of the session: saves what closing this window by its frame would, when it shows,
  /// and what could not be saved before.
  void SaveAtOnce();
  /// Takes the four paths and the delay from the controls into the module's values.
  void ReloadQueuePaths();

 private:
  void Open();
  void ShowPage(int tab);

  MainWindow& window_;
  forms::MainForm& main_;
  forms::ConfigurationForm& config_;
  SettingsBinding& settings_;
  store::WorkFolders& folders_;
  std::vector<ConfigurationPage*> pages_;
};

}  // namespace tavlo::window
