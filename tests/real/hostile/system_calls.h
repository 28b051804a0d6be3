#pragma once

#include <string>
#include <vector>

namespace tavlo::test {

/// One call by which a process opens a file, a door to others, or becomes another program.
struct SystemCall {
  std::string name;
  /// The text argument, byte for byte, with the folder in front that it is looked up in; empty when
  /// there is none.
  std::string path;
  std::string arguments;  ///< All of them, as the listener wrote them.
};

/// The command that runs another one and writes its calls, and those of all that it starts, to a
/// file.
std::vector<std::string> ListenedTo(const std::vector<std::string>& command,
                                    const std::string& logPath);

/// The calls that stand in such a file, in order.
std::vector<SystemCall> ReadSystemCalls(const std::string& logPath);

}  // namespace tavlo::test
