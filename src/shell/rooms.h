#pragma once

#include <memory>

#include "forms/about_form.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "forms/splash_form.h"
#include "ftp/ftp.h"
#include "ftp/server_list.h"
#include "ftp/server_profiles.h"
#include "intake/author_profiles.h"
#include "intake/auto_import.h"
#include "intake/claims.h"
#include "intake/conversion.h"
#include "intake/dropped_files.h"
#include "intake/file_being_received.h"
#include "intake/import_list.h"
#include "intake/import_sending.h"
#include "intake/retrieval_passes.h"
#include "intake/window_front.h"
#include "lists/completed_list.h"
#include "lists/completed_purge.h"
#include "lists/finishing.h"
#include "lists/opening.h"
#include "lists/queue_list.h"
#include "lists/refresh.h"
#include "lists/waiting_figures.h"
#include "lists/waiting_work.h"
#include "lists/work_alert.h"
#include "pedals/foot_pedal.h"
#include "pedals/pedal_state.h"
#include "pedals/serial_pedal.h"
#include "pedals/usb_pedal.h"
#include "playback/equalizer.h"
#include "playback/mixer_page.h"
#include "playback/playback.h"
#include "playback/position_display.h"
#include "playback/prompts.h"
#include "playback/sound_shaping.h"
#include "remote/far_hand.h"
#include "remote/far_keys.h"
#include "remote/media_player.h"
#include "remote/ways_from_afar.h"
#include "reports/report.h"
#include "shell/branding.h"
#include "shell/fascia.h"
#include "shell/menus.h"
#include "shell/opened_files.h"
#include "shell/platform.h"
#include "shell/views.h"
#include "shell/work_views.h"
#include "store/database_upgrade.h"
#include "store/document_files.h"
#include "store/settings_store.h"
#include "window/configuration_window.h"
#include "window/main_window.h"
#include "window/path_choices.h"
#include "window/rescue_folder.h"
#include "window/settings_binding.h"
#include "window/settings_choices.h"

namespace tavlo::shell {

/// Every window, as state. They stand before the settings are open, so that a binding can be made.
struct Windows {
  explicit Windows(base::Loop& loop) : splash(loop), main(loop), configuration(loop), about(loop) {}

  forms::SplashForm splash;
  forms::MainForm main;
  forms::ConfigurationForm configuration;
  forms::AboutForm about;
};

/// All the rooms, in the order in which they build on each other: each is handed those above it.
/// Made once the settings are open.
struct Rooms {
  Rooms(const Platform& platform, Windows& windows, store::WorkFolders& workFolders,
        std::unique_ptr<store::SettingsDatabase> openDatabase);

  std::unique_ptr<store::SettingsDatabase> database;
  store::SettingsStore settings;
  store::WorkFolders& folders;
  store::DatabaseUpgrade databaseUpgrade;
  store::DocumentNames names;
  store::FileMoves moves;
  window::RescueFolder rescueFolder;
  const store::DocumentFiles files;
  window::SettingsBinding binding;
  window::MainWindow mainWindow;
  window::ConfigurationWindow configuration;
  playback::Prompts prompts;
  playback::Equalizer equalizer;
  playback::MixerPage mixerPage;
  playback::DocumentInWork documentInWork;
  playback::AudioEngine engine;
  playback::Transport transport;
  playback::PositionDisplay positionDisplay;
  playback::SoundShaping soundShaping;
  playback::Preview preview;
  const playback::Playback playback;
  intake::WindowFront passesFront;
  intake::Claims claims;
  intake::Conversion conversion;
  intake::ImportList importList;
  intake::AuthorProfiles authorProfiles;
  intake::ImportSending importSending;
  intake::AutoImport autoImport;
  intake::FileBeingReceived receiving;
  intake::RetrievalPasses retrieval;
  intake::DroppedFiles droppedFiles;
  lists::WaitingFigures waitingFigures;
  lists::WaitingWork waitingWork;
  lists::QueueList queue;
  lists::Refresh refresh;
  lists::WorkAlert workAlert;
  lists::Opening opening;
  lists::CompletedList completed;
  lists::CompletedPurge completedPurge;
  lists::Finishing finishing;
  ftp::ServerList ftpServers;
  ftp::ServerProfiles serverProfiles;
  ftp::Ftp ftp;
  pedals::FootPedal footPedal;
  pedals::SerialPedal serialPedal;
  pedals::UsbPedal usbPedal;
  pedals::PedalState pedalState;
  remote::FarHand farHand;
  remote::FarKeys farKeys;
  remote::MediaPlayer mediaPlayer;
  remote::WaysFromAfar waysFromAfar;
  Branding branding;
  Fascia fascia;
  window::SettingsChoices settingsChoices;
  window::PathChoices pathChoices;
  Views views;
  QueueView queueView;
  CompletedView completedView;
  ImportView importView;
  FtpView ftpView;
  reports::Report report;
  Menus menus;
  OpenedFiles openedFiles;
};

}  // namespace tavlo::shell
