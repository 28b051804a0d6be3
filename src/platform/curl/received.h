#pragma once

#include <cstddef>

namespace tavlo::platform {

/// What came of a wait for bytes of a connection.
struct Received {
  enum class How {
    SomeBytes,
    End,       ///< The other end has sent everything.
    CutShort,  ///< It ended without the good-bye that protects its end.
    TimedOut,
    Broken
  };
  How how = How::Broken;
  std::size_t count = 0;
};

}  // namespace tavlo::platform
