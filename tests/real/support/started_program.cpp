#include "support/started_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/screen.h"

namespace tavlo::test {
namespace {

bool Enter(const Surroundings& surroundings) {
  for (const auto& [name, value] : surroundings.environment) {
    if (value) {
      ::setenv(name.c_str(), value->c_str(), 1);
    } else {
      ::unsetenv(name.c_str());
    }
  }
  if (!surroundings.errorsPath.empty()) {
    const int errors = ::open(surroundings.errorsPath.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    if (errors < 0 || ::dup2(errors, STDERR_FILENO) < 0) return false;
  }
  return !surroundings.prepare || surroundings.prepare();
}

}  // namespace

StartedProgram::StartedProgram(const std::string& program, const std::string& home,
                               const Surroundings& surroundings)
    : process_(::fork()) {
  if (process_ < 0) {
    status_ = 127;
    ADD_FAILURE() << "no process can be forked for " << program;
  }
  if (process_ != 0) return;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  ::setenv("HOME", home.c_str(), 1);
  ::unsetenv("XDG_CONFIG_HOME");
  ::setenv("XDG_CACHE_HOME", cache_.Path().c_str(), 1);
  if (!Enter(surroundings)) ::_exit(126);
  std::vector<const char*> arguments{program.c_str()};
  for (const std::string& argument : surroundings.arguments) arguments.push_back(argument.c_str());
  arguments.push_back(nullptr);
  ::execv(program.c_str(), const_cast<char* const*>(arguments.data()));
  ::_exit(127);
}

bool StartedProgram::Running() {
  int status = 0;
  if (!status_ && ::waitpid(process_, &status, WNOHANG) == process_) {
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  return !status_;
}

std::optional<int> StartedProgram::ExitStatus() {
  Until([this] { return !Running(); });
  return status_;
}

void StartedProgram::Send(int signal) {
  if (Running()) ::kill(process_, signal);
}

void StartedProgram::Kill() {
  if (!Running()) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  status_ = 128 + SIGKILL;
}

}  // namespace tavlo::test
