#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QFont>
#include <QHash>
#include <QTableView>
#include <functional>
#include <vector>

#include "forms/controls.h"
#include "platform/qt/text_widths.h"

namespace tavlo::platform::qt {

class Binder;
class ListHeading;

/// The rows of a form's table as the toolkit wants them. It keeps no copy: it is reset whenever
/// rows or columns changed, and until then answers empty for rows that are gone. Columns without a
/// width are not in it: a screen reader is told of all that a model has, hidden or not.
class RowsModel : public QAbstractTableModel {
 public:
  explicit RowsModel(const forms::Table& table, QObject* parent);

  /// Brings the model up to the table; true when there was anything new.
  bool Refresh();
  /// The table's column that stands at that place.
  int TableColumn(int column) const { return columns_.at(static_cast<std::size_t>(column)); }
  /// Where the table's column stands, -1 for one that does not show.
  int PlaceOf(int tableColumn) const;
  /// The colour against which texts must be readable.
  void SetBackground(const QColor& background) {
    background_ = background;
    readable_.clear();
  }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const forms::Table& table_;
  unsigned shownRows_ = 0;
  int rows_ = 0;
  std::vector<int> columns_;  ///< The table's columns that show, from left to right.
  QColor background_ = Qt::white;
  /// The colours of the cells as they are readable on the background.
  mutable QHash<forms::Colour, QColor> readable_;
};

/// A list of documents or files. A click or a key that reaches a row is the row's click; the row
/// that the form has chosen is the one that is marked, whatever the toolkit did meanwhile.
class TableList : public QTableView {
 public:
  TableList(forms::Table& table, Binder& binder, QWidget* parent = nullptr);

  /// One line of what stands in place of the rows; its place is one of the viewport.
  struct EmptyLine {
    QString text;
    QRect place;
    QFont font;
    QColor ink;
  };
  /// Nothing while the list has rows, or stands still and then says nothing.
  std::vector<EmptyLine> EmptyLines() const;
  /// The part of a cell that its text has.
  virtual QRect TextPlace(const QRect& cell) const;

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  /// Does what a hand meant for a row. Where that must wait, and the list has other rows by then,
  /// nothing is done.
  void OnRow(std::function<void()> door);
  /// What the toolkit makes of a key, and nothing more.
  void MoveByKey(QKeyEvent& event);
  /// Offers to sort by each column, for who does not reach the headings with a mouse.
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// Files of the desktop may be let go over a list that takes them, wherever on it.
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

  /// Marks the row that the form has chosen.
  virtual void ShowChosen();
  /// Whether a list that stands still says what it says when it is empty.
  virtual bool SpeaksStandingStill() const { return false; }
  void ChooseByKey(int row);

 private:
  void Show();
  void ShowColumns();
  void ShareWidth();
  void FitRowsToFont();
  int LeastWidth(int column);
  void ChooseColours();
  void PaintWhenEmpty();
  bool TakesFiles(const QDropEvent& event) const;
  void ShowDropPlace(bool shows);
  void SortByHand(int column);

  forms::Table& table_;
  Binder& binder_;
  RowsModel* model_;
  ListHeading* heading_;
  TextWidths textWidths_;
  std::vector<forms::Twips> shownWidths_;
  bool widthsByHand_ = false;
  bool sharing_ = false;
  int shownIndex_ = -1;
  bool filesHover_ = false;
};

}  // namespace tavlo::platform::qt
