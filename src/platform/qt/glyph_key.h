#pragma once

#include <QPushButton>

#include "forms/controls.h"
#include "platform/qt/icons.h"

namespace tavlo::platform::qt {

class Binder;

/// A key off the deck that shows a drawing in place of its caption, as large as the desktop's
/// letters ask for.
class GlyphKey : public QPushButton {
 public:
  GlyphKey(Glyph glyph, forms::Command& command, Binder& binder, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  int GlyphSize() const;

  const Glyph glyph_;
};

}  // namespace tavlo::platform::qt
