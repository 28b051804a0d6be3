#include "platform/qt/deck_key.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QShortcutEvent>

#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr double kRound = 6;
constexpr int kGap = 8;  ///< Between a glyph and the caption beside it.
constexpr double kCaptionedGlyph = 14;
constexpr double kLoneGlyph = 16;

QColor FaceColour(DeckKey::Tone tone) {
  switch (tone) {
    case DeckKey::Tone::Teal:
      return theme::kTeal;
    case DeckKey::Tone::Amber:
      return QColor(0xF5, 0x9F, 0x36);
    case DeckKey::Tone::Quiet:
      break;
  }
  return QColor(0x43, 0x4E, 0x5A);
}

}  // namespace

DeckKey::DeckKey(Glyph glyph, QSize size, QWidget* parent) : QPushButton(parent), glyph_(glyph) {
  setFixedSize(size);
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
  QColor face = isEnabled() ? FaceColour(tone_) : QColor(0x2C, 0x34, 0x3D);
  if (isDown()) {
    face = face.darker(125);
  } else if (underMouse() && isEnabled()) {
    face = face.lighter(112);
  }
  QLinearGradient shade(0, 0, 0, height());
  shade.setColorAt(0, face.lighter(isEnabled() ? 112 : 100));
  shade.setColorAt(1, face.darker(isEnabled() ? 118 : 105));
  painter.setBrush(shade);
  painter.setPen(hasFocus() ? QPen(theme::kAmber, 2) : QPen(QColor(0x11, 0x16, 0x1C), 1));
  const double inset = hasFocus() ? 1.5 : 0.5;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRound, kRound);
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

  const QFontMetrics metrics(font());
  const int captionWidth = metrics.size(Qt::TextShowMnemonic, text()).width();
  // A narrow key has room for its glyph alone; its caption still reaches it by the keyboard.
  const bool captionFits = captionWidth + kCaptionedGlyph + kGap <= width();
  const bool captioned = !text().isEmpty() && (glyph_ == Glyph::None || captionFits);
  const double glyphSize = glyph_ == Glyph::None ? 0 : captioned ? kCaptionedGlyph : kLoneGlyph;
  const double gap = glyphSize > 0 && captioned ? kGap : 0;
  const double left = (width() - glyphSize - gap - (captioned ? captionWidth : 0)) / 2;
  if (glyph_ != Glyph::None) {
    painter.translate(left, (height() - glyphSize) / 2);
    painter.fillPath(GlyphPath(glyph_, glyphSize), InkColour());
    painter.resetTransform();
  }
  if (!captioned) return;
  painter.setFont(font());
  painter.setPen(InkColour());
  painter.drawText(QRectF(left + glyphSize + gap, 0, captionWidth + 1, height()),
                   Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic, text());
}

}  // namespace tavlo::platform::qt
