#pragma once

#include <sys/types.h>

#include <atomic>

namespace tavlo::test {

/// The wires between a serial port and the switch box behind it. They lie in memory that several
/// processes share.
struct SerialWires {
  /// The modem lines that the box closes, as the bits of TIOCMGET.
  std::atomic<int> closed = 0;
  /// The lines that the program at the port has raised.
  std::atomic<int> raised = 0;
  /// How many times the port is open now.
  std::atomic<int> openings = 0;
};

/// A serial port with a switch box that a process of its own makes up and the kernel takes for a
/// real one. Takes the rights of root.
class SerialBox {
 public:
  explicit SerialBox(SerialWires& wires) : wires_(wires) {}
  ~SerialBox() { Unplug(); }
  SerialBox(const SerialBox&) = delete;

  /// Plugs it in as `/dev/ttyUSB4`, which everybody may use. False when the kernel does not take
  /// it.
  bool Plug();
  void Unplug();

 private:
  SerialWires& wires_;
  pid_t process_ = -1;
};

}  // namespace tavlo::test
