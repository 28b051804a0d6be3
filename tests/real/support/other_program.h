#pragma once

#include <string>
#include <vector>

namespace tavlo::test {

/// Another process, which does something and then holds still until it is let go. Made when it has
/// done it.
class OtherProgram {
 public:
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram();

  /// Holds a file open with the flags of open(2).
  static OtherProgram Holding(const std::string& path, int flags);
  /// Runs the standard program `cat`, which holds still by itself.
  static OtherProgram Idle();

 private:
  OtherProgram(int process, int letGo) : process_(process), letGo_(letGo) {}

  int process_;
  int letGo_;
};

/// Runs a shell command and returns its wait status.
int RunShell(const std::string& command);

}  // namespace tavlo::test
