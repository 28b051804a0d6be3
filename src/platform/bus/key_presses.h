#pragma once

#include <array>
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
    return event;
  }

 private:
  std::array<bool, remote::kAfarActions.size()> held_{};
  std::deque<remote::KeyEvent> events_;
};

}  // namespace tavlo::platform
