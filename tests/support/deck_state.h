#pragma once

#include <string>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {

/// Everything that a typist could see, hear or find of a deck, a line for each control and each
/// thing, so that two decks can be held against each other.
std::vector<std::string> StateOf(DeckBench& bench);

}  // namespace tavlo::test
