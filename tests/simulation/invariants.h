#pragma once

#include <string>

#include "simulation/desk.h"

namespace tavlo::simulation {

/// What is true of the program whenever no event is under way. The empty text, or the first
/// sentence that does not hold.
std::string BrokenInvariant(Desk& desk);

/// What the typist sees and what the rules hold, for a person who looks for the reason.
std::string Described(Desk& desk);

}  // namespace tavlo::simulation
