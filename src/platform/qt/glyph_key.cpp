#include "platform/qt/glyph_key.h"

#include <QEvent>
#include <QPainter>

#include "forms/accessible_name.h"
#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/texts.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kBesideGlyph = 14;
constexpr int kAboveGlyph = 7;

}  // namespace

GlyphKey::GlyphKey(Glyph glyph, forms::Command& command, Binder& binder, QWidget* parent)
    : QPushButton(parent), glyph_(glyph) {
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, [&command, &binder] {
    binder.ByHand(command, [&command] { command.Press(forms::By::Hand); });
  });
  binder.Bind(command, *this,
              [this, &command] { SetHeardName(*this, ToOneLine(forms::AccessibleName(command))); });
}

int GlyphKey::GlyphSize() const { return fontMetrics().height(); }

QSize GlyphKey::sizeHint() const {
  return {GlyphSize() + 2 * kBesideGlyph, GlyphSize() + 2 * kAboveGlyph};
}

void GlyphKey::changeEvent(QEvent* event) {
  QPushButton::changeEvent(event);
  if (event->type() == QEvent::FontChange) updateGeometry();
}

void GlyphKey::paintEvent(QPaintEvent* event) {
  QPushButton::paintEvent(event);
  const QPixmap drawing =
      GlyphPixmap(glyph_, GlyphSize(), palette().color(QPalette::ButtonText), devicePixelRatioF());
  QPainter(this).drawPixmap((width() - GlyphSize()) / 2, (height() - GlyphSize()) / 2, drawing);
}

}  // namespace tavlo::platform::qt
