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
  /// True if a splash shows, or has shown and its program still stands.
  bool HadSplash() const;
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

/// How often a wait looks before it gives up: for more than a minute on a machine that has nothing
/// else to do, and for longer the busier it is.
inline constexpr int kManyLooks = 4000;

/// Looks again and again, with a short rest in between, until the condition holds; false when it
/// did not at the last look.
bool Until(const std::function<bool()>& condition, int looks = kManyLooks,
           std::chrono::milliseconds rest = std::chrono::milliseconds{20});

}  // namespace tavlo::test
