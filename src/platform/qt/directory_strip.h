#pragma once

#include <QStringList>
#include <vector>

#include "forms/controls.h"
#include "platform/qt/deck_slider.h"

namespace tavlo::platform::qt {

/// The import directories side by side, each with its number and below it how many files wait
/// there; the one on show is filled. It is a scroll bar in another shape: a click goes to a
/// directory, a key to the next one. Where they do not fit side by side they stand in several
/// lines, and a count beside its number.
class DirectoryStrip : public DeckSlider {
 public:
  explicit DirectoryStrip(QWidget* parent);

  /// How many files wait in each directory, as text; empty where that is not known.
  void SetCounts(const std::vector<std::string>& counts);
  /// Where a directory's cell stands.
  QRect CellOf(int value) const;

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  int Cells() const { return maximum() - minimum() + 1; }
  int InOneLine(int width) const;
  int Lines(int width) const;
  int LeastCellWidth() const;
  int CellHeight(int width) const;
  QFont CountLetters() const;
  /// The value whose cell is there; one below the least for none.
  int ValueAt(QPoint place) const;
  void HoverOver(int value);
  void PaintCell(QPainter& painter, int value) const;
  QString InWords(int value) const;

  QStringList counts_;
  int hovered_;
};

}  // namespace tavlo::platform::qt
