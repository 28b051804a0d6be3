#include "platform/qt/icons.h"

#include <QPainter>
#include <QSvgRenderer>

#include "platform/qt/kept_pixmap.h"

namespace tavlo::platform::qt {
namespace {

QString FileOf(Glyph glyph) {
  switch (glyph) {
    case Glyph::SkipBegin:
      return "skip-begin";
    case Glyph::Rewind:
      return "rewind";
    case Glyph::Play:
      return "play";
    case Glyph::Stop:
      return "stop";
    case Glyph::Forward:
      return "forward";
    case Glyph::SkipEnd:
      return "skip-end";
    case Glyph::AllToTheRight:
      return "all-to-the-right";
    case Glyph::AllToTheLeft:
      return "all-to-the-left";
    case Glyph::File:
      return "file";
    case Glyph::Fetching:
      return "fetching";
    case Glyph::None:
      break;
  }
  return {};
}

QString FileOf(base::Icon icon) {
  switch (icon) {
    case base::Icon::Information:
      return "box-information";
    case base::Icon::Question:
      return "box-question";
    case base::Icon::Warning:
      return "box-warning";
    case base::Icon::Critical:
      return "box-critical";
    case base::Icon::None:
      break;
  }
  return {};
}

QString FileOf(Brand brand) { return brand == Brand::Brisel ? "brisel" : "sorel"; }

constexpr const char* kSign = "tavlodeck";

QString PathOf(const QString& file) { return ":/icons/" + file + ".svg"; }
QString PathOf(Brand brand) { return ":/brands/" + FileOf(brand) + ".svg"; }

QPixmap DrawingPixmap(QSvgRenderer& drawing, QSize size, double ratio) {
  QPixmap pixmap(size * ratio);
  pixmap.fill(Qt::transparent);
  if (!drawing.isValid()) return pixmap;
  QPainter painter(&pixmap);
  drawing.render(&painter, pixmap.rect());
  painter.end();
  pixmap.setDevicePixelRatio(ratio);
  return pixmap;
}

QPixmap DrawingPixmap(const QString& file, int size, double ratio) {
  QSvgRenderer drawing;
  if (!file.isEmpty()) drawing.load(PathOf(file));
  return DrawingPixmap(drawing, QSize(size, size), ratio);
}

}  // namespace

QPixmap GlyphPixmap(Glyph glyph, int size, const QColor& ink, double ratio) {
  const QString file = FileOf(glyph);
  const QString name =
      QStringLiteral("glyph %1 %2 %3 %4").arg(file).arg(size).arg(ink.name()).arg(ratio);
  return KeptPixmap(name, [&] {
    QPixmap pixmap = DrawingPixmap(file, size, ratio);
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(0, 0, size, size, ink);
    return pixmap;
  });
}

QSize BrandSize(Brand brand, int height) {
  const QSizeF drawn = QSvgRenderer(PathOf(brand)).defaultSize();
  if (drawn.isEmpty()) return {};
  return {qRound(drawn.width() * height / drawn.height()), height};
}

QPixmap BrandPixmap(Brand brand, int height, double ratio) {
  const QString name = QStringLiteral("brand %1 %2 %3").arg(FileOf(brand)).arg(height).arg(ratio);
  return KeptPixmap(name, [&] {
    QSvgRenderer drawing(PathOf(brand));
    return DrawingPixmap(drawing, BrandSize(brand, height), ratio);
  });
}

QPixmap BoxSign(base::Icon icon, int size, double ratio) {
  return DrawingPixmap(FileOf(icon), size, ratio);
}

void PaintSign(QPainter& painter, const QRectF& box) {
  QSvgRenderer(PathOf(kSign)).render(&painter, box);
}

QIcon ApplicationIcon() {
  QIcon icon;
  QSvgRenderer drawing(PathOf(kSign));
  for (const int size : {16, 24, 32, 48, 64, 128}) {
    icon.addPixmap(DrawingPixmap(drawing, QSize(size, size), 1));
  }
  return icon;
}

}  // namespace tavlo::platform::qt
