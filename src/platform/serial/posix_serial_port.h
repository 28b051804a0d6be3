#pragma once

#include <functional>
#include <optional>
#include <string>

#include "pedals/serial_port.h"

namespace tavlo::platform {

/// A serial port of this machine: number N is ttyS(N-1), or where there is no such port or nothing
/// behind it, ttyUSB(N-1) or ttyACM(N-1). The modem lines are asked of the kernel directly, because
/// serial libraries refuse ports that are not listed as hardware.
class PosixSerialPort : public pedals::SerialPort {
 public:
  /// Reads the modem status of an open port; nothing when it has none or has gone.
  using ModemStatus = std::function<std::optional<int>(int handle)>;

  explicit PosixSerialPort(std::string deviceFolder = "/dev", ModemStatus status = KernelStatus);
  ~PosixSerialPort() override;
  PosixSerialPort(const PosixSerialPort&) = delete;

  bool Open(int portNumber) override;
  void Close() override;
  std::optional<pedals::SerialLines> ReadLines() override;
  bool TellOnce(base::Listener&) override { return false; }

  /// The path of the open port; empty when none is open.
  const std::string& Path() const { return path_; }

 private:
  static std::optional<int> KernelStatus(int handle);
  bool OpenPath(const std::string& path);
  bool OpenAny();
  void Release();

  const std::string deviceFolder_;
  const ModemStatus status_;
  std::string path_;
  int handle_ = -1;
  int portNumber_ = 0;
  int readsSinceLost_ = 0;
};

}  // namespace tavlo::platform
