#pragma once

#include <set>
#include <string>
#include <vector>

#include "reports/program_starter.h"

namespace tavlo::test {

/// The programs of a desktop. Only those that are installed start.
class SimulatedPrograms : public reports::ProgramStarter {
 public:
  /// Names and paths of what would start.
  std::set<std::string> Installed{"xdg-open"};
  /// The desktop knows what opens a text.
  bool OpensTexts = true;

  /// What was to be started, whether it did or not: the program first, then its arguments.
  std::vector<std::vector<std::string>> Tried;
  /// What did start, in the same way.
  std::vector<std::vector<std::string>> Started;
  /// What the desktop was to open, whether it could or not.
  std::vector<std::string> Opened;

  bool StartProgram(const std::string& program,
                    const std::vector<std::string>& arguments) override {
    std::vector<std::string> line{program};
    line.insert(line.end(), arguments.begin(), arguments.end());
    Tried.push_back(line);
    if (!Installed.contains(program)) return false;
    Started.push_back(line);
    return true;
  }
  bool OpenTextFile(const std::string& path) override {
    Opened.push_back(path);
    return OpensTexts;
  }
};

}  // namespace tavlo::test
