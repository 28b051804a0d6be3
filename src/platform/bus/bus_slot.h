#pragma once

#include <systemd/sd-bus.h>

#include <memory>

namespace tavlo::platform {

struct BusSlotRelease {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

/// Something that stands on a bus, or a call that is under way. Letting it go takes it back; it
/// keeps its connection in memory, so it goes before that is lost.
using BusSlot = std::unique_ptr<sd_bus_slot, BusSlotRelease>;

}  // namespace tavlo::platform
