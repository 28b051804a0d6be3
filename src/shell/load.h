#pragma once

#include <functional>
#include <string>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "lists/completed_list.h"
#include "lists/hooks.h"
#include "lists/queue_list.h"
#include "lists/refresh.h"
#include "playback/audio_engine.h"
#include "playback/sound_shaping.h"
#include "shell/branding.h"
#include "shell/fascia.h"
#include "store/work_folders.h"
#include "window/configuration_window.h"
#include "window/main_window.h"
#include "window/settings_binding.h"

namespace tavlo::shell {

/// What the load of the main window starts in rooms that stand beside it. A hook that nobody filled
/// does nothing.
struct LoadHooks {
  std::function<void()> attachFtp;
  std::function<void()> upgradeDatabase;
  std::function<void()> purgeCompletedFiles;
  std::function<void()> resetPedals;
  std::function<void()> startUsbPedal;
};

/// Brings the main window from its first moment on the screen to the first refresh. Menus stay
/// disabled and the hourglass stands until then, so that no user action arrives in that stretch.
class Load {
 public:
  Load(base::Loop& loop, forms::MainForm& form, forms::ConfigurationForm& config,
       window::MainWindow& window, window::ConfigurationWindow& configuration,
       window::SettingsBinding& settings, store::WorkFolders& folders,
       playback::AudioEngine& engine, playback::SoundShaping& shaping, lists::QueueList& queue,
       lists::CompletedList& completed, lists::Refresh& refresh, Branding& branding, Fascia& fascia,
       const playback::Hooks& sound, const lists::Hooks& listHooks, LoadHooks hooks);

  /// The whole load, with its waits.
  void LoadMainWindow();

 private:
  void TakeWindowShape();
  void InitializeWorkAreas();
  void StartAlertTimer();
  void FillChoices();
  void HandleActivate();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  window::MainWindow& window_;
  window::ConfigurationWindow& configuration_;
  window::SettingsBinding& settings_;
  store::WorkFolders& folders_;
  playback::AudioEngine& engine_;
  playback::SoundShaping& shaping_;
  lists::QueueList& queue_;
  lists::CompletedList& completed_;
  lists::Refresh& refresh_;
  Branding& branding_;
  Fascia& fascia_;
  const playback::Hooks& sound_;
  const lists::Hooks& listHooks_;
  LoadHooks hooks_;
};

}  // namespace tavlo::shell
