#pragma once

#include <memory>
#include <optional>
#include <string>

#include "forms/about_form.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "forms/splash_form.h"
#include "lists/completed_list.h"
#include "lists/finishing.h"
#include "lists/hooks.h"
#include "lists/opening.h"
#include "lists/queue_list.h"
#include "lists/refresh.h"
#include "pedals/foot_pedal.h"
#include "pedals/pedal_state.h"
#include "pedals/serial_pedal.h"
#include "pedals/usb_pedal.h"
#include "playback/audio_engine.h"
#include "playback/equalizer.h"
#include "playback/hooks.h"
#include "playback/mixer_page.h"
#include "playback/position_display.h"
#include "playback/preview.h"
#include "playback/prompts.h"
#include "playback/sound_shaping.h"
#include "playback/transport.h"
#include "shell/branding.h"
#include "shell/exit.h"
#include "shell/load.h"
#include "shell/platform.h"
#include "shell/splash.h"
#include "shell/views.h"
#include "store/document_name.h"
#include "store/file_moves.h"
#include "store/settings_store.h"
#include "store/work_folders.h"
#include "window/configuration_window.h"
#include "window/main_window.h"
#include "window/settings_binding.h"

namespace tavlo::shell {

/// Every window, as state. They stand before the settings are open, so that a binding can be made.
struct Windows {
  explicit Windows(base::Loop& loop) : splash(loop), main(loop), configuration(loop), about(loop) {}

  forms::SplashForm splash;
  forms::MainForm main;
  forms::ConfigurationForm configuration;
  forms::AboutForm about;
};

/// All the rooms, in the order in which they build on each other. Made once the settings are open.
struct Rooms {
  Rooms(const Platform& platform, Windows& windows, store::WorkFolders& workFolders,
        std::unique_ptr<store::SettingsDatabase> openDatabase);

  playback::Hooks sound;
  lists::Hooks listHooks;

  std::unique_ptr<store::SettingsDatabase> database;
  store::SettingsStore settings;
  store::DocumentNames names;
  store::FileMoves moves;
  window::SettingsBinding binding;
  window::MainWindow mainWindow;
  window::ConfigurationWindow configuration;
  playback::Prompts prompts;
  playback::AudioEngine engine;
  playback::Transport transport;
  playback::PositionDisplay positionDisplay;
  playback::SoundShaping soundShaping;
  playback::Equalizer equalizer;
  playback::MixerPage mixerPage;
  playback::Preview preview;
  lists::QueueList queue;
  lists::Refresh refresh;
  lists::Opening opening;
  lists::CompletedList completed;
  lists::Finishing finishing;
  pedals::FootPedal footPedal;
  pedals::SerialPedal serialPedal;
  pedals::UsbPedal usbPedal;
  pedals::PedalState pedalState;
  Branding branding;
  Fascia fascia;
  Views views;
  Load load;
  Exit exit;

 private:
  window::ConfigurationHooks ConfigurationHooksFor();
  LoadHooks LoadHooksFor();
  ExitHooks ExitHooksFor();
};

/// The whole program on its edges: what main builds and what the tests build.
class Deck {
 public:
  explicit Deck(Platform platform);

  Windows windows;

  /// Refuses a second copy, makes a fresh root, opens the settings and shows the splash; the main
  /// window follows by itself. When it cannot go on it says why and asks for the end of the
  /// process.
  void Start();

  /// The desktop's session ends: stores what there is to store and asks for the end of the process,
  /// as soon as a document that is just being finished is stored. May be called at any time.
  void EndSession();
  /// The same where the loop never turns again.
  void EndSessionNow();

  /// The rooms, once the settings are open; null until then.
  Rooms* Built() { return rooms_ ? &*rooms_ : nullptr; }

 private:
  bool RefuseSecondCopy();
  void EndWith(const std::string& failure);

  Platform platform_;
  store::WorkFolders folders_;
  std::optional<Rooms> rooms_;
  Splash splash_;
};

}  // namespace tavlo::shell
