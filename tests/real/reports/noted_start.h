#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "support/temporary_folder.h"

namespace tavlo::test {

/// A program of a desktop that notes that it was started, and with which arguments.
class NotedProgram {
 public:
  const std::string Path;

  /// Stands at that path. `also` is more for its shell to do; what it prints is noted, too.
  NotedProgram(const TemporaryFolder& folder, const std::string& name, const std::string& also = "")
      : Path(folder / name), folder_(folder) {
    folder.Write(name, "#!/bin/sh\n{ printf '%s\\n' " + Quoted(name) + " \"$@\"\n" + also +
                           "\n} > " + Quoted(folder / "noted.new") + "\n/bin/mv " +
                           Quoted(folder / "noted.new") + " " + Quoted(folder / "noted") + "\n");
    std::filesystem::permissions(Path, std::filesystem::perms(0755));
  }

  /// Its name, its arguments and what it printed, a line each. Waits for the start.
  std::vector<std::string> Noted() const {
    for (int tries = 0; tries < 6000 && !HasStarted(); ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    std::vector<std::string> lines;
    std::ifstream in(folder_ / "noted");
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
  }
  bool HasStarted() const { return std::filesystem::exists(folder_ / "noted"); }

 private:
  static std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
    return quoted + "'";
  }

  const TemporaryFolder& folder_;
};

}  // namespace tavlo::test
