#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>

namespace tavlo::test {

/// The real program in a process of its own, for the user of a home folder. It is killed with this
/// object, and with the test.
class StartedProgram {
 public:
  StartedProgram(const std::string& program, const std::string& home);
  ~StartedProgram() { Kill(); }
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  bool Running();
  /// Waits for the end: the exit status, 128 and the signal's number when one ended it, nothing
  /// when it still runs after the patience.
  std::optional<int> ExitStatus(std::chrono::milliseconds patience = std::chrono::seconds{15});
  void Kill();

 private:
  pid_t process_;
  std::optional<int> status_;
};

}  // namespace tavlo::test
