#pragma once

#include <string>
#include <string_view>

namespace tavlo::test {

/// A socket, closed with this object.
class Socket {
 public:
  explicit Socket(int handle = -1) : handle_(handle) {}
  Socket(Socket&& other) noexcept : handle_(other.Release()) {}
  Socket& operator=(Socket&& other) noexcept;
  ~Socket() { Close(); }

  bool IsOpen() const { return handle_ >= 0; }
  int Handle() const { return handle_; }
  int Release();
  void Close();
  /// Closes it so that the other end hears of a failure and not of an end.
  void Break();

 private:
  int handle_;
};

/// Listens on a port of that address which nobody has; `port` asks for a certain one.
Socket Listen(const std::string& address = "127.0.0.1", int port = 0);
int PortOf(const Socket& listening);
/// Not connected when nobody listens there.
Socket ConnectTo(const std::string& address, int port);
Socket Accept(const Socket& listening);
/// Sends all of it, or as much as the other end takes; false when it does not take all.
bool SendAll(const Socket& to, std::string_view bytes);

}  // namespace tavlo::test
