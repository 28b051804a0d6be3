#pragma once

#include <string>

#include "simulation/desk.h"

namespace tavlo::simulation {

/// What is true of the connection to a server, and of the view of the servers, whenever no event is
/// under way. The empty text, or the first sentence that does not hold.
std::string BrokenServerRule(Desk& desk);

}  // namespace tavlo::simulation
