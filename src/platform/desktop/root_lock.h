#pragma once

#include <memory>
#include <string>

#include "platform/disk/instance_lock.h"
#include "platform/reach/errands.h"
#include "shell/platform.h"

namespace tavlo::platform::desktop {

/// The root of this copy of the program, claimed and given back where a stall holds nobody. On the
/// loop's thread.
class RootLock {
 public:
  /// The errands must outlive it.
  RootLock(Errands& errands, const std::string& installRoot);
  ~RootLock() { GiveBack(); }
  RootLock(const RootLock&) = delete;

  shell::RootClaim Claim();
  /// From here on another copy may start, unless the root is out of reach: then the process keeps
  /// it until it has ended. For a process that ends without letting go of its parts.
  void GiveBack();

 private:
  Errands& errands_;
  const std::string root_;
  const std::string folder_;  ///< Which holds the root and is locked.
  std::shared_ptr<InstanceLock> lock_;
};

}  // namespace tavlo::platform::desktop
