#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "forms/controls.h"

namespace tavlo::platform::qt {

class Binder;

/// Tells a screen reader some words whenever they change. It is a notification of no size: its name
/// is the words, and with each change it counts as newly shown, which is when screen readers speak
/// a notification. What passes within a blink, as while a command is under way, is not said, and
/// neither is that there are no words any more.
class StateSpeaker : public QWidget {
 public:
  using Words = std::function<std::string()>;

  /// The words depend on these controls and no others.
  StateSpeaker(Words words, const std::vector<const forms::Control*>& telling, Binder& binder,
               QWidget* window);

 private:
  void Look();
  void Say();

  const Words wordsNow_;
  QTimer stands_;
  QString words_;
};

}  // namespace tavlo::platform::qt
