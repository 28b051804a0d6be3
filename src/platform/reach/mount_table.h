#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/reach/places.h"

namespace tavlo::platform {

/// Reads symbolic links.
class LinkReader {
 public:
  virtual ~LinkReader() = default;

  /// Where the link at `path` leads; nothing when no link stands there.
  virtual std::optional<std::string> TargetOf(const std::string& path) const = 0;
};

/// The mounts of this process, as the kernel lists them.
class MountTable {
  struct Mount {
    int number = 0;
    int parent = 0;
    std::string point;
    bool mayStall = false;
    bool holdsFiles = false;  ///< Of persons.
  };

 public:
  /// `text` is that of /proc/self/mountinfo. Lines that make no sense are passed over.
  explicit MountTable(std::string_view text);

  /// Where a path stands once all links on the way were followed. As long as its table lives.
  class Spot {
   public:
    Place ItsPlace() const { return mount_ ? Place{mount_->number, mayStall_} : Place{}; }

   private:
    friend class MountTable;
    std::string at_;                ///< Without links; empty is the root.
    const Mount* mount_ = nullptr;  ///< None where no mount is known.
    bool mayStall_ = false;
  };

  /// The mount on which a full path stands. Links on the way are followed as long as they stand on
  /// mounts that can not stall; nothing is asked of one that may. A path that leads over a mount
  /// that may stall does so itself. Where no mount is known nothing stalls.
  Spot SpotOf(const std::string& path, const LinkReader& links) const;
  Place PlaceOf(const std::string& path, const LinkReader& links) const {
    return SpotOf(path, links).ItsPlace();
  }
  /// The place of a name in a folder, neither "." nor ".."; a link is not followed.
  Place EntryIn(const Spot& folder, std::string_view name) const;
  /// The place of a name in a folder, neither "." nor "..". Nothing when it is a link.
  std::optional<Place> PlaceIn(const Spot& folder, std::string_view name,
                               const LinkReader& links) const;
  /// Where the disks and shares stand that hold files of persons, in the order of their paths: none
  /// that the system keeps for itself, and not the root.
  std::vector<std::string> DisksAndShares() const;

 private:
  struct Walk;

  static std::optional<Mount> Parse(std::string_view line);
  /// The mount on top of those that stand on `mount` at `path`; `mount` when there is none.
  const Mount* Enter(const Mount* mount, const std::string& path) const;
  /// The mount of a path without links in it, none of which may stall.
  const Mount* At(const std::string& path) const;
  void Step(Walk& walk, const LinkReader& links) const;

  std::vector<Mount> mounts_;
  /// By the number of the mount below and the place in it.
  std::map<std::pair<int, std::string>, std::size_t> over_;
  std::size_t root_ = 0;
};

}  // namespace tavlo::platform
