#pragma once

#include <sys/types.h>

#include <array>
#include <functional>
#include <optional>

#include "support/driven_program.h"
#include "support/home.h"

namespace tavlo::test {

/// The real program in a process of its own, with somebody inside who brings it to a moment and
/// then leaves it alone until it ends.
class WorkingProgram {
 public:
  /// `work` runs beside the program. Make it before this process has threads.
  WorkingProgram(const Home& home, const std::function<void(DrivenProgram&)>& work);
  ~WorkingProgram();
  WorkingProgram(const WorkingProgram&) = delete;

  /// Waits until the work is done; false when it never is.
  bool Await();
  void Send(int signal);
  /// Waits for the end: the exit status, 128 and the signal's number when one ended it, nothing
  /// when it never ends.
  std::optional<int> ExitStatus();

 private:
  std::array<int, 2> moment_{-1, -1};
  pid_t process_ = -1;
};

}  // namespace tavlo::test
