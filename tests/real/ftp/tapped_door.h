#pragma once

#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>

#include "ftp/gate.h"
#include "ftp/sockets.h"

namespace tavlo::test {

/// A door on loopback before a server: what a guest says there is passed on to the server, and
/// kept. Data connections do not go through it.
class TappedDoor {
 public:
  /// `open` makes a connection to the server for each guest; it is called on the door's thread.
  explicit TappedDoor(std::function<Socket()> open);
  ~TappedDoor() { Shut(); }
  TappedDoor(const TappedDoor&) = delete;
  /// Hangs up on all guests and takes no more.
  void Shut();

  int Port() const { return port_; }
  /// All that guests have said up to now, as it went over the wire.
  std::string Heard() const;

 private:
  struct Guest {
    Socket outside;
    Socket inside;
  };

  void Run();
  /// Passes on what has come, and adds it to `kept`, which may be null. False when either end has
  /// hung up.
  bool Pass(const Socket& from, const Socket& to, std::string* kept);

  const std::function<Socket()> open_;
  Socket listening_ = Listen();
  const int port_ = PortOf(listening_);
  Gate end_;
  mutable std::mutex mutex_;
  std::string heard_;
  std::thread thread_;
};

}  // namespace tavlo::test
