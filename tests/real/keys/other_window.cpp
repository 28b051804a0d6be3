#include "keys/other_window.h"

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "support/screen.h"

namespace tavlo::test {
namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, void (*)(void*)>;

}  // namespace

OtherWindow::OtherWindow()
    : connection_(xcb_connect(nullptr, nullptr)),
      root_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root),
      id_(xcb_generate_id(connection_)) {
  const std::array<std::uint32_t, 2> values{
      1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, id_, root_, 0, 0, 200, 100, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
  xcb_map_window(connection_, id_);
  xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, id_, XCB_CURRENT_TIME);
  xcb_flush(connection_);
  EXPECT_TRUE(Until([this] {
    Read();
    return hasKeyboard_;
  })) << "the window does not get the keyboard";
}

OtherWindow::~OtherWindow() { xcb_disconnect(connection_); }

const std::string& OtherWindow::Took() {
  Read();
  return took_;
}

int OtherWindow::GrabsSeen() {
  Read();
  return grabsSeen_;
}

void OtherWindow::Read() {
  while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(connection_), std::free}) {
    const auto* const key = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
    const auto* const focus = reinterpret_cast<const xcb_focus_in_event_t*>(event.get());
    switch (event->response_type) {
      case XCB_KEY_PRESS:
      case XCB_KEY_RELEASE:
        if (!took_.empty()) took_ += ' ';
        took_ += event->response_type == XCB_KEY_PRESS ? '+' : '-';
        took_ += key->event == id_ ? NameOf(key->detail) : "[" + NameOf(key->detail) + "]";
        break;
      case XCB_FOCUS_IN:
      case XCB_FOCUS_OUT:
        hasKeyboard_ = event->response_type == XCB_FOCUS_IN;
        if (focus->mode != XCB_NOTIFY_MODE_NORMAL) ++grabsSeen_;
        break;
      default:
        break;
    }
  }
}

std::string OtherWindow::NameOf(std::uint8_t keycode) {
  const Owned<xcb_get_keyboard_mapping_reply_t> mapping(
      xcb_get_keyboard_mapping_reply(connection_, xcb_get_keyboard_mapping(connection_, keycode, 1),
                                     nullptr),
      std::free);
  std::array<char, 64> name{};
  xkb_keysym_get_name(xcb_get_keyboard_mapping_keysyms(mapping.get())[0], name.data(), name.size());
  return name.data();
}

bool OtherWindow::Lock() {
  const Owned<xcb_grab_keyboard_reply_t> reply(
      xcb_grab_keyboard_reply(connection_,
                              xcb_grab_keyboard(connection_, 0, id_, XCB_CURRENT_TIME,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                              nullptr),
      std::free);
  return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void OtherWindow::Unlock() {
  xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
  std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

bool OtherWindow::Grab(std::uint8_t keycode, std::uint16_t modifiers) {
  const Owned<xcb_generic_error_t> error(
      xcb_request_check(connection_,
                        xcb_grab_key_checked(connection_, 0, root_, modifiers, keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)),
      std::free);
  return error == nullptr;
}

void OtherWindow::GiveBack(std::uint8_t keycode, std::uint16_t modifiers) {
  xcb_ungrab_key(connection_, keycode, root_, modifiers);
  std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

}  // namespace tavlo::test
