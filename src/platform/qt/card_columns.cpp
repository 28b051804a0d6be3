#include "platform/qt/card_columns.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
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
  const int width = LeastWidth(most_) + around.left() + around.right();
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
  const std::vector<int> widths = ColumnWidths(inside.width(), ColumnsWithin(inside.width()));
  const int end = std::max(HighestOf(columns), inside.height());
  int left = inside.left();
  for (std::size_t at = 0; at < columns.size(); ++at) {
    const Column& column = columns[at];
    const int width = widths[std::min(at, widths.size() - 1)];
    int top = inside.top();
    const int spare = end - HeightOf(column);
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

/// The narrowest column has room for each card.
int CardColumns::LeastWidth(int columns) const {
  const std::vector<int> shares = SharesOf(columns);
  const int whole = std::accumulate(shares.begin(), shares.end(), 0);
  const int narrowest = std::ranges::min(shares);
  return (LeastColumnWidth() * whole + narrowest - 1) / narrowest + (columns - 1) * spacing();
}

int CardColumns::ColumnsWithin(int width) const {
  int columns = most_;
  while (columns > 1 && LeastWidth(columns) > width) --columns;
  return columns;
}

std::vector<int> CardColumns::SharesOf(int columns) const {
  if (columns == most_ && !shares_.empty()) return shares_;
  return std::vector<int>(static_cast<std::size_t>(columns), 1);
}

std::vector<int> CardColumns::ColumnWidths(int width, int columns) const {
  std::vector<int> widths = SharesOf(columns);
  const int whole = std::accumulate(widths.begin(), widths.end(), 0);
  const int room = width - (columns - 1) * spacing();
  for (int& share : widths) share = room * share / whole;
  return widths;
}

int CardColumns::HeightOf(const Column& column) const {
  int height = -spacing();
  for (const Placed& placed : column) height += placed.height + spacing();
  return height;
}

std::vector<CardColumns::Column> CardColumns::ColumnsFor(int width) const {
  const int count = ColumnsWithin(width);
  const std::vector<int> widths = ColumnWidths(width, count);
  std::vector<Column> columns(1);
  for (const Slot& slot : slots_) {
    if (slot.beginsColumnOf == count) columns.emplace_back();
    if (slot.card->isEmpty()) continue;
    const int columnWidth = widths[std::min(columns.size(), widths.size()) - 1];
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
