#pragma once

#include <signal.h>
#include <unistd.h>

namespace tavlo::test {

/// Sends a signal to one other process. False, and nothing is sent, when the number is not that of
/// one: those below 1 stand for many, up to all of the user's, 1 is the system's own, and one is
/// this test's.
inline bool SendSignal(pid_t process, int signal) {
  return process > 1 && process != ::getpid() && ::kill(process, signal) == 0;
}

}  // namespace tavlo::test
