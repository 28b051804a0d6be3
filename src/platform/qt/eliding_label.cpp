#include "platform/qt/eliding_label.h"

#include <QPainter>
#include <algorithm>

namespace tavlo::platform::qt {

QSize ElidingLabel::minimumSizeHint() const {
  return {std::min(whole_, QLabel::sizeHint().width()), QLabel::minimumSizeHint().height()};
}

void ElidingLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect inside = contentsRect();
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(inside, static_cast<int>(alignment()) | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), Qt::ElideRight, inside.width()));
}

}  // namespace tavlo::platform::qt
