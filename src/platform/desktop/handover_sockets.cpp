#include "platform/desktop/handover_sockets.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace tavlo::platform::desktop {
namespace {

/// Starts that may wait until they are let in.
constexpr int kMostBeforeTheDoor = 16;

/// The same for the same root whatever built the program, which std::hash need not be (FNV-1a).
std::uint64_t HashOfRoot(const std::string& root) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : root) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  return hash;
}

struct HandoverAddress {
  explicit HandoverAddress(const std::string& name) {
    socket.sun_family = AF_UNIX;
    // The zero byte in front keeps the name out of the folders.
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 +
                                    name.copy(socket.sun_path + 1, sizeof socket.sun_path - 1));
  }
  const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&socket); }

  sockaddr_un socket{};
  socklen_t length = 0;
};

SocketHandle NewSocket() {
  return SocketHandle(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

}  // namespace

std::string HandoverName(const std::string& installRoot) {
  std::array<char, 64> name{};
  std::snprintf(name.data(), name.size(), "tavlodeck-%u-%016llx", ::geteuid(),
                static_cast<unsigned long long>(HashOfRoot(installRoot)));
  return name.data();
}

SocketHandle ListenUnder(const std::string& name) {
  const HandoverAddress address(name);
  SocketHandle socket = NewSocket();
  const bool listens = socket && ::bind(socket.Get(), address.Get(), address.length) == 0 &&
                       ::listen(socket.Get(), kMostBeforeTheDoor) == 0;
  return listens ? std::move(socket) : SocketHandle();
}

SocketHandle ConnectTo(const std::string& name) {
  const HandoverAddress address(name);
  SocketHandle socket = NewSocket();
  const bool connected = socket && ::connect(socket.Get(), address.Get(), address.length) == 0;
  return connected ? std::move(socket) : SocketHandle();
}

bool IsOfThisUser(const SocketHandle& socket) {
  ucred other{};
  socklen_t length = sizeof other;
  return ::getsockopt(socket.Get(), SOL_SOCKET, SO_PEERCRED, &other, &length) == 0 &&
         other.uid == ::geteuid();
}

}  // namespace tavlo::platform::desktop
