#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tavlo::remote {

/// What a key may do while another window has the keyboard, in the order of the page.
enum class AfarAction {
  PlayStop,
  PlayHeld,
  RewindHeld,
  ForwardHeld,
  ToBeginning,
  ToEnd,
  Slower,
  Faster,
  NormalSpeed,
  Complete,
  Save,
  Skip,
};

struct AfarActionName {
  AfarAction action;
  /// Names the action to a desktop, and stays the same over releases.
  std::string_view id;
  /// Says to a person what the key does.
  std::string_view description;
};

inline constexpr std::array kAfarActions{
    AfarActionName{AfarAction::PlayStop, "play-stop", "Play, and stop again"},
    AfarActionName{AfarAction::PlayHeld, "play-held", "Play while held"},
    AfarActionName{AfarAction::RewindHeld, "rewind-held", "Rewind while held"},
    AfarActionName{AfarAction::ForwardHeld, "forward-held", "Forward while held"},
    AfarActionName{AfarAction::ToBeginning, "to-beginning", "To the beginning"},
    AfarActionName{AfarAction::ToEnd, "to-end", "To the end"},
    AfarActionName{AfarAction::Slower, "slower", "Slower"},
    AfarActionName{AfarAction::Faster, "faster", "Faster"},
    AfarActionName{AfarAction::NormalSpeed, "normal-speed", "Normal speed"},
    AfarActionName{AfarAction::Complete, "complete", "Complete"},
    AfarActionName{AfarAction::Save, "save", "Save"},
    AfarActionName{AfarAction::Skip, "skip", "Skip"},
};

constexpr std::size_t IndexOf(AfarAction action) { return static_cast<std::size_t>(action); }

/// What the press begins ends with the release.
constexpr bool ActsWhileHeld(AfarAction action) {
  return action == AfarAction::PlayHeld || action == AfarAction::RewindHeld ||
         action == AfarAction::ForwardHeld;
}

}  // namespace tavlo::remote
