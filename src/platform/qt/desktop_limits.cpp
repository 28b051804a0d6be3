#include "platform/qt/desktop_limits.h"

#include <QGuiApplication>
#include <QWindow>
#include <cstdint>
#include <cstdlib>

#include "platform/qt/x_display.h"

namespace tavlo::platform::qt {
namespace {

Owned<xcb_get_window_attributes_reply_t> Attributes(xcb_connection_t* display,
                                                    xcb_window_t window) {
  return {
      xcb_get_window_attributes_reply(display, xcb_get_window_attributes(display, window), nullptr),
      std::free};
}

}  // namespace

bool WindowsCanBePlaced() { return !QGuiApplication::platformName().startsWith("wayland"); }

bool WindowsAreManaged() {
  xcb_connection_t* const display = Display();
  if (!display) return true;
  const auto attributes = Attributes(display, Root(display));
  // Only one program can ask for this, and each window manager does.
  return !attributes || attributes->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
}

bool IsMapped(const QWindow& window) {
  xcb_connection_t* const display = Display();
  if (!display) return false;
  const auto attributes = Attributes(display, static_cast<xcb_window_t>(window.winId()));
  return attributes && attributes->map_state != XCB_MAP_STATE_UNMAPPED;
}

void StandInFront(const QWindow& window) {
  StandInFront(static_cast<std::uint32_t>(window.winId()));
}

void StandInFront(std::uint32_t window) {
  // A program that raises its own window without having been used last is refused.
  constexpr std::uint32_t kAsATaskBar = 2;
  xcb_connection_t* const display = Display();
  if (!display) return;
  AskManager(display, window, "_NET_RESTACK_WINDOW", {kAsATaskBar, XCB_NONE, XCB_STACK_MODE_ABOVE});
}

}  // namespace tavlo::platform::qt
