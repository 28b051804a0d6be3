#pragma once

#include <QPoint>
#include <QString>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>

#include "platform/qt/qt_loop.h"
#include "support/display_mark.h"
#include "support/hands.h"

class QWidget;

namespace tavlo::test {

/// A pair of hands at the real keyboard and mouse of the display: what they do reaches the windows
/// the way it does on a desk. Widgets are found by their control's name.
class Typist {
 public:
  explicit Typist(platform::qt::QtLoop& loop) : loop_(loop) {}

  /// The visible widget of that name; fails the test and returns null when there is none.
  QWidget* Widget(const QString& name) const;
  /// The middle of a widget on the screen.
  QPoint Middle(const QString& name) const;

  void Click(const QString& name);
  void ClickAt(QPoint place);
  void DoubleClickAt(QPoint place);
  void PressAt(QPoint place);
  void MoveTo(QPoint place);
  void Release();
  /// Presses the keys together (X key symbols, modifiers first) and lets them go.
  void Keys(std::initializer_list<std::uint32_t> symbols);

  /// The same click, without turning the loop: for hands that move while a rule runs.
  void ClickUnseen(QPoint place);
  void KeysUnseen(std::initializer_list<std::uint32_t> symbols);

  /// Asks the window manager for the window, as a click in a task bar does.
  void Summon(const QWidget& window);
  /// True while the window manager has the window in that state ("_NET_WM_STATE_ABOVE", ...).
  bool HasState(const QWidget& window, const std::string& state) const;

  /// Turns the loop until the condition holds; false when it never did.
  bool Until(const std::function<bool()>& condition);
  /// Turns the loop for so long, and then until display, window manager and toolkit have each dealt
  /// with all that the others had asked of them.
  void Rest(int milliseconds = 80);

  /// Saves a picture of the whole screen in the folder that TAVLO_SCREENSHOTS names, or nowhere.
  void Picture(const std::string& name);

 private:
  platform::qt::QtLoop& loop_;
  Hands hands_;
  DisplayMark mark_;
};

}  // namespace tavlo::test
