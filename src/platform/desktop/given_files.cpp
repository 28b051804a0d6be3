#include "platform/desktop/given_files.h"

#include <unistd.h>

#include <cstdlib>
#include <memory>

namespace tavlo::platform::desktop {
namespace {

/// With a trailing separator. Empty where the folder is gone; what is meant from there is no file.
std::string FolderOfStart() {
  const std::unique_ptr<char, decltype(&std::free)> folder(::getcwd(nullptr, 0), &std::free);
  if (!folder || *folder != '/') return {};
  const std::string path(folder.get());
  return path.ends_with('/') ? path : path + "/";
}

}  // namespace

std::vector<std::string> GivenFiles(int argc, const char* const* argv) {
  const std::string folder = FolderOfStart();
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) {
    const std::string file(argv[i]);
    if (file.empty()) continue;
    files.push_back(file.starts_with('/') ? file : folder + file);
  }
  return files;
}

}  // namespace tavlo::platform::desktop
