#pragma once

#include <ostream>

namespace tavlo::test {

/// A window with its frame, in pixels of all screens together.
struct Place {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Place&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Place& place) {
  return out << place.width << "x" << place.height << " at " << place.x << ", " << place.y;
}

}  // namespace tavlo::test
