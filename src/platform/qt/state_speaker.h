#pragma once

#include <QTimer>
#include <QWidget>

#include "forms/main_form.h"

namespace tavlo::platform::qt {

class Binder;

/// Tells a screen reader what the deck does whenever that changes. It is a notification of no size:
/// its name is the words, and with each change it counts as newly shown, which is when screen
/// readers speak a notification. What passes within a blink, as while a command is under way, is
/// not said.
class StateSpeaker : public QWidget {
 public:
  StateSpeaker(const forms::MainForm& form, Binder& binder, QWidget* window);

 private:
  void Look();
  void Say();

  const forms::MainForm& form_;
  QTimer stands_;
  QString words_;
};

}  // namespace tavlo::platform::qt
