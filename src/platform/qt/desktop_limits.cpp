#include "platform/qt/desktop_limits.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>

namespace tavlo::platform::qt {

bool WindowsCanBePlaced() { return !QGuiApplication::platformName().startsWith("wayland"); }

bool WindowsAreManaged() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (!x11) return true;
  xcb_connection_t* const display = x11->connection();
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
  const std::unique_ptr<xcb_get_window_attributes_reply_t, void (*)(void*)> attributes(
      xcb_get_window_attributes_reply(display, xcb_get_window_attributes(display, root), nullptr),
      std::free);
  // Only one program can ask for this, and each window manager does.
  return !attributes || attributes->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
}

}  // namespace tavlo::platform::qt
