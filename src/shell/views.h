#pragma once

#include <string>

#include "forms/about_form.h"
#include "forms/main_form.h"
#include "lists/hooks.h"
#include "lists/queue_list.h"
#include "lists/refresh.h"
#include "playback/audio_engine.h"
#include "playback/transport.h"
#include "window/configuration_window.h"
#include "window/main_window.h"

namespace tavlo::shell {

/// The menus of the main window: its views, the configuration, the about box.
class Views {
 public:
  Views(base::Loop& loop, forms::MainForm& form, forms::AboutForm& about,
        window::MainWindow& window, window::ConfigurationWindow& configuration,
        playback::AudioEngine& engine, playback::Transport& transport, lists::QueueList& queue,
        lists::Refresh& refresh, const playback::Hooks& sound, const lists::Hooks& listHooks,
        std::string programVersionText);

 private:
  void ShowQueue();
  void LeaveView();
  void ShowAbout();
  void ShowEqualizer();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::AboutForm& about_;
  window::MainWindow& window_;
  window::ConfigurationWindow& configuration_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  lists::QueueList& queue_;
  lists::Refresh& refresh_;
  const playback::Hooks& sound_;
  const lists::Hooks& listHooks_;
  std::string programVersionText_;
};

}  // namespace tavlo::shell
