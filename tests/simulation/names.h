#pragma once

#include <string>

#include "simulation/chance.h"

namespace tavlo::simulation {

/// The name of a dictation: most are composed, some are what other programs and people make up, and
/// some are as bad as a file system allows.
std::string DrawName(Chance& chance);

}  // namespace tavlo::simulation
