#include "platform/desktop/folders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tavlo::platform::desktop {
namespace {

std::string NamedHome() {
  const char* const named = std::getenv("HOME");
  if (named && *named) return named;
  const passwd* const user = ::getpwuid(::getuid());
  return user && user->pw_dir ? user->pw_dir : "";
}

std::string FolderOfProgram() {
  std::error_code failed;
  return std::filesystem::read_symlink("/proc/self/exe", failed).parent_path();
}

}  // namespace

std::string HomeFolder() {
  const std::string home = NamedHome();
  return home.substr(0, home.find_last_not_of('/') + 1);
}

std::string InstallRoot() { return HomeFolder() + "/Lyrane/TavloDeck"; }

std::string ShareFolder() { return FolderOfProgram() + "/../share/tavlodeck"; }

std::string AccessReader() {
  return FolderOfProgram() + "/../libexec/tavlodeck/read_access_database";
}

}  // namespace tavlo::platform::desktop
