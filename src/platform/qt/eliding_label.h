#pragma once

#include <QLabel>

namespace tavlo::platform::qt {

/// A label of one line that gives way: what does not fit ends in an ellipsis.
class ElidingLabel : public QLabel {
 public:
  using QLabel::QLabel;

  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tavlo::platform::qt
