#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

namespace tavlo::platform {

/// A descriptor that can be read from a ring on until the bell is silenced. Whoever waits for it
/// reads nothing from it. Rung and silenced on any thread; neither waits.
class Bell {
 public:
  /// Throws std::system_error when the process has no descriptor left.
  Bell() : handle_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (handle_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
  }
  ~Bell() { ::close(handle_); }
  Bell(const Bell&) = delete;

  void Ring() const {
    const std::uint64_t one = 1;
    // It fails only when it was rung more often than a number holds, and then it can be read.
    [[maybe_unused]] const ssize_t written = ::write(handle_, &one, sizeof one);
  }
  /// True when it had rung.
  bool Silence() const {
    std::uint64_t rings = 0;
    return ::read(handle_, &rings, sizeof rings) == sizeof rings;
  }
  /// Belongs to the bell.
  int Descriptor() const { return handle_; }

 private:
  const int handle_;
};

}  // namespace tavlo::platform
