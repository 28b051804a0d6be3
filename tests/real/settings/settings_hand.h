#pragma once

#include <QPoint>
#include <cstdint>
#include <string>
#include <vector>

#include "support/driven_program.h"

namespace tavlo::test {

/// Somebody who goes through the windows of the program and sets what can be set there, by mouse,
/// keyboard and clipboard. For the script of a driven program; each call fails the test where a
/// control does not show or does not take what is done to it.
class SettingsHand {
 public:
  explicit SettingsHand(DrivenProgram& program) : program_(program) {}

  forms::MainForm& Main() { return program_.Main(); }
  forms::ConfigurationForm& Form() { return program_.Windows().configuration; }

  /// Chooses an entry of a menu by the two letters.
  void Choose(std::uint32_t menu, std::uint32_t entry);
  /// Returns when the window has the keyboard and its pages are filled.
  void OpenConfiguration();
  /// By its menu, which saves the server profile, too.
  void CloseConfiguration();
  /// Brings a page of the window to the front.
  void TurnTo(const forms::Pane& page);
  /// Brings a view of the main window to the front, by the letter of its entry.
  void ShowView(std::uint32_t letter, const forms::Pane& frame);

  /// Clicks a control, away from its left and upper edge by so many hundredths of it.
  void ClickAt(const forms::Control& control, int right, int down);
  /// Moves the pointer over a control and lets it rest there.
  void PointAt(const forms::Control& control);
  /// Puts a text into the clipboard and, by the keyboard, in the place of all that a box holds.
  void Paste(const forms::Text& box, const std::string& text);
  void Tick(const forms::Choice& box, bool on);
  /// Opens a box that drops down and takes the row there that the key leads to.
  void Pick(const forms::Table& box, std::uint32_t key);

  /// The text boxes on a pane that somebody can type into while they are enabled.
  std::vector<forms::Text*> TextBoxesOn(const forms::Pane& pane);

 private:
  /// Where such a place of a control is on the screen, once it stands still.
  QPoint PlaceIn(const forms::Control& control, int right, int down);

  DrivenProgram& program_;
  Hands hands_;
};

/// The visible widget that stands for a control; null when there is none. On the program's thread.
QWidget* WidgetOf(const forms::Control& control);

}  // namespace tavlo::test
