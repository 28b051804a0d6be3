#include "platform/bus/portal_owner.h"

#include <cstdint>
#include <string_view>

#include "platform/bus/portal_messages.h"

namespace tavlo::platform {
namespace {

constexpr const char* kBus = "org.freedesktop.DBus";
constexpr const char* kBusPath = "/org/freedesktop/DBus";
constexpr const char* kChanges =
    "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
    "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
    "arg0='org.freedesktop.portal.Desktop'";

BusMessage CallOfBus(sd_bus& bus, const char* member) {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(&bus, &call, kBus, kBusPath, kBus, member);
  return BusMessage(call);
}

}  // namespace

void PortalOwner::Hear(sd_bus& bus) {
  sd_bus_slot* changes = nullptr;
  sd_bus_add_match_async(&bus, &changes, kChanges,
                         CallMember<&PortalOwner::HandleChange, PortalOwner>, TakeNoNotice, this);
  changes_.reset(changes);
}

void PortalOwner::Find(sd_bus& bus) {
  if (!question_) AskWho(bus, Start::Untried);
}

void PortalOwner::Forget() {
  changes_.reset();
  question_.reset();
  name_.clear();
}

void PortalOwner::AskWho(sd_bus& bus, Start start) {
  start_ = start;
  const BusMessage call = CallOfBus(bus, "GetNameOwner");
  if (!call || sd_bus_message_append(call.get(), "s", kPortalName) < 0) return host_.NoOwner();
  question_ = Ask<&PortalOwner::HandleWho>(bus, *call, *this);
}

void PortalOwner::AskToStart(sd_bus& bus) {
  const BusMessage call = CallOfBus(bus, "StartServiceByName");
  if (!call || sd_bus_message_append(call.get(), "su", kPortalName, std::uint32_t{0}) < 0) {
    return host_.NoOwner();
  }
  question_ = Ask<&PortalOwner::HandleStarted>(bus, *call, *this);
}

void PortalOwner::HandleWho(sd_bus_message& reply) {
  const char* name = nullptr;
  const bool known = sd_bus_message_is_method_error(&reply, nullptr) <= 0 &&
                     sd_bus_message_read_basic(&reply, 's', &name) > 0;
  const std::string owner = known ? name : "";
  question_.reset();
  if (known) return Take(owner);
  // Somebody may have come since the bus answered.
  if (!name_.empty()) return;
  if (start_ == Start::Tried) return host_.NoOwner();
  AskToStart(*sd_bus_message_get_bus(&reply));
}

void PortalOwner::HandleStarted(sd_bus_message& reply) {
  question_.reset();
  if (!name_.empty()) return;
  if (sd_bus_message_is_method_error(&reply, nullptr) > 0) return host_.NoOwner();
  AskWho(*sd_bus_message_get_bus(&reply), Start::Tried);
}

void PortalOwner::HandleChange(sd_bus_message& signal) {
  const char* name = nullptr;
  const char* before = nullptr;
  const char* after = nullptr;
  // Anybody may send this signal to the deck alone, whatever was asked for.
  const char* const sender = sd_bus_message_get_sender(&signal);
  if (!sender || std::string_view(sender) != kBus ||
      sd_bus_message_read(&signal, "sss", &name, &before, &after) <= 0) {
    return;
  }
  if (std::string_view(name) == kPortalName) Take(after);
}

void PortalOwner::Take(const std::string& name) {
  if (name == name_) return;
  name_ = name;
  host_.OwnerChanged();
}

}  // namespace tavlo::platform
