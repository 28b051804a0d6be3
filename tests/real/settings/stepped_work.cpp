#include "settings/stepped_work.h"

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "support/send_signal.h"

namespace tavlo::test {
namespace {

constexpr int kNotPermitted = 77;

bool IsOneOf(std::initializer_list<long> calls, std::uint64_t number) {
  return std::ranges::any_of(
      calls, [number](long call) { return static_cast<std::uint64_t>(call) == number; });
}

bool Writes(std::uint64_t call) { return IsOneOf({SYS_write, SYS_pwrite64}, call); }

bool Changes(std::uint64_t call) {
  return Writes(call) || IsOneOf({SYS_ftruncate, SYS_fdatasync, SYS_fsync, SYS_unlink}, call);
}

[[noreturn]] void Work(const std::function<std::function<bool()>()>& prepare) {
  const std::function<bool()> work = prepare();
  if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(kNotPermitted);
  ::raise(SIGSTOP);
  ::_exit(work() ? 0 : 1);
}

/// A process that is followed from call to call.
class FollowedProcess {
 public:
  explicit FollowedProcess(pid_t process) : process_(process) {}

  /// Goes on to the next beginning or end of a call. False when the process has ended.
  bool GoOn() {
    do {
      ::ptrace(PTRACE_SYSCALL, process_, nullptr, nullptr);
      if (!Await()) return false;
    } while (!WIFSTOPPED(status_) || WSTOPSIG(status_) != (SIGTRAP | 0x80));
    return true;
  }
  /// Until it has stopped or ended. False when it has ended.
  bool Await() {
    if (::waitpid(process_, &status_, 0) != process_) return false;
    return WIFSTOPPED(status_);
  }
  int ExitStatus() const { return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1; }

  /// The number of the call that begins.
  std::uint64_t Call() const {
    __ptrace_syscall_info info{};
    ::ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof info, &info);
    return info.op == PTRACE_SYSCALL_INFO_ENTRY ? info.entry.nr : 0;
  }
  /// Makes the call that begins write half of its bytes.
  void Halve() const {
#ifdef __x86_64__
    constexpr std::size_t kLength = offsetof(user_regs_struct, rdx);
    const long length = ::ptrace(PTRACE_PEEKUSER, process_, kLength, nullptr);
    ::ptrace(PTRACE_POKEUSER, process_, kLength, length / 2);
#endif
  }
  void Kill() {
    SendSignal(process_, SIGKILL);
    ::waitpid(process_, &status_, 0);
  }

 private:
  const pid_t process_;
  int status_ = 0;
};

SteppedWork Ended(const FollowedProcess& process) {
  switch (process.ExitStatus()) {
    case 0:
      return {.outcome = Outcome::Finished};
    case kNotPermitted:
      return {.outcome = Outcome::NotPermitted};
    default:
      return {.outcome = Outcome::Failed};
  }
}

}  // namespace

SteppedWork KillAtCall(int call, Moment moment,
                       const std::function<std::function<bool()>()>& prepare) {
  const pid_t worker = ::fork();
  if (worker == 0) Work(prepare);
  FollowedProcess process(worker);
  if (!process.Await()) return Ended(process);
  ::ptrace(PTRACE_SETOPTIONS, worker, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  for (int begun = 1; process.GoOn(); ++begun) {
    const std::uint64_t number = process.Call();
    const bool halves = moment == Moment::HalfWritten && Writes(number);
    if (begun == call && halves) process.Halve();
    const bool killsNow = begun == call && moment == Moment::BeforeCall;
    if (!killsNow && !process.GoOn()) break;
    if (!killsNow && !(begun == call && halves)) continue;
    process.Kill();
    return {.outcome = Outcome::Killed, .writes = Writes(number), .changes = Changes(number)};
  }
  return Ended(process);
}

}  // namespace tavlo::test
