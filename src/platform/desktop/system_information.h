#pragma once

namespace tavlo::platform::desktop {

/// Starts the first program on the search path with which this desktop shows what the machine is
/// made of, and does not wait for it. False when there is none that would start.
bool ShowSystemInformation();

}  // namespace tavlo::platform::desktop
