#include "support/hands.h"

#include <gtest/gtest.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>

#include "support/screen.h"

namespace tavlo::test {
namespace {

/// What a window that is to come asks of its manager, who answers in a property of that window.
constexpr const char* kFrameQuestion = "_NET_REQUEST_FRAME_EXTENTS";

}  // namespace

Hands::Hands()
    : connection_(xcb_connect(nullptr, nullptr)),
      root_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root) {}

Hands::~Hands() { xcb_disconnect(connection_); }

void Hands::Fake(std::uint8_t type, std::uint8_t detail, int x, int y) {
  xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, root_,
                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
}

void Hands::Flush() {
  // The answer to a question comes after everything that was asked before it has been done.
  std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void Hands::MoveTo(int x, int y) {
  Fake(XCB_MOTION_NOTIFY, 0, x, y);
  Flush();
}

void Hands::Press() {
  Fake(XCB_BUTTON_PRESS, 1);
  Flush();
}

void Hands::Release() {
  Fake(XCB_BUTTON_RELEASE, 1);
  Flush();
}

void Hands::ClickAt(int x, int y) {
  MoveTo(x, y);
  Press();
  Release();
}

void Hands::TurnWheel() {
  constexpr std::uint8_t kDown = 5;
  Fake(XCB_BUTTON_PRESS, kDown);
  Fake(XCB_BUTTON_RELEASE, kDown);
  Flush();
}

void Hands::Keys(std::initializer_list<std::uint32_t> symbols) {
  for (const std::uint32_t symbol : symbols) Fake(XCB_KEY_PRESS, KeyCode(symbol));
  for (auto symbol = std::rbegin(symbols); symbol != std::rend(symbols); ++symbol) {
    Fake(XCB_KEY_RELEASE, KeyCode(*symbol));
  }
  Flush();
}

void Hands::Hold(std::uint32_t symbol) { HoldPlace(KeyCode(symbol)); }

void Hands::LetGo(std::uint32_t symbol) { LetGoOfPlace(KeyCode(symbol)); }

void Hands::HoldPlace(std::uint8_t keycode) {
  Fake(XCB_KEY_PRESS, keycode);
  Flush();
}

void Hands::LetGoOfPlace(std::uint8_t keycode) {
  Fake(XCB_KEY_RELEASE, keycode);
  Flush();
}

void Hands::KeyInto(xcb_window_t window, std::uint32_t symbol) {
  xcb_key_press_event_t key{};
  key.detail = KeyCode(symbol);
  key.root = root_;
  key.event = window;
  key.same_screen = 1;
  for (const int type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
    key.response_type = static_cast<std::uint8_t>(type);
    xcb_send_event(connection_, 0, window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&key));
  }
  Flush();
}

std::uint8_t Hands::KeyCode(std::uint32_t symbol) const {
  const xcb_setup_t* const setup = xcb_get_setup(connection_);
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, void (*)(void*)> mapping(
      xcb_get_keyboard_mapping_reply(
          connection_, xcb_get_keyboard_mapping(connection_, setup->min_keycode, count), nullptr),
      std::free);
  const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
  for (int code = 0; code < count; ++code) {
    if (symbols[code * mapping->keysyms_per_keycode] == symbol) {
      return static_cast<std::uint8_t>(setup->min_keycode + code);
    }
  }
  ADD_FAILURE() << "no key gives the symbol " << symbol;
  return 0;
}

xcb_atom_t Hands::Atom(const std::string& name) const {
  const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void*)> reply(
      xcb_intern_atom_reply(
          connection_,
          xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
          nullptr),
      std::free);
  return reply->atom;
}

QPoint Hands::PlaceOf(xcb_window_t window) const {
  const std::unique_ptr<xcb_translate_coordinates_reply_t, void (*)(void*)> place(
      xcb_translate_coordinates_reply(
          connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr),
      std::free);
  return place ? QPoint(place->dst_x, place->dst_y) : QPoint();
}

void Hands::BringForward(xcb_window_t window) {
  constexpr std::uint32_t kTaskBar = 2;
  Ask(window, "_NET_ACTIVE_WINDOW", {kTaskBar, XCB_CURRENT_TIME});
}

void Hands::PressClose(xcb_window_t window) {
  constexpr std::uint32_t kTaskBar = 2;
  Ask(window, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, kTaskBar});
}

std::vector<std::uint32_t> Hands::Numbers(xcb_window_t window, const std::string& property) const {
  constexpr std::uint32_t kMostNumbers = 1024;
  const std::unique_ptr<xcb_get_property_reply_t, void (*)(void*)> reply(
      xcb_get_property_reply(connection_,
                             xcb_get_property(connection_, 0, window, Atom(property),
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, kMostNumbers),
                             nullptr),
      std::free);
  if (!reply || reply->format != 32) return {};
  const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

bool Hands::ManagerListens() const {
  constexpr const char* kCheck = "_NET_SUPPORTING_WM_CHECK";
  const auto manager = Numbers(root_, kCheck);
  const auto offers = Numbers(root_, "_NET_SUPPORTED");
  // The window that the property names goes with a manager that dies.
  return !manager.empty() && Numbers(manager.front(), kCheck) == manager &&
         std::ranges::find(offers, Atom(kFrameQuestion)) != offers.end();
}

void Hands::AwaitManager() {
  if (!ManagerListens()) return;
  const xcb_window_t asker = xcb_generate_id(connection_);
  const std::uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, asker, root_, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &wanted);
  // Managers do what they are asked in the order in which it reaches them.
  Ask(asker, kFrameQuestion, {});
  EXPECT_TRUE(Until(
      [&] {
        while (const std::unique_ptr<xcb_generic_event_t, void (*)(void*)> event{
            xcb_poll_for_event(connection_), std::free}) {
          const auto* const change =
              reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
          if (event->response_type == XCB_PROPERTY_NOTIFY && change->window == asker) return true;
        }
        return false;
      },
      kManyLooks * 20, std::chrono::milliseconds(1)))
      << "the window manager does not answer";
  xcb_destroy_window(connection_, asker);
  xcb_flush(connection_);
}

void Hands::Ask(xcb_window_t window, const std::string& wish,
                const std::array<std::uint32_t, 2>& data) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = Atom(wish);
  std::copy(data.begin(), data.end(), message.data.data32);
  xcb_send_event(connection_, 0, root_,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  Flush();
}

}  // namespace tavlo::test
