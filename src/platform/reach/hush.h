#pragma once

namespace tavlo::platform {

/// Makes the player silent while the rules that would stop it must wait.
class Hush {
 public:
  virtual ~Hush() = default;

  /// Silence within milliseconds, until a rule stops or starts the player. To the rules nothing has
  /// happened. On the loop's thread.
  virtual void Silence() = 0;
};

/// A pedal, or keys that are held like one, as far as they may be looked at while their rules must
/// wait.
class WatchedFoot {
 public:
  virtual ~WatchedFoot() = default;

  /// Whether what was held down has all been let go of since the rules, or this, looked last. What
  /// is seen here still reaches the rules, in order. On the loop's thread; never waits.
  virtual bool LetGo() = 0;
};

}  // namespace tavlo::platform
