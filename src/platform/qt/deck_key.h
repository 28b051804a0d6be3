#pragma once

#include <QPushButton>

#include "platform/qt/icons.h"

namespace tavlo::platform::qt {

class DeckScale;

/// A key of the deck: a drawn glyph, a caption, or both.
class DeckKey : public QPushButton {
 public:
  enum class Tone { Quiet, Teal, Amber };

  /// The scale, which must outlive the key, sizes what is painted; size and letters are the
  /// owner's to set.
  DeckKey(Glyph glyph, const DeckScale& scale, QWidget* parent);

  void SetLook(Glyph glyph, Tone tone);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor InkColour() const;
  void PaintFace(QPainter& painter) const;
  void PaintRing(QPainter& painter) const;

  const DeckScale& scale_;
  Glyph glyph_;
  Tone tone_ = Tone::Quiet;
};

}  // namespace tavlo::platform::qt
