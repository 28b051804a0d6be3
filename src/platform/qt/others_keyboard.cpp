#include "platform/qt/others_keyboard.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cstdlib>

#include "platform/qt/desktop_limits.h"
#include "platform/qt/x_display.h"

namespace tavlo::platform::qt {
namespace {

constexpr const char* kActiveWindow = "_NET_ACTIVE_WINDOW";
constexpr std::uint8_t kSentByAClient = 0x80;

xcb_window_t ActiveWindow(xcb_connection_t* display, xcb_atom_t property) {
  const Owned<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(
          display, xcb_get_property(display, 0, Root(display), property, XCB_ATOM_WINDOW, 0, 1),
          nullptr),
      std::free);
  if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(xcb_window_t)) return XCB_NONE;
  return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

/// The window that has the keyboard where no manager gives it; nothing for the screen itself.
xcb_window_t WindowInFocus(xcb_connection_t* display) {
  const Owned<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(display, xcb_get_input_focus(display), nullptr), std::free);
  const bool any = reply && reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT;
  return any && reply->focus != Root(display) ? reply->focus : XCB_NONE;
}

bool Is(const QWindow* window, xcb_window_t id) {
  return window && window->handle() && window->winId() == id;
}

bool IsOurs(xcb_window_t id) {
  return std::ranges::any_of(QGuiApplication::allWindows(),
                             [id](const QWindow* window) { return Is(window, id); });
}

}  // namespace

OthersKeyboard::OthersKeyboard() {
  xcb_connection_t* const display = Display();
  if (!display) return;
  change_ = Atom(display, kActiveWindow);
  const bool managed = WindowsAreManaged();
  const xcb_window_t now = managed ? ActiveWindow(display, change_) : WindowInFocus(display);
  if (!IsOurs(now)) window_ = now;
  qGuiApp->installNativeEventFilter(this);
}

OthersKeyboard::~OthersKeyboard() {
  if (qGuiApp) qGuiApp->removeNativeEventFilter(this);
}

void OthersKeyboard::Look() {
  // When the box has closed the manager may hand the keyboard to the window behind it.
  if (!box_ || !box_->isVisible()) return;
  const xcb_window_t now = ActiveWindow(Display(), change_);
  if (now != XCB_NONE && !Is(box_->windowHandle(), now)) window_ = IsOurs(now) ? XCB_NONE : now;
}

void OthersKeyboard::GiveBack() {
  box_ = nullptr;
  xcb_connection_t* const display = Display();
  if (!display || !IsTheirs()) return;
  if (WindowsAreManaged()) {
    // A program that asks for another one's window without having been used last is refused.
    constexpr std::uint32_t kAsATaskBar = 2;
    AskManager(display, window_, kActiveWindow, {kAsATaskBar, XCB_CURRENT_TIME, XCB_NONE});
  } else {
    xcb_set_input_focus(display, XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
    xcb_flush(display);
  }
}

bool OthersKeyboard::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto* const event = static_cast<const xcb_property_notify_event_t*>(message);
  if ((event->response_type & ~kSentByAClient) != XCB_PROPERTY_NOTIFY) return false;
  if (event->atom == change_ && event->window == Root(Display())) Look();
  return false;
}

}  // namespace tavlo::platform::qt
