#pragma once

#include <string>

namespace tavlo::platform {

/// What stalls as a whole: a mount.
struct Place {
  int mount = 0;          ///< The kernel's number of it.
  bool mayStall = false;  ///< A server, another program or a device that may go has a part in it.
};

/// Knows where paths stand. Asked on the loop's thread.
class Places {
 public:
  virtual ~Places() = default;

  /// Asks nothing of a place that may stall.
  virtual Place PlaceOf(const std::string& path) = 0;
  /// The same for who does not follow a link that stands at the end of the path, which is cheaper.
  virtual Place PlaceOfEntry(const std::string& path) { return PlaceOf(path); }
};

}  // namespace tavlo::platform
