#pragma once

#include <string>

#include "simulation/desk.h"

namespace tavlo::simulation {

/// Looks at every control whose state follows from what the program is doing. The empty text, or
/// the first control that is on where it must be off, or off where it must be on.
std::string BrokenControl(Desk& desk);

}  // namespace tavlo::simulation
