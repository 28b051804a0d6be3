#include "platform/qt/step_key.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace tavlo::platform::qt {
namespace {

constexpr int kBesideGlyph = 24;  ///< Both sides of it together.
constexpr double kShareOfLetters = 0.8;

}  // namespace

StepKey::StepKey(Glyph glyph, Direction direction, QWidget* parent)
    : QPushButton(parent), glyph_(glyph), direction_(direction) {
  setAutoDefault(false);
}

QSize StepKey::sizeHint() const {
  return {GlyphSize() + kBesideGlyph, QPushButton::sizeHint().height()};
}

int StepKey::GlyphSize() const { return qRound(fontMetrics().height() * kShareOfLetters); }

void StepKey::paintEvent(QPaintEvent*) {
  QStyleOptionButton key;
  initStyleOption(&key);
  key.text.clear();
  QPainter painter(this);
  style()->drawControl(QStyle::CE_PushButton, &key, &painter, this);
  const int size = GlyphSize();
  painter.translate(QRectF(rect()).center());
  if (direction_ == Direction::Mirrored) painter.scale(-1, 1);
  const QColor ink =
      palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
  painter.drawPixmap(QPointF(-size / 2.0, -size / 2.0),
                     GlyphPixmap(glyph_, size, ink, devicePixelRatioF()));
}

}  // namespace tavlo::platform::qt
