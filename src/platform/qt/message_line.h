#pragma once

#include "forms/controls.h"
#include "platform/qt/eliding_label.h"

namespace tavlo::platform::qt {

class Binder;

/// A box of one line that says what happened last. All of it stands under its tooltip, letter for
/// letter; a screen reader is told each new line while the box shows. A double click is the
/// control's.
class MessageLine : public ElidingLabel {
 public:
  MessageLine(forms::Text& message, Binder& binder, QWidget* parent);

  QSize sizeHint() const override { return minimumSizeHint(); }
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  forms::Text& message_;
  Binder& binder_;
};

}  // namespace tavlo::platform::qt
