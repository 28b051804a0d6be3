#include "platform/curl/data_port.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/curl/ftp_failures.h"
#include "platform/curl/server_replies.h"

namespace tavlo::platform {
namespace {

/// An address of either kind, with its port.
struct Address {
  sockaddr_storage storage{};
  socklen_t length = sizeof storage;

  sockaddr* Get() { return reinterpret_cast<sockaddr*>(&storage); }
  sockaddr_in& Four() { return reinterpret_cast<sockaddr_in&>(storage); }
  sockaddr_in6& Six() { return reinterpret_cast<sockaddr_in6&>(storage); }
  bool IsSix() const { return storage.ss_family == AF_INET6; }
  void SetPort(std::uint16_t port) { (IsSix() ? Six().sin6_port : Four().sin_port) = htons(port); }
  std::uint16_t Port() { return ntohs(IsSix() ? Six().sin6_port : Four().sin_port); }
  bool IsOfOneMachineWith(Address& other) {
    if (storage.ss_family != other.storage.ss_family) return false;
    if (!IsSix()) return Four().sin_addr.s_addr == other.Four().sin_addr.s_addr;
    return std::memcmp(&Six().sin6_addr, &other.Six().sin6_addr, sizeof(in6_addr)) == 0;
  }
  std::string Text() {
    char text[INET6_ADDRSTRLEN] = "";
    const void* const bytes =
        IsSix() ? static_cast<const void*>(&Six().sin6_addr) : &Four().sin_addr;
    ::inet_ntop(storage.ss_family, bytes, text, sizeof text);
    return text;
  }
};

Address PeerOf(int socket) {
  Address address;
  ::getpeername(socket, address.Get(), &address.length);
  return address;
}

Address OwnOf(int socket) {
  Address address;
  ::getsockname(socket, address.Get(), &address.length);
  return address;
}

SocketHandle MakeSocket(const Address& address) {
  return SocketHandle(
      ::socket(address.storage.ss_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

std::string PortCommand(Address address) {
  const std::uint16_t port = address.Port();
  if (address.IsSix()) return "EPRT |2|" + address.Text() + "|" + std::to_string(port) + "|";
  std::string host = address.Text();
  std::ranges::replace(host, '.', ',');
  return "PORT " + host + "," + std::to_string(port / 256) + "," + std::to_string(port % 256);
}

}  // namespace

int DataPort::PreparePassive() {
  // Every server and every fire wall on the way knows PASV, which has no room for an address of
  // IPv6.
  const bool six = PeerOf(control_.Descriptor()).IsSix();
  const auto reply = control_.Ask(six ? "EPSV" : "PASV");
  if (!reply) return control_.Fault();
  auto port = six ? ExtendedPassivePort(*reply) : PassivePort(*reply);
  if (!reply->IsGood()) port.reset();
  if (!port && !six && reply->code >= 500) {
    const auto second = control_.Ask("EPSV");
    if (!second) return control_.Fault();
    if (second->IsGood()) port = ExtendedPassivePort(*second);
  }
  return port ? Reach(*port) : kNoDataConnection;
}

int DataPort::Reach(std::uint16_t port) {
  Address address = PeerOf(control_.Descriptor());
  address.SetPort(port);
  connected_ = MakeSocket(address);
  if (!connected_) return kProcessInTrouble;
  if (::connect(connected_.Get(), address.Get(), address.length) == 0) return 0;
  if (errno != EINPROGRESS && errno != EINTR) return kNoDataConnection;
  const auto waited = tether_.Await(connected_.Get(), POLLOUT, In(limits_.connect));
  int error = 0;
  socklen_t length = sizeof error;
  ::getsockopt(connected_.Get(), SOL_SOCKET, SO_ERROR, &error, &length);
  return waited == Tether::Waited::Ready && error == 0 ? 0 : kNoDataConnection;
}

int DataPort::PrepareActive() {
  Address address = OwnOf(control_.Descriptor());
  address.SetPort(0);
  listening_ = MakeSocket(address);
  if (!listening_) return kProcessInTrouble;
  if (::bind(listening_.Get(), address.Get(), address.length) != 0 ||
      ::listen(listening_.Get(), 1) != 0) {
    return kNoDataConnection;
  }
  const auto reply = control_.Ask(PortCommand(OwnOf(listening_.Get())));
  if (!reply) return control_.Fault();
  return reply->IsGood() ? 0 : kNoDataConnection;
}

int DataPort::Accept() {
  Address server = PeerOf(control_.Descriptor());
  const Deadline deadline = In(limits_.connect);
  while (true) {
    Address caller;
    connected_ = SocketHandle(
        ::accept4(listening_.Get(), caller.Get(), &caller.length, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (connected_ && caller.IsOfOneMachineWith(server)) return 0;
    if (connected_) continue;
    // A server that has connected may have answered, too; one that answers only has given up.
    if (control_.HasNews()) return kNoDataConnection;
    const auto waited = tether_.Await(listening_.Get(), POLLIN, deadline, control_.Descriptor());
    if (waited != Tether::Waited::Ready || !control_.Look()) return kNoDataConnection;
  }
}

int DataPort::Open(Link& link) {
  if (listening_) {
    if (const int failure = Accept()) return failure;
    listening_ = SocketHandle();
  }
  link = Link(std::move(connected_));
  TlsParty* const party = control_.Party();
  return party == nullptr ? 0 : link.Protect(*party, In(limits_.connect), tether_);
}

}  // namespace tavlo::platform
