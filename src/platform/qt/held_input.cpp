#include "platform/qt/held_input.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>

namespace tavlo::platform::qt {

void ReleaseHeldInput() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (!x11) return;
  for (const QWindow* const window : QGuiApplication::topLevelWindows()) {
    if (!window->handle()) continue;
    // A notice about a property that no window has: the toolkit reads it and goes on.
    xcb_property_notify_event_t nothing{};
    nothing.response_type = XCB_PROPERTY_NOTIFY;
    nothing.window = static_cast<xcb_window_t>(window->winId());
    xcb_send_event(x11->connection(), 0, nothing.window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&nothing));
    xcb_flush(x11->connection());
    return;
  }
}

}  // namespace tavlo::platform::qt
