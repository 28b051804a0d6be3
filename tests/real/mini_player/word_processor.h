#pragma once

#include "support/screen.h"

namespace tavlo::test {

/// The word processor of the typist: a large window of another program.
class WordProcessor {
 public:
  explicit WordProcessor(Screen& screen)
      : screen_(screen), id_(xcb_generate_id(screen.hands.Connection())) {
    xcb_connection_t* const display = screen_.hands.Connection();
    const std::uint32_t white = 0xFFFFFF;
    xcb_create_window(display, XCB_COPY_FROM_PARENT, id_, screen_.hands.Root(), 0, 0, 1200, 900, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL,
                      &white);
    xcb_map_window(display, id_);
    xcb_flush(display);
  }
  ~WordProcessor() {
    xcb_destroy_window(screen_.hands.Connection(), id_);
    xcb_flush(screen_.hands.Connection());
  }
  WordProcessor(const WordProcessor&) = delete;

  xcb_window_t Id() const { return id_; }
  /// Raises it and gives it the keyboard, as a click in a task bar does.
  bool ComeForward() const {
    screen_.hands.BringForward(id_);
    return Until([this] {
      const auto active = screen_.Numbers(screen_.hands.Root(), "_NET_ACTIVE_WINDOW");
      return !active.empty() && active.front() == id_;
    });
  }

 private:
  Screen& screen_;
  const xcb_window_t id_;
};

}  // namespace tavlo::test
