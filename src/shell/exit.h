#pragma once

#include <functional>

#include "base/loop.h"
#include "forms/main_form.h"
#include "lists/refresh.h"
#include "playback/audio_engine.h"
#include "playback/transport.h"
#include "window/main_window.h"

namespace tavlo::shell {

/// What exit asks of rooms that stand beside it. A hook that nobody filled does nothing.
struct ExitHooks {
  std::function<void()> stopPedals;
  std::function<void()> releaseFtp;
  std::function<void()> closePrompts;
  std::function<void()> saveSettings;
  std::function<void()> stopUsbWatch;
};

/// The exit rules. A close request never closes the window by itself: the process ends when every
/// test has passed, and a refusal leaves all as it was, except that playback has stopped.
class Exit {
 public:
  Exit(base::Loop& loop, forms::MainForm& form, window::MainWindow& window,
       playback::AudioEngine& engine, playback::Transport& transport, lists::Refresh& refresh,
       const playback::Hooks& sound, ExitHooks hooks, std::function<void(int status)> endProcess);

 private:
  void ExitByMenu();
  void ExitByFrame();
  void StopSound();
  /// A Complete or Save that yields to the loop has not stored its outcome yet; an end now would
  /// lose it.
  bool DocumentIsBeingMoved() const;
  bool FtpIsConnected();
  bool DocumentIsOpen();
  bool UserAgrees();
  void EndUnlessADocumentIsOpen();
  void End();
  base::Reply ShowExitBox(const char* text, base::Icon icon, base::Buttons buttons);

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  lists::Refresh& refresh_;
  const playback::Hooks& sound_;
  ExitHooks hooks_;
  std::function<void(int status)> endProcess_;
};

}  // namespace tavlo::shell
