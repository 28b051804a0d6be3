#pragma once

#include <unistd.h>

#include <utility>

namespace tavlo::platform {

/// A socket, closed when it goes out of scope. Below 0 when there is none.
class SocketHandle {
 public:
  SocketHandle() = default;
  explicit SocketHandle(int socket) : socket_(socket) {}
  SocketHandle(SocketHandle&& other) noexcept : socket_(other.Release()) {}
  SocketHandle& operator=(SocketHandle&& other) noexcept {
    std::swap(socket_, other.socket_);
    return *this;
  }
  ~SocketHandle() {
    if (socket_ >= 0) ::close(socket_);
  }

  explicit operator bool() const { return socket_ >= 0; }
  int Get() const { return socket_; }
  /// Hands it over to somebody who closes it.
  [[nodiscard]] int Release() { return std::exchange(socket_, -1); }

 private:
  int socket_ = -1;
};

}  // namespace tavlo::platform
