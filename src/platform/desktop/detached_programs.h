#pragma once

#include <string>
#include <vector>

#include "platform/reach/errands.h"
#include "reports/program_starter.h"

namespace tavlo::platform::desktop {

/// Starts programs of the user's in sessions of their own, so that they live on when this one ends.
/// Each program is looked at and started where a stall holds nobody. They get no part
/// of what this one has open, its signals as a shell would give them, and an empty standard input.
/// How large their windows are, and whether they take the keyboard, is between them and the window
/// manager: a desktop has no way to ask for it in another program's name.
class DetachedPrograms : public reports::ProgramStarter {
 public:
  /// The errands must outlive it. A start may stall wherever its program stands.
  explicit DetachedPrograms(Errands& errands) : errands_(errands) {}

  bool StartProgram(const std::string& program, const std::vector<std::string>& arguments) override;
  bool OpenTextFile(const std::string& path) override;

 private:
  bool StartFile(const std::string& file, const std::vector<std::string>& arguments);

  Errands& errands_;
};

}  // namespace tavlo::platform::desktop
