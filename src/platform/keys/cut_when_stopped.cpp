#include "platform/keys/cut_when_stopped.h"

#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace tavlo::platform {
namespace {

// A signal handler is given nothing but its signal, so it must find these by itself.
std::atomic<int> connectionToCut = -1;
std::atomic<pid_t> threadOfConnection = 0;
std::atomic<bool> cut = false;

void Take(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  ::sigaction(SIGTSTP, &action, nullptr);
}

/// On any other thread the stop might come late, and the connection's own thread, which goes on
/// until then, have connected and grabbed anew.
bool IsLeftToThreadOfConnection(int signal) {
  const pid_t thread = threadOfConnection;
  return thread > 0 && thread != ::gettid() && ::tgkill(::getpid(), thread, signal) == 0;
}

void StopHere(int signal) {
  // The stop itself is the system's, which knows when there is nobody who could end it.
  Take(SIG_DFL);
  sigset_t stop;
  ::sigemptyset(&stop);
  ::sigaddset(&stop, signal);
  ::raise(signal);
  ::pthread_sigmask(SIG_UNBLOCK, &stop, nullptr);
  ::pthread_sigmask(SIG_BLOCK, &stop, nullptr);
}

void CutAndStop(int signal) {
  const int before = errno;
  if (!IsLeftToThreadOfConnection(signal)) {
    if (const int descriptor = connectionToCut; descriptor >= 0) {
      cut = true;
      ::shutdown(descriptor, SHUT_RDWR);
    }
    StopHere(signal);
    Take(CutAndStop);
  }
  errno = before;
}

}  // namespace

CutWhenStopped::CutWhenStopped(int descriptor) {
  cut = false;
  connectionToCut = descriptor;
  threadOfConnection = ::gettid();
  struct sigaction present = {};
  ::sigaction(SIGTSTP, nullptr, &present);
  if (present.sa_handler == SIG_DFL) Take(CutAndStop);
}

CutWhenStopped::~CutWhenStopped() {
  threadOfConnection = 0;
  connectionToCut = -1;
  struct sigaction present = {};
  ::sigaction(SIGTSTP, nullptr, &present);
  if (present.sa_handler == CutAndStop) Take(SIG_DFL);
}

bool CutWhenStopped::HasCut() const { return cut; }

}  // namespace tavlo::platform
