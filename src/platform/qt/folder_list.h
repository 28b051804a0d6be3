#pragma once

#include "platform/qt/table_list.h"

namespace tavlo::platform::qt {

/// The folders in a folder, the way up first. A double click or Enter opens one, Backspace goes up.
class FolderList : public TableList {
 public:
  FolderList(forms::Table& table, Binder& binder, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Open(int row);

  forms::Table& table_;
};

}  // namespace tavlo::platform::qt
