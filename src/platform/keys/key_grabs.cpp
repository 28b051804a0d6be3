#include "platform/keys/key_grabs.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <set>

namespace tavlo::platform {
namespace {

using remote::KeyState;

constexpr std::uint16_t kAllModifiers = 0xFF;

/// The states of locks that may be on in any combination.
std::vector<std::uint16_t> StatesOf(std::uint16_t locks) {
  std::vector<std::uint16_t> states{locks};
  while (states.back() != 0) {
    states.push_back(static_cast<std::uint16_t>((states.back() - 1) & locks));
  }
  return states;
}

std::uint16_t With(KeyChord chord, std::uint16_t locks) {
  return static_cast<std::uint16_t>(chord.modifiers | locks);
}

}  // namespace

std::vector<remote::KeyGrant> KeyGrabs::Become(const std::vector<remote::KeyWish>& wishes,
                                               const KeyboardMap& keyboard, std::uint32_t layout) {
  Surround({});
  std::vector<Need> needs;
  std::set<KeyChord> needed;
  for (const remote::KeyWish& wish : wishes) {
    Need need{.action = wish.action};
    if (const auto trigger = remote::KeyTrigger::Of(wish.trigger)) {
      need.chords = keyboard.ChordsOf(*trigger, layout);
    }
    for (const KeyChord chord : need.chords) need.taken |= needed.contains(chord);
    if (!need.taken) needed.insert(need.chords.begin(), need.chords.end());
    needs.push_back(need);
  }
  Follow(keyboard.Locks());
  GiveBackAllBut(needs);
  std::vector<remote::KeyGrant> grants;
  for (const Need& need : needs) {
    KeyState state = KeyState::NotOnKeyboard;
    if (!need.chords.empty()) state = Grab(need) ? KeyState::Held : KeyState::OthersHold;
    grants.push_back({.action = need.action, .state = state});
  }
  return grants;
}

void KeyGrabs::Follow(std::uint16_t locks) {
  std::vector<std::uint16_t> states = StatesOf(locks);
  if (states == lockStates_) return;
  GiveBackAllBut({});
  lockStates_ = std::move(states);
}

void KeyGrabs::GiveBackAllBut(const std::vector<Need>& needs) {
  for (auto held = chords_.begin(); held != chords_.end();) {
    const bool stays = std::ranges::any_of(needs, [&](const Need& need) {
      return !need.taken && std::ranges::count(need.chords, held->first) > 0;
    });
    if (!stays) GiveBack(held->first);
    held = stays ? std::next(held) : chords_.erase(held);
  }
}

bool KeyGrabs::Grab(const Need& need) {
  if (need.taken) return false;
  std::vector<xcb_void_cookie_t> asked;
  for (const KeyChord chord : need.chords) {
    // What is held already is granted once more.
    for (const std::uint16_t locks : lockStates_) {
      asked.push_back(xcb_grab_key_checked(display_, 0, root_, With(chord, locks), chord.keycode,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
    }
  }
  bool refused = false;
  for (const xcb_void_cookie_t question : asked) {
    const std::unique_ptr<xcb_generic_error_t, void (*)(void*)> error(
        xcb_request_check(display_, question), std::free);
    refused |= error != nullptr;
  }
  for (const KeyChord chord : need.chords) {
    if (refused) GiveBack(chord);
    if (refused) chords_.erase(chord);
    if (!refused) chords_[chord] = need.action;
  }
  return !refused;
}

void KeyGrabs::GiveBack(KeyChord chord) {
  for (const std::uint16_t locks : lockStates_) {
    xcb_ungrab_key(display_, chord.keycode, root_, With(chord, locks));
  }
}

template <typename Call>
void KeyGrabs::AroundChordsOf(std::uint8_t keycode, Call call) const {
  std::set<std::uint16_t> chords;
  for (const auto& [chord, action] : chords_) {
    if (chord.keycode != keycode) continue;
    for (const std::uint16_t locks : lockStates_) chords.insert(With(chord, locks));
  }
  for (std::uint16_t modifiers = 0; modifiers <= kAllModifiers; ++modifiers) {
    if (!chords.contains(modifiers)) call(modifiers);
  }
}

void KeyGrabs::Surround(const KeyBits& keys) {
  if (keys == surrounded_) return;
  for (std::size_t key = 0; key < keys.size(); ++key) {
    if (keys[key] == surrounded_[key]) continue;
    const auto keycode = static_cast<std::uint8_t>(key);
    AroundChordsOf(keycode, [&](std::uint16_t modifiers) {
      if (keys[key]) {
        // What others hold is refused, and stays with them.
        xcb_grab_key(display_, 0, root_, modifiers, keycode, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_SYNC);
      } else {
        xcb_ungrab_key(display_, keycode, root_, modifiers);
      }
    });
  }
  xcb_flush(display_);
  surrounded_ = keys;
}

bool KeyGrabs::OthersHold(KeyChord key) {
  const std::unique_ptr<xcb_generic_error_t, void (*)(void*)> error(
      xcb_request_check(display_,
                        xcb_grab_key_checked(display_, 0, root_, key.modifiers, key.keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC)),
      std::free);
  if (!error) xcb_ungrab_key(display_, key.keycode, root_, key.modifiers);
  return error && error->error_code == XCB_ACCESS;
}

}  // namespace tavlo::platform
