#pragma once

#include <QWidget>
#include <functional>
#include <string>

class QColor;
class QKeyEvent;
class QPainter;

namespace tavlo::platform::qt {

/// A box that takes the next key, with its modifiers, as the key that is meant: nothing can be
/// typed or pasted into it. Delete and Backspace clear it; Tab, Shift+Tab and Escape do in the
/// window what they always do.
class KeyBox : public QWidget {
 public:
  explicit KeyBox(QWidget* parent);

  /// A key was pressed, as the text of a `remote::KeyTrigger`; an empty one clears the box.
  std::function<void(const std::string& trigger)> OnKey = [](const std::string&) {};

  /// The box has the keyboard, or has it no more.
  std::function<void(bool has)> OnKeyboard = [](bool) {};

  /// The key in a person's words; empty when there is none.
  void ShowKey(const QString& words);
  const QString& Key() const { return key_; }
  /// Whether the key is down now, in whatever window.
  void Light(bool down);

  /// What stands in the box: the key, what is held so far, or what to do.
  QString Words() const;
  QRect WordsPlace() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowHeld(const QString& held);
  void PaintRim(QPainter& painter, const QColor& rim, qreal width, const QColor& ground);
  bool ShowTooltip(const QPoint& place);

  QString key_;
  QString held_;  ///< Modifiers that are down and wait for their key, in words.
  bool down_ = false;
};

}  // namespace tavlo::platform::qt
