#include "platform/qt/folder_list.h"

#include <QHeaderView>
#include <QKeyEvent>

#include "forms/files_pages.h"

namespace tavlo::platform::qt {

FolderList::FolderList(forms::Table& table, Binder& binder, QWidget* parent)
    : TableList(table, binder, parent), table_(table) {
  horizontalHeader()->hide();
  setContextMenuPolicy(Qt::NoContextMenu);
}

void FolderList::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return Open(currentIndex().row());
    case Qt::Key_Backspace:
      if (table_.TextAt(0, 0) == forms::kWayUp) Open(0);
      return;
    default:
      TableList::keyPressEvent(event);
  }
}

/// As the pointer does, which chooses a row before it opens it.
void FolderList::Open(int row) {
  if (row < 0) return;
  OnRow([&table = table_, row] {
    table.RowClick(row);
    table.DoubleClick(row);
  });
}

}  // namespace tavlo::platform::qt
