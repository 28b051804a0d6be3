#pragma once

namespace tavlo::platform::desktop {

/// Stands while the QApplication is made, and settles which screen it takes. Under Wayland a window
/// can neither place itself nor stay on top, and the mini-player lives by both: where an X server
/// answers the program uses that, and Wayland only where none does. A choice that the user made
/// for the toolkit (QT_QPA_PLATFORM) is left alone.
///
/// Where no screen can be used the process says so on its standard error and ends with status 1.
class ScreenSearch {
 public:
  ScreenSearch();
  ~ScreenSearch();
  ScreenSearch(const ScreenSearch&) = delete;

 private:
  bool chosenHere_ = false;
};

}  // namespace tavlo::platform::desktop
