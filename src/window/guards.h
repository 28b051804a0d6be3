#pragma once

#include <utility>

namespace tavlo::window {

/// Raises a flag for as long as it lives, so that a command that fails on its way leaves it behind
/// like one that ends.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~Raised() { flag_ = before_; }
  Raised(const Raised&) = delete;

 private:
  bool& flag_;
  const bool before_;
};

/// What keeps events from interleaving where a rule yields to the loop. There are no locks:
/// everything runs on one thread. Each guard is raised by one of the scopes below.
class Guards {
 public:
  bool MayPlay() const { return !ListTransitionBusy && !ListPauseActive; }
  /// The keys, pedals and sliders of the player may move or change what sounds.
  bool TransportMayAct() const { return !ListTransitionBusy; }
  bool ListsMayChange() const { return !ListPauseActive; }
  /// The refresh under way is one that the user did not ask for: no prompt, no change of the
  /// keyboard.
  bool RefreshIsQuiet() const { return QuietRefresh; }
  /// A rule waits for a server. A box that comes by itself would keep that rule waiting for as long
  /// as it stands.
  bool ServerIsAwaited() const { return ServerAwaited; }
  /// Somebody is just being told of new work.
  bool IsTelling() const { return TellingOfWork; }

 private:
  friend class ListTransition;
  friend class ListPause;
  friend class QuietRefreshing;
  friend class ServerWait;
  friend class Telling;

  bool ListTransitionBusy = false;  ///< A document is being moved.
  bool ListPauseActive = false;     ///< A list change is inside a wait.
  bool QuietRefresh = false;
  bool ServerAwaited = false;
  bool TellingOfWork = false;
};

/// A list change is inside a wait.
class ListPause {
 public:
  explicit ListPause(Guards& guards) : pause_(guards.ListPauseActive) {}

 private:
  Raised pause_;
};

/// A document is being moved, which is a list change, too.
class ListTransition {
 public:
  explicit ListTransition(Guards& guards)
      : transition_(guards.ListTransitionBusy), pause_(guards.ListPauseActive) {}

 private:
  Raised transition_;
  Raised pause_;
};

/// A refresh that the user did not ask for.
class QuietRefreshing {
 public:
  explicit QuietRefreshing(Guards& guards) : quiet_(guards.QuietRefresh) {}

 private:
  Raised quiet_;
};

/// A rule waits for a server, or lets the loop turn beside a transfer.
class ServerWait {
 public:
  explicit ServerWait(Guards& guards) : wait_(guards.ServerAwaited) {}

 private:
  Raised wait_;
};

/// Somebody is being told of new work.
class Telling {
 public:
  explicit Telling(Guards& guards) : telling_(guards.TellingOfWork) {}

 private:
  Raised telling_;
};

}  // namespace tavlo::window
