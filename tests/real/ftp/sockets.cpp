#include "ftp/sockets.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace tavlo::test {
namespace {

sockaddr_in AddressOf(const std::string& address, int port) {
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = htons(static_cast<std::uint16_t>(port));
  ::inet_pton(AF_INET, address.c_str(), &place.sin_addr);
  return place;
}

/// Answers are small and each is waited for.
Socket WithoutDelay(int handle) {
  const int on = 1;
  ::setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return Socket(handle);
}

}  // namespace

Socket& Socket::operator=(Socket&& other) noexcept {
  if (this != &other) {
    Close();
    handle_ = other.Release();
  }
  return *this;
}

int Socket::Release() { return std::exchange(handle_, -1); }

void Socket::Close() {
  if (handle_ >= 0) ::close(handle_);
  handle_ = -1;
}

void Socket::Break() {
  const linger atOnce{.l_onoff = 1, .l_linger = 0};
  ::setsockopt(handle_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  Close();
}

Socket Listen(const std::string& address, int port) {
  Socket listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const sockaddr_in place = AddressOf(address, port);
  if (::bind(listening.Handle(), reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0 ||
      ::listen(listening.Handle(), 64) != 0) {
    listening.Close();
  }
  return listening;
}

int PortOf(const Socket& listening) {
  sockaddr_in place{};
  socklen_t size = sizeof place;
  ::getsockname(listening.Handle(), reinterpret_cast<sockaddr*>(&place), &size);
  return ntohs(place.sin_port);
}

Socket ConnectTo(const std::string& address, int port) {
  Socket connected = WithoutDelay(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const sockaddr_in place = AddressOf(address, port);
  if (::connect(connected.Handle(), reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0) {
    connected.Close();
  }
  return connected;
}

Socket Accept(const Socket& listening) {
  return WithoutDelay(::accept4(listening.Handle(), nullptr, nullptr, SOCK_CLOEXEC));
}

bool SendAll(const Socket& to, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(to.Handle(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

}  // namespace tavlo::test
