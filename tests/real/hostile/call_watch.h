#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "hostile/system_calls.h"

namespace tavlo::test {

/// Holds the calls of the deck against what each step of it may open. Steps are told by `Mark`: one
/// that is named "scan" walks over folders, any other is about the document of its name.
class CallWatch {
 public:
  /// The folders, below those of the root's files, in which documents stand that do harm.
  explicit CallWatch(std::vector<std::string> folders) : folders_(std::move(folders)) {}

  void Take(const SystemCall& call);

  std::vector<std::string> Offences;
  std::set<std::string> Opened;  ///< Documents of those folders.
  std::set<std::string> OpenedTwiceByAScan;

 private:
  bool IsAllowed(const SystemCall& call);
  bool IsAllowedInFolder(const SystemCall& call, const std::string& name);
  /// What stands behind the folder of documents in a path; nothing when it leads elsewhere.
  std::optional<std::string> NameBelow(const std::string& path) const;

  const std::vector<std::string> folders_;
  std::string step_;
  std::string before_;
  std::set<std::string> openedInScan_;
};

/// What a harmful document would have its reader fetch.
std::string ScriptNaming(const std::string& target);
/// The figures of a report: words and numbers by turns.
std::map<std::string, long> ReadReport(const std::string& path);
/// The wait status of a command whose system calls were written to a file.
int RunListenedTo(const std::vector<std::string>& command, const std::string& logPath);

}  // namespace tavlo::test
