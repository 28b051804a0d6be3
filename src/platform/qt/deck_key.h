#pragma once

#include <QPushButton>

#include "platform/qt/icons.h"

namespace tavlo::platform::qt {

/// A key of the deck: a drawn glyph, a caption, or both.
class DeckKey : public QPushButton {
 public:
  enum class Tone { Quiet, Teal, Amber };

  DeckKey(Glyph glyph, QSize size, QWidget* parent = nullptr);

  void SetLook(Glyph glyph, Tone tone);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor InkColour() const;
  void PaintFace(QPainter& painter) const;
  void PaintRing(QPainter& painter) const;

  Glyph glyph_;
  Tone tone_ = Tone::Quiet;
};

}  // namespace tavlo::platform::qt
