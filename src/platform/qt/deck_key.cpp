#include "platform/qt/deck_key.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QShortcutEvent>

#include "platform/qt/deck_scale.h"
#include "platform/qt/kept_pixmap.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr double kRound = 6;
constexpr int kGapBesideGlyph = 8;  ///< To its caption.
constexpr int kCaptionedGlyph = 14;
constexpr int kLoneGlyph = 16;
constexpr double kRingWidth = 2;

QColor FaceColour(DeckKey::Tone tone) {
  switch (tone) {
    case DeckKey::Tone::Teal:
      return theme::kTeal;
    case DeckKey::Tone::Amber:
      return theme::kAmberKey;
    case DeckKey::Tone::Quiet:
      break;
  }
  return theme::kQuietKey;
}

QRectF Inside(const QRectF& box, double inset) {
  return box.adjusted(inset, inset, -inset, -inset);
}

/// What the face of a key that is in use depends on.
struct FaceLook {
  QSize size;
  double round;
  QColor colour;
  bool down;
};

void DrawFace(QPainter& painter, const FaceLook& look) {
  const QRectF edge = Inside(QRectF(QPointF(), look.size), 0.5);
  QLinearGradient shade(0, 0, 0, look.size.height());
  shade.setColorAt(0, look.colour.lighter(look.down ? 96 : 114));
  shade.setColorAt(1, look.colour.darker(look.down ? 104 : 118));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(shade);
  painter.setPen(QPen(theme::kKeyEdge, 1));
  painter.drawRoundedRect(edge, look.round, look.round);
  if (!look.down) {
    painter.setPen(QPen(theme::kKeyShine, 1));
    painter.drawLine(QPointF(look.round, 1.5), QPointF(look.size.width() - look.round, 1.5));
  }
}

/// Faces are kept: the toolkit draws a shade with several threads and waits for them, and on a busy
/// machine that held a command which changes many keys for a fortieth of a second.
QPixmap FacePixmap(const FaceLook& look, double ratio) {
  const QString name = QStringLiteral("key %1x%2 %3 %4 %5 %6")
                           .arg(look.size.width())
                           .arg(look.size.height())
                           .arg(look.round)
                           .arg(look.colour.name())
                           .arg(look.down)
                           .arg(ratio);
  return KeptPixmap(name, [&] {
    QPixmap face(look.size * ratio);
    face.setDevicePixelRatio(ratio);
    face.fill(Qt::transparent);
    QPainter painter(&face);
    DrawFace(painter, look);
    return face;
  });
}

}  // namespace

DeckKey::DeckKey(Glyph glyph, const DeckScale& scale, QWidget* parent)
    : QPushButton(parent), scale_(scale), glyph_(glyph) {
  setAttribute(Qt::WA_Hover);
}

void DeckKey::SetLook(Glyph glyph, Tone tone) {
  if (glyph_ == glyph && tone_ == tone) return;
  glyph_ = glyph;
  tone_ = tone;
  update();
}

QColor DeckKey::InkColour() const {
  if (!isEnabled()) return theme::kDisabledText;
  return tone_ == Tone::Quiet ? theme::kText : theme::kOnBright;
}

void DeckKey::PaintFace(QPainter& painter) const {
  const double round = scale_(kRound);
  if (!isEnabled()) {
    // The fascia shines through a key that has nothing to do.
    painter.setBrush(theme::kDisabledKey);
    painter.setPen(QPen(theme::kDisabledKey, 1));
    painter.drawRoundedRect(Inside(rect(), 0.5), round, round);
    return;
  }
  QColor face = FaceColour(tone_);
  if (isDown()) {
    face = face.darker(128);
  } else if (underMouse()) {
    face = face.lighter(114);
  }
  painter.drawPixmap(0, 0, FacePixmap({size(), round, face, isDown()}, devicePixelRatioF()));
}

void DeckKey::PaintRing(QPainter& painter) const {
  // White beside black stands out from every face and every key.
  painter.setBrush(Qt::NoBrush);
  const double round = scale_(kRound);
  const double width = scale_(kRingWidth);
  painter.setPen(QPen(theme::kKeyEdge, width));
  painter.drawRoundedRect(Inside(rect(), 1.5 * width), round - width, round - width);
  painter.setPen(QPen(Qt::white, width));
  painter.drawRoundedRect(Inside(rect(), width / 2), round, round);
}

bool DeckKey::event(QEvent* event) {
  // The toolkit shows a key pressed for a tenth of a second before it acts, which is too late for
  // a hand that stops the sound.
  if (event->type() == QEvent::Shortcut && !static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
    click();
    return true;
  }
  return QPushButton::event(event);
}

void DeckKey::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  PaintFace(painter);
  if (hasFocus()) PaintRing(painter);
  if (isDown()) painter.translate(0, 1);

  const QFontMetrics metrics(font());
  const int captionWidth = metrics.size(Qt::TextShowMnemonic, text()).width();
  // A narrow key has room for its glyph alone; its caption still reaches it by the keyboard.
  const bool captionFits =
      captionWidth + scale_(kCaptionedGlyph) + scale_(kGapBesideGlyph) <= width();
  const bool captioned = !text().isEmpty() && (glyph_ == Glyph::None || captionFits);
  const int drawn = glyph_ == Glyph::None ? 0 : captioned ? kCaptionedGlyph : kLoneGlyph;
  const int glyphSize = scale_(drawn);
  const int gap = glyphSize > 0 && captioned ? scale_(kGapBesideGlyph) : 0;
  const int left = (width() - glyphSize - gap - (captioned ? captionWidth : 0)) / 2;
  if (glyphSize > 0) {
    painter.drawPixmap(left, (height() - glyphSize) / 2,
                       GlyphPixmap(glyph_, glyphSize, InkColour(), devicePixelRatioF()));
  }
  if (!captioned) return;
  painter.setFont(font());
  painter.setPen(InkColour());
  painter.drawText(QRectF(left + glyphSize + gap, 0, captionWidth + 1, height()),
                   Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic, text());
}

}  // namespace tavlo::platform::qt
