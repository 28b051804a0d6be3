#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/keys/held_keys.h"
#include "platform/keys/key_chord.h"

namespace tavlo::platform {

/// Something that the display tells.
struct DisplayNews {
  enum class Kind {
    Press,
    Release,
    Keyboard,       ///< Other keys, another layout of them, or another layout in use.
    ButtonPress,    ///< Of the mouse, wherever it is; see `WatchButtons`.
    ButtonRelease,  ///< The same.
    Other
  };
  Kind kind = Kind::Other;
  KeyChord key = {};         ///< Of a press or a release; the modifiers before it, and the locks.
  std::uint32_t number = 0;  ///< How much the display had done for the connection before.
};

/// A connection to a display, as far as keys go, and the grab of the whole keyboard from the press
/// of a key on. For one thread; a lost display answers nothing and tells nothing.
class DisplayKeys {
 public:
  /// Connects, which waits for the display.
  explicit DisplayKeys(const std::string& name);
  /// Gives back all that was grabbed.
  ~DisplayKeys();
  DisplayKeys(const DisplayKeys&) = delete;

  bool Lost() const;
  xcb_connection_t* Connection() const { return connection_; }
  xcb_window_t Root() const { return root_; }
  /// Can be read when there is news that has not come here yet.
  int Descriptor() const;

  /// Never waits.
  std::optional<DisplayNews> Next();

  /// Says whose a press or a release is. The keyboard goes on.
  void Answer(const DisplayNews& news, HeldKeys::Answer whose);
  /// The events of all keys come here.
  bool HasKeyboard() const { return hasKeyboard_; }
  /// Lets others have the keyboard, and with it what has not been answered.
  void LeaveKeyboard();

  /// Tells of the buttons of the mouse, too, but not of its wheel.
  void WatchButtons(bool watch);

  // These wait for the display.

  KeyBits Down();
  /// The layout that is in use, of several.
  std::uint32_t Layout();
  /// What all keys make, in the display's short form, to tell whether a keyboard is the same.
  std::vector<std::uint8_t> Signature();

 private:
  void Allow(xcb_allow_t what);
  void TakeKeyboard();
  void SelectNews();
  void FindButtons();
  DisplayNews::Kind KindOf(const xcb_generic_event_t& event) const;

  xcb_connection_t* const connection_;
  xcb_window_t root_ = XCB_NONE;
  std::uint8_t firstEvent_ = 0;
  bool speaksKeyboards_ = false;
  bool hasKeyboard_ = false;
  std::uint32_t answeredBefore_ = 0;  ///< What has a lower number needs no answer any more.
  std::uint8_t buttons_ = 0;          ///< The extension that tells of them; none where it is 0.
  bool buttonsWatched_ = false;
};

}  // namespace tavlo::platform
