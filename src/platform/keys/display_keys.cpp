#include "platform/keys/display_keys.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <cstdlib>
#include <memory>

#include "platform/keys/xkb_protocol.h"

namespace tavlo::platform {
namespace {

using Kind = DisplayNews::Kind;

template <typename Reply>
using Owned = std::unique_ptr<Reply, void (*)(void*)>;

constexpr std::uint8_t kSentByAClient = 0x80;
constexpr std::uint16_t kModifierBits = 0xFF;

template <typename Value>
void Append(std::vector<std::uint8_t>& bytes, const Value* first, int count) {
  const auto* const begin = reinterpret_cast<const std::uint8_t*>(first);
  bytes.insert(bytes.end(), begin, begin + sizeof(Value) * static_cast<std::size_t>(count));
}

}  // namespace

DisplayKeys::DisplayKeys(const std::string& name)
    : connection_(xcb_connect(name.c_str(), nullptr)) {
  if (Lost()) return;
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  speaksKeyboards_ = xkb_x11_setup_xkb_extension(connection_, XKB_X11_MIN_MAJOR_XKB_VERSION,
                                                 XKB_X11_MIN_MINOR_XKB_VERSION,
                                                 XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, &major,
                                                 &minor, &firstEvent_, nullptr) == 1;
  if (speaksKeyboards_) SelectNews();
}

DisplayKeys::~DisplayKeys() {
  if (!Lost() && hasKeyboard_) LeaveKeyboard();
  xcb_disconnect(connection_);
}

void DisplayKeys::SelectNews() {
  // Nothing else of the keyboard's state: the thread would wake for each key with Shift.
  constexpr std::uint16_t kEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                    XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
  constexpr std::uint16_t kParts =
      XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
  constexpr std::uint16_t kBoards = XCB_XKB_NKN_DETAIL_KEYCODES | XCB_XKB_NKN_DETAIL_DEVICE_ID;
  xcb_xkb_select_events_details_t details{};
  details.affectNewKeyboard = kBoards;
  details.newKeyboardDetails = kBoards;
  details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
  details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
  xcb_xkb_select_events_aux(connection_, XCB_XKB_ID_USE_CORE_KBD, kEvents, 0, 0, kParts, kParts,
                            &details);
  // A release that comes is one then, and no half of a repeat.
  const auto asked = xcb_xkb_per_client_flags(
      connection_, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
      XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0);
  xcb_discard_reply(connection_, asked.sequence);
}

bool DisplayKeys::Lost() const { return xcb_connection_has_error(connection_) != 0; }

int DisplayKeys::Descriptor() const { return xcb_get_file_descriptor(connection_); }

std::optional<DisplayNews> DisplayKeys::Next() {
  const Owned<xcb_generic_event_t> event(xcb_poll_for_event(connection_), std::free);
  if (!event) return {};
  DisplayNews news{.number = event->full_sequence};
  const std::uint8_t type = event->response_type & ~kSentByAClient;
  const bool pretended = (event->response_type & kSentByAClient) != 0;
  if ((type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) && !pretended) {
    const auto* const key = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
    news.kind = type == XCB_KEY_PRESS ? Kind::Press : Kind::Release;
    news.key = {.keycode = key->detail,
                .modifiers = static_cast<std::uint16_t>(key->state & kModifierBits)};
  } else if (type == XCB_MAPPING_NOTIFY || (speaksKeyboards_ && type == firstEvent_)) {
    news.kind = Kind::Keyboard;
  }
  return news;
}

void DisplayKeys::Allow(xcb_allow_t what) {
  xcb_allow_events(connection_, static_cast<std::uint8_t>(what), XCB_CURRENT_TIME);
}

void DisplayKeys::TakeKeyboard() {
  // The grab that a press brings along ends with the release of that one key, whatever else is
  // held.
  const auto asked = xcb_grab_keyboard(connection_, 0, root_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                       XCB_GRAB_MODE_SYNC);
  Allow(XCB_ALLOW_SYNC_KEYBOARD);
  const Owned<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(connection_, asked, nullptr),
                                               std::free);
  hasKeyboard_ = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
  answeredBefore_ = asked.sequence;
}

void DisplayKeys::Answer(const DisplayNews& news, HeldKeys::Answer whose) {
  using enum HeldKeys::Answer;
  switch (whose) {
    case Keep:
      if (!hasKeyboard_) {
        TakeKeyboard();
      } else if (static_cast<std::int32_t>(news.number - answeredBefore_) >= 0) {
        Allow(XCB_ALLOW_SYNC_KEYBOARD);
      }
      break;
    case GiveBack:
      xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
      hasKeyboard_ = false;
      break;
    case LetThrough:
      Allow(XCB_ALLOW_REPLAY_KEYBOARD);
      hasKeyboard_ = false;
      break;
    case LetThroughAndStay:
      Allow(XCB_ALLOW_REPLAY_KEYBOARD);
      TakeKeyboard();
      break;
  }
  xcb_flush(connection_);
}

void DisplayKeys::LeaveKeyboard() {
  Allow(XCB_ALLOW_REPLAY_KEYBOARD);
  xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
  xcb_flush(connection_);
  hasKeyboard_ = false;
}

KeyBits DisplayKeys::Down() {
  KeyBits down;
  const Owned<xcb_query_keymap_reply_t> reply(
      xcb_query_keymap_reply(connection_, xcb_query_keymap(connection_), nullptr), std::free);
  if (!reply) return down;
  constexpr std::size_t kBits = 8;
  for (std::size_t key = 0; key < down.size(); ++key) {
    down[key] = (reply->keys[key / kBits] >> (key % kBits) & 1) != 0;
  }
  return down;
}

std::uint32_t DisplayKeys::Layout() {
  if (!speaksKeyboards_) return 0;
  const Owned<xcb_xkb_get_state_reply_t> reply(
      xcb_xkb_get_state_reply(connection_, xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD),
                              nullptr),
      std::free);
  return reply ? reply->group : 0;
}

std::vector<std::uint8_t> DisplayKeys::Signature() {
  std::vector<std::uint8_t> bytes;
  const xcb_setup_t& setup = *xcb_get_setup(connection_);
  const auto count = static_cast<std::uint8_t>(setup.max_keycode - setup.min_keycode + 1);
  const auto keysAsked = xcb_get_keyboard_mapping(connection_, setup.min_keycode, count);
  const auto modifiersAsked = xcb_get_modifier_mapping(connection_);
  const Owned<xcb_get_keyboard_mapping_reply_t> keys(
      xcb_get_keyboard_mapping_reply(connection_, keysAsked, nullptr), std::free);
  const Owned<xcb_get_modifier_mapping_reply_t> modifiers(
      xcb_get_modifier_mapping_reply(connection_, modifiersAsked, nullptr), std::free);
  if (!keys || !modifiers) return {};
  bytes.push_back(keys->keysyms_per_keycode);
  Append(bytes, xcb_get_keyboard_mapping_keysyms(keys.get()),
         xcb_get_keyboard_mapping_keysyms_length(keys.get()));
  Append(bytes, xcb_get_modifier_mapping_keycodes(modifiers.get()),
         xcb_get_modifier_mapping_keycodes_length(modifiers.get()));
  return bytes;
}

}  // namespace tavlo::platform
