#include "platform/desktop/detached_programs.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>

#include "platform/desktop/start_detached.h"

namespace tavlo::platform::desktop {
namespace {

/// The first knows what the user prefers; the editors of the desktops stand in where it is not
/// installed.
constexpr std::array kTextOpeners{"xdg-open", "gnome-text-editor", "gedit", "kate",  "kwrite",
                                  "mousepad", "featherpad",        "xed",   "pluma", "xterm"};

/// Where a program of that name may stand, in the order of the search path.
std::vector<std::string> FilesOf(const std::string& program) {
  std::error_code ignored;
  if (program.find('/') != program.npos) {
    return {std::filesystem::absolute(program, ignored).string()};
  }
  const char* const searched = std::getenv("PATH");
  std::istringstream folders(searched ? searched : "/usr/local/bin:/usr/bin:/bin");
  std::vector<std::string> files;
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (folder.starts_with('/')) files.push_back(folder + "/" + program);
  }
  return files;
}

}  // namespace

bool DetachedPrograms::StartProgram(const std::string& program,
                                    const std::vector<std::string>& arguments) {
  return std::ranges::any_of(FilesOf(program),
                             [&](const std::string& file) { return StartFile(file, arguments); });
}

bool DetachedPrograms::OpenTextFile(const std::string& path) {
  return std::ranges::any_of(kTextOpeners,
                             [&](const char* opener) { return StartProgram(opener, {path}); });
}

bool DetachedPrograms::StartFile(const std::string& file,
                                 const std::vector<std::string>& arguments) {
  // The system would take it for the end of the name.
  if (file.find('\0') != file.npos) return false;
  struct Attempt {
    std::atomic<bool> givenUp = false;
    bool started = false;
  };
  const auto attempt = std::make_shared<Attempt>();
  const bool answered = errands_.Run(file, [attempt, file, arguments](Errands::Sign&) {
    // A stall shows here, and a program is not wanted any more when it ends hours later.
    if (::access(file.c_str(), X_OK) != 0 || attempt->givenUp) return;
    attempt->started = StartDetached(file, arguments);
  });
  if (!answered) attempt->givenUp = true;
  return answered && attempt->started;
}

}  // namespace tavlo::platform::desktop
