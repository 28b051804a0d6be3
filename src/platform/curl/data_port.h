#pragma once

#include <string>

#include "platform/curl/control_connection.h"
#include "platform/curl/link.h"
#include "platform/curl/tether.h"

namespace tavlo::platform {

/// The way for one file or listing. Whoever names the port, data come from the machine of the
/// commands and from no other. On one thread.
class DataPort {
 public:
  DataPort(ControlConnection& control, const FtpLimits& limits, Tether& tether)
      : control_(control), limits_(limits), tether_(tether) {}

  /// The server names a port, and is reached there. 0, or a failure; where the connection for
  /// commands is lost that one's.
  int PreparePassive();
  /// A port of ours is named to the server.
  int PrepareActive();
  /// The connection, once the server has said that data come. 0, or a failure.
  int Open(Link& link);

 private:
  int Reach(std::uint16_t port);
  int Accept();

  ControlConnection& control_;
  const FtpLimits& limits_;
  Tether& tether_;
  SocketHandle listening_;
  SocketHandle connected_;
};

}  // namespace tavlo::platform
