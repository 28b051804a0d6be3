#pragma once

#include <QHeaderView>

namespace tavlo::platform::qt {

/// The titles over the columns of a list: semi-bold letters of the list's own font in the desktop's
/// colours, and an arrow at the column that the list is sorted by. It paints by itself, since a
/// style sheet would pin font and colours to what they were when it was set.
class ListHeading : public QHeaderView {
 public:
  explicit ListHeading(QWidget* list);

  /// Pixels that a column must have so that its title is whole with the arrow beside it.
  int WidthFor(const QString& title) const;

 protected:
  void paintSection(QPainter* painter, const QRect& place, int column) const override;
  QSize sectionSizeFromContents(int column) const override;
  void changeEvent(QEvent* event) override;

 private:
  void TakeFont();
  void PaintArrow(QPainter& painter, const QRect& place) const;
};

}  // namespace tavlo::platform::qt
