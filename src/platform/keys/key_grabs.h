#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <vector>

#include "platform/keys/key_chord.h"
#include "platform/keys/keyboard_map.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// The keys that a connection has asked of its display: passive grabs of the root window, one for
/// each state of the locks. The press of such a key comes to the connection, whoever has the
/// keyboard, and from then on no event of the keyboard goes anywhere until the connection has said
/// whose it is.
class KeyGrabs {
 public:
  /// The connection must outlive this; its end gives all back.
  KeyGrabs(xcb_connection_t* display, xcb_window_t root) : display_(display), root_(root) {}
  KeyGrabs(const KeyGrabs&) = delete;

  /// Grabs what the wishes need on that keyboard, as far as others do not hold it, and gives back
  /// all else. What has become of each wish, in their order. Waits for the display.
  std::vector<remote::KeyGrant> Become(const std::vector<remote::KeyWish>& wishes,
                                       const KeyboardMap& keyboard, std::uint32_t layout);
  /// What is held.
  const std::map<KeyChord, remote::AfarAction>& Chords() const { return chords_; }

  /// Grabs these keys, and no others, under all modifiers too, as far as others do not hold them.
  void Surround(const KeyBits& keys);
  /// Whether another program has that key with exactly these modifiers and locks for all windows.
  /// Waits for the display.
  bool OthersHold(KeyChord key);

 private:
  /// What a wish needs. Of two wishes for one chord the first has it.
  struct Need {
    remote::AfarAction action;
    std::vector<KeyChord> chords;
    bool taken = false;
  };

  void Follow(std::uint16_t locks);
  void GiveBackAllBut(const std::vector<Need>& needs);
  /// All of them or none.
  bool Grab(const Need& need);
  void GiveBack(KeyChord chord);
  /// Of a key that is surrounded: under all modifiers that no chord of it has.
  template <typename Call>
  void AroundChordsOf(std::uint8_t keycode, Call call) const;

  xcb_connection_t* const display_;
  const xcb_window_t root_;
  std::vector<std::uint16_t> lockStates_;
  std::map<KeyChord, remote::AfarAction> chords_;
  KeyBits surrounded_;
};

}  // namespace tavlo::platform
