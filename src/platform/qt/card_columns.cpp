#include "platform/qt/card_columns.h"

#include <algorithm>
#include <utility>

namespace tavlo::platform::qt {

CardColumns::CardColumns(QWidget* page, int margin, int spacing, int most)
    : QLayout(page), most_(most) {
  setContentsMargins(margin, margin, margin, margin);
  setSpacing(spacing);
}

CardColumns::~CardColumns() = default;

void CardColumns::addItem(QLayoutItem* item) {
  slots_.push_back({std::unique_ptr<QLayoutItem>(item), std::exchange(next_, 0)});
}

QLayoutItem* CardColumns::itemAt(int index) const {
  if (index < 0 || index >= count()) return nullptr;
  return slots_[static_cast<std::size_t>(index)].card.get();
}

QLayoutItem* CardColumns::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  const auto place = slots_.begin() + index;
  QLayoutItem* const item = place->card.release();
  slots_.erase(place);
  return item;
}

QSize CardColumns::sizeHint() const {
  const QMargins around = contentsMargins();
  const int width =
      most_ * LeastColumnWidth() + (most_ - 1) * spacing() + around.left() + around.right();
  return {width, heightForWidth(width)};
}

QSize CardColumns::minimumSize() const {
  const QMargins around = contentsMargins();
  return {LeastColumnWidth() + around.left() + around.right(), around.top() + around.bottom()};
}

int CardColumns::heightForWidth(int width) const {
  const QMargins around = contentsMargins();
  return HighestOf(ColumnsFor(width - around.left() - around.right())) + around.top() +
         around.bottom();
}

void CardColumns::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  const QRect inside = place.marginsRemoved(contentsMargins());
  const std::vector<Column> columns = ColumnsFor(inside.width());
  const int width = ColumnWidth(inside.width(), ColumnsWithin(inside.width()));
  const int highest = HighestOf(columns);
  int left = inside.left();
  for (const Column& column : columns) {
    int top = inside.top();
    // The last card of a column is stretched, so that all columns are equally high.
    const int spare = highest - HeightOf(column);
    for (const Placed& placed : column) {
      const int height = placed.height + (&placed == &column.back() ? spare : 0);
      placed.card->setGeometry(QRect(left, top, width, height));
      top += height + spacing();
    }
    left += width + spacing();
  }
}

int CardColumns::LeastColumnWidth() const {
  int width = 0;
  for (const Slot& slot : slots_) {
    if (!slot.card->isEmpty()) width = std::max(width, slot.card->minimumSize().width());
  }
  return width;
}

int CardColumns::ColumnsWithin(int width) const {
  const int fitting = (width + spacing()) / (LeastColumnWidth() + spacing());
  return std::clamp(fitting, 1, most_);
}

int CardColumns::ColumnWidth(int width, int columns) const {
  return (width - (columns - 1) * spacing()) / columns;
}

int CardColumns::HeightOf(const Column& column) const {
  int height = -spacing();
  for (const Placed& placed : column) height += placed.height + spacing();
  return height;
}

std::vector<CardColumns::Column> CardColumns::ColumnsFor(int width) const {
  const int count = ColumnsWithin(width);
  const int columnWidth = ColumnWidth(width, count);
  std::vector<Column> columns(1);
  for (const Slot& slot : slots_) {
    if (slot.beginsColumnOf == count) columns.emplace_back();
    if (slot.card->isEmpty()) continue;
    const int height = slot.card->hasHeightForWidth() ? slot.card->heightForWidth(columnWidth)
                                                      : slot.card->sizeHint().height();
    columns.back().push_back({slot.card.get(), height});
  }
  return columns;
}

int CardColumns::HighestOf(const std::vector<Column>& columns) const {
  int highest = 0;
  for (const Column& column : columns) highest = std::max(highest, HeightOf(column));
  return highest;
}

}  // namespace tavlo::platform::qt
