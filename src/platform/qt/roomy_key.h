#pragma once

#include <QPushButton>

namespace tavlo::platform::qt {

/// A key off the deck that keeps room around its caption whatever the size of the letters.
class RoomyKey : public QPushButton {
 public:
  explicit RoomyKey(QWidget* parent) : QPushButton(parent) { setAutoDefault(false); }

  QSize sizeHint() const override {
    const QString caption = text().remove('&');
    const int width = fontMetrics().horizontalAdvance(caption) + kPadding;
    return QPushButton::sizeHint().expandedTo({width, 0});
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  /// Both sides of the caption together; some styles leave next to nothing.
  static constexpr int kPadding = 28;
};

}  // namespace tavlo::platform::qt
