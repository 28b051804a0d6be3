#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/reach/hush.h"

namespace tavlo::platform {

/// Makes the player silent when a foot lets go of a pedal while its rule must wait, as far as that
/// rule will stop what sounds: what no pedal holds, such as a preview, goes on.
class FootGate {
 public:
  explicit FootGate(Hush& hush) : hush_(hush) {}

  /// The foot must outlive the gate. `holds` says whether the rules of this foot stop what sounds
  /// when it lets go; it is asked only when the foot has.
  void Watch(WatchedFoot& foot, std::function<bool()> holds) {
    feet_.push_back({&foot, std::move(holds)});
  }
  void Look() {
    for (const Watched& watched : feet_) {
      if (watched.foot->LetGo() && watched.holds()) hush_.Silence();
    }
  }

 private:
  struct Watched {
    WatchedFoot* foot;
    std::function<bool()> holds;
  };

  Hush& hush_;
  std::vector<Watched> feet_;
};

}  // namespace tavlo::platform
