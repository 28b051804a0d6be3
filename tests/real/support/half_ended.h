#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>

#include "support/send_signal.h"

namespace tavlo::test {

/// A process that has ended, while another one that shares its open files goes on: to the kernel
/// the same as a process whose last thread is stuck in a call.
class HalfEnded {
 public:
  /// The process runs `begin`, and `last` when the other one is there.
  HalfEnded(const std::function<void()>& begin, const std::function<void()>& last) {
    std::array<int, 2> wires{};
    if (::pipe2(wires.data(), O_CLOEXEC) != 0) std::abort();
    const pid_t process = ::fork();
    if (process == 0) {
      begin();
      const auto stuck =
          static_cast<pid_t>(::syscall(SYS_clone, CLONE_FILES | SIGCHLD, 0, 0, 0, 0));
      while (stuck == 0) ::pause();
      const bool told = ::write(wires[1], &stuck, sizeof stuck) == sizeof stuck;
      last();
      ::_exit(told ? 0 : 1);
    }
    ::close(wires[1]);
    const bool told = ::read(wires[0], &stuck_, sizeof stuck_) == sizeof stuck_;
    ::close(wires[0]);
    if (process > 0) ::waitpid(process, nullptr, 0);
    EXPECT_TRUE(told && stuck_ > 0) << "there is no process that goes on";
  }
  ~HalfEnded() { SendSignal(stuck_, SIGKILL); }
  HalfEnded(const HalfEnded&) = delete;

 private:
  pid_t stuck_ = -1;
};

}  // namespace tavlo::test
