#pragma once

#include "forms/controls.h"

namespace tavlo::shell {

/// One view of the main window: what its work frame shows under the player.
class View {
 public:
  virtual ~View() = default;

  /// What `CurrentView` says while it shows.
  virtual const char* Word() const = 0;
  /// The menu entry that brings it to the front.
  virtual forms::Command& Entry() = 0;
  virtual forms::Pane& Frame() = 0;
  /// What the frame says while its list is built; null leaves it as it is.
  virtual const char* Caption() const = 0;
  /// It has come to the front, and nothing is chosen.
  virtual void Enter() = 0;
};

}  // namespace tavlo::shell
