#pragma once

#include <semaphore.h>
#include <sys/types.h>

#include <atomic>

namespace tavlo::test {

/// The wires between a serial port and the switch box behind it. They lie in memory that several
/// processes share.
class SerialWires {
 public:
  SerialWires() { Part(); }

  /// From now on the box closes these modem lines, as the bits of TIOCMGET.
  void Close(int lines) {
    closed_ = lines;
    ::sem_post(&changes_);
  }
  int Closed() const { return closed_; }
  /// Waits until `Close` has been called once more than this has returned.
  void AwaitChange() {
    while (::sem_wait(&changes_) != 0) {
    }
  }
  /// Nothing is plugged in at either end, and no thread waits.
  void Part() {
    closed_ = 0;
    reads = 0;
    raised = 0;
    openings = 0;
    waits = 0;
    ::sem_init(&changes_, /*pshared=*/1, 0);
  }

  /// The lines that the program at the port has raised.
  std::atomic<int> raised = 0;
  /// How many times the lines have been read.
  std::atomic<int> reads = 0;
  /// How many times the port is open now.
  std::atomic<int> openings = 0;
  /// How many callers wait for a line to change.
  std::atomic<int> waits = 0;

 private:
  std::atomic<int> closed_ = 0;
  ::sem_t changes_{};
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
