#pragma once

#include <QPointer>
#include <QWidget>

namespace tavlo::platform::qt {

/// The widget of no size that has the keyboard while no control has it. Tab goes on from the
/// control that gave the keyboard away, and Shift+Tab returns to it.
class FocusKeeper : public QWidget {
 public:
  /// Takes the keyboard at once: nothing holds it until somebody takes it.
  explicit FocusKeeper(QWidget* window);

  /// Has the keeper of its window take the keyboard from a widget, or from what stands on it. To be
  /// called before it is disabled or hidden: the toolkit would hand the keyboard to the next in
  /// line, and from there on, and a screen reader would name each of them.
  static void TakeFrom(const QWidget& widget);

 protected:
  bool focusNextPrevChild(bool next) override;

 private:
  QPointer<QWidget> giver_;
};

}  // namespace tavlo::platform::qt
