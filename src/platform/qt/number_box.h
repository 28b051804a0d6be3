#pragma once

#include <QLineEdit>

namespace tavlo::platform::qt {

/// A box just wide enough for the number of a setting, whatever the size of the letters.
class NumberBox : public QLineEdit {
 public:
  explicit NumberBox(QWidget* parent) : QLineEdit(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  }

  QSize sizeHint() const override {
    return {fontMetrics().horizontalAdvance("0000") + kSides, QLineEdit::sizeHint().height()};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  static constexpr int kSides = 18;  ///< Room for the frame at both sides together.
};

}  // namespace tavlo::platform::qt
