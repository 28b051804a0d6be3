#pragma once

#include <string>

#include "platform/curl/socket_handle.h"

/// Sockets of this machine by which a start reaches the deck that runs on its root. Their name
/// stands in no folder, so nothing is left behind, and the system takes it back with the socket.
/// Whoever asks for a name first has it, of whatever user, so each end looks who the other one is.
/// None of these waits.
namespace tavlo::platform::desktop {

/// The name for the deck of this user on that root.
std::string HandoverName(const std::string& installRoot);

/// None when the name is taken or the system refuses.
SocketHandle ListenUnder(const std::string& name);
/// None when nobody listens under the name, or so many wait that nobody is let in now.
SocketHandle ConnectTo(const std::string& name);

/// Whether the other end belongs to a process of this user.
bool IsOfThisUser(const SocketHandle& socket);

}  // namespace tavlo::platform::desktop
