#pragma once

namespace tavlo::platform::qt {

/// Whether a window of this desktop can place itself, learn where it stands, stay above others, and
/// come back by itself when it is minimized. Under Wayland it can do none of these. To be asked
/// once the QApplication stands.
bool WindowsCanBePlaced();

/// Whether there is a window manager, which frames windows, gives them the keyboard, and calls back
/// those that are minimized. One may come and go, so this is to be asked each time.
bool WindowsAreManaged();

}  // namespace tavlo::platform::qt
