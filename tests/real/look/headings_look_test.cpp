#include <gtest/gtest.h>

#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <cmath>
#include <string>
#include <vector>

#include "look/desktop_letters.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

constexpr int kPadding = 7;  ///< Between the edge of a heading and its title.

std::vector<forms::Column> Columns(forms::Twips saved) {
  return {{"Pri", 375},
          {"Saved", saved},
          {"Author", 1500},
          {.title = "Id", .width = 850, .figures = true},
          {.title = "Dept", .width = 600, .figures = true},
          {.title = "Work", .width = 600, .figures = true},
          {"Subject", 1500},
          {.title = "Length", .width = 900, .figures = true},
          {"Date", 1100},
          {"Time", 900},
          {"System", 800},
          {"File Name", 0}};
}

/// The headings of a list at the widths that its columns have at first.
struct Headings : testing::TestWithParam<int> {
  void Show(forms::Table& table) {
    shown.main.frameInQueue.Visible = &table == &shown.main.listViewInQueue;
    shown.main.frameCompleted.Visible = &table == &shown.main.listViewCompleted;
    shown.ShowMain();
    shown.typist.Rest();
    list = qobject_cast<QTableView*>(shown.typist.Widget(table.Name.c_str()));
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(list->isVisible());
  }
  QString Title(int column) const {
    return list->model()->headerData(column, Qt::Horizontal).toString();
  }
  /// The part of the heading that the title takes when it is whole.
  QImage TitlePart(int column) const {
    QHeaderView& headings = *list->horizontalHeader();
    list->horizontalScrollBar()->setValue(headings.sectionPosition(column));
    const double advance =
        QFontMetricsF(headings.font(), &headings).horizontalAdvance(Title(column));
    const int width = kPadding + static_cast<int>(std::ceil(advance)) + 1;
    const int side =
        list->model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
    const int left = headings.sectionViewportPosition(column);
    const int right = left + headings.sectionSize(column) - 1;  // Its last pixel is the line.
    const QRect place(side & Qt::AlignRight ? right - width : left, 0, width, headings.height());
    return headings.grab(place).toImage();
  }
  /// Each title is drawn as it is in a column that has room for two of it and no mark.
  void ExpectWholeTitles(forms::Table& table) {
    Show(table);
    const auto columns = static_cast<int>(table.Columns().size());
    int place = 0;
    for (int column = 0; column < columns; ++column) {
      if (table.Columns()[static_cast<std::size_t>(column)].width == 0) continue;
      for (const auto order : {forms::SortOrder::Ascending, forms::SortOrder::Descending}) {
        table.Sort(column, order);
        shown.typist.Rest();
        sorted.push_back(TitlePart(place));
      }
      ++place;
    }
    table.Sort(columns - 1, forms::SortOrder::Ascending);
    for (int column = 0; column < place; ++column) {
      list->setColumnWidth(column, 2 * list->columnWidth(column) + 50);
    }
    shown.typist.Rest();
    for (int column = 0; column < place; ++column) {
      const QImage whole = TitlePart(column);
      ASSERT_FALSE(whole.isNull()) << table.Name << ", " << Title(column).toStdString();
      for (const int order : {0, 1}) {
        EXPECT_EQ(sorted[static_cast<std::size_t>(2 * column + order)], whole)
            << table.Name << ", " << Title(column).toStdString();
      }
    }
  }

  DesktopLetters letters{GetParam()};
  ShownWindows shown;
  QTableView* list = nullptr;
  std::vector<QImage> sorted;  ///< What shows of each title, in both orders.
};

TEST_P(Headings, OfTheQueueAreWholeWhicheverIsSorted) {
  shown.main.listViewInQueue.SetColumns(Columns(650));
  shown.FillQueue();
  ExpectWholeTitles(shown.main.listViewInQueue);
}

TEST_P(Headings, OfTheCompletedListAreWholeWhicheverIsSorted) {
  shown.main.listViewCompleted.SetColumns(Columns(0));
  ExpectWholeTitles(shown.main.listViewCompleted);
}

TEST_P(Headings, StayWholeWhenTheLettersGrowMeanwhile) {
  shown.main.listViewInQueue.SetColumns(Columns(650));
  shown.FillQueue();
  Show(shown.main.listViewInQueue);
  letters.Resize(GetParam() + 3);
  ExpectWholeTitles(shown.main.listViewInQueue);
}

INSTANTIATE_TEST_SUITE_P(EachSize, Headings, testing::Values(9, 10, 13, 24),
                         [](const auto& test) { return std::to_string(test.param) + "Points"; });

}  // namespace
}  // namespace tavlo::test
