#include "platform/keys/display_keys.h"

#include <xcb/xinput.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <cstdlib>
#include <memory>

#include "platform/keys/xkb_protocol.h"

namespace tavlo::platform {
namespace {

using Kind = DisplayNews::Kind;

template <typename Reply>
using Owned = std::unique_ptr<Reply, void (*)(void*)>;

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
  FindButtons();
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

void DisplayKeys::FindButtons() {
  // From this version on they are told whoever has the mouse.
  constexpr int kMajor = 2;
  constexpr int kMinor = 2;
  const xcb_query_extension_reply_t* const found =
      xcb_get_extension_data(connection_, &xcb_input_id);
  if (!found || !found->present) return;
  const Owned<xcb_input_xi_query_version_reply_t> version(
      xcb_input_xi_query_version_reply(
          connection_, xcb_input_xi_query_version(connection_, kMajor, kMinor), nullptr),
      std::free);
  if (version && version->major_version >= kMajor) buttons_ = found->major_opcode;
}

void DisplayKeys::WatchButtons(bool watch) {
  if (buttons_ == 0 || watch == buttonsWatched_) return;
  constexpr std::uint32_t kPressAndRelease =
      XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
  const struct {
    xcb_input_event_mask_t head;
    std::uint32_t events;
  } wanted{{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1}, watch ? kPressAndRelease : 0};
  xcb_input_xi_select_events(connection_, root_, 1, &wanted.head);
  xcb_flush(connection_);
  buttonsWatched_ = watch;
}

Kind DisplayKeys::KindOf(const xcb_generic_event_t& event) const {
  switch (event.response_type) {
    case XCB_KEY_PRESS:
      return Kind::Press;
    case XCB_KEY_RELEASE:
      return Kind::Release;
    case XCB_MAPPING_NOTIFY:
      return Kind::Keyboard;
    case XCB_GE_GENERIC: {
      constexpr std::uint32_t kFirstOfWheel = 4;
      constexpr std::uint32_t kLastOfWheel = 7;
      const auto& button = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
      const bool wheel = button.detail >= kFirstOfWheel && button.detail <= kLastOfWheel;
      if (buttons_ == 0 || button.extension != buttons_ || wheel) return Kind::Other;
      if (button.event_type == XCB_INPUT_RAW_BUTTON_PRESS) return Kind::ButtonPress;
      return button.event_type == XCB_INPUT_RAW_BUTTON_RELEASE ? Kind::ButtonRelease : Kind::Other;
    }
    default:
      return speaksKeyboards_ && event.response_type == firstEvent_ ? Kind::Keyboard : Kind::Other;
  }
}

std::optional<DisplayNews> DisplayKeys::Next() {
  const Owned<xcb_generic_event_t> event(xcb_poll_for_event(connection_), std::free);
  if (!event) return {};
  DisplayNews news{.kind = KindOf(*event), .number = event->full_sequence};
  if (news.kind == Kind::Press || news.kind == Kind::Release) {
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
    news.key = {.keycode = key.detail,
                .modifiers = static_cast<std::uint16_t>(key.state & kModifierBits)};
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
  if (static_cast<std::int32_t>(news.number - answeredBefore_) < 0) return;
  using enum HeldKeys::Answer;
  switch (whose) {
    case Keep:
      if (hasKeyboard_) {
        Allow(XCB_ALLOW_SYNC_KEYBOARD);
      } else {
        TakeKeyboard();
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
  answeredBefore_ = xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME).sequence;
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
