#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <memory>

#include "platform/bus/bus_slot.h"

namespace tavlo::platform {

struct BusMessageRelease {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};

/// A share of a message.
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageRelease>;

/// A callback of the bus for a member function, which may destroy its object as its last deed.
template <auto Member, typename Object>
int CallMember(sd_bus_message* message, void* object, sd_bus_error*) {
  (static_cast<Object*>(object)->*Member)(*message);
  return 0;
}

/// For the answer to a wish to hear signals. Without one the library would close the connection of
/// who is refused.
inline int TakeNoNotice(sd_bus_message*, void*, sd_bus_error*) { return 0; }

/// Makes a call whose answer, a refusal included, comes to the member function whenever it comes.
/// The bus tells when the one who was called goes without an answer, so there is no limit. Empty
/// when it could not be sent.
template <auto Member, typename Object>
BusSlot Ask(sd_bus& bus, sd_bus_message& call, Object& object) {
  sd_bus_slot* slot = nullptr;
  sd_bus_call_async(&bus, &slot, &call, CallMember<Member, Object>, &object, UINT64_MAX);
  return BusSlot(slot);
}

}  // namespace tavlo::platform
