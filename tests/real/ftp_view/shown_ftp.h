#pragma once

#include <gtest/gtest.h>

#include <string>

#include "ftp_view/ftp_states.h"
#include "platform/qt/file_list.h"
#include "support/shown_windows.h"

namespace tavlo::test {

/// The Ftp view in a window of its usual size.
struct ShownFtp : testing::Test {
  ShownFtp() {
    states.Idle();
    shown.ShowMain();
  }

  void Listed() {
    states.Listed(FtpStates::UsualNames());
    shown.typist.Rest();
  }
  platform::qt::FileList& List(const char* name) const {
    return *dynamic_cast<platform::qt::FileList*>(shown.typist.Widget(name));
  }
  /// Whether all of the widget shows, as far as what it stands on has room for it.
  bool IsWhole(const char* name) const {
    const QWidget* const widget = shown.typist.Widget(name);
    for (const QWidget* on = widget; on && on->parentWidget(); on = on->parentWidget()) {
      const QRect place(widget->mapTo(on->parentWidget(), QPoint(0, 0)), widget->size());
      if (!on->parentWidget()->rect().contains(place)) return false;
    }
    return widget != nullptr;
  }
  /// The place on the screen of a row.
  QPoint RowOf(const char* name, int row) const {
    const platform::qt::FileList& list = List(name);
    const QRect cell = list.visualRect(list.model()->index(row, 0));
    return list.viewport()->mapToGlobal(cell.center());
  }
  /// Has each click on a row move it to the other list, as the rules do.
  void LetRowsMove() {
    const auto move = [this](forms::Table& from, forms::Table& to) {
      from.OnClick = [this, &from, &to] {
        const int row = from.ListIndex;
        moved += from.TextAt(row, 0) + " ";
        to.Add(from.TextAt(row, 0));
        from.Remove(row);
        shown.main.frameFtpDownloadList.Enabled = true;
      };
    };
    move(shown.main.listFtpList, shown.main.listFtpDownloadList);
    move(shown.main.listFtpDownloadList, shown.main.listFtpList);
  }

  ShownWindows shown;
  FtpStates states{shown.main};
  std::string moved;
};

}  // namespace tavlo::test
