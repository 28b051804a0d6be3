#pragma once

#include <string>
#include <vector>

namespace tavlo::reports {

/// Starts other programs and waits for none of them. They outlive this one. Called on the loop's
/// thread; where a program lies on a place that gives no answer, the loop breathes.
class ProgramStarter {
 public:
  virtual ~ProgramStarter() = default;

  /// Starts a program, a full path or a name on the search path, with these arguments, each of them
  /// bytes as they stand. False when there is none, or it would not start, or its place gives no
  /// answer; then it does not start later either, save where the answer that is late is the start's
  /// own.
  virtual bool StartProgram(const std::string& program,
                            const std::vector<std::string>& arguments) = 0;
  /// Has the desktop open a text file, full path, in the program that its user prefers. False when
  /// there is nothing that would start. A desktop that takes the file and shows nothing is not
  /// found out.
  virtual bool OpenTextFile(const std::string& path) = 0;
};

}  // namespace tavlo::reports
