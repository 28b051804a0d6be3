#include "platform/keys/keyboard_service.h"

#include <algorithm>
#include <utility>

namespace tavlo::platform {

using std::chrono::steady_clock;

KeyboardService::KeyboardService(const std::string& display, KeyEvents& events)
    : display_(display),
      grabs_(display_.Connection(), display_.Root()),
      held_([&events](remote::KeyEvent event) { events.Push(event); }) {}

std::optional<KeyboardService::Moment> KeyboardService::NextDue() const {
  std::optional<Moment> due;
  for (const auto& next : {keyboardDue_, lookDue_, held_.NextSettling()}) {
    if (next) due = due ? std::min(*due, *next) : *next;
  }
  return due;
}

void KeyboardService::Wish(std::vector<remote::KeyWish> wishes) {
  wishes_ = std::move(wishes);
  if (keyboard_) {
    Grab();
  } else {
    FollowKeyboard();
  }
}

void KeyboardService::FollowKeyboard() {
  keyboardDue_.reset();
  std::vector<std::uint8_t> signature = display_.Signature();
  const std::uint32_t layout = display_.Layout();
  // A keyboard that is typed on in turn with another one tells each time that it is new.
  const bool same = keyboard_ && signature == signature_;
  if (same && layout == layout_) return;
  if (!same) keyboard_ = KeyboardMap::Read(display_.Connection());
  signature_ = std::move(signature);
  layout_ = layout;
  Grab();
}

void KeyboardService::Grab() {
  if (keyboard_) {
    grants_ = grabs_.Become(wishes_, *keyboard_, layout_);
    held_.Become(grabs_.Chords(), display_.Down(), keyboard_->Repeating());
  } else {
    grants_.clear();
    for (const remote::KeyWish& wish : wishes_) {
      grants_.push_back({.action = wish.action, .state = remote::KeyState::Refused});
    }
  }
}

void KeyboardService::Turn() {
  const Moment now = steady_clock::now();
  if (keyboardDue_ && now >= *keyboardDue_) FollowKeyboard();
  if (lookDue_ && now >= *lookDue_) {
    lookDue_.reset();
    held_.Look(display_.Down());
  }
  held_.Settle(now);
  // Last, for whatever is sent or asked may bring news along, of which the descriptor tells
  // nothing.
  TakeAll();
  do {
    Rest();
  } while (TakeAll());
}

bool KeyboardService::TakeAll() {
  bool any = false;
  while (const std::optional<DisplayNews> news = display_.Next()) {
    Take(*news);
    any = true;
  }
  return any;
}

void KeyboardService::Take(const DisplayNews& news) {
  switch (news.kind) {
    case DisplayNews::Kind::Press:
      return TakePress(news);
    case DisplayNews::Kind::Release:
      return Answer(news, held_.Release(news.key.keycode, steady_clock::now()));
    case DisplayNews::Kind::ButtonPress:
      return TakeButton(true);
    case DisplayNews::Kind::ButtonRelease:
      return TakeButton(false);
    case DisplayNews::Kind::Keyboard:
      keyboardDue_ = steady_clock::now() + kKeyboardSettles;
      break;
    case DisplayNews::Kind::Other:
      break;
  }
}

void KeyboardService::TakePress(const DisplayNews& news) {
  KeyChord key = news.key;
  if (keyboard_) key.modifiers &= static_cast<std::uint16_t>(~keyboard_->Locks());
  using enum HeldKeys::Answer;
  HeldKeys::Answer whose = held_.Press(key);
  if (whose == Keep && clicked_) {
    clicked_ = MenuMayOpen();
    if (clicked_) whose = GiveBack;
  } else if (whose == LetThrough && grabs_.OthersHold(news.key)) {
    // The display would give such a key to the window that has the keyboard and not to whom it
    // belongs, so a text would get what was meant for the desktop.
    whose = GiveBack;
  }
  Answer(news, whose);
}

void KeyboardService::Answer(const DisplayNews& news, HeldKeys::Answer whose) {
  display_.Answer(news, whose);
  if (whose != HeldKeys::Answer::LetThroughAndStay || !display_.HasKeyboard()) return;
  // What was done before the keyboard was the deck's again went to others, a release of ours, too.
  held_.Look(display_.Down());
}

void KeyboardService::TakeButton(bool down) {
  buttons_ = std::max(buttons_ + (down ? 1 : -1), 0);
  lastButton_ = steady_clock::now();
  if (!down || !display_.HasKeyboard()) return;
  display_.LeaveKeyboard();
  clicked_ = true;
}

bool KeyboardService::MenuMayOpen() const {
  return buttons_ > 0 || steady_clock::now() - lastButton_ < kMenuOpens;
}

void KeyboardService::Rest() {
  const bool held = held_.Any();
  if (!held && display_.HasKeyboard()) display_.LeaveKeyboard();
  clicked_ = clicked_ && held;
  if (!held) buttons_ = 0;
  display_.WatchButtons(held);
  grabs_.Surround(clicked_ ? held_.Keys() : KeyBits());
  if (!held || display_.HasKeyboard()) {
    lookDue_.reset();
  } else if (!lookDue_) {
    lookDue_ = steady_clock::now() + kBetweenLooks;
  }
}

}  // namespace tavlo::platform
