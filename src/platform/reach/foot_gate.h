#pragma once

#include <vector>

#include "platform/reach/hush.h"

namespace tavlo::platform {

/// Makes the player silent when a foot lets go of a pedal while its rule must wait.
class FootGate {
 public:
  explicit FootGate(Hush& hush) : hush_(hush) {}

  /// The foot must outlive the gate.
  void Watch(WatchedFoot& foot) { feet_.push_back(&foot); }
  void Look() {
    for (WatchedFoot* const foot : feet_) {
      if (foot->LetGo()) hush_.Silence();
    }
  }

 private:
  Hush& hush_;
  std::vector<WatchedFoot*> feet_;
};

}  // namespace tavlo::platform
