#pragma once

#include <cstdint>

class QWindow;

namespace tavlo::platform::qt {

/// Whether a window of this desktop can place itself, learn where it stands, stay above others, and
/// come back by itself when it is minimized. Under Wayland it can do none of these. To be asked
/// once the QApplication stands.
bool WindowsCanBePlaced();

/// Whether there is a window manager, which frames windows, gives them the keyboard, and calls back
/// those that are minimized. One may come and go, so this is to be asked each time.
bool WindowsAreManaged();

/// Whether the display has the window mapped. Most window managers unmap what is minimized; those
/// that keep live pictures of all windows do not. False where the desktop is no X display.
bool IsMapped(const QWindow& window);

/// Asks the window manager to show a mapped window in front of the others of its layer. The
/// keyboard stays where it is.
void StandInFront(const QWindow& window);
/// The same for a window of any program, by the display's number for it.
void StandInFront(std::uint32_t window);

}  // namespace tavlo::platform::qt
