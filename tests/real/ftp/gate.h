#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

namespace tavlo::test {

/// Where a server stands still until a test lets it go on, for good.
class Gate {
 public:
  ~Gate() { ::close(event_); }
  Gate() = default;
  Gate(const Gate&) = delete;

  /// From any thread.
  void Open() const {
    const auto was = ::eventfd_write(event_, 1);
    static_cast<void>(was);
  }
  /// Can be read once the gate is open.
  int Descriptor() const { return event_; }

 private:
  const int event_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
};

}  // namespace tavlo::test
