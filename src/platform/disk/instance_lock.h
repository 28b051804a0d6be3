#pragma once

#include <string>

#include "platform/disk/file_handle.h"

namespace tavlo::platform {

/// Keeps a second copy of the program off the same install root. The lock is on the folder that
/// holds the root, so no file is left behind, and the kernel takes it back when the process has
/// ended in any way. Programs that we start do not inherit it.
///
/// A process ends only when its last thread does, and until then it keeps what it has open. One
/// that may leave a thread behind in a call that gets no answer gives the lock back itself.
class InstanceLock {
 public:
  /// Makes the parent folder of the root when it is missing (one level).
  explicit InstanceLock(const std::string& installRoot);
  ~InstanceLock() { GiveBack(); }
  InstanceLock(const InstanceLock&) = delete;

  /// True when another process, or another lock of this one, holds the root. A file system that
  /// knows no locks counts as "no".
  bool AnotherCopyRuns() const { return anotherCopyRuns_; }

  /// From here on another copy may start.
  void GiveBack();

 private:
  FileHandle parent_;
  bool anotherCopyRuns_;
};

}  // namespace tavlo::platform
