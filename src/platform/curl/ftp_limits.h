#pragma once

#include <chrono>

namespace tavlo::platform {

/// For how long a server is waited for. Longer ones only keep a person waiting for what does not
/// come any more.
struct FtpLimits {
  /// Looking up the server's name, reaching it, and agreeing on protection. A line by satellite
  /// takes some seconds for it; after half a minute there is nobody.
  std::chrono::milliseconds connect{30'000};
  /// The first words of a server that was reached. Some look up the name of the caller before.
  std::chrono::milliseconds greeting{15'000};
  /// A whole answer, and what passes between two bytes of a file or a listing. A server that
  /// spins up a disk takes seconds.
  std::chrono::milliseconds silence{30'000};
  /// A listing as a whole: one that dribbles for longer has no end.
  std::chrono::milliseconds listing{300'000};
};

}  // namespace tavlo::platform
