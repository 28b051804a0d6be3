#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "platform/curl/received.h"
#include "platform/curl/socket_handle.h"
#include "platform/curl/tether.h"
#include "platform/curl/tls.h"

namespace tavlo::platform {

/// One connection to a server: in the clear, or under TLS once it is protected. On one thread.
class Link {
 public:
  /// None.
  Link() = default;
  /// A connection that stands; the socket does not block.
  explicit Link(SocketHandle socket) : socket_(std::move(socket)) {}

  /// Agrees on TLS with the other end. 0, or a failure; then the connection is closed.
  int Protect(TlsParty& party, Deadline deadline, Tether& tether);

  /// Waits for bytes, at most as many as there is room.
  Received Receive(std::span<char> room, Deadline deadline, Tether& tether);
  /// Sends all of it; false when that fails, or not in time.
  bool Send(std::string_view bytes, Deadline deadline, Tether& tether);

  /// Of the kernel, to wait for and to ask for its addresses. Below 0 when there is none.
  int Descriptor() const { return socket_.Get(); }
  void Close();

 private:
  /// What can be had now. Nothing there: How::TimedOut.
  Received Take(std::span<char> room);
  /// How many bytes could be sent now; below 0 when it is broken.
  std::ptrdiff_t Give(std::string_view bytes);

  SocketHandle socket_;
  std::unique_ptr<TlsChannel> tls_;  ///< Null while it is in the clear.
};

}  // namespace tavlo::platform
