#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/about_form.h"
#include "forms/main_form.h"
#include "lists/completed_list.h"
#include "lists/hooks.h"
#include "lists/queue_list.h"
#include "lists/refresh.h"
#include "playback/audio_engine.h"
#include "playback/transport.h"
#include "window/configuration_window.h"
#include "window/main_window.h"

namespace tavlo::shell {

/// What entering a view starts in rooms that stand beside it. A hook that nobody filled does
/// nothing: its view shows with nothing in it.
struct ViewHooks {
  /// Fetches what is to be imported, fills the author's boxes and builds the Import list.
  std::function<void()> buildImportList;
  /// Builds the list of servers.
  std::function<void()> buildFtpServers;
};

/// The menus of the main window: its views, the configuration, the about box.
class Views {
 public:
  Views(base::Loop& loop, forms::MainForm& form, forms::AboutForm& about,
        window::MainWindow& window, window::ConfigurationWindow& configuration,
        playback::AudioEngine& engine, playback::Transport& transport, lists::QueueList& queue,
        lists::CompletedList& completed, lists::Refresh& refresh, const playback::Hooks& sound,
        const lists::Hooks& listHooks, std::string programVersionText,
        std::function<bool()> showSystemInformation, ViewHooks hooks);

 private:
  struct View {
    /// What `CurrentView` says while it shows.
    const char* word;
    forms::Pane& frame;
    /// What the frame says while its list is built; null leaves it as it is.
    const char* caption;
    void (Views::*enter)();
  };

  void Show(const View& view);
  void LeaveView();
  void EnterQueue();
  void EnterCompleted();
  void EnterImport();
  void EnterFtp();
  void SetSoundShapingEnabled(bool enabled);
  void DisableTransportKeys();
  void TakeWorkAsSeen();
  void ShowAbout();
  void ShowSystemInformation();
  void ShowEqualizer();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::AboutForm& about_;
  window::MainWindow& window_;
  window::ConfigurationWindow& configuration_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  lists::QueueList& queue_;
  lists::CompletedList& completed_;
  lists::Refresh& refresh_;
  const playback::Hooks& sound_;
  const lists::Hooks& listHooks_;
  std::string programVersionText_;
  std::function<bool()> showSystemInformation_;
  ViewHooks hooks_;
  const std::vector<View> views_;
};

}  // namespace tavlo::shell
