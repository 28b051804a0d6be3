#pragma once

#include <QWidget>

namespace tavlo::platform::qt {

/// The widget of no size that has the keyboard while no control has it. It stands in the order of
/// Tab behind the control that gave the keyboard away, so that Tab goes on from there and Shift+Tab
/// returns to it.
class FocusKeeper : public QWidget {
 public:
  /// Takes the keyboard at once: nothing holds it until somebody takes it.
  explicit FocusKeeper(QWidget* window);

 private:
  void StandBehind(QWidget* before);
};

}  // namespace tavlo::platform::qt
