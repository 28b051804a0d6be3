#include "platform/reach/mount_table.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tavlo::platform {
namespace {

/// As many as the kernel follows.
constexpr int kMostLinks = 40;

/// The kinds of file system that no server and no other program has a part in. A disk among them
/// that breaks gives errors, and one that sleeps wakes in seconds.
constexpr auto kLocalKinds = std::to_array<std::string_view>(
    {"bcachefs", "bpf",       "btrfs",    "cgroup",   "cgroup2", "configfs",   "debugfs",
     "devpts",   "devtmpfs",  "efivarfs", "erofs",    "ext2",    "ext3",       "ext4",
     "f2fs",     "hugetlbfs", "jfs",      "mqueue",   "nilfs2",  "nsfs",       "overlay",
     "proc",     "pstore",    "ramfs",    "reiserfs", "rootfs",  "securityfs", "squashfs",
     "sysfs",    "tmpfs",     "tracefs",  "xfs",      "zfs"});

/// Kinds of which another program has a part, and which hold nothing but its own affairs.
constexpr auto kKindsOfPrograms =
    std::to_array<std::string_view>({"autofs", "binfmt_misc", "fuse.lxcfs", "fuse.portal",
                                     "fuse.snapfuse", "fusectl", "rpc_pipefs", "selinuxfs"});

/// Where the system keeps its own disks, and the exceptions inside of it.
constexpr auto kOfTheSystem = std::to_array<std::string_view>(
    {"/boot", "/dev", "/etc", "/proc", "/run", "/snap", "/sys", "/tmp", "/usr", "/var"});
constexpr auto kOfPersons = std::to_array<std::string_view>({"/run/media", "/run/user"});

bool StandsIn(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool HoldsFilesOfPersons(std::string_view point, std::string_view kind, std::string_view source) {
  const auto holds = [point](std::string_view folder) { return StandsIn(point, folder); };
  if (std::ranges::any_of(kOfTheSystem, holds) && std::ranges::none_of(kOfPersons, holds)) {
    return false;
  }
  if (std::ranges::find(kKindsOfPrograms, kind) != kKindsOfPrograms.end()) return false;
  const bool isDisk = source.starts_with("/dev/") || kind == "zfs";
  return isDisk || std::ranges::find(kLocalKinds, kind) == kLocalKinds.end();
}

std::optional<int> NumberIn(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  return number;
}

bool IsOctal(char c) { return c >= '0' && c <= '7'; }

/// The kernel writes white space and backslashes in a path as a backslash and three octal digits.
std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escaped = text[i] == '\\' && text.size() - i > 3 && IsOctal(text[i + 1]) &&
                         IsOctal(text[i + 2]) && IsOctal(text[i + 3]);
    if (!escaped) {
      plain += text[i];
      continue;
    }
    plain +=
        static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
    i += 3;
  }
  return plain;
}

std::vector<std::string_view> Split(std::string_view text, char between) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(between), text.size());
    if (end > 0) parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

}  // namespace

/// A path on the way from the root to its end.
struct MountTable::Walk {
  std::vector<std::string> ahead;  ///< The names still to come, the next one last.
  std::string at;                  ///< What was passed, without links; empty is the root.
  const Mount* mount = nullptr;
  int links = 0;

  void PutAhead(const std::string& path) {
    const auto names = Split(path, '/');
    std::for_each(names.rbegin(), names.rend(), [this](std::string_view name) {
      if (name != ".") ahead.emplace_back(name);
    });
  }
  std::string TakeNext() {
    std::string name = std::move(ahead.back());
    ahead.pop_back();
    return name;
  }
};

MountTable::MountTable(std::string_view text) {
  for (const std::string_view line : Split(text, '\n')) {
    if (auto mount = Parse(line)) mounts_.push_back(std::move(*mount));
  }
  for (std::size_t i = 0; i < mounts_.size(); ++i) {
    over_[{mounts_[i].parent, mounts_[i].point}] = i;
  }
  const auto isRoot = [this](const Mount& mount) {
    return mount.point == "/" && std::ranges::none_of(mounts_, [&](const Mount& other) {
             return other.number == mount.parent && other.number != mount.number;
           });
  };
  const auto root = std::ranges::find_if(mounts_, isRoot);
  root_ = static_cast<std::size_t>(root - mounts_.begin());
}

