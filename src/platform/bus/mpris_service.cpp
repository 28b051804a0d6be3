#include "platform/bus/mpris_service.h"

#include <unistd.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace tavlo::platform {
namespace {

constexpr const char* kPlayerName = "org.mpris.MediaPlayer2.tavlodeck";

/// A name of this process alone, for a deck beside another one.
std::string OwnName() {
  return std::string(kPlayerName) + ".instance" + std::to_string(::getpid());
}

/// Whether the bus has given the name that it was asked for.
bool IsGiven(sd_bus_message* answer) {
  constexpr std::uint32_t kOwner = 1;
  std::uint32_t outcome = 0;
  return !sd_bus_message_is_method_error(answer, nullptr) &&
         sd_bus_message_read(answer, "u", &outcome) >= 0 && outcome == kOwner;
}

void TellProperties(sd_bus& bus, std::vector<const char*> names) {
  if (names.empty()) return;
  names.push_back(nullptr);
  // The library only reads them. What it can not send is told with the next change.
  sd_bus_emit_properties_changed_strv(&bus, kMprisPath, kMprisPlayer,
                                      const_cast<char**>(names.data()));
}

}  // namespace

MprisService::MprisService(BusConnection& connection) : connection_(connection) {}

MprisService::~MprisService() { Withdraw(); }

void MprisService::Offer(remote::MediaSource& source, base::Listener& listener) {
  object_.emplace(MprisObject{.source = source, .state = {}});
  listener_ = &listener;
  connection_.Attach(*this);
}

void MprisService::Withdraw() {
  if (!object_) return;
  // The connection may go on for others, and the name, or the call for it, with it.
  connection_.Speak([this](sd_bus& bus) {
    sd_bus_release_name_async(&bus, nullptr, name_.c_str(), nullptr, nullptr);
  });
  Forget();
  isLive_ = false;
  listener_ = nullptr;
  connection_.Detach(*this);
  object_.reset();
}

void MprisService::TellChanges() {
  if (!object_ || !connection_.IsConnected() || connection_.IsCongested()) return;
  remote::MediaState now = object_->source.State();
  const bool jumped = object_->source.TakeJump();
  if (!jumped && now == object_->state) return;
  connection_.Speak([&](sd_bus& bus) {
    const remote::MediaState before = std::exchange(object_->state, std::move(now));
    TellProperties(bus, ChangedProperties(before, object_->state));
    if (!jumped) return;
    sd_bus_emit_signal(&bus, kMprisPath, kMprisPlayer, "Seeked", "x", object_->source.Position());
  });
}

void MprisService::Connected(sd_bus& bus) {
  object_->state = object_->source.State();
  sd_bus_slot* slot = nullptr;
  sd_bus_add_object_vtable(&bus, &slot, kMprisPath, kMprisRoot, MprisRootTable(), &*object_);
  root_.reset(std::exchange(slot, nullptr));
  sd_bus_add_object_vtable(&bus, &slot, kMprisPath, kMprisPlayer, MprisPlayerTable(), &*object_);
  player_.reset(slot);
  AskForName(bus, kPlayerName);
}

void MprisService::Lost() {
  Forget();
  SetLive(false);
}

void MprisService::AskForName(sd_bus& bus, const std::string& name) {
  name_ = name;
  sd_bus_slot* slot = nullptr;
  sd_bus_request_name_async(&bus, &slot, name_.c_str(), 0, TakeName, this);
  naming_.reset(slot);
}

int MprisService::TakeName(sd_bus_message* answer, void* self, sd_bus_error*) {
  auto& service = *static_cast<MprisService*>(self);
  if (IsGiven(answer)) {
    service.SetLive(true);
  } else if (service.name_ == kPlayerName) {
    service.AskForName(*sd_bus_message_get_bus(answer), OwnName());
  }
  return 1;
}

void MprisService::SetLive(bool isLive) {
  if (std::exchange(isLive_, isLive) != isLive) listener_->HandleNews();
}

void MprisService::Forget() {
  naming_.reset();
  player_.reset();
  root_.reset();
}

}  // namespace tavlo::platform
