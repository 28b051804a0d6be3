#include "platform/disk/open_plain_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>

namespace tavlo::platform {
namespace {

constexpr std::size_t kReadAtOnce = 256 * 1024;

FileHandle Refuse(int error = EINVAL) {
  FileHandle none;
  errno = error;
  return none;
}

FileHandle OpenIn(int folder, const std::string& path, Links links) {
  // A path with a NUL in it would open another file than the one that was named.
  if (path.find('\0') != path.npos) return Refuse();
  // Without O_NONBLOCK a pipe without a writer would hold the whole program.
  const int follow = links == Links::Refused ? O_NOFOLLOW : 0;
  for (;;) {
    FileHandle file(folder, path.c_str(), O_RDONLY | O_NONBLOCK | follow);
    if (file || errno != EINTR) return file;
  }
}

FileHandle OpenIn(int folder, const std::string& path, Links links, struct stat& status) {
  FileHandle file = OpenIn(folder, path, links);
  if (file && ::fstat(file.Get(), &status) != 0) return Refuse(errno);
  if (file && !S_ISREG(status.st_mode)) return Refuse();
  return file;
}

}  // namespace

FileHandle OpenPlainFile(const std::string& path, Links links) {
  struct stat status;
  return OpenPlainFile(path, links, status);
}

FileHandle OpenPlainFile(const std::string& path, Links links, struct stat& status) {
  return OpenIn(AT_FDCWD, path, links, status);
}

FileHandle OpenPlainFileIn(int folder, const std::string& name, struct stat& status) {
  return OpenIn(folder, name, Links::Refused, status);
}

FileHandle OpenAnyIn(int folder, const std::string& name) {
  return OpenIn(folder, name, Links::Refused);
}

std::optional<std::string> ReadPlainFile(const std::string& path, std::size_t mostBytes) {
  struct stat status;
  const FileHandle file = OpenPlainFile(path, Links::Followed, status);
  if (!file || static_cast<std::uintmax_t>(status.st_size) > mostBytes) return std::nullopt;
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(status.st_size));
  for (;;) {
    // One byte more than is allowed tells a file that is too long.
    const std::size_t held = bytes.size();
    const std::size_t wanted = std::min(kReadAtOnce, mostBytes + 1 - held);
    bytes.resize(held + wanted);
    const ssize_t got = ::read(file.Get(), bytes.data() + held, wanted);
    bytes.resize(held + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 || bytes.size() > mostBytes) return std::nullopt;
    if (got == 0) return bytes;
  }
}

}  // namespace tavlo::platform
