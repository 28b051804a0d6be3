#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "ftp/server_address.h"
#include "platform/curl/curl_library.h"
#include "platform/curl/socket_handle.h"
#include "platform/curl/tether.h"
#include "platform/curl/trust_store.h"

namespace tavlo::platform {

/// What the connections of one log-in have in common. On the thread of that log-in.
struct LogIn {
  ftp::ServerAddress server;
  TrustStore trust;
  std::chrono::milliseconds connectLimit;
  ShareHandle tlsSessions;
};

/// One connection to a server: in the clear, or under TLS once it is protected. libcurl makes it
/// (looks up the name, tries the addresses in turn, agrees on TLS, checks the certificate) and then
/// leaves it to us: its own FTP would make one of CR LF and LF in listings, take no name with a
/// control character in it, and log in again by itself. On one thread.
class Link {
 public:
  /// None.
  Link() = default;
  /// A connection that stands; the socket does not block.
  explicit Link(SocketHandle socket) : socket_(std::move(socket)) {}

  /// Reaches the server's port for commands. 0, or a failure.
  int Dial(const LogIn& logIn, Tether& tether);
  /// Agrees on TLS, of version 1.2 or newer, with the server of the log-in, which must have a
  /// certificate in its name that is believed. 0, or a failure; then the connection is of no use.
  int Protect(const LogIn& logIn, Tether& tether);

  struct Received {
    enum class How { Bytes, End, TimedOut, Broken } how = How::Broken;
    std::size_t count = 0;
  };
  /// Waits for bytes, at most as many as there is room.
  Received Receive(std::span<char> room, Deadline deadline, Tether& tether);
  /// Sends all of it; false when that fails, or not in time.
  bool Send(std::string_view bytes, Deadline deadline, Tether& tether);

  /// Of the kernel, to wait for and to ask for its addresses. Below 0 when there is none.
  int Descriptor() const { return tls_ ? tlsSocket_ : socket_.Get(); }
  void Close();

 private:
  /// What can be had now. Nothing there: How::TimedOut.
  Received Take(std::span<char> room) const;
  /// How many bytes could be sent now; below 0 when it is broken.
  std::ptrdiff_t Give(std::string_view bytes) const;

  SocketHandle socket_;  ///< While it is in the clear.
  EasyHandle tls_;       ///< Owns the socket from then on.
  int tlsSocket_ = -1;
};

}  // namespace tavlo::platform
