#pragma once

#include <functional>
#include <string_view>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "store/work_folders.h"
#include "window/alert_options.h"
#include "window/settings_binding.h"

namespace tavlo::window {

/// What the configuration window starts in other rooms. A hook that nobody filled does nothing.
struct ConfigurationHooks {
  /// Stops the timer of refreshes and alerts, sets its interval and starts it.
  std::function<void(base::Duration)> restartAlertTimer;
  std::function<void()> applyBranding;
  /// The user has chosen another kind of foot pedal.
  std::function<void()> followPedalChoice;
  std::function<void()> centerMiniPlayer;
  /// The equalizer buttons and the list of authors, as the window opens.
  std::function<void()> openEqualizer;
  std::function<void()> fillAuthors;
  /// The mixer page has come to the front.
  std::function<void()> showMixer;
  /// Saves the row of the Ftp page and rebuilds the list of servers.
  std::function<void()> saveFtpConfigSettings;
};

/// Opens and closes the configuration window and keeps its controls in step with the texts behind
/// them. A change is in effect at once; closing saves it.
class ConfigurationWindow {
 public:
  ConfigurationWindow(forms::MainForm& main, forms::ConfigurationForm& config,
                      SettingsBinding& settings, store::WorkFolders& folders,
                      ConfigurationHooks hooks);

  /// The window was asked for by the equalizer button of the player.
  bool ConfigOpenOnEqualizer = false;

  /// Hides the main window and shows this one.
  void Show();
  /// Saves, hides the window and shows the main one. Closing by the frame leaves the Ftp page
  /// unsaved.
  void SaveConfiguration(bool withFtpPage);
  /// For the end of the session: saves what closing this window by its frame would, when it shows,
  /// and what could not be saved before.
  void SaveAtOnce();
  /// Takes the four paths and the delay from the controls into the module's values.
  void ReloadQueuePaths();

 private:
  void BindPages();
  void BindSliders();
  void BindCheckBoxes();
  void BindPedals();
  void BindTexts();
  void BindPaths();
  void Pair(forms::Choice& box, forms::Text& text, std::function<void()> also = {});
  void Open();
  void SetSliders();
  void SetCheckBoxes();
  void ShowPage(int tab);
  void ShowBackspace();
  void ShowSubjectHeading();
  void ShowPedalSense();
  void StepWavConvMode();
  void FocusAway() { config_.frmConfiguration.FocusOn(config_.txtFocus); }

  forms::MainForm& main_;
  forms::ConfigurationForm& config_;
  SettingsBinding& settings_;
  store::WorkFolders& folders_;
  ConfigurationHooks hooks_;
  AlertOptions alerts_;
};

}  // namespace tavlo::window
