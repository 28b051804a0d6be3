#pragma once

#include <QLabel>

namespace tavlo::platform::qt {

/// A label of one line that gives way: what does not fit ends in an ellipsis, and
/// stands whole under its tooltip.
class ElidingLabel : public QLabel {
 public:
  using QLabel::QLabel;

  QSize minimumSizeHint() const override;

  /// What is no wider than so many pixels, margins included, is never cut off. Default 0: the label
  /// can shrink to nothing.
  void KeepWhole(int width) { whole_ = width; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int whole_ = 0;
};

}  // namespace tavlo::platform::qt
