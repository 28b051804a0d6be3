#pragma once

#include <string>

#include "platform/disk/file_handle.h"

namespace tavlo::platform {

/// Keeps a second copy of the program off the same install root. The lock is on the folder that
/// holds the root, so no file is left behind, and the kernel takes it back when the process ends in
/// any way. Hold it for the whole run; programs that we start do not inherit it.
class InstanceLock {
 public:
  /// Makes the parent folder of the root when it is missing (one level).
  explicit InstanceLock(const std::string& installRoot);

  /// True when another process, or another lock of this one, holds the root. A file system that
  /// knows no locks counts as "no".
  bool AnotherCopyRuns() const { return anotherCopyRuns_; }

 private:
  FileHandle parent_;
  bool anotherCopyRuns_;
};

}  // namespace tavlo::platform
