#pragma once

namespace tavlo::platform::qt {

/// Tells the toolkit what a screen reader meets in the widgets of our own: role, name and value,
/// and that a value set by it has the effect of a hand. To be called once there is an application.
void InstallAccessibleParts();

}  // namespace tavlo::platform::qt
