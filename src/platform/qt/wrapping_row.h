#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace tavlo::platform::qt {

/// A row whose items stand side by side as long as they fit, and go on in further lines where they
/// do not: with large letters a window needs room that it may not take.
class WrappingRow : public QLayout {
 public:
  explicit WrappingRow(int spacing = 8) { setSpacing(spacing); }
  ~WrappingRow() override;
  WrappingRow(const WrappingRow&) = delete;

  /// What is added from now on stands at the right end while everything fits on one line.
  void BeginRightPart() { rightPart_ = items_.size(); }

  void addItem(QLayoutItem* item) override { items_.emplace_back(item); }
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  QSize sizeHint() const override;
  /// As wide as the widest item, for the others can go below it.
  QSize minimumSize() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
  void setGeometry(const QRect& place) override;

 private:
  /// Items from `begin` to before `end` that share a line, hidden ones among them.
  struct Line {
    std::size_t begin = 0;
    std::size_t end = 0;
    int width = 0;
    int height = 0;
  };

  std::vector<Line> LinesFor(int width) const;
  void Place(const Line& line, const QRect& place, int spare) const;

  std::vector<std::unique_ptr<QLayoutItem>> items_;
  std::size_t rightPart_ = 0;
};

}  // namespace tavlo::platform::qt
