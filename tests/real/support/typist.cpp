#include "support/typist.h"

#include <gtest/gtest.h>
#include <xcb/xtest.h>

#include <QApplication>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace tavlo::test {

using base::operator""ms;

Typist::Typist(platform::qt::QtLoop& loop)
    : loop_(loop),
      connection_(xcb_connect(nullptr, nullptr)),
      root_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root) {}

Typist::~Typist() { xcb_disconnect(connection_); }

QWidget* Typist::Widget(const QString& name) const {
  for (QWidget* const widget : QApplication::allWidgets()) {
    if (widget->objectName() == name && widget->isVisible()) return widget;
  }
  ADD_FAILURE() << "no widget " << name.toStdString() << " shows";
  return nullptr;
}

QPoint Typist::Middle(const QString& name) const {
  const QWidget* const widget = Widget(name);
  return widget ? widget->mapToGlobal(widget->rect().center()) : QPoint();
}

void Typist::Pointer(QPoint place) {
  const double ratio = qApp->devicePixelRatio();
  const QPoint pixels(qRound(place.x() * ratio), qRound(place.y() * ratio));
  xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root_,
                      static_cast<std::int16_t>(pixels.x()), static_cast<std::int16_t>(pixels.y()),
                      0);
}

void Typist::Button(std::uint8_t type) {
  xcb_test_fake_input(connection_, type, 1, XCB_CURRENT_TIME, root_, 0, 0, 0);
}

void Typist::Key(std::uint8_t type, std::uint32_t symbol) {
  xcb_test_fake_input(connection_, type, KeyCode(symbol), XCB_CURRENT_TIME, root_, 0, 0, 0);
}

std::uint8_t Typist::KeyCode(std::uint32_t symbol) const {
  const xcb_setup_t* const setup = xcb_get_setup(connection_);
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, void (*)(void*)> mapping(
      xcb_get_keyboard_mapping_reply(
          connection_, xcb_get_keyboard_mapping(connection_, setup->min_keycode, count), nullptr),
      std::free);
  const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
  for (int code = 0; code < count; ++code) {
    if (symbols[code * mapping->keysyms_per_keycode] == symbol) {
      return static_cast<std::uint8_t>(setup->min_keycode + code);
    }
  }
  ADD_FAILURE() << "no key gives the symbol " << symbol;
  return 0;
}

void Typist::Flush() {
  // The answer to a question comes after everything that was asked before it has been done.
  std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void Typist::ClickUnseen(QPoint place) {
  Pointer(place);
  Button(XCB_BUTTON_PRESS);
  Button(XCB_BUTTON_RELEASE);
  Flush();
}

void Typist::KeysUnseen(std::initializer_list<std::uint32_t> symbols) {
  for (const std::uint32_t symbol : symbols) Key(XCB_KEY_PRESS, symbol);
  const std::vector<std::uint32_t> held(symbols);
  for (auto symbol = held.rbegin(); symbol != held.rend(); ++symbol) Key(XCB_KEY_RELEASE, *symbol);
  Flush();
}

void Typist::Click(const QString& name) { ClickAt(Middle(name)); }

void Typist::ClickAt(QPoint place) {
  ClickUnseen(place);
  Rest();
}

void Typist::DoubleClickAt(QPoint place) {
  ClickUnseen(place);
  ClickUnseen(place);
  Rest();
}

void Typist::PressAt(QPoint place) {
  Pointer(place);
  Button(XCB_BUTTON_PRESS);
  Flush();
  Rest();
}

void Typist::MoveTo(QPoint place) {
  Pointer(place);
  Flush();
  Rest();
}

void Typist::Release() {
  Button(XCB_BUTTON_RELEASE);
  Flush();
  Rest();
}

void Typist::Keys(std::initializer_list<std::uint32_t> symbols) {
  KeysUnseen(symbols);
  Rest();
}

xcb_atom_t Typist::Atom(const std::string& name) const {
  const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void*)> reply(
      xcb_intern_atom_reply(
          connection_,
          xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
          nullptr),
      std::free);
  return reply->atom;
}

void Typist::Summon(const QWidget& window) {
  xcb_client_message_event_t wish{};
  wish.response_type = XCB_CLIENT_MESSAGE;
  wish.format = 32;
  wish.window = static_cast<xcb_window_t>(window.windowHandle()->winId());
  wish.type = Atom("_NET_ACTIVE_WINDOW");
  wish.data.data32[0] = 2;
  xcb_send_event(connection_, 0, root_,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&wish));
  Flush();
}

bool Typist::HasState(const QWidget& window, const std::string& state) const {
  constexpr std::uint32_t kMostStates = 32;
  const auto handle = static_cast<xcb_window_t>(window.windowHandle()->winId());
  const std::unique_ptr<xcb_get_property_reply_t, void (*)(void*)> reply(
      xcb_get_property_reply(connection_,
                             xcb_get_property(connection_, 0, handle, Atom("_NET_WM_STATE"),
                                              XCB_ATOM_ATOM, 0, kMostStates),
                             nullptr),
      std::free);
  if (!reply) return false;
  const auto* const states = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  return std::find(states, states + reply->value_len, Atom(state)) != states + reply->value_len;
}

bool Typist::Until(const std::function<bool()>& condition) {
  for (int look = 0; look < 150; ++look) {
    if (condition()) return true;
    loop_.Wait(20ms);
  }
  return condition();
}

void Typist::Rest(int milliseconds) { loop_.Wait(std::chrono::milliseconds(milliseconds)); }

void Typist::Picture(const std::string& name) {
  const char* const folder = std::getenv("TAVLO_SCREENSHOTS");
  if (!folder) return;
  Rest(150);
  const QPixmap picture = QApplication::primaryScreen()->grabWindow(0);
  EXPECT_TRUE(picture.save(QString("%1/%2.png").arg(folder, QString::fromStdString(name))));
}

}  // namespace tavlo::test
