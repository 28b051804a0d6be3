#pragma once

#include <QHeaderView>

namespace tavlo::platform::qt {

/// The titles over the columns of a list: semi-bold letters of the list's own font in the desktop's
/// colours, and an arrow at the column that the list is sorted by. The arrow has room of its own at
/// the side where the title does not begin, so sorting neither moves nor cuts a title. It paints by
/// itself, since a style sheet would pin font and colours to what they were when it was set.
class ListHeading : public QHeaderView {
 public:
  explicit ListHeading(QWidget* list);

  /// Pixels that a column must have so that its title is whole with the arrow beside it. True at
  /// once when the list's letters change.
  int WidthFor(const QString& title) const;
  /// The part of a column's heading that its title has, whether or not the list is sorted by it.
  QRect TitlePlace(int column) const;

 protected:
  void paintSection(QPainter* painter, const QRect& place, int column) const override;
  QSize sectionSizeFromContents(int column) const override;
  void changeEvent(QEvent* event) override;

 private:
  QFont Letters() const;
  int ArrowWidth() const;
  int ArrowRoom() const { return ArrowWidth() + kAirAroundArrow; }
  bool StandsAtTheRight(int column) const;
  QRect TitlePlace(int column, const QRect& heading) const;
  void PaintArrow(QPainter& painter, const QRect& room) const;

  static constexpr int kAirAroundArrow = 9;
};

}  // namespace tavlo::platform::qt
