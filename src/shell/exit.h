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
  /// A finishing key was pressed whose outcome is not stored yet.
  std::function<bool()> outcomeIsDue;
  /// Stores what the key asked for, or else the position of a document in work.
  std::function<void()> storeOutcome;
  /// Saves the settings with what an open configuration window holds.
  std::function<void()> saveOpenSettings;
  /// Lets go of the pedals without a word.
  std::function<void()> dropPedals;
};

/// The exit rules. A close request never closes the window by itself: the process ends when every
/// test has passed, and a refusal leaves all as it was, except that playback has stopped. Only the
/// end of the desktop's session asks nobody: it stores what there is to store and ends.
class Exit {
 public:
  Exit(base::Loop& loop, forms::MainForm& form, window::MainWindow& window,
       playback::AudioEngine& engine, playback::Transport& transport, lists::Refresh& refresh,
       const playback::Hooks& sound, ExitHooks hooks, std::function<void(int status)> endProcess);

  /// The session ends: stores and ends the process, without a question or a wait. A finishing key
  /// that is on its way to its outcome gets there first. May be called again and again.
  void EndSession();
  /// The same where the loop never turns again: what a key asked for is stored here and now.
  void EndSessionNow();

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
  bool sessionEnded_ = false;
};

}  // namespace tavlo::shell
