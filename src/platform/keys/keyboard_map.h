#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/keys/key_chord.h"
#include "remote/key_trigger.h"

struct xkb_keymap;

namespace tavlo::platform {

/// Which key of a display's keyboard makes what. Read once; it does not follow the keyboard.
class KeyboardMap {
 public:
  /// Asks the display, whose XKB extension the connection has begun to use; some milliseconds. Null
  /// when it does not tell, or has gone.
  static std::unique_ptr<KeyboardMap> Read(xcb_connection_t* display);
  ~KeyboardMap();
  KeyboardMap(const KeyboardMap&) = delete;

  /// The keys that make what the trigger names, with its modifiers: those of that layout, and where
  /// it has none, those of the others, which is how programs find their shortcuts, too. Empty when
  /// no key does.
  std::vector<KeyChord> ChordsOf(const remote::KeyTrigger& trigger, std::uint32_t layout) const;
  /// The modifiers of Caps Lock, Num Lock and Scroll Lock.
  std::uint16_t Locks() const { return locks_; }
  /// The keys that press themselves again and again while they are held.
  KeyBits Repeating() const;

 private:
  using Symbol = std::uint32_t;

  KeyboardMap(xkb_keymap* map, const xcb_get_modifier_mapping_reply_t& modifiers);

  std::vector<std::uint8_t> KeysOf(Symbol symbol, std::uint32_t layout) const;
  bool Makes(std::uint8_t keycode, Symbol symbol) const;

  xkb_keymap* const map_;
  std::uint16_t locks_ = XCB_MOD_MASK_LOCK;
  std::uint16_t alt_ = 0;
  std::uint16_t logo_ = 0;
};

}  // namespace tavlo::platform
