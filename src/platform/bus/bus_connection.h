#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "base/loop.h"
#include "platform/wake/descriptor_waits.h"

namespace tavlo::platform {

/// Somebody who speaks on the session bus.
class BusUser {
 public:
  /// The bus has answered; what is said on it from here on is sent. It stays until `Lost`. No rule
  /// may run in here, and none in any call that the bus makes.
  virtual void Connected(sd_bus& bus) = 0;
  /// The connection is gone, and with it every slot and every call that was under way: they are to
  /// be let go of here, and no answer comes any more.
  virtual void Lost() = 0;

 protected:
  ~BusUser() = default;
};

/// How long a bus is waited for, and how often one is looked for that is not there.
struct BusPatience {
  /// A bus that took the connection and did not greet for so long is silent.
  base::Duration greeting = std::chrono::seconds(5);
  /// Until the first try after one that failed; it doubles with each up to the last.
  base::Duration firstTry = std::chrono::seconds(1);
  base::Duration lastTry = std::chrono::seconds(30);
};

/// The deck's own connection to the session bus. It never waits: connecting, greeting and every
/// call are under way while the loop turns. A few messages are taken at a time, so that who sends
/// thousands a second holds up nobody; the bus keeps the others. While a bus takes nothing of what
/// is said to it nothing of it is read either, so nothing gathers here.
///
/// A bus that is not there, dies, or does not greet is looked for again, ever more seldom, and not
/// at all while nobody uses the connection. One that falls silent later is waited for: it goes on
/// where it stopped. Whoever calls on this connection is trusted, since a session bus lets in its
/// own user alone, and nobody gets a descriptor in by it.
class BusConnection {
 public:
  /// The address as the environment has it. Only sockets of this machine are tried, since others
  /// can not be reached without waiting; where it names none there is no bus, ever. The loop and
  /// the waits must outlive the connection.
  BusConnection(base::Loop& loop, DescriptorWaits& waits, const std::string& address,
                const BusPatience& patience = {});
  /// By then everybody has detached.
  ~BusConnection();
  BusConnection(const BusConnection&) = delete;

  /// From here on `user` is told, at once where the bus has answered already. With the first one
  /// the connection is made.
  void Attach(BusUser& user);
  /// `user` is told nothing any more, `Lost` neither, and lets go of its slots before. With the
  /// last one the connection is closed; what the bus has not taken by then is not sent. Detaching
  /// twice does nothing.
  void Detach(BusUser& user);

  /// Runs `words`, which say something on the bus, when it has answered; does nothing otherwise.
  /// Every use of the connection goes through here, but for those in `Connected` and in calls that
  /// the bus makes: behind each the connection looks what it has to wait for.
  void Speak(const std::function<void(sd_bus& bus)>& words);
  /// Takes a few messages that wait, for whom the next pass of the loop is too late: as much as a
  /// pass takes, and also where the loop only breathes. Nothing where there is no connection.
  void TakeSome();
  /// Whether the bus has answered.
  bool IsConnected() const;
  /// So much waits to be taken by the bus that nothing should be told but answers.
  bool IsCongested() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace tavlo::platform
