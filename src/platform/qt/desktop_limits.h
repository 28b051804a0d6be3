#pragma once

namespace tavlo::platform::qt {

/// Whether a window of this desktop can place itself, learn where it stands, and stay above others.
/// Under Wayland it can do none of these. To be asked once the QApplication stands.
bool WindowsCanBePlaced();

}  // namespace tavlo::platform::qt
