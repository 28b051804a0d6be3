#pragma once

#include <string>

#include "forms/main_form.h"

namespace tavlo::window {

/// What the deck does, in a few words for a screen reader: no document, selected, previewing,
/// playing, winding, stopped and where, at an end. It changes with the state and never with the
/// running time.
std::string DeckInWords(const forms::MainForm& form);

}  // namespace tavlo::window
