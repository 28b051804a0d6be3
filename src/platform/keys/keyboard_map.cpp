#include "platform/keys/keyboard_map.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <optional>

namespace tavlo::platform {
namespace {

using Symbols = std::initializer_list<xkb_keysym_t>;

constexpr int kModifiers = 8;
constexpr int kKeycodes = 256;

/// The level of the layout on which the key makes it; the lowest of several.
std::optional<xkb_level_index_t> LevelOf(xkb_keymap* map, xkb_keycode_t key,
                                         xkb_layout_index_t layout, xkb_keysym_t symbol) {
  const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(map, key, layout);
  for (xkb_level_index_t level = 0; level < levels; ++level) {
    const xkb_keysym_t* made = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(map, key, layout, level, &made);
    if (count == 1 && *made == symbol) return level;
  }
  return {};
}

}  // namespace

std::unique_ptr<KeyboardMap> KeyboardMap::Read(xcb_connection_t* display) {
  const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(
      xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), xkb_context_unref);
  const auto asked = xcb_get_modifier_mapping(display);
  const std::unique_ptr<xcb_get_modifier_mapping_reply_t, void (*)(void*)> modifiers(
      xcb_get_modifier_mapping_reply(display, asked, nullptr), std::free);
  if (!context || !modifiers) return {};
  xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
  const std::int32_t keyboard = xkb_x11_get_core_keyboard_device_id(display);
  if (keyboard < 0) return {};
  xkb_keymap* const map =
      xkb_x11_keymap_new_from_device(context.get(), display, keyboard, XKB_KEYMAP_COMPILE_NO_FLAGS);
  if (!map) return {};
  return std::unique_ptr<KeyboardMap>(new KeyboardMap(map, *modifiers));
}

KeyboardMap::KeyboardMap(xkb_keymap* map, const xcb_get_modifier_mapping_reply_t& modifiers)
    : map_(map) {
  const xcb_keycode_t* const keys = xcb_get_modifier_mapping_keycodes(&modifiers);
  const int keysEach = modifiers.keycodes_per_modifier;
  const auto of = [&](Symbols symbols) {
    std::uint16_t found = 0;
    for (int at = 0; at < kModifiers * keysEach; ++at) {
      if (std::ranges::any_of(symbols, [&](Symbol symbol) { return Makes(keys[at], symbol); })) {
        found |= static_cast<std::uint16_t>(1U << (at / keysEach));
      }
    }
    return found;
  };
  locks_ |= of({XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock});
  alt_ = of({XKB_KEY_Alt_L, XKB_KEY_Alt_R});
  logo_ = of({XKB_KEY_Super_L, XKB_KEY_Super_R});
}

KeyboardMap::~KeyboardMap() { xkb_keymap_unref(map_); }

bool KeyboardMap::Makes(std::uint8_t keycode, Symbol symbol) const {
  const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(map_, keycode);
  for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
    if (LevelOf(map_, keycode, layout, symbol)) return true;
  }
  return false;
}

std::vector<std::uint8_t> KeyboardMap::KeysOf(Symbol symbol, std::uint32_t layout) const {
  std::optional<xkb_level_index_t> lowest;
  std::vector<std::uint8_t> keys;
  const xkb_keycode_t last = std::min(xkb_keymap_max_keycode(map_), xkb_keycode_t{kKeycodes - 1});
  for (xkb_keycode_t key = xkb_keymap_min_keycode(map_); key <= last; ++key) {
    const auto level = LevelOf(map_, key, layout, symbol);
    if (!level || (lowest && *level > *lowest)) continue;
    if (level != lowest) keys.clear();
    lowest = level;
    keys.push_back(static_cast<std::uint8_t>(key));
  }
  return keys;
}

std::vector<KeyChord> KeyboardMap::ChordsOf(const remote::KeyTrigger& trigger,
                                            std::uint32_t layout) const {
  const Symbol symbol = xkb_keysym_from_name(trigger.key.c_str(), XKB_KEYSYM_NO_FLAGS);
  if (symbol == XKB_KEY_NoSymbol) return {};
  if ((trigger.alt && alt_ == 0) || (trigger.logo && logo_ == 0)) return {};
  std::vector<std::uint8_t> keys = KeysOf(symbol, layout);
  const xkb_layout_index_t layouts = xkb_keymap_num_layouts(map_);
  for (xkb_layout_index_t other = 0; keys.empty() && other < layouts; ++other) {
    keys = KeysOf(symbol, other);
  }
  const int modifiers = (trigger.ctrl ? XCB_MOD_MASK_CONTROL : 0) |
                        (trigger.shift ? XCB_MOD_MASK_SHIFT : 0) | (trigger.alt ? alt_ : 0) |
                        (trigger.logo ? logo_ : 0);
  std::vector<KeyChord> chords;
  for (const std::uint8_t key : keys) {
    chords.push_back({.keycode = key, .modifiers = static_cast<std::uint16_t>(modifiers)});
  }
  return chords;
}

KeyBits KeyboardMap::Repeating() const {
  KeyBits repeating;
  for (std::size_t key = 0; key < repeating.size(); ++key) {
    repeating[key] = xkb_keymap_key_repeats(map_, static_cast<xkb_keycode_t>(key)) != 0;
  }
  return repeating;
}

}  // namespace tavlo::platform
