#pragma once

#include <QLayout>
#include <memory>
#include <utility>
#include <vector>

namespace tavlo::platform::qt {

/// Cards in columns, one under the other and then on in the next column. There are as many columns
/// as the page has room for, and the cards go on where the columns come out most alike: with large
/// letters or on a small screen a page gets higher, not wider. The last card of each column reaches
/// down to the end of the page.
class CardColumns : public QLayout {
 public:
  static constexpr int kMostColumns = 3;

  /// On the widest page there are `most` columns.
  CardColumns(QWidget* page, int margin, int spacing, int most = kMostColumns);
  ~CardColumns() override;
  CardColumns(const CardColumns&) = delete;

  /// How the widest page is divided among its columns; without it they are equally wide.
  void SetShares(std::vector<int> shares) { shares_ = std::move(shares); }

  /// The next card that is added begins a column where the page has so many columns.
  void BeginColumnOf(int columns) { next_ = columns; }

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(slots_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  /// All columns beside each other.
  QSize sizeHint() const override;
  /// One column; the others can go below it.
  QSize minimumSize() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  void setGeometry(const QRect& place) override;

 private:
  struct Slot {
    std::unique_ptr<QLayoutItem> card;
    int beginsColumnOf = 0;
  };
  /// A card and its height at the width of the columns.
  struct Placed {
    QLayoutItem* card;
    int height;
  };
  using Column = std::vector<Placed>;

  int LeastColumnWidth() const;
  int LeastWidth(int columns) const;
  std::vector<int> SharesOf(int columns) const;
  int ColumnsWithin(int width) const;
  /// Of a page of that width.
  std::vector<int> ColumnWidths(int width, int columns) const;
  int HeightOf(const Column& column) const;
  /// The cards that show, in the columns of a page of that width.
  std::vector<Column> ColumnsFor(int width) const;
  int HighestOf(const std::vector<Column>& columns) const;

  const int most_;
  std::vector<int> shares_;
  std::vector<Slot> slots_;
  int next_ = 0;
};

}  // namespace tavlo::platform::qt
