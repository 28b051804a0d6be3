#include "platform/reach/mounted_places.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>

namespace tavlo::platform {
namespace {

class KernelLinks : public LinkReader {
 public:
  std::optional<std::string> TargetOf(const std::string& path) const override {
    std::array<char, PATH_MAX> target;
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    if (length < 0) return {};
    return std::string(target.data(), static_cast<std::size_t>(length));
  }
};

/// The kernel tells it without asking the file system.
std::string CurrentFolder() {
  std::array<char, PATH_MAX> folder;
  return ::getcwd(folder.data(), folder.size()) ? folder.data() : "";
}

}  // namespace

MountedPlaces::MountedPlaces() : list_("/proc/self/mountinfo", O_RDONLY) { Read(); }

bool MountedPlaces::Changed() const {
  pollfd news{.fd = list_.Get(), .events = POLLPRI, .revents = 0};
  return ::poll(&news, 1, 0) > 0 && (news.revents & POLLPRI) != 0;
}

void MountedPlaces::Read() {
  std::string text;
  std::array<char, 16384> piece;
  ::lseek(list_.Get(), 0, SEEK_SET);
  while (true) {
    const ssize_t count = ::read(list_.Get(), piece.data(), piece.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    text.append(piece.data(), static_cast<std::size_t>(count));
  }
  table_ = MountTable(text);
}

Place MountedPlaces::PlaceOf(const std::string& path) {
  if (Changed()) Read();
  if (path.starts_with('/')) return table_.PlaceOf(path, KernelLinks());
  return table_.PlaceOf(CurrentFolder() + "/" + path, KernelLinks());
}

}  // namespace tavlo::platform
