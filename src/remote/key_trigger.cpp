#include "remote/key_trigger.h"

#include <algorithm>
#include <array>

namespace tavlo::remote {
namespace {

constexpr std::size_t kLongestName = 40;

struct Modifier {
  std::string_view name;
  std::string_view words;
  bool KeyTrigger::*held;
};
constexpr std::array kModifiers{
    Modifier{"CTRL", "Ctrl", &KeyTrigger::ctrl},
    Modifier{"ALT", "Alt", &KeyTrigger::alt},
    Modifier{"SHIFT", "Shift", &KeyTrigger::shift},
    Modifier{"LOGO", "Super", &KeyTrigger::logo},
};

/// Keys that a person knows by another name.
struct KnownAs {
  std::string_view key;
  std::string_view words;
};
constexpr std::array kWords{
    KnownAs{"Return", "Enter"},         KnownAs{"KP_Enter", "Keypad Enter"},
    KnownAs{"Escape", "Esc"},           KnownAs{"space", "Space"},
    KnownAs{"BackSpace", "Backspace"},  KnownAs{"Prior", "Page Up"},
    KnownAs{"Next", "Page Down"},       KnownAs{"Page_Up", "Page Up"},
    KnownAs{"Page_Down", "Page Down"},  KnownAs{"Scroll_Lock", "Scroll Lock"},
    KnownAs{"Print", "Print Screen"},   KnownAs{"KP_Add", "Keypad +"},
    KnownAs{"KP_Subtract", "Keypad -"}, KnownAs{"KP_Multiply", "Keypad *"},
    KnownAs{"KP_Divide", "Keypad /"},   KnownAs{"adiaeresis", "\u00C4"},
    KnownAs{"odiaeresis", "\u00D6"},    KnownAs{"udiaeresis", "\u00DC"},
    KnownAs{"ssharp", "\u00DF"},
};

/// Keys that are held together with others.
bool IsModifier(std::string_view key) {
  constexpr std::array<std::string_view, 7> kBeginnings{"Shift_", "Control_", "Alt_",     "Meta_",
                                                        "Super_", "Hyper_",   "ISO_Level"};
  return key == "Mode_switch" ||
         std::ranges::any_of(
             kBeginnings, [key](std::string_view beginning) { return key.starts_with(beginning); });
}

bool IsFunctionKey(std::string_view key) {
  return key.size() >= 2 && key.front() == 'F' &&
         std::ranges::all_of(key.substr(1), [](char c) { return c >= '0' && c <= '9'; });
}

/// Keys beside those that write or move in a text, which a keyboard has for programs. The names of
/// characters are many and new ones come, so whatever is not known to be spare is not.
bool IsSpare(std::string_view key) {
  constexpr std::array<std::string_view, 14> kSpare{
      "Pause", "Break", "Scroll_Lock", "Print",  "Sys_Req", "Menu",    "Help",
      "Undo",  "Redo",  "Find",        "Cancel", "Select",  "Execute", "Clear"};
  return IsFunctionKey(key) || key.starts_with("XF86") || key.starts_with("SunF") ||
         std::ranges::find(kSpare, key) != kSpare.end();
}

bool IsName(std::string_view key) {
  return !key.empty() && key.size() <= kLongestName && std::ranges::all_of(key, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  });
}

bool IsLetter(std::string_view key) {
  return key.size() == 1 && ((key[0] >= 'a' && key[0] <= 'z') || (key[0] >= 'A' && key[0] <= 'Z'));
}

}  // namespace

std::string KeyTrigger::Text() const {
  std::string text;
  for (const Modifier& modifier : kModifiers) {
    if (this->*modifier.held) text += std::string(modifier.name) + "+";
  }
  return text + key;
}

std::string KeyTrigger::InWords() const {
  std::string words;
  for (const Modifier& modifier : kModifiers) {
    if (this->*modifier.held) words += std::string(modifier.words) + "+";
  }
  const auto known = std::ranges::find(kWords, key, &KnownAs::key);
  if (known != kWords.end()) return words + std::string(known->words);
  if (IsLetter(key)) return words + static_cast<char>(key[0] & ~('a' - 'A'));
  if (key.starts_with("XF86")) return words + key.substr(4);
  if (key.starts_with("KP_")) return words + "Keypad " + key.substr(3);
  return words + key;
}

std::optional<KeyTrigger> KeyTrigger::Of(std::string_view text) {
  KeyTrigger trigger;
  for (auto plus = text.find('+'); plus != text.npos; plus = text.find('+')) {
    const auto modifier = std::ranges::find(kModifiers, text.substr(0, plus), &Modifier::name);
    if (modifier == kModifiers.end() || trigger.*(modifier->held)) return std::nullopt;
    trigger.*(modifier->held) = true;
    text.remove_prefix(plus + 1);
  }
  if (!IsName(text)) return std::nullopt;
  trigger.key = text;
  if (IsLetter(text)) trigger.key[0] = static_cast<char>(text[0] | ('a' - 'A'));
  return trigger;
}

std::string WhyNeededForWriting(const KeyTrigger& trigger) {
  if (IsModifier(trigger.key)) return "Choose a key that is not held together with others.";
  if (trigger.ctrl || trigger.alt || trigger.logo) return {};
  if (IsSpare(trigger.key)) return {};
  return trigger.InWords() + " is needed for writing.";
}

}  // namespace tavlo::remote
