#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tavlo::platform {

/// A wait for one file descriptor. It ends with this object, which must go before the descriptor is
/// closed.
class DescriptorWait {
 public:
  virtual ~DescriptorWait() = default;
};

/// A loop that waits for file descriptors beside its timers, so that what another process or thread
/// has to tell is taken when it comes and nothing looks for it meanwhile. `call` makes the
/// descriptor quiet; for news that stands until somebody looks there is `ReadableOnce`.
class DescriptorWaits {
 public:
  virtual ~DescriptorWaits() = default;

  /// Runs `call` on the loop's thread as often as the descriptor can be read: under message boxes
  /// too, and not while the loop only breathes. A failure in it is shown as one of `name`. `call`
  /// may end its own wait.
  [[nodiscard]] virtual std::unique_ptr<DescriptorWait> WaitFor(int descriptor, std::string name,
                                                                std::function<void()> call) = 0;
  /// The same, also while the loop only breathes: it wakes a loop that sleeps in
  /// `base::Loop::BreatheUntil`. So `call` touches no rule and shows nothing.
  [[nodiscard]] virtual std::unique_ptr<DescriptorWait> WaitInBreathsToo(
      int descriptor, std::string name, std::function<void()> call) = 0;
};

}  // namespace tavlo::platform
