#include "support/other_program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace tavlo::test {
namespace {

/// The two pipes between the test and the other process.
struct Wires {
  std::array<int, 2> toChild{};
  std::array<int, 2> fromChild{};
};

Wires MakeWires() {
  Wires wires;
  if (::pipe2(wires.toChild.data(), O_CLOEXEC) != 0 ||
      ::pipe2(wires.fromChild.data(), O_CLOEXEC) != 0) {
    std::abort();
  }
  return wires;
}

/// Returns once the other process has answered, and gives the end that lets it go.
int AwaitAnswer(const Wires& wires) {
  char answer = 0;
  ::close(wires.toChild[0]);
  ::close(wires.fromChild[1]);
  if (::read(wires.fromChild[0], &answer, 1) != 1) std::abort();
  ::close(wires.fromChild[0]);
  return wires.toChild[1];
}

}  // namespace

OtherProgram OtherProgram::Holding(const std::string& path, int flags) {
  const Wires wires = MakeWires();
  const int process = ::fork();
  if (process == 0) {
    ::close(wires.toChild[1]);
    const int file = ::open(path.c_str(), flags);
    char letGo = 0;
    if (file < 0 || ::write(wires.fromChild[1], "!", 1) != 1) ::_exit(1);
    while (::read(wires.toChild[0], &letGo, 1) > 0) {
    }
    ::_exit(0);
  }
  return {process, AwaitAnswer(wires)};
}

OtherProgram OtherProgram::Idle() {
  const Wires wires = MakeWires();
  const int process = ::fork();
  if (process == 0) {
    ::dup2(wires.toChild[0], STDIN_FILENO);
    ::dup2(wires.fromChild[1], STDOUT_FILENO);
    ::execlp("cat", "cat", nullptr);
    ::_exit(1);
  }
  if (::write(wires.toChild[1], "!", 1) != 1) std::abort();
  return {process, AwaitAnswer(wires)};
}

OtherProgram::~OtherProgram() {
  ::close(letGo_);
  ::waitpid(process_, nullptr, 0);
}

int RunShell(const std::string& command) {
  const int process = ::fork();
  if (process == 0) {
    ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    ::_exit(127);
  }
  int status = -1;
  ::waitpid(process, &status, 0);
  return status;
}

}  // namespace tavlo::test
