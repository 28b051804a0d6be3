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

 protected:
  bool focusNextPrevChild(bool next) override;

 private:
  QPointer<QWidget> giver_;
};

}  // namespace tavlo::platform::qt
