#include "platform/qt/wrapping_row.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace tavlo::platform::qt {

WrappingRow::~WrappingRow() = default;

QLayoutItem* WrappingRow::itemAt(int index) const {
  if (index < 0 || index >= count()) return nullptr;
  return items_[static_cast<std::size_t>(index)].get();
}

QLayoutItem* WrappingRow::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  const auto place = items_.begin() + index;
  QLayoutItem* const item = place->release();
  items_.erase(place);
  return item;
}

QSize WrappingRow::sizeHint() const {
  const std::vector<Line> lines = LinesFor(QLAYOUTSIZE_MAX);
  return {lines.front().width, lines.front().height};
}

QSize WrappingRow::minimumSize() const {
  QSize widest;
  for (const auto& item : items_) {
    if (!item->isEmpty()) widest = widest.expandedTo(item->minimumSize());
  }
  return widest;
}

int WrappingRow::heightForWidth(int width) const {
  const std::vector<Line> lines = LinesFor(width);
  int height = spacing() * static_cast<int>(lines.size() - 1);
  for (const Line& line : lines) height += line.height;
  return height;
}

void WrappingRow::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  const std::vector<Line> lines = LinesFor(place.width());
  int top = place.top();
  for (const Line& line : lines) {
    const int spare = lines.size() == 1 ? std::max(0, place.width() - line.width) : 0;
    Place(line, QRect(place.left(), top, place.width(), line.height), spare);
    top += line.height + spacing();
  }
}

std::vector<WrappingRow::Line> WrappingRow::LinesFor(int width) const {
  std::vector<Line> lines(1);
  for (std::size_t i = 0; i < items_.size(); ++i) {
    if (!items_[i]->isEmpty()) {
      const QSize size = items_[i]->sizeHint();
      const bool first = lines.back().width == 0;
      if (!first && lines.back().width + spacing() + size.width() > width) {
        lines.push_back({.begin = i, .end = i});
      }
      Line& line = lines.back();
      line.width += (line.width == 0 ? 0 : spacing()) + size.width();
      line.height = std::max(line.height, size.height());
    }
    lines.back().end = i + 1;
  }
  return lines;
}

void WrappingRow::Place(const Line& line, const QRect& place, int spare) const {
  int left = place.left();
  for (std::size_t i = line.begin; i < line.end; ++i) {
    if (i == rightPart_) left += spare;
    if (items_[i]->isEmpty()) continue;
    const QSize size = items_[i]->sizeHint().boundedTo({place.width(), line.height});
    const QRect box(left, place.top() + (line.height - size.height()) / 2, size.width(),
                    size.height());
    items_[i]->setGeometry(QStyle::visualRect(
        parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight, place, box));
    left += size.width() + spacing();
  }
}

}  // namespace tavlo::platform::qt
