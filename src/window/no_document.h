#pragma once

#include "forms/main_form.h"

namespace tavlo::window {

/// Lets strip, display and keys tell of no document: one that the window does not show any more can
/// neither be played nor completed. For a list that was built anew and for a view that was left.
void ShowNoDocument(forms::MainForm& form);

}  // namespace tavlo::window