std::optional<MountTable::Mount> MountTable::Parse(std::string_view line) {
  // Number, number of the mount below, device, root, point, options, any number of marks, a dash,
  // kind, source, options.
  constexpr std::string_view kDash = " - ";
  const std::size_t dash = line.find(kDash);
  if (dash == line.npos) return {};
  const auto before = Split(line.substr(0, dash), ' ');
  const auto after = Split(line.substr(dash + kDash.size()), ' ');
  if (before.size() < 5 || after.empty()) return {};
  const std::string_view source = after.size() > 1 ? after[1] : "";
  const auto number = NumberIn(before[0]);
  const auto parent = NumberIn(before[1]);
  if (!number || !parent) return {};
  return Mount{.number = *number,
               .parent = *parent,
               .point = Unescaped(before[4]),
               .mayStall = std::ranges::find(kLocalKinds, after[0]) == kLocalKinds.end(),
               .holdsFiles = HoldsFilesOfPersons(before[4], after[0], source)};
}

const MountTable::Mount* MountTable::Enter(const Mount* mount, const std::string& path) const {
  for (auto found = over_.find({mount->number, path}); found != over_.end();
       found = over_.find({mount->number, path})) {
    const Mount* const over = &mounts_[found->second];
    if (over->number == mount->number) break;
    mount = over;
  }
  return mount;
}

const MountTable::Mount* MountTable::At(const std::string& path) const {
  const Mount* mount = Enter(&mounts_[root_], "/");
  for (std::size_t end = 1; end < path.size();) {
    end = std::min(path.find('/', end + 1), path.size());
    mount = Enter(mount, path.substr(0, end));
  }
  return mount;
}

void MountTable::Step(Walk& walk, const LinkReader& links) const {
  const std::string name = walk.TakeNext();
  if (name == "..") {
    walk.at.resize(walk.at.empty() ? 0 : walk.at.rfind('/'));
    walk.mount = At(walk.at);
    return;
  }
  const std::string next = walk.at + "/" + name;
  const Mount* const entered = Enter(walk.mount, next);
  const auto target = entered == walk.mount ? links.TargetOf(next) : std::nullopt;
  if (!target || ++walk.links > kMostLinks) {
    walk.at = next;
    walk.mount = entered;
    return;
  }
  if (target->starts_with('/')) {
    walk.at.clear();
    walk.mount = At(walk.at);
  }
  walk.PutAhead(*target);
}

MountTable::Spot MountTable::SpotOf(const std::string& path, const LinkReader& links) const {
  Spot spot;
  if (root_ == mounts_.size()) return spot;
  Walk walk{.mount = At({})};
  walk.PutAhead(path);
  while (!walk.ahead.empty() && !walk.mount->mayStall) Step(walk, links);
  spot.mayStall_ = walk.mount->mayStall;
  // Each mount inside counts for itself, as far as the names alone tell.
  while (!walk.ahead.empty() && walk.ahead.back() != "..") {
    walk.at += "/" + walk.TakeNext();
    walk.mount = Enter(walk.mount, walk.at);
  }
  spot.at_ = std::move(walk.at);
  spot.mount_ = walk.mount;
  return spot;
}

Place MountTable::EntryIn(const Spot& folder, std::string_view name) const {
  if (folder.mount_ == nullptr) return {};
  const Mount* const mount = Enter(folder.mount_, folder.at_ + "/" + std::string(name));
  return {.mount = mount->number, .mayStall = folder.mayStall_ || mount->mayStall};
}

std::optional<Place> MountTable::PlaceIn(const Spot& folder, std::string_view name,
                                         const LinkReader& links) const {
  const Place place = EntryIn(folder, name);
  const bool mayBeALink = !place.mayStall && place.mount == folder.ItsPlace().mount;
  if (mayBeALink && links.TargetOf(folder.at_ + "/" + std::string(name))) return {};
  return place;
}

std::vector<std::string> MountTable::DisksAndShares() const {
  std::vector<std::string> points;
  for (const Mount& mount : mounts_) {
    if (mount.holdsFiles && mount.point != "/") points.push_back(mount.point);
  }
  std::ranges::sort(points);
  points.erase(std::unique(points.begin(), points.end()), points.end());
  return points;
}

}  // namespace tavlo::platform
