#include "platform/sqlite/private_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace tavlo::platform {
namespace {

namespace fs = std::filesystem;

void Narrow(const std::string& path) {
  std::error_code failed;
  if (fs::symlink_status(path, failed).type() != fs::file_type::regular) return;
  fs::permissions(path, fs::perms::group_all | fs::perms::others_all, fs::perm_options::remove,
                  failed);
}

}  // namespace

int MakePrivateFile(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) return errno;
  ::close(file);
  return 0;
}

void NarrowToOwner(const std::string& path) {
  std::error_code failed;
  const std::string real = fs::canonical(path, failed).string();
  Narrow(real);
  for (const char* const ending : kBesideEndings) Narrow(real + ending);
}

}  // namespace tavlo::platform
