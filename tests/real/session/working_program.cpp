#include "session/working_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "support/screen.h"
#include "support/send_signal.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

constexpr int kPatienceMilliseconds = kManyLooks * 20;

}  // namespace

WorkingProgram::WorkingProgram(const Home& home, const std::function<void(DrivenProgram&)>& work) {
  if (::pipe2(moment_.data(), O_CLOEXEC) != 0) return;
  process_ = ::fork();
  if (process_ != 0) return;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  DrivenProgram program(home);
  program.Run([&] {
    work(program);
    const bool good = !testing::Test::HasFailure();
    if (!good || ::write(moment_[1], "!", 1) != 1) ::_exit(99);
    std::this_thread::sleep_for(1h);
  });
  // Only the end of the session ends it, and that comes from outside.
  ::_exit(98);
}

WorkingProgram::~WorkingProgram() {
  if (SendSignal(process_, SIGKILL)) ::waitpid(process_, nullptr, 0);
  ::close(moment_[0]);
  ::close(moment_[1]);
}

bool WorkingProgram::Await() {
  pollfd look{.fd = moment_[0], .events = POLLIN, .revents = 0};
  return ::poll(&look, 1, kPatienceMilliseconds) == 1;
}

void WorkingProgram::Send(int signal) {
  EXPECT_TRUE(SendSignal(process_, signal)) << "there is no program to send a signal to";
}

std::optional<int> WorkingProgram::ExitStatus() {
  if (process_ <= 0) return {};
  int status = 0;
  if (!Until([&] { return ::waitpid(process_, &status, WNOHANG) == process_; })) return {};
  process_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace tavlo::test
