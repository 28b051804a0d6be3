#pragma once

#include <string>

#include "simulation/chance.h"

namespace tavlo::simulation {

/// The name of a dictation: most are composed, some are what other programs and people make up, and
/// some are as bad as a file system allows.
std::string DrawName(Chance& chance);

/// The name of a file on a server: most are those of recorders and of phones, some are made up by
/// whoever wants to see what a deck does with them.
std::string DrawServerName(Chance& chance);

/// A name that is easily taken for `name`: the very same, the same with another saved position, or
/// one that a careless comparison does not tell from it.
std::string DrawLookAlike(const std::string& name, Chance& chance);

}  // namespace tavlo::simulation
