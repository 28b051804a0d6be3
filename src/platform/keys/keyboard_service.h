#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/keys/display_keys.h"
#include "platform/keys/held_keys.h"
#include "platform/keys/key_events.h"
#include "platform/keys/key_grabs.h"
#include "platform/keys/keyboard_map.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// The keys of a display for the deck, as long as it lives. From the press of one of them on the
/// keyboard of the whole session stands still until `Turn` has answered, and so at each event until
/// the keyboard is left to others again; so its thread does nothing else. Waits for nobody but the
/// display.
///
/// The keyboard stays with the deck from the press on, or repeats of the key would go to other
/// programs as soon as a modifier is pressed beside it. It is left to others with the first key
/// that takes the repeats over; at a click, since menus want it for themselves; and with the last
/// release.
class KeyboardService {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  /// How often the keyboard is looked at while a key is held and its release would not be told.
  static constexpr std::chrono::milliseconds kBetweenLooks{10};
  /// A layout changes in several steps.
  static constexpr std::chrono::milliseconds kKeyboardSettles{30};
  /// So long after a click a menu may still open.
  static constexpr std::chrono::milliseconds kMenuOpens{300};

  /// Connects to the display; the events must outlive this.
  KeyboardService(const std::string& display, KeyEvents& events);
  /// What is held counts as released.
  ~KeyboardService() { held_.Forget(); }
  KeyboardService(const KeyboardService&) = delete;

  bool Lost() const { return display_.Lost(); }
  /// Can be read when `Turn` has something to do.
  int Descriptor() const { return display_.Descriptor(); }
  /// When it has, though nothing comes.
  std::optional<Moment> NextDue() const;

  /// Takes these wishes, and no others any more.
  void Wish(std::vector<remote::KeyWish> wishes);
  /// Deals with all that came and is due.
  void Turn();
  /// One for each wish, in its order.
  const std::vector<remote::KeyGrant>& Grants() const { return grants_; }

 private:
  void FollowKeyboard();
  void Grab();
  /// True when there was any.
  bool TakeAll();
  void Take(const DisplayNews& news);
  void TakePress(const DisplayNews& news);
  void TakeButton(bool down);
  void Answer(const DisplayNews& news, HeldKeys::Answer whose);
  bool MenuMayOpen() const;
  /// Asks for what must come while nothing does, and for nothing else.
  void Rest();

  DisplayKeys display_;
  KeyGrabs grabs_;
  HeldKeys held_;
  std::vector<remote::KeyWish> wishes_;
  std::vector<remote::KeyGrant> grants_;
  std::unique_ptr<KeyboardMap> keyboard_;
  std::vector<std::uint8_t> signature_;
  std::uint32_t layout_ = 0;
  std::optional<Moment> keyboardDue_;
  std::optional<Moment> lookDue_;
  /// A click has left the keyboard to others while keys are held.
  bool clicked_ = false;
  int buttons_ = 0;  ///< That are down.
  Moment lastButton_;
};

}  // namespace tavlo::platform
