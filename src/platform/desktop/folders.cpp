#include "platform/desktop/folders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tavlo::platform::desktop {
namespace {

std::string HomeFolder() {
  const char* const named = std::getenv("HOME");
  if (named && *named) return named;
  const passwd* const user = ::getpwuid(::getuid());
  return user && user->pw_dir ? user->pw_dir : "";
}

}  // namespace

std::string InstallRoot() {
  const std::string home = HomeFolder();
  return home.substr(0, home.find_last_not_of('/') + 1) + "/Lyrane/TavloDeck";
}

std::string ShareFolder() {
  std::error_code failed;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failed);
  return program.parent_path().string() + "/../share/tavlodeck";
}

}  // namespace tavlo::platform::desktop
