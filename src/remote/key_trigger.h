#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavlo::remote {

/// A key with its modifiers. It is stored, and told to desktops, as CTRL+ALT+SHIFT+LOGO before the
/// key's name in the keyboard tables of X (`F4`, `XF86Launch5`, `odiaeresis`), joined by plus
/// signs: the form of the "shortcuts" agreement of desktops.
struct KeyTrigger {
  bool ctrl = false;
  bool alt = false;
  bool shift = false;
  bool logo = false;
  /// Letters, digits and underlines; the letters of one character keys are small.
  std::string key;

  bool operator==(const KeyTrigger&) const = default;

  std::string Text() const;
  /// As a person reads it: Ctrl+Shift+F4.
  std::string InWords() const;
  /// Nothing when the text is no trigger.
  static std::optional<KeyTrigger> Of(std::string_view text);
};

/// Why a typist can not spare the key, in a sentence; empty when it may be had.
std::string WhyNeededForWriting(const KeyTrigger& trigger);

}  // namespace tavlo::remote
