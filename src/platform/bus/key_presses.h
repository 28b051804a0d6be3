#pragma once

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <deque>
#include <optional>

#include "remote/afar_action.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// Which keys are held down, and what nobody has taken yet of their presses and releases. Each
/// press that is kept has its release sooner or later, and there is none without a press.
class KeyPresses {
 public:
  /// Presses that nobody takes beyond these are none. No hand is so far ahead of the loop.
  static constexpr std::size_t kMost = 64;

  /// True when it is news: not while the key is held, nor while too much waits.
  bool Press(remote::AfarAction action) {
    bool& held = held_[remote::IndexOf(action)];
    if (held || events_.size() >= kMost) return false;
    held = true;
    events_.push_back({.action = action, .down = true});
    return true;
  }
  /// True when it was held.
  bool Release(remote::AfarAction action) {
    bool& held = held_[remote::IndexOf(action)];
    if (!held) return false;
    held = false;
    events_.push_back({.action = action, .down = false});
    return true;
  }
  /// Releases all for which `which` says so; true when one was held.
  template <typename Which>
  bool ReleaseIf(Which which) {
    bool any = false;
    for (const remote::AfarActionName& name : remote::kAfarActions) {
      if (which(name.action)) any |= Release(name.action);
    }
    return any;
  }
  bool ReleaseAll() {
    return ReleaseIf([](remote::AfarAction) { return true; });
  }

  std::optional<remote::KeyEvent> Next() {
    if (events_.empty()) return std::nullopt;
    const remote::KeyEvent event = events_.front();
    events_.pop_front();
    seen_ -= std::min<std::size_t>(seen_, 1);
    if (remote::ActsWhileHeld(event.action)) taken_[remote::IndexOf(event.action)] = event.down;
    return event;
  }

  /// Whether the press of a key that acts while it is held was taken, and its release not yet.
  bool AnyTaken() const { return taken_.any(); }
  /// Whether those keys have all been let go since `Next`, or this, looked last.
  bool LetGo() {
    Actions taken = taken_;
    bool letGo = false;
    for (std::size_t at = 0; taken.any() && at < events_.size(); ++at) {
      if (!events_[at].down) taken.reset(remote::IndexOf(events_[at].action));
      letGo = taken.none() && at >= seen_;
    }
    seen_ = events_.size();
    return letGo;
  }

 private:
  using Actions = std::bitset<remote::kAfarActions.size()>;

  std::array<bool, remote::kAfarActions.size()> held_{};
  std::deque<remote::KeyEvent> events_;
  Actions taken_;
  std::size_t seen_ = 0;  ///< So many of the events were looked at by `LetGo`.
};

}  // namespace tavlo::platform
