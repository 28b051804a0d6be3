#pragma once

#include "forms/main_form.h"
#include "platform/qt/top_window.h"

class QMenuBar;

namespace tavlo::platform::qt {

class PlayerPanel;
class WorkFrames;

/// The main window: menu bar, deck, and the work frames under it.
class DeckWindow : public TopWindow {
 public:
  DeckWindow(forms::MainForm& form, QtLoop& loop, Binder& binder);

 private:
  void AddMenus(Binder& binder);
  void AddFocusKeeper(Binder& binder);
  void AddSpeakers(Binder& binder);
  void changeEvent(QEvent* event) override;

  /// The window is higher by what the deck has grown.
  void FitDeck();
  QMargins Frame() const;
  void KeepLeastSize();
  int LeastHeight() const;
  /// The frame's lower edge counts too, so that the deck fits under what was measured.
  void MeasureFrame();

  forms::MainForm& form_;
  QMenuBar* menus_;
  PlayerPanel* player_;
  const forms::Twips drawnHeight_;  ///< Of the deck.
};

}  // namespace tavlo::platform::qt
