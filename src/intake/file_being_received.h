#pragma once

#include <string>

namespace tavlo::intake {

/// The file of the landing folder that a transfer writes just now. No pass takes it, whatever the
/// file system says of it: where no lease is to be had, a transfer that stands still for a while
/// would look like a whole file.
struct FileBeingReceived {
  /// Bare name; empty while none is received.
  std::string name;
};

}  // namespace tavlo::intake
