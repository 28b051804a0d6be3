#include "support/display_mark.h"

#include <QGuiApplication>

namespace tavlo::test {
namespace {

constexpr std::uint8_t kSentByAClient = 0x80;

}  // namespace

DisplayMark::DisplayMark() {
  const auto* const toolkit = qApp->nativeInterface<QNativeInterface::QX11Application>();
  if (!toolkit) return;
  display_ = toolkit->connection();
  const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(display_)).data;
  window_ = xcb_generate_id(display_);
  xcb_create_window(display_, XCB_COPY_FROM_PARENT, window_, screen.root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  qApp->installNativeEventFilter(this);
}

DisplayMark::~DisplayMark() {
  if (!display_) return;
  qApp->removeNativeEventFilter(this);
  xcb_destroy_window(display_, window_);
}

void DisplayMark::Send() {
  if (!display_) return;
  ++sent_;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window_;
  message.type = XCB_ATOM_NOTICE;
  // Without a mask it goes to whoever made the window.
  xcb_send_event(display_, 0, window_, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(display_);
}

bool DisplayMark::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  if (type != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_client_message_event_t*>(message);
  if ((event->response_type & ~kSentByAClient) != XCB_CLIENT_MESSAGE) return false;
  if (event->window != window_) return false;
  ++returned_;
  return true;
}

}  // namespace tavlo::test
