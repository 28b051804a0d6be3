#include "platform/reach/mounted_places.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <utility>

namespace tavlo::platform {
namespace {

/// A work goes through a few folders at a time.
constexpr std::size_t kMostRemembered = 64;

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

MountedPlaces::MountedPlaces(Clock clock)
    : clock_(std::move(clock)), list_("/proc/self/mountinfo", O_RDONLY) {
  Read();
}

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
  folders_.clear();
  table_ = MountTable(text);
}

MountTable::Spot MountedPlaces::SpotOfFolder(const std::string& path) {
  const auto now = clock_();
  const auto found = folders_.find(path);
  if (found != folders_.end() && now - found->second.since < kRemembered) return found->second.spot;
  if (folders_.size() >= kMostRemembered) folders_.clear();
  const Remembered folder{.spot = table_.SpotOf(path, KernelLinks()), .since = now};
  folders_.insert_or_assign(path, folder);
  return folder.spot;
}

std::vector<std::string> MountedPlaces::DisksAndShares() {
  if (Changed()) Read();
  return table_.DisksAndShares();
}

Place MountedPlaces::PlaceOf(const std::string& path) { return PlaceOf(path, true); }

Place MountedPlaces::PlaceOfEntry(const std::string& path) { return PlaceOf(path, false); }

Place MountedPlaces::PlaceOf(const std::string& path, bool followsLinks) {
  if (Changed()) Read();
  const std::string full = path.starts_with('/') ? path : CurrentFolder() + "/" + path;
  const std::size_t nameAt = full.rfind('/') + 1;
  const std::string_view name = std::string_view(full).substr(nameAt);
  const bool isName = !name.empty() && name != "." && name != "..";
  if (!isName) return table_.PlaceOf(full, KernelLinks());
  const MountTable::Spot folder = SpotOfFolder(full.substr(0, nameAt));
  if (!followsLinks) return table_.EntryIn(folder, name);
  const std::optional<Place> place = table_.PlaceIn(folder, name, KernelLinks());
  return place ? *place : table_.PlaceOf(full, KernelLinks());
}

}  // namespace tavlo::platform
