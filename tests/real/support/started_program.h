#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace tavlo::test {

/// What a started program finds around it where that differs from what this process has.
struct Surroundings {
  std::vector<std::string> arguments;
  /// Nothing takes a variable away.
  std::map<std::string, std::optional<std::string>> environment;
  /// A file that gets what the program says on its standard error; empty leaves it with the test's.
  std::string errorsPath;
  /// Runs in the new process before the program does. False, and the program is not started: the
  /// process ends with status 126.
  std::function<bool()> prepare;
};

/// The real program in a process of its own, for the user of a home folder. It is killed with this
/// object, and with the test.
class StartedProgram {
 public:
  StartedProgram(const std::string& program, const std::string& home,
                 const Surroundings& surroundings = {});
  ~StartedProgram() { Kill(); }
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  bool Running();
  /// Waits for the end: the exit status, 128 and the signal's number when one ended it, nothing
  /// when it never ends.
  std::optional<int> ExitStatus();
  void Send(int signal);
  void Kill();

 private:
  /// What libraries keep for the next program, such as the list of fonts, is nothing of a home's.
  TemporaryFolder cache_;
  pid_t process_;
  std::optional<int> status_;
};

}  // namespace tavlo::test
