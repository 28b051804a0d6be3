#pragma once

#include <memory>
#include <optional>
#include <string>

#include "pedals/serial_port.h"
#include "platform/reach/hush.h"
#include "platform/serial/line_waiter.h"
#include "platform/serial/modem_lines.h"
#include "platform/wake/readable_once.h"

namespace tavlo::platform {

/// A serial port of this machine: number N is ttyS(N-1), or where there is no such port or nothing
/// behind it, ttyUSB(N-1) or ttyACM(N-1). The modem lines are asked of the kernel directly, because
/// serial libraries refuse ports that are not listed as hardware.
class PosixSerialPort : public pedals::SerialPort, public WatchedFoot {
 public:
  explicit PosixSerialPort(
      std::string deviceFolder = "/dev",
      std::unique_ptr<ModemLines> lines = std::make_unique<KernelModemLines>());
  ~PosixSerialPort() override;
  PosixSerialPort(const PosixSerialPort&) = delete;

  bool Open(int portNumber) override;
  void Close() override;
  std::optional<pedals::SerialLines> ReadLines() override;
  bool TellOnce(base::Listener& listener) override;
  /// The next `ReadLines` then gives lines that are all let go, and the one after it what they are.
  bool LetGo() override;

  /// The path of the open port; empty when none is open.
  const std::string& Path() const { return path_; }

 private:
  bool OpenPath(const std::string& path);
  bool OpenAny();
  void BeginToWait();
  void Release();

  const std::string deviceFolder_;
  const std::unique_ptr<ModemLines> lines_;
  std::string path_;
  int handle_ = -1;
  int portNumber_ = 0;
  int readsSinceLost_ = 0;
  /// A change came before the last look, and the listener had not been told of it yet. What it
  /// brought may have passed, so somebody looks again.
  bool untold_ = false;
  bool held_ = false;   ///< A line was held when they were read last.
  bool letGo_ = false;  ///< All of them have been let go since.
  /// Both are there while a port is open, unless no thread can wait for it.
  std::unique_ptr<LineWaiter> waiter_;
  std::unique_ptr<ReadableOnce> news_;
};

}  // namespace tavlo::platform
