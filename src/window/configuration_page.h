#pragma once

#include "forms/controls.h"

namespace tavlo::window {

/// The two ways in which a person closes the configuration window.
enum class ConfigurationExit { ByMenu, ByFrame };

/// One page of the configuration window. A page that is not registered there is not offered.
class ConfigurationPage {
 public:
  virtual ~ConfigurationPage() = default;

  virtual forms::Pane& Frame() = 0;
  /// The window becomes active: on whichever page it opens, and when it is come back to.
  virtual void WindowOpens() {}
  virtual void ComesToFront() {}
  /// The settings of all pages have been saved.
  virtual void WindowCloses(ConfigurationExit) {}
};

}  // namespace tavlo::window
