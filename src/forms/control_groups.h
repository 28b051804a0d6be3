#pragma once

#include <vector>

#include "forms/main_form.h"

namespace tavlo::forms {

/// Controls of the main window that are enabled and disabled together.
using ControlGroup = std::vector<Control*>;

ControlGroup Menus(MainForm& form);
/// Rewind, forward and the two skips within a document.
ControlGroup MovingKeys(MainForm& form);
/// These, Play and Stop.
ControlGroup TransportKeys(MainForm& form);
/// What leaves a document.
ControlGroup FinishingKeys(MainForm& form);
/// The keys of equalizer and normal speed.
ControlGroup SoundShapingKeys(MainForm& form);
ControlGroup CompletedKeys(MainForm& form);
/// Sending and deleting what the Import list shows.
ControlGroup ImportKeys(MainForm& form);

/// A hand holds the slider of position, speed or volume.
bool SliderIsHeld(const MainForm& form);

void SetEnabled(const ControlGroup& group, bool enabled);

}  // namespace tavlo::forms
