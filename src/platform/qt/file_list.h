#pragma once

#include "platform/qt/table_list.h"

namespace tavlo::platform::qt {

class FileRows;

/// A list from which each click moves a file elsewhere. What slides under the pointer meanwhile is
/// not meant by the second press of a double click. Arrows only walk over the rows; the row that
/// they are at is marked for who walks by keys, and Enter or Space is the click on it.
class FileList : public TableList {
 public:
  FileList(forms::Table& table, Binder& binder, QWidget* parent);

  /// The row of the file that is being fetched, which stands out; -1 for none.
  void SetFetched(int row);

  QRect TextPlace(const QRect& cell) const override;

 protected:
  void ShowChosen() override;
  bool SpeaksStandingStill() const override { return true; }
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void WalkTo(int row);

  const forms::Table& table_;
  FileRows* rows_;
  int chosen_ = -1;           ///< By the form, as last shown.
  int at_ = -1;               ///< The row that keys walk from.
  bool walks_ = false;        ///< By keys, and not with a mouse.
  bool secondPress_ = false;  ///< Of a double click, not let go yet.
};

}  // namespace tavlo::platform::qt
