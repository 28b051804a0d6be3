#pragma once

#include <string>

#include "support/sound_server.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

/// The message bus that real desktops have, for those alone whom the test lets know its
/// address, and the services that they call for. All of it ends with this object.
class RealBus {
 public:
  RealBus();
  ~RealBus();
  RealBus(const RealBus&) = delete;

  /// Empty when it does not come up.
  const std::string& Address() const { return address_; }
  /// Starts the service of that name and waits until it answers; false when it does not.
  bool StartService(const std::string& name, const std::string& path) const;
  /// From here on neither the bus nor a service does anything, and their sockets stay.
  void Freeze();
  /// It goes on.
  void Thaw();
  /// It dies, and the services with it.
  void Kill();
  /// Another one comes up in its place, under the same address.
  void Restart();

 private:
  void Start();

  TemporaryFolder folder_;
  std::string address_;
  ChildProcess daemon_;
};

}  // namespace tavlo::test
