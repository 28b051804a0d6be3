#pragma once

#include <chrono>

#include "ftp/server_address.h"
#include "platform/curl/socket_handle.h"
#include "platform/curl/tether.h"

namespace tavlo::platform {

/// Looks up a server and connects to its port for commands, by whichever of its addresses answers
/// first. 0 and a socket that does not block, or a failure. On any thread, which waits for it.
int Dial(const ftp::ServerAddress& server, std::chrono::milliseconds limit, Tether& tether,
         SocketHandle& socket);

}  // namespace tavlo::platform
