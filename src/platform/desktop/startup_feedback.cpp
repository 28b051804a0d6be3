#include "platform/desktop/startup_feedback.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/qt/x_display.h"

namespace tavlo::platform::desktop {
namespace {

std::string IdOfThisStart() {
  const char* const id = std::getenv("DESKTOP_STARTUP_ID");
  return id ? id : "";
}

/// The word as the agreement of desktops has it: in quotes, and what would end them is escaped.
std::string RemovalOf(const std::string& id) {
  std::string message = "remove: ID=\"";
  for (const char next : id) {
    if (next == '"' || next == '\\') message += '\\';
    message += next;
  }
  return message + '"';
}

/// Text to all who listen at the root, in pieces, of which the last has the zero byte at its end.
void Broadcast(xcb_connection_t* display, const std::string& text) {
  const xcb_window_t root = qt::Root(display);
  const xcb_window_t sender = xcb_generate_id(display);
  xcb_create_window(display, XCB_COPY_FROM_PARENT, sender, root, -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 8;
  message.window = sender;
  message.type = qt::Atom(display, "_NET_STARTUP_INFO_BEGIN");
  for (std::string_view left(text.c_str(), text.size() + 1); !left.empty();) {
    const std::string_view piece = left.substr(0, sizeof message.data.data8);
    std::ranges::fill(message.data.data8, std::uint8_t{0});
    std::ranges::copy(piece, message.data.data8);
    xcb_send_event(display, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                   reinterpret_cast<const char*>(&message));
    message.type = qt::Atom(display, "_NET_STARTUP_INFO");
    left.remove_prefix(piece.size());
  }
  xcb_destroy_window(display, sender);
  xcb_flush(display);
}

}  // namespace

StartupFeedback::StartupFeedback() : id_(IdOfThisStart()) {}

void StartupFeedback::End() const {
  xcb_connection_t* const display = qt::Display();
  if (display && !id_.empty()) Broadcast(display, RemovalOf(id_));
}

}  // namespace tavlo::platform::desktop
