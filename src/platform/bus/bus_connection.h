#pragma once

#include <systemd/sd-bus.h>

#include <memory>
#include <string>
#include <vector>

#include "base/loop.h"
#include "platform/wake/descriptor_waits.h"

namespace tavlo::platform {

/// Somebody who speaks on the session bus.
class BusUser {
 public:
  /// The bus has answered; what is said on it from here on is sent. It stays until `Lost`. No rule
  /// may run in here.
  virtual void Connected(sd_bus& bus) = 0;
  /// The connection is gone, and with it every slot and every call that was under way: they are to
  /// be forgotten here.
  virtual void Lost() = 0;

 protected:
  ~BusUser() = default;
};

/// The deck's own connection to the session bus. It never waits: connecting, greeting and every
/// call are under way while the loop turns. A few messages are taken at a time, so that who sends
/// thousands a second holds up nobody; the bus keeps the others.
///
/// A bus that is not there, dies, or falls silent is looked for again, ever more seldom up to once
/// in half a minute, and not at all while nobody uses the connection.
class BusConnection {
 public:
  /// The address as the environment has it; an empty one is no bus, ever. The loop and the waits
  /// must outlive the connection.
  BusConnection(base::Loop& loop, DescriptorWaits& waits, std::string address);
  ~BusConnection();
  BusConnection(const BusConnection&) = delete;

  /// From here on `user` is told. With the first one the connection is made.
  void Attach(BusUser& user);
  /// `user` is told nothing any more, `Lost` neither. With the last one the connection is closed.
  void Detach(BusUser& user);

  /// The connection, once the bus has answered; null otherwise.
  sd_bus* Bus() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace tavlo::platform
