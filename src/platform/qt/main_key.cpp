#include "platform/qt/main_key.h"

#include <QPainter>
#include <QStyle>

#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr double kMainKeyRounding = 4;

}  // namespace

MainKey::MainKey(QWidget* parent) : RoomyKey(parent) {
  QFont bold = font();
  bold.setWeight(QFont::DemiBold);
  setFont(bold);
  setAttribute(Qt::WA_Hover);
}

void MainKey::SetStops(bool stops) {
  if (stops_ == stops) return;
  stops_ = stops;
  update();
}

/// A key that cannot be pressed looks as the desktop's own.
void MainKey::paintEvent(QPaintEvent* event) {
  if (!isEnabled()) return RoomyKey::paintEvent(event);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor colour = stops_ ? theme::kAmberKey : theme::kTeal;
  const QColor face = isDown() ? colour.darker(120) : underMouse() ? colour.lighter(108) : colour;
  painter.setPen(QPen(colour.darker(150), 1));
  painter.setBrush(face);
  const QRectF outline = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
  painter.drawRoundedRect(outline, kMainKeyRounding, kMainKeyRounding);
  if (hasFocus()) {
    painter.setPen(QPen(theme::kOnBright, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(outline.adjusted(2.5, 2.5, -2.5, -2.5), 2, 2);
  }
  painter.setPen(theme::kOnBright);
  const bool underlines = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this);
  const int letters = underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
  painter.drawText(rect(), Qt::AlignCenter | letters, text());
}

}  // namespace tavlo::platform::qt
