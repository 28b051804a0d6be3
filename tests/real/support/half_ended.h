#pragma once

#include <fcntl.h>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>

namespace tavlo::test {

/// A process that has ended, while another one that shares its open files goes on: to the kernel
/// the same as a process whose last thread is stuck in a call.
class HalfEnded {
 public:
  /// The process runs `begin`, and `last` when the other one is there.
  HalfEnded(const std::function<void()>& begin, const std::function<void()>& last) {
    std::array<int, 2> wires{};
    if (::pipe2(wires.data(), O_CLOEXEC) != 0) std::abort();
    const int process = ::fork();
    if (process == 0) {
      begin();
      const auto stuck = static_cast<int>(::syscall(SYS_clone, CLONE_FILES | SIGCHLD, 0, 0, 0, 0));
      while (stuck == 0) ::pause();
      const bool told = ::write(wires[1], &stuck, sizeof stuck) == sizeof stuck;
      last();
      ::_exit(told ? 0 : 1);
    }
    if (::read(wires[0], &stuck_, sizeof stuck_) != sizeof stuck_) std::abort();
    for (const int end : wires) ::close(end);
    ::waitpid(process, nullptr, 0);
  }
  ~HalfEnded() { ::kill(stuck_, SIGKILL); }
  HalfEnded(const HalfEnded&) = delete;

 private:
  int stuck_ = 0;
};

}  // namespace tavlo::test
