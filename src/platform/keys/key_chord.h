#pragma once

#include <bitset>
#include <compare>
#include <cstdint>

namespace tavlo::platform {

/// A key of the keyboard, with the modifiers that must be down beside it and no others, in the bits
/// that the display has for them. What is locked, as Caps Lock, counts for none.
struct KeyChord {
  std::uint8_t keycode = 0;
  std::uint16_t modifiers = 0;
  auto operator<=>(const KeyChord&) const = default;
};

/// One bit for each key code.
using KeyBits = std::bitset<256>;

}  // namespace tavlo::platform
