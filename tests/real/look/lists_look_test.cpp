#include <gtest/gtest.h>

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QTableView>
#include <QToolTip>
#include <string>

#include "platform/qt/colours.h"
#include "support/shown_windows.h"
#include "support/tooltip.h"

namespace tavlo::test {
namespace {

using platform::qt::Contrast;
namespace document_column = forms::document_column;

QPalette DarkDesktop() {
  QPalette dark(QColor(0x35, 0x35, 0x35));
  dark.setColor(QPalette::Base, QColor(0x2A, 0x2A, 0x2A));
  return dark;
}

struct ListsLook : testing::Test {
  ~ListsLook() override {
    QApplication::setPalette(desktop);
    QApplication::setFont(letters);
  }

  void Show() {
    shown.ShowMain();
    list = qobject_cast<QTableView*>(shown.typist.Widget("listViewInQueue"));
    ASSERT_NE(list, nullptr);
  }
  int PixelsDrawn() const {
    const QImage image = list->viewport()->grab().toImage();
    const QRgb ground = image.pixel(1, image.height() - 2);
    int drawn = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) drawn += image.pixel(x, y) != ground;
    }
    return drawn;
  }
  void ExpectReadableColours() {
    const QColor grounds[] = {list->palette().color(QPalette::Base),
                              list->palette().color(QPalette::Active, QPalette::Highlight),
                              list->palette().color(QPalette::Inactive, QPalette::Highlight)};
    for (const int column : {document_column::Saved, document_column::Author}) {
      const QModelIndex cell = list->model()->index(1, column);
      const auto ink = cell.data(Qt::ForegroundRole).value<QColor>();
      ASSERT_TRUE(ink.isValid()) << column;
      for (const QColor& ground : grounds) {
        EXPECT_GE(Contrast(ink, ground), 4.5)
            << ink.name().toStdString() << " on " << ground.name().toStdString();
      }
    }
    for (const QColor& ground : grounds) {
      EXPECT_GE(Contrast(list->palette().color(QPalette::Text), ground), 4.5);
    }
  }

  const QPalette desktop = QApplication::palette();
  const QFont letters = QApplication::font();
  ShownWindows shown;
  QTableView* list = nullptr;
};

TEST_F(ListsLook, EmptyListSaysWhatToDo) {
  Show();
  EXPECT_EQ(PixelsDrawn(), 0);
  shown.main.listViewInQueue.WhenEmpty = "Nothing waits to be typed\nDrop dictations somewhere";
  shown.typist.Rest();
  EXPECT_GT(PixelsDrawn(), 500);
  EXPECT_EQ(list->accessibleDescription(), "Nothing waits to be typed. Drop dictations somewhere");
}

TEST_F(ListsLook, ListWithRowsSaysNothingElse) {
  Show();
  shown.FillQueue();
  shown.typist.Rest();
  const QImage before = list->viewport()->grab().toImage();
  shown.main.listViewInQueue.WhenEmpty = "Nothing waits to be typed";
  shown.typist.Rest();
  EXPECT_EQ(list->viewport()->grab().toImage(), before);
  EXPECT_EQ(list->accessibleDescription(), "");
}

TEST_F(ListsLook, RedAndBlueAreReadableOnALightDesktop) {
  Show();
  shown.FillQueue();
  shown.typist.Rest();
  ExpectReadableColours();
}

TEST_F(ListsLook, RedAndBlueAreReadableOnADarkDesktop) {
  QApplication::setPalette(DarkDesktop());
  Show();
  shown.FillQueue();
  shown.typist.Rest();
  ExpectReadableColours();
}

TEST_F(ListsLook, ColoursFollowTheDesktopThatTurnsDarkMeanwhile) {
  Show();
  shown.FillQueue();
  shown.typist.Rest();
  QApplication::setPalette(DarkDesktop());
  shown.typist.Rest();
  ExpectReadableColours();
}

TEST_F(ListsLook, HeadingsFollowAFontAndAPaletteThatComeWhenTheListIsThereAlready) {
  QFont late("DejaVu Serif");
  late.setPointSize(letters.pointSize());
  const auto heading = [&] { return list->horizontalHeader()->grab().toImage(); };
  Show();
  shown.FillQueue();
  QApplication::setFont(late);
  QApplication::setPalette(DarkDesktop());
  shown.typist.Rest();
  const QImage turned = heading();
  EXPECT_EQ(QFontInfo(list->horizontalHeader()->font()).family(), "DejaVu Serif");

  ShownWindows fresh;
  fresh.ShowMain();
  fresh.FillQueue();
  fresh.typist.Rest();
  list = qobject_cast<QTableView*>(fresh.typist.Widget("listViewInQueue"));
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(turned, heading());
}

TEST_F(ListsLook, HeadingOfTheSortedColumnCarriesAnArrowThatTellsTheOrder) {
  Show();
  shown.FillQueue();
  const auto headingSorted = [&](forms::SortOrder order) {
    shown.main.listViewInQueue.Sort(document_column::Author, order);
    shown.typist.Rest();
    return list->horizontalHeader()->grab().toImage();
  };
  EXPECT_NE(headingSorted(forms::SortOrder::Ascending),
            headingSorted(forms::SortOrder::Descending));
}

TEST_F(ListsLook, FiguresAndTheirHeadingStandAtTheRight) {
  shown.main.listViewInQueue.SetColumns(
      {{"Author", 1500}, {.title = "Id", .width = 850, .figures = true}});
  Show();
  shown.main.listViewInQueue.Add(forms::Row{{{"Brown"}, {"1234"}}});
  shown.typist.Rest();
  for (const int column : {0, 1}) {
    const int side = column == 0 ? Qt::AlignLeft : Qt::AlignRight;
    EXPECT_TRUE(list->model()->index(0, column).data(Qt::TextAlignmentRole).toInt() & side);
    EXPECT_TRUE(list->model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt() &
                side);
  }
}

TEST_F(ListsLook, NameThatDoesNotFitStandsWholeInItsTooltipLetterForLetter) {
  Show();
  shown.FillQueue();
  const std::string name = "<b>" + std::string(200, 'x') + "</b>";
  shown.main.listViewInQueue.Add(forms::Row{{{""}, {""}, {name}}});
  shown.typist.Rest();
  const auto askAt = [&](int row) {
    const QPoint place =
        list->visualRect(list->model()->index(row, document_column::Author)).center();
    QHelpEvent question(QEvent::ToolTip, place, list->viewport()->mapToGlobal(place));
    QApplication::sendEvent(list->viewport(), &question);
    return TooltipLetters();
  };
  EXPECT_EQ(askAt(0), "");
  EXPECT_EQ(askAt(6), "<qt>&lt;b&gt;" + std::string(200, 'x') + "&lt;/b&gt;</qt>");
}

}  // namespace
}  // namespace tavlo::test
