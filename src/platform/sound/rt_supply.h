#pragma once

#include <atomic>

#include "platform/sound/rt_block.h"

namespace tavlo::platform {

/// Notices when the machine served the device late. A device asks for all that its buffer holds
/// when it starts, and after that for what it has played meanwhile; when it asks for as much again,
/// there was nothing left to play.
class RtSupply {
 public:
  /// A device is about to start. The loop's thread, while none renders.
  void Restart() {
    rtFirstAsked_ = 0;
    ranDry_.store(false, std::memory_order_relaxed);
  }
  /// The device asks for frames. Its own thread.
  void RtAsked(FrameCount frames) {
    if (rtFirstAsked_ == 0) {
      rtFirstAsked_ = frames;
    } else if (frames >= rtFirstAsked_) {
      ranDry_.store(true, std::memory_order_relaxed);
    }
  }
  /// Whether it ran dry since the last call. The loop's thread.
  bool TakeRanDry() { return ranDry_.exchange(false, std::memory_order_relaxed); }

 private:
  std::atomic<bool> ranDry_{false};
  FrameCount rtFirstAsked_ = 0;  ///< The rendering thread's own.
};

}  // namespace tavlo::platform
