#pragma once

#include <optional>

namespace tavlo::platform {

/// What the kernel says of the modem lines of an open port.
class ModemLines {
 public:
  virtual ~ModemLines() = default;

  /// The bits of TIOCMGET; nothing when the port has no such lines or has gone.
  virtual std::optional<int> Status(int port) = 0;

  enum class Wait { Changed, Interrupted, Impossible };
  /// Waits for a pedal's line to change. A signal interrupts it. It is impossible at a port that
  /// cannot wait or has gone. Called on a thread of its own.
  virtual Wait AwaitChange(int port) = 0;
};

/// The real ones.
class KernelModemLines : public ModemLines {
 public:
  std::optional<int> Status(int port) override;
  Wait AwaitChange(int port) override;
};

}  // namespace tavlo::platform
