#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "base/time.h"

namespace tavlo::platform {

/// Runs calls that may stall, while the loop breathes.
class Errands {
 public:
  /// Without a sign for so long a place counts as out of reach.
  static constexpr base::Duration kPatience = std::chrono::seconds(5);

  /// How work that takes long says that it goes on (each piece of a copy is one). Any thread.
  class Sign {
   public:
    virtual ~Sign() = default;
    /// Costs next to nothing and wakes nobody.
    virtual void Give() = 0;
    /// A sign, at which a loop that waits asks again whether it has enough.
    virtual void Tell() { Give(); }
  };

  virtual ~Errands() = default;

  /// Runs `work`: here, where the place of `path` can not stall or this is not the loop's thread;
  /// or else on the thread of that place while the loop breathes, until it has returned or has
  /// given no sign for kPatience. False: the place is out of reach, at once when it was so before.
  /// Then `work` is left behind and may still finish, so it owns all that it touches (shared
  /// pointers, copies; never a reference to the caller). What it throws is thrown here.
  virtual bool Run(const std::string& path, std::function<void(Sign&)> work) = 0;
  /// Whether the place of `path` owes an answer. Never stalls. On the loop's thread.
  virtual bool OutOfReach(const std::string& path) = 0;
};

}  // namespace tavlo::platform
