#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>

#include "base/loop.h"
#include "platform/wake/descriptor_waits.h"

namespace tavlo::platform {

/// Wakes the loop when there is something to do for a connection: bytes to read, room for those
/// that wait to be written, an answer that is overdue. Not while the loop only breathes, and never
/// at rest.
class BusWakening {
 public:
  /// `call` works for the connection and then has it followed again. Loop and waits must outlive
  /// this object. Throws std::system_error when the process has no descriptor left.
  BusWakening(base::Loop& loop, DescriptorWaits& waits, std::function<void()> call);
  ~BusWakening();
  BusWakening(const BusWakening&) = delete;

  /// Looks what the connection, which is open, waits for now. To be called after every use of it.
  void Follow(sd_bus& bus);
  /// Follows none. To be called before a connection is closed.
  void Rest();

  /// So much waits to be written that nothing more is read until the bus has taken some of it:
  /// whatever is read may have an answer, and those would gather.
  static bool IsCongested(sd_bus& bus);

 private:
  void WaitForSocket(int socket, unsigned events);
  void WaitForDeadline(sd_bus& bus);

  int socket_ = -1;  ///< The one in the epoll, which belongs to the connection.
  const int epoll_;
  base::Timer deadline_;
  std::unique_ptr<DescriptorWait> wait_;
};

}  // namespace tavlo::platform
