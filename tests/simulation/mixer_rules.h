#pragma once

#include "simulation/desk.h"

namespace tavlo::simulation {

/// Every strip of the page shows its source, and what is behind the last source shows none. The
/// page may be late while the desktop has not told what changed.
bool MixerPageShowsTheSources(Desk& desk);

/// The remembered device is the one that plays, if the list has it, and the page says so.
bool ChosenDevicePlays(Desk& desk);

/// The list of devices on the page is the player's, row for row.
bool PageListsThePlayersDevices(Desk& desk);

}  // namespace tavlo::simulation
