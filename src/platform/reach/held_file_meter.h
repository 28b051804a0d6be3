#pragma once

#include <memory>

#include "platform/reach/errands.h"
#include "store/folder_walk.h"

namespace tavlo::platform {

/// Measures the sound of files that walks hold, on the thread of their place and on no other.
class HeldFileMeter {
 public:
  virtual ~HeldFileMeter() = default;

  /// Reads the file by its handle, and waits for the disk. Gives signs as it goes on.
  virtual store::MeasuredSound Measure(const store::HeldFile& held, Errands::Sign& sign) = 0;
};

/// Where the meters come from: each place has its own, since one may be stuck.
class HeldFileMeters {
 public:
  virtual ~HeldFileMeters() = default;

  /// On the loop's thread. The meter is then used on that of its place, ends on either, and may
  /// outlive this.
  virtual std::unique_ptr<HeldFileMeter> Make() = 0;
};

}  // namespace tavlo::platform
