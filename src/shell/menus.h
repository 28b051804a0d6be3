#pragma once

#include <functional>
#include <string>

#include "base/loop.h"
#include "forms/about_form.h"
#include "forms/main_form.h"
#include "playback/playback.h"
#include "shell/platform.h"
#include "window/configuration_window.h"
#include "window/main_window.h"

namespace tavlo::shell {

/// The menu entries and keys of the main window that open another window: the about box, the
/// system's own information, the equalizer.
class Menus {
 public:
  Menus(const Platform& platform, forms::AboutForm& about, window::MainWindow& window,
        window::ConfigurationWindow& configuration, const playback::Playback& playback,
        std::string programVersionText);

 private:
  void ShowAbout();
  void ShowSystemInformation();
  void ShowEqualizer();

  base::Loop& loop_;
  const std::function<bool()> showSystemInformation_;
  forms::MainForm& form_;
  forms::AboutForm& about_;
  window::MainWindow& window_;
  window::ConfigurationWindow& configuration_;
  playback::AudioEngine& engine_;
  playback::Voice& voice_;
  const std::string programVersionText_;
};

}  // namespace tavlo::shell
