#include "platform/access/program_output.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

namespace tavlo::platform {
namespace {

using Clock = std::chrono::steady_clock;

/// Where a new process finds its standard handles, and which signals it keeps from this one: none.
class Surroundings {
 public:
  explicit Surroundings(int output) {
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    ::posix_spawnattr_init(&signals);
    sigset_t all;
    sigset_t none;
    ::sigfillset(&all);
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigdefault(&signals, &all);
    ::posix_spawnattr_setsigmask(&signals, &none);
    ::posix_spawnattr_setflags(&signals, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~Surroundings() {
    ::posix_spawn_file_actions_destroy(&files);
    ::posix_spawnattr_destroy(&signals);
  }
  Surroundings(const Surroundings&) = delete;

  posix_spawn_file_actions_t files;
  posix_spawnattr_t signals;
};

/// The process, or 0 when it could not be started.
pid_t Start(const std::string& program, const std::vector<std::string>& arguments, int output) {
  std::vector<char*> list{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) {
    list.push_back(const_cast<char*>(argument.c_str()));
  }
  list.push_back(nullptr);
  const Surroundings surroundings(output);
  pid_t process = 0;
  const int failed = ::posix_spawn(&process, program.c_str(), &surroundings.files,
                                   &surroundings.signals, list.data(), environ);
  return failed ? 0 : process;
}

/// Waits for something to read; false at the limit.
bool AwaitOutput(int pipe, Clock::time_point limit) {
  while (true) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now());
    if (left.count() <= 0) return false;
    pollfd waiting{.fd = pipe, .events = POLLIN, .revents = 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(left.count()));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

std::string ReadUntil(int pipe, Clock::time_point limit, std::size_t most) {
  std::string output;
  std::array<char, 65536> part{};
  while (output.size() < most && AwaitOutput(pipe, limit)) {
    const ssize_t got = ::read(pipe, part.data(), part.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    output.append(part.data(), std::min(static_cast<std::size_t>(got), most - output.size()));
  }
  return output;
}

}  // namespace

std::string OutputOf(const std::string& program, const std::vector<std::string>& arguments,
                     const OutputLimits& limits) {
  const auto limit = Clock::now() + limits.time;
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  const auto [hear, tell] = ends;
  const pid_t process = Start(program, arguments, tell);
  ::close(tell);
  std::string output;
  if (process > 0) {
    output = ReadUntil(hear, limit, limits.bytes);
    // One that has ended is not there any more, and one that goes on has told enough.
    ::kill(process, SIGKILL);
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
  ::close(hear);
  return output;
}

}  // namespace tavlo::platform
