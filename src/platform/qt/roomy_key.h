#pragma once

#include <QPushButton>
#include <QStringList>
#include <algorithm>

namespace tavlo::platform::qt {

/// A key off the deck that keeps room around its caption whatever the size of the letters.
class RoomyKey : public QPushButton {
 public:
  explicit RoomyKey(QWidget* parent) : QPushButton(parent) { setAutoDefault(false); }

  /// The key is as wide as its widest caption, so that nothing beside it moves when it changes.
  void KeepRoomFor(const QStringList& captions) { captions_ = captions; }

  QSize sizeHint() const override {
    int letters = fontMetrics().horizontalAdvance(text().remove('&'));
    for (const QString& caption : captions_) {
      letters = std::max(letters, fontMetrics().horizontalAdvance(caption));
    }
    return QPushButton::sizeHint().expandedTo({letters + kPadding, 0});
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  /// Both sides of the caption together; some styles leave next to nothing.
  static constexpr int kPadding = 28;

  QStringList captions_;
};

}  // namespace tavlo::platform::qt
