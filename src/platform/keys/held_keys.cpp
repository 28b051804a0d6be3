#include "platform/keys/held_keys.h"

#include <algorithm>
#include <utility>

namespace tavlo::platform {

using remote::AfarAction;

void HeldKeys::Become(std::map<KeyChord, AfarAction> chords, const KeyBits& down,
                      const KeyBits& repeating) {
  chords_ = std::move(chords);
  repeating_ = repeating;
  KeyBits ours;
  for (const auto& [chord, action] : chords_) ours.set(chord.keycode);
  for (auto held = held_.begin(); held != held_.end();) {
    const std::uint8_t keycode = held->first;
    const AfarAction action = held->second.action;
    const bool stays = std::ranges::any_of(chords_, [&](const auto& chord) {
      return chord.first.keycode == keycode && chord.second == action;
    });
    if (stays) {
      ours.reset(keycode);
      ++held;
      continue;
    }
    report_({action, false});
    ours.set(keycode);
    held = held_.erase(held);
  }
  waitsForUp_ = (waitsForUp_ | ours) & down;
}

void HeldKeys::Forget() {
  for (const auto& [keycode, held] : std::exchange(held_, {})) report_({held.action, false});
  waitsForUp_.reset();
}

bool HeldKeys::IsDown() const {
  return waitsForUp_.any() ||
         std::ranges::any_of(held_, [](const auto& held) { return !held.second.releasedAt; });
}

HeldKeys::Answer HeldKeys::ForOthers(bool stops) const {
  // A display repeats one key at a time, and a modifier is none. So after another key the held one
  // is silent; after a modifier it would go on, with that modifier, in the window of somebody else.
  return stops || !IsDown() ? Answer::LetThrough : Answer::LetThroughAndStay;
}

HeldKeys::Answer HeldKeys::Press(KeyChord pressed) {
  if (const auto held = held_.find(pressed.keycode); held != held_.end()) {
    held->second.releasedAt.reset();
    return Answer::Keep;
  }
  if (waitsForUp_[pressed.keycode]) return Answer::Keep;
  const auto chord = chords_.find(pressed);
  if (chord == chords_.end()) return ForOthers(repeating_[pressed.keycode]);
  ReportReleases(Moment::max());
  held_.emplace(pressed.keycode, Held{chord->second});
  report_({chord->second, true});
  return Answer::Keep;
}

HeldKeys::Answer HeldKeys::Release(std::uint8_t keycode, Moment now) {
  const auto held = held_.find(keycode);
  if (held == held_.end() && !waitsForUp_[keycode]) return ForOthers(false);
  if (held != held_.end()) held->second.releasedAt = now;
  waitsForUp_.reset(keycode);
  return IsDown() ? Answer::Keep : Answer::GiveBack;
}

void HeldKeys::Look(const KeyBits& down) {
  waitsForUp_ &= down;
  for (auto held = held_.begin(); held != held_.end();) {
    if (down[held->first] || held->second.releasedAt) {
      ++held;
    } else {
      report_({held->second.action, false});
      held = held_.erase(held);
    }
  }
}

void HeldKeys::Settle(Moment now) { ReportReleases(now - kRepeatsWithin); }

void HeldKeys::ReportReleases(Moment upTo) {
  const auto releasedEarlier = [](const auto& one, const auto& other) {
    return one.second.releasedAt.value_or(Moment::max()) <
           other.second.releasedAt.value_or(Moment::max());
  };
  while (!held_.empty()) {
    const auto first = std::ranges::min_element(held_, releasedEarlier);
    if (!first->second.releasedAt || *first->second.releasedAt > upTo) return;
    report_({first->second.action, false});
    held_.erase(first);
  }
}

KeyBits HeldKeys::Keys() const {
  KeyBits keys = waitsForUp_;
  for (const auto& [keycode, held] : held_) keys.set(keycode);
  return keys;
}

std::optional<HeldKeys::Moment> HeldKeys::NextSettling() const {
  std::optional<Moment> next;
  for (const auto& [keycode, held] : held_) {
    if (!held.releasedAt) continue;
    const Moment due = *held.releasedAt + kRepeatsWithin;
    next = next ? std::min(*next, due) : due;
  }
  return next;
}

}  // namespace tavlo::platform
