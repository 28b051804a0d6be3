#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "window/guards.h"

/// What all rooms share of the main window.
namespace tavlo::window {

class MainWindow {
 public:
  /// `storePlayerPosition` writes the three fields of the mini-player's place to the settings.
  MainWindow(forms::MainForm& form, forms::ConfigurationForm& config,
             std::function<void()> storePlayerPosition);

  forms::MainForm& Form() const { return form_; }
  forms::ConfigurationForm& Config() const { return config_; }

  Guards guards;
  /// Play came from the user and the document is still in work.
  bool PlayRequested = false;
  /// "Queue", "Complete" or the word of another view.
  std::string CurrentView = "Queue";
  /// The full shape, taken when the window loads and when the user resizes it by hand.
  forms::Twips WindowHeight = 0;
  forms::Twips WindowWidth = 0;
  forms::Twips PlayerFrameTop = 0;
  /// Where the mini-player last stood.
  std::string PlayerTopText;
  std::string PlayerLeftText;

  /// Freezes the whole window around a long operation, and thaws it.
  void DisableWindowControls() { SetWindowControlsEnabled(false); }
  void EnableWindowControls() { SetWindowControlsEnabled(true); }

  /// True while a key that takes a document of the Queue would take one that the window shows: the
  /// one in work, or the highlighted row of the Queue in front. A key acts only on what shows.
  bool QueueDocumentShows() const;
  /// Lights Complete for the document of the Queue that shows; without one it stays as it is.
  void OfferComplete();

  /// Says in the quiet line what the last command could not do, behind what it says already. It
  /// stands until the next command. What is said already, and the empty text, is not said again.
  void Say(const std::string& text);
  /// Says it when it is so, and takes it back when it is so no more.
  void SayWhile(bool so, const std::string& text);
  /// Says how far a long work is, in place of what was said of it before; the empty text when it is
  /// over.
  void SayHowFar(const std::string& text);
  void ForgetNotice();

  /// Takes the keyboard away from every key and list.
  void FocusAway() { form_.frmMain.FocusOn(form_.txtFocus); }

  /// True while only the player shows.
  bool MiniPlayerShows() const { return !form_.frameFiles.Visible; }
  void EnterMiniPlayer();
  void LeaveMiniPlayer();
  /// Remembers the mini-player's place. A window parked off the screen is not remembered.
  void SavePlayerPosition();
  /// Puts the window, and the place where the mini-player shows next, in the middle of the screen.
  void CenterMiniPlayer();
  /// A document that reached its end brings a minimized window back. `atStoredPlace` also puts it
  /// where the mini-player last stood.
  void RestoreMinimized(bool atStoredPlace);
  /// The configuration window takes this one's place.
  void ShowConfiguration();
  /// Pins the window above others when the setting says so.
  void ApplyAlwaysOnTop();

 private:
  void SetWindowControlsEnabled(bool enabled);
  void ShowNotices();
  /// A fresh installation does not know how high title and menu bar are here. It learns it when the
  /// mini-player is first needed: a window that has just appeared may not have its frame yet.
  void MeasureTitleBar();
  forms::Twips PlayerHeight();
  void RememberPlayerPlace(forms::Twips left, forms::Twips top);
  void TakePlayerHeight();
  void TakeStoredPlace();
  void HandleResize();

  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  std::function<void()> storePlayerPosition_;
  std::vector<std::string> notices_;
  std::string howFar_;
  bool resizing_ = false;
};

}  // namespace tavlo::window
