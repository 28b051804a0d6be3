#include "platform/keys/cut_when_stopped.h"

#include <signal.h>
#include <sys/socket.h>

#include <atomic>
#include <cerrno>

namespace tavlo::platform {
namespace {

// A signal handler is given nothing but its signal, so it must find these by itself.
std::atomic<int> connection = -1;
std::atomic<bool> cut = false;

void Take(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  ::sigaction(SIGTSTP, &action, nullptr);
}

void CutAndStop(int signal) {
  const int before = errno;
  if (const int descriptor = connection; descriptor >= 0) {
    cut = true;
    ::shutdown(descriptor, SHUT_RDWR);
  }
  // The stop itself is the system's, which knows when there is nobody who could end it.
  Take(SIG_DFL);
  sigset_t stop;
  ::sigemptyset(&stop);
  ::sigaddset(&stop, signal);
  ::raise(signal);
  ::pthread_sigmask(SIG_UNBLOCK, &stop, nullptr);
  ::pthread_sigmask(SIG_BLOCK, &stop, nullptr);
  Take(CutAndStop);
  errno = before;
}

}  // namespace

CutWhenStopped::CutWhenStopped(int descriptor) {
  cut = false;
  connection = descriptor;
  struct sigaction present = {};
  ::sigaction(SIGTSTP, nullptr, &present);
  if (present.sa_handler == SIG_DFL) Take(CutAndStop);
}

CutWhenStopped::~CutWhenStopped() {
  connection = -1;
  struct sigaction present = {};
  ::sigaction(SIGTSTP, nullptr, &present);
  if (present.sa_handler == CutAndStop) Take(SIG_DFL);
}

bool CutWhenStopped::HasCut() const { return cut; }

}  // namespace tavlo::platform
