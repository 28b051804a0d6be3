#include "platform/qt/icons.h"

#include <QPainter>
#include <QPixmap>
#include <QTransform>

#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

/// A triangle that points right, with its left edge at `left` and its tip at `right`.
QPainterPath Arrow(double left, double right) {
  QPainterPath path;
  path.moveTo(left, 0.18);
  path.lineTo(right, 0.5);
  path.lineTo(left, 0.82);
  path.closeSubpath();
  return path;
}

QPainterPath Bar(double left) {
  QPainterPath path;
  path.addRect(left, 0.18, 0.12, 0.64);
  return path;
}

QPainterPath RightwardGlyph(Glyph glyph) {
  QPainterPath path;
  switch (glyph) {
    case Glyph::Play:
      return Arrow(0.18, 0.86);
    case Glyph::Stop:
      path.addRoundedRect(0.17, 0.17, 0.66, 0.66, 0.06, 0.06);
      return path;
    case Glyph::Rewind:
    case Glyph::Forward:
      return Arrow(0.06, 0.5) + Arrow(0.5, 0.94);
    case Glyph::SkipBegin:
    case Glyph::SkipEnd:
      return Arrow(0.02, 0.43) + Arrow(0.43, 0.84) + Bar(0.85);
    case Glyph::None:
      break;
  }
  return path;
}

QPixmap SignPixmap(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  PaintSign(painter, QRectF(0, 0, size, size));
  return pixmap;
}

}  // namespace

QPainterPath GlyphPath(Glyph glyph, double size) {
  const bool leftward = glyph == Glyph::Rewind || glyph == Glyph::SkipBegin;
  const QTransform turn =
      leftward ? QTransform(-size, 0, 0, size, size, 0) : QTransform::fromScale(size, size);
  return turn.map(RightwardGlyph(glyph));
}

void PaintSign(QPainter& painter, const QRectF& box) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(box.topLeft());
  painter.scale(box.width(), box.height());
  painter.setPen(Qt::NoPen);
  QLinearGradient face(0, 0, 0, 1);
  face.setColorAt(0, theme::kDeckTop.lighter(120));
  face.setColorAt(1, theme::kDeckBottom);
  painter.setBrush(face);
  painter.drawRoundedRect(QRectF(0.03, 0.03, 0.94, 0.94), 0.2, 0.2);
  painter.setBrush(theme::kAmber);
  painter.drawRoundedRect(QRectF(0.18, 0.18, 0.64, 0.11), 0.055, 0.055);
  painter.setBrush(theme::kTeal);
  painter.drawEllipse(QPointF(0.5, 0.6), 0.25, 0.25);
  painter.setBrush(theme::kDeckBottom);
  painter.translate(0.37, 0.45);
  painter.drawPath(GlyphPath(Glyph::Play, 0.3));
  painter.restore();
}

QIcon ApplicationIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128}) icon.addPixmap(SignPixmap(size));
  return icon;
}

}  // namespace tavlo::platform::qt
