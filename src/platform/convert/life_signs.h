#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/reach/errands.h"

namespace tavlo::platform {

/// Gives the signs of work that knows nothing of them: as long as this lives, each time that the
/// thread which made it has used its processor again. A call that a folder holds up uses none.
class LifeSigns {
 public:
  /// The errand must outlive it. Where there is no thread to be had there are no signs.
  explicit LifeSigns(Errands::Sign& sign);
  ~LifeSigns();
  LifeSigns(const LifeSigns&) = delete;

 private:
  void Watch(clockid_t usedProcessor);

  Errands::Sign& sign_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool over_ = false;
  std::thread watcher_;
};

}  // namespace tavlo::platform
