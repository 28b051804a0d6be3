#include "support/typist.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "support/screen.h"

namespace tavlo::test {

using base::operator""ms;

namespace {

/// A place of the toolkit as pixels of the screen.
QPoint Pixels(QPoint place) {
  const double ratio = qApp->devicePixelRatio();
  return {qRound(place.x() * ratio), qRound(place.y() * ratio)};
}

/// Where the display has the window. The toolkit's own idea of it lags behind when a window manager
/// places a window without a frame.
QPoint OriginOf(const QWidget& window, const Hands& hands) {
  const auto handle = static_cast<xcb_window_t>(window.windowHandle()->winId());
  const std::unique_ptr<xcb_translate_coordinates_reply_t, void (*)(void*)> place(
      xcb_translate_coordinates_reply(
          hands.Connection(),
          xcb_translate_coordinates(hands.Connection(), handle, hands.Root(), 0, 0), nullptr),
      std::free);
  if (!place) return window.mapToGlobal(QPoint(0, 0));
  const double ratio = qApp->devicePixelRatio();
  return {qRound(place->dst_x / ratio), qRound(place->dst_y / ratio)};
}

}  // namespace

QWidget* Typist::Widget(const QString& name) const {
  for (QWidget* const widget : QApplication::allWidgets()) {
    if (widget->objectName() == name && widget->isVisible()) return widget;
  }
  ADD_FAILURE() << "no widget " << name.toStdString() << " shows";
  return nullptr;
}

QPoint Typist::Middle(const QString& name) const {
  const QWidget* const widget = Widget(name);
  if (!widget) return {};
  const QWidget& window = *widget->window();
  return OriginOf(window, hands_) + widget->mapTo(&window, widget->rect().center());
}

void Typist::ClickUnseen(QPoint place) {
  const QPoint pixels = Pixels(place);
  hands_.ClickAt(pixels.x(), pixels.y());
}

void Typist::KeysUnseen(std::initializer_list<std::uint32_t> symbols) { hands_.Keys(symbols); }

void Typist::Click(const QString& name) { ClickAt(Middle(name)); }

void Typist::ClickAt(QPoint place) {
  ClickUnseen(place);
  Rest();
}

void Typist::DoubleClickAt(QPoint place) {
  // A window manager that is still busy with one click may keep the next one to itself, and so they
  // come further apart than those of a hand.
  const int usual = QApplication::doubleClickInterval();
  QApplication::setDoubleClickInterval(kLongDoubleClick);
  ClickUnseen(place);
  Rest();
  ClickUnseen(place);
  Rest();
  QApplication::setDoubleClickInterval(usual);
}

void Typist::PressAt(QPoint place) {
  const QPoint pixels = Pixels(place);
  hands_.MoveTo(pixels.x(), pixels.y());
  hands_.Press();
  Rest();
}

void Typist::MoveTo(QPoint place) {
  const QPoint pixels = Pixels(place);
  hands_.MoveTo(pixels.x(), pixels.y());
  Rest();
}

void Typist::Release() {
  hands_.Release();
  Rest();
}

void Typist::Keys(std::initializer_list<std::uint32_t> symbols) {
  KeysUnseen(symbols);
  Rest();
}

void Typist::Summon(const QWidget& window) {
  hands_.BringForward(static_cast<xcb_window_t>(window.windowHandle()->winId()));
}

bool Typist::HasState(const QWidget& window, const std::string& state) const {
  constexpr std::uint32_t kMostStates = 32;
  const auto handle = static_cast<xcb_window_t>(window.windowHandle()->winId());
  const std::unique_ptr<xcb_get_property_reply_t, void (*)(void*)> reply(
      xcb_get_property_reply(
          hands_.Connection(),
          xcb_get_property(hands_.Connection(), 0, handle, hands_.Atom("_NET_WM_STATE"),
                           XCB_ATOM_ATOM, 0, kMostStates),
          nullptr),
      std::free);
  if (!reply) return false;
  const auto* const states = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  return std::find(states, states + reply->value_len, hands_.Atom(state)) !=
         states + reply->value_len;
}

bool Typist::Until(const std::function<bool()>& condition) {
  for (int look = 0; look < kManyLooks; ++look) {
    if (condition()) return true;
    loop_.Wait(20ms);
  }
  return condition();
}

void Typist::Rest(int milliseconds) {
  // What one of them does may give the next one something to do.
  constexpr int kRounds = 3;
  // A window looks so long after its last move where it has come to rest. Who rests for longer than
  // that wants to see it there.
  constexpr int kWindowSettles = 100;
  loop_.Wait(std::chrono::milliseconds(milliseconds));
  for (int round = 0; round < kRounds; ++round) {
    if (milliseconds > kWindowSettles) loop_.Wait(std::chrono::milliseconds(kWindowSettles));
    mark_.Send();
    for (int look = 0; look < kManyLooks && !mark_.CameBack(); ++look) loop_.Wait(1ms);
    hands_.AwaitManager();
  }
  loop_.Yield();
}

void Typist::Picture(const std::string& name) {
  const char* const folder = std::getenv("TAVLO_SCREENSHOTS");
  if (!folder) return;
  Rest(150);
  const QPixmap picture = QApplication::primaryScreen()->grabWindow(0);
  EXPECT_TRUE(picture.save(QString("%1/%2.png").arg(folder, QString::fromStdString(name))));
}

}  // namespace tavlo::test
