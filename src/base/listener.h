#pragma once

namespace tavlo::base {

/// Whoever wants to hear that something came from outside of the loop.
class Listener {
 public:
  /// Something came. Called on the loop's thread, also while the loop only breathes, so no rule may
  /// run in here: it makes a timer due that runs it.
  virtual void HandleNews() = 0;

 protected:
  ~Listener() = default;
};

}  // namespace tavlo::base
