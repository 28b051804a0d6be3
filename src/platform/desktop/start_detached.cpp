#include "platform/desktop/start_detached.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace tavlo::platform::desktop {
namespace {

/// As a program expects to find them; what is ignored would stay so in it.
void ResetSignals() {
  struct sigaction asUsual {};
  asUsual.sa_handler = SIG_DFL;
  for (int signal = 1; signal < NSIG; ++signal) ::sigaction(signal, &asUsual, nullptr);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// In the new process, where nothing may be called that takes a lock or memory: another thread may
/// have held it when the process was split. Returns only when the program can not run.
void Become(const char* file, char* const* arguments) {
  ResetSignals();
  const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (nothing >= 0) ::dup2(nothing, STDIN_FILENO);
  // Libraries may have opened files that are not marked to end here.
  ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  ::execv(file, arguments);
}

/// Waits for a byte, which tells of a failure, or for the end: the pipe ends without one when the
/// program has taken the place of its process.
bool ComesAByte(int pipe) {
  char byte = 0;
  while (true) {
    const ssize_t got = ::read(pipe, &byte, 1);
    if (got >= 0 || errno != EINTR) return got != 0;
  }
}

}  // namespace

bool StartDetached(const std::string& file, const std::vector<std::string>& arguments) {
  std::vector<char*> list{const_cast<char*>(file.c_str())};
  for (const std::string& argument : arguments) {
    list.push_back(const_cast<char*>(argument.c_str()));
  }
  list.push_back(nullptr);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  const auto [hear, tell] = ends;

  // The process in between ends at once, so nobody has to wait for the program's end.
  const pid_t between = ::fork();
  if (between == 0) {
    ::setsid();
    const pid_t program = ::fork();
    if (program == 0) Become(file.c_str(), list.data());
    if (program <= 0) {
      [[maybe_unused]] const ssize_t told = ::write(tell, "", 1);
    }
    ::_exit(0);
  }
  ::close(tell);
  const bool failed = between < 0 || ComesAByte(hear);
  ::close(hear);
  while (between > 0 && ::waitpid(between, nullptr, 0) < 0 && errno == EINTR) {
  }
  return !failed;
}

}  // namespace tavlo::platform::desktop
