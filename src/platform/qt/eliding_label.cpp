#include "platform/qt/eliding_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "platform/qt/texts.h"

namespace tavlo::platform::qt {

QSize ElidingLabel::minimumSizeHint() const {
  return {std::min(whole_, QLabel::sizeHint().width()), QLabel::minimumSizeHint().height()};
}

bool ElidingLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  const bool cut = fontMetrics().horizontalAdvance(text()) > contentsRect().width();
  if (!cut) return QLabel::event(event);
  const QString before = toolTip().isEmpty() ? QString() : toolTip() + ": ";
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), ToTooltip(before + text()),
                     this);
  return true;
}

void ElidingLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect inside = contentsRect();
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(inside, static_cast<int>(alignment()) | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), Qt::ElideRight, inside.width()));
}

}  // namespace tavlo::platform::qt
