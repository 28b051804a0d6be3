#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/hands.h"

namespace tavlo::test {

/// A window as somebody sees it who sits before the screen.
struct SeenWindow {
  xcb_window_t id = XCB_NONE;
  std::string title;
  bool box = false;     ///< A message box.
  bool splash = false;  ///< Stands only while its program starts.
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// The screen with the windows of all programs, seen and used from outside of them. What looks for
/// a window needs a window manager, which keeps the list of them.
class Screen {
 public:
  std::vector<SeenWindow> Windows() const;
  SeenWindow Look(xcb_window_t window) const;
  /// The message box of that title; its `id` is XCB_NONE when none shows.
  SeenWindow Box(std::string_view title) const;
  SeenWindow Splash() const;
  /// The deck's main window.
  SeenWindow Deck() const;
  /// True while the window manager has the window in that state ("_NET_WM_STATE_HIDDEN", ...).
  bool HasState(xcb_window_t window, const char* state) const;

  /// A property of a window that holds numbers or atoms; empty when the window has none.
  std::vector<std::uint32_t> Numbers(xcb_window_t window, const char* property) const;

  Hands hands;

 private:
  std::string Text(xcb_window_t window, const char* property) const;
};

/// Looks again and again until the condition holds; false when it never did.
bool Until(const std::function<bool()>& condition,
           std::chrono::milliseconds patience = std::chrono::seconds{15});

}  // namespace tavlo::test
