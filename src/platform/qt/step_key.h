#pragma once

#include <QPushButton>

#include "platform/qt/icons.h"

namespace tavlo::platform::qt {

/// A key off the deck that shows a glyph in place of its caption, which is a sign like ">".
class StepKey : public QPushButton {
 public:
  enum class Direction { AsDrawn, Mirrored };

  StepKey(Glyph glyph, Direction direction, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int GlyphSize() const;

  const Glyph glyph_;
  const Direction direction_;
};

}  // namespace tavlo::platform::qt
