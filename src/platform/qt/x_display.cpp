#include "platform/qt/x_display.h"

#include <QGuiApplication>
#include <algorithm>
#include <cstdlib>

namespace tavlo::platform::qt {

xcb_connection_t* Display() {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

xcb_window_t Root(xcb_connection_t* display) {
  return xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
}

xcb_atom_t Atom(xcb_connection_t* display, std::string_view name) {
  const auto length = static_cast<std::uint16_t>(name.size());
  const Owned<xcb_intern_atom_reply_t> atom(
      xcb_intern_atom_reply(display, xcb_intern_atom(display, 0, length, name.data()), nullptr),
      std::free);
  return atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void AskManager(xcb_connection_t* display, xcb_window_t window, std::string_view wish,
                const std::array<std::uint32_t, 3>& data) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = Atom(display, wish);
  if (message.type == XCB_ATOM_NONE) return;
  std::ranges::copy(data, message.data.data32);
  xcb_send_event(display, 0, Root(display),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(display);
}

}  // namespace tavlo::platform::qt
