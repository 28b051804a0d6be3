#include "platform/qt/desktop_limits.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace tavlo::platform::qt {
namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, void (*)(void*)>;

/// The connection to the display; null where the desktop is not one of X.
xcb_connection_t* Display() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

xcb_window_t Root(xcb_connection_t* display) {
  return xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
}

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
  constexpr std::string_view kWish = "_NET_RESTACK_WINDOW";
  // A program that raises its own window without having been used last is refused.
  constexpr std::uint32_t kAsATaskBar = 2;
  xcb_connection_t* const display = Display();
  if (!display) return;
  const Owned<xcb_intern_atom_reply_t> atom(
      xcb_intern_atom_reply(display, xcb_intern_atom(display, 0, kWish.size(), kWish.data()),
                            nullptr),
      std::free);
  if (!atom) return;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = static_cast<xcb_window_t>(window.winId());
  message.type = atom->atom;
  message.data.data32[0] = kAsATaskBar;
  message.data.data32[2] = XCB_STACK_MODE_ABOVE;
  xcb_send_event(display, 0, Root(display),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(display);
}

}  // namespace tavlo::platform::qt
