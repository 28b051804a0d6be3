#pragma once

namespace tavlo::platform::qt {

/// What the user did while events were processed without input is held back by the toolkit, and on
/// X11 it goes on holding it until the server sends something else. This makes the server send
/// something. Does nothing on other displays.
void ReleaseHeldInput();

}  // namespace tavlo::platform::qt
