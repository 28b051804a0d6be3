#pragma once

#include <string>

#include "simulation/desk.h"

namespace tavlo::simulation {

/// What is true of the program whenever no event is under way. The empty text, or the first
/// sentence that does not hold.
std::string BrokenInvariant(Desk& desk);

}  // namespace tavlo::simulation
