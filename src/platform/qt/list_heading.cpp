#include "platform/qt/list_heading.h"

#include <QEvent>
#include <QPainter>
#include <cmath>

#include "platform/qt/colours.h"
#include "platform/qt/text_widths.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kPadding = 7;
constexpr int kHeightPadding = 13;
constexpr double kArrowShare = 0.42;  ///< Of the letters' height in the width of the arrow.
constexpr double kLineShare = 0.2;    ///< Of the letters' colour in the lines between the titles.

}  // namespace

ListHeading::ListHeading(QWidget* list) : QHeaderView(Qt::Horizontal, list) {
  setHighlightSections(false);
  setSectionsClickable(true);
  setMinimumSectionSize(20);
  setFont(Letters());
}

QFont ListHeading::Letters() const {
  QFont letters = parentWidget()->font();
  letters.setWeight(QFont::DemiBold);
  return letters;
}

int ListHeading::ArrowWidth() const {
  // Odd, so that its tip stands on a pixel.
  return static_cast<int>(QFontMetricsF(Letters(), this).height() * kArrowShare) / 2 * 2 + 1;
}

int ListHeading::WidthFor(const QString& title) const {
  const double letters = QFontMetricsF(Letters(), this).horizontalAdvance(title);
  return static_cast<int>(std::ceil(letters)) + kLetterRounding + kPadding + ArrowRoom();
}

bool ListHeading::StandsAtTheRight(int column) const {
  return model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt() &
         Qt::AlignRight;
}

QRect ListHeading::TitlePlace(int column, const QRect& heading) const {
  return StandsAtTheRight(column) ? heading.adjusted(ArrowRoom(), 0, -kPadding, 0)
                                  : heading.adjusted(kPadding, 0, -ArrowRoom(), 0);
}

QRect ListHeading::TitlePlace(int column) const {
  return TitlePlace(
      column, QRect(sectionViewportPosition(column), 0, sectionSize(column), viewport()->height()));
}

void ListHeading::changeEvent(QEvent* event) {
  QHeaderView::changeEvent(event);
  if (event->type() == QEvent::FontChange && Letters() != font()) setFont(Letters());
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
  const QRect letters = TitlePlace(column, place);
  const int side = model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
  const QString title = model()->headerData(column, Qt::Horizontal).toString();
  painter->drawText(letters, side | Qt::TextSingleLine,
                    fontMetrics().elidedText(title, Qt::ElideRight, letters.width()));
  if (!sorted) return;
  QRect room = place;
  if (StandsAtTheRight(column)) {
    room.setWidth(ArrowRoom());
  } else {
    room.setLeft(place.right() + 1 - ArrowRoom());
  }
  PaintArrow(*painter, room);
}

void ListHeading::PaintArrow(QPainter& painter, const QRect& room) const {
  const QPointF middle(room.center().x() + 0.5, room.center().y() + 0.5);
  const double half = ArrowWidth() / 2.0;
  const double up = half * 0.57;
  const double reach = sortIndicatorOrder() == Qt::AscendingOrder ? up : -up;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::ButtonText));
  painter.drawPolygon(QPolygonF{middle + QPointF(-half, reach), middle + QPointF(half, reach),
                                middle + QPointF(0, -reach)});
  painter.restore();
}

}  // namespace tavlo::platform::qt
