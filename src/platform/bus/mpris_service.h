#pragma once

#include <systemd/sd-bus.h>

#include <optional>
#include <string>

#include "base/listener.h"
#include "platform/bus/bus_connection.h"
#include "platform/bus/bus_slot.h"
#include "platform/bus/mpris_interfaces.h"
#include "remote/media_bus.h"

namespace tavlo::platform {

/// The deck as a media player of the desktop: the interfaces of MPRIS 2 on the session bus. Calls
/// are answered at once, out of what was told last, and done by the rules later.
class MprisService : public remote::MediaBus, private BusUser {
 public:
  /// The connection, of which nothing is used before an offer, must outlive the service.
  explicit MprisService(BusConnection& connection);
  ~MprisService() override;
  MprisService(const MprisService&) = delete;

  void Offer(remote::MediaSource& source, base::Listener& listener) override;
  void Withdraw() override;
  /// Whether the bus has given the player its name.
  bool IsLive() const override { return isLive_; }

  /// Tells the bus what has changed since the last time, and that only. To be called once in each
  /// pass of the loop, not while it only breathes. Where the bus takes nothing it waits, and then
  /// the latest state is told.
  void TellChanges();

 private:
  void Connected(sd_bus& bus) override;
  void Lost() override;

  void AskForName(sd_bus& bus, const std::string& name);
  static int TakeName(sd_bus_message* answer, void* self, sd_bus_error* error);
  void SetLive(bool isLive);
  void Forget();

  BusConnection& connection_;
  base::Listener* listener_ = nullptr;
  std::optional<MprisObject> object_;  ///< While the player is offered.
  BusSlot root_;
  BusSlot player_;
  BusSlot naming_;  ///< The call for the name.
  std::string name_;
  bool isLive_ = false;
};

}  // namespace tavlo::platform
