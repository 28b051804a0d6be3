#include "platform/qt/list_heading.h"

#include <QEvent>
#include <QPainter>

#include "platform/qt/colours.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kPadding = 7;
constexpr int kHeightPadding = 13;
constexpr int kArrow = 16;  ///< What the arrow takes, with the air around it.
constexpr QSizeF kArrowSize{7, 4};
constexpr double kLineShare = 0.2;  ///< Of the letters' colour in the lines between the titles.

}  // namespace

ListHeading::ListHeading(QWidget* list) : QHeaderView(Qt::Horizontal, list) {
  setHighlightSections(false);
  setSectionsClickable(true);
  setMinimumSectionSize(20);
  TakeFont();
}

int ListHeading::WidthFor(const QString& title) const {
  return fontMetrics().horizontalAdvance(title) + kPadding + kArrow;
}

void ListHeading::TakeFont() {
  QFont letters = parentWidget()->font();
  letters.setWeight(QFont::DemiBold);
  if (letters != font()) setFont(letters);
}

void ListHeading::changeEvent(QEvent* event) {
  QHeaderView::changeEvent(event);
  if (event->type() == QEvent::FontChange) TakeFont();
}

QSize ListHeading::sectionSizeFromContents(int column) const {
  const QString title = model()->headerData(column, Qt::Horizontal).toString();
  return {WidthFor(title), fontMetrics().height() + kHeightPadding};
}

void ListHeading::paintSection(QPainter* painter, const QRect& place, int column) const {
  const QColor line =
      Mixed(palette().color(QPalette::Base), palette().color(QPalette::Text), kLineShare);
  painter->fillRect(place, palette().color(QPalette::Button));
  painter->fillRect(QRect(place.left(), place.bottom(), place.width(), 1), line);
  painter->fillRect(QRect(place.right(), place.top(), 1, place.height()), line);
  painter->setPen(palette().color(QPalette::ButtonText));
  painter->setFont(font());
  const bool sorted = isSortIndicatorShown() && sortIndicatorSection() == column;
  const QRect letters = place.adjusted(kPadding, 0, sorted ? -kArrow : -kPadding, 0);
  const int side = model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
  const QString title = model()->headerData(column, Qt::Horizontal).toString();
  painter->drawText(letters, side | Qt::TextSingleLine,
                    fontMetrics().elidedText(title, Qt::ElideRight, letters.width()));
  if (sorted) PaintArrow(*painter, place);
}

void ListHeading::PaintArrow(QPainter& painter, const QRect& place) const {
  const QPointF middle(place.right() - kArrow / 2.0, place.center().y() + 0.5);
  const double half = kArrowSize.width() / 2;
  const double reach = sortIndicatorOrder() == Qt::AscendingOrder ? kArrowSize.height() / 2
                                                                  : -kArrowSize.height() / 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::ButtonText));
  painter.drawPolygon(QPolygonF{middle + QPointF(-half, reach), middle + QPointF(half, reach),
                                middle + QPointF(0, -reach)});
  painter.restore();
}

}  // namespace tavlo::platform::qt
