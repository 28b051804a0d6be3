#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "support/desktop.h"
#include "support/hands.h"
#include "support/screen.h"

namespace tavlo::test {

/// The letter that somebody types: a window of another program, which counts the keys that reach
/// it.
class Letter {
 public:
  Letter(Screen& screen, WindowManager manager, int x = 0)
      : screen_(screen),
        manager_(manager),
        display_(xcb_connect(nullptr, nullptr)),
        id_(xcb_generate_id(display_)) {
    const std::uint32_t values[] = {0xFFFFFF, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(display_, XCB_COPY_FROM_PARENT, id_, screen_.hands.Root(),
                      static_cast<std::int16_t>(x), 0, 1200, 900, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    xcb_map_window(display_, id_);
    xcb_flush(display_);
    // A manager gives the keyboard to each window that comes, Mutter only after what reached it
    // meanwhile, and would take it from a window that was to have it next.
    if (manager_ == WindowManager::None) return;
    EXPECT_TRUE(Until([this] { return HasKeyboard(); }));
  }
  ~Letter() { xcb_disconnect(display_); }
  Letter(const Letter&) = delete;

  xcb_window_t Id() const { return id_; }

  /// Raises it and gives it the keyboard, as a click in a task bar does.
  bool ComeForward() const {
    if (manager_ == WindowManager::None) {
      const std::uint32_t above = XCB_STACK_MODE_ABOVE;
      xcb_configure_window(display_, id_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
      xcb_set_input_focus(display_, XCB_INPUT_FOCUS_PARENT, id_, XCB_CURRENT_TIME);
      xcb_flush(display_);
    } else {
      screen_.hands.BringForward(id_);
    }
    return Until([this] { return HasKeyboard(); });
  }

  bool HasKeyboard() const {
    if (manager_ != WindowManager::None) {
      const auto active = screen_.Numbers(screen_.hands.Root(), "_NET_ACTIVE_WINDOW");
      return !active.empty() && active.front() == id_ && Focus() != screen_.hands.Root();
    }
    return Focus() == id_;
  }

  /// Types a key, which must come.
  void Type(std::uint32_t symbol) {
    const int before = Typed();
    screen_.hands.Keys({symbol});
    EXPECT_TRUE(Until([&] { return Typed() > before; })) << symbol;
  }

 private:
  int Typed() {
    while (const std::unique_ptr<xcb_generic_event_t, void (*)(void*)> event{
        xcb_poll_for_event(display_), std::free}) {
      typed_ += event->response_type == XCB_KEY_PRESS;
    }
    return typed_;
  }
  xcb_window_t Focus() const {
    const std::unique_ptr<xcb_get_input_focus_reply_t, void (*)(void*)> reply(
        xcb_get_input_focus_reply(display_, xcb_get_input_focus(display_), nullptr), std::free);
    return reply ? reply->focus : XCB_NONE;
  }

  Screen& screen_;
  const WindowManager manager_;
  xcb_connection_t* const display_;
  const xcb_window_t id_;
  int typed_ = 0;
};

}  // namespace tavlo::test
