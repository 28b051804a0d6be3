#pragma once

#include <systemd/sd-bus.h>

#include <string>

#include "platform/bus/bus_call.h"

namespace tavlo::platform {

/// Which connection is the desktop's portal now. On the loop's thread; nothing waits.
class PortalOwner {
 public:
  class Host {
   public:
    /// `Name` answers otherwise than before.
    virtual void OwnerChanged() = 0;
    /// `Find` has found that there is no portal and that none can be started.
    virtual void NoOwner() = 0;

   protected:
    ~Host() = default;
  };

  explicit PortalOwner(Host& host) : host_(host) {}
  PortalOwner(const PortalOwner&) = delete;

  /// Hears from here on who takes the portal's name and who loses it.
  void Hear(sd_bus& bus);
  /// Asks for who has the name; where nobody has, the portal is started. The host is told what came
  /// of it. Nothing more happens while it is under way.
  void Find(sd_bus& bus);
  /// Knows nothing any more, and hears nothing.
  void Forget();

  /// The connection's own name, which no other ever gets; empty while none is known.
  const std::string& Name() const { return name_; }

 private:
  enum class Start { Untried, Tried };

  void AskWho(sd_bus& bus, Start start);
  void AskToStart(sd_bus& bus);
  void HandleWho(sd_bus_message& reply);
  void HandleStarted(sd_bus_message& reply);
  void HandleChange(sd_bus_message& signal);
  void Take(const std::string& name);

  Host& host_;
  std::string name_;
  Start start_ = Start::Untried;
  BusSlot changes_;
  BusSlot question_;
};

}  // namespace tavlo::platform
