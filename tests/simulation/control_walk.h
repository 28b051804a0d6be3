#pragma once

#include <string>
#include <vector>

#include "shell/rooms.h"

namespace tavlo::simulation {

/// A control and how often a hand takes to it, beside the others that are within its reach.
template <typename C>
struct Touchable {
  C* control;
  int weight;
};

/// The controls of all windows, by what a hand can do to them. They are found by walking over the
/// forms, so a new one is touched as soon as it stands there. What is left out stands in a table
/// with its reason.
struct ControlWalk {
  /// The windows must outlive it.
  explicit ControlWalk(shell::Windows& windows);

  /// Why no hand of the walk touches the control; null when one does.
  static const char* LeftOut(const forms::Control& control);
  /// Names in the tables that no control of these windows has.
  static std::vector<std::string> Obsolete(shell::Windows& windows);

  std::vector<Touchable<forms::Window>> windows;
  std::vector<Touchable<forms::Command>> commands;
  std::vector<Touchable<forms::Choice>> choices;
  std::vector<Touchable<forms::Range>> sliders;
  /// Text boxes, to be typed into.
  std::vector<Touchable<forms::Text>> boxes;
  /// Text boxes and labels, to be clicked.
  std::vector<Touchable<forms::Text>> texts;
  std::vector<Touchable<forms::Table>> tables;
  std::vector<Touchable<forms::Pane>> panes;

 private:
  void WalkOver(const forms::Pane& pane);
  void Take(forms::Control& control);
};

}  // namespace tavlo::simulation
