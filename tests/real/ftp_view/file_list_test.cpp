#include <QHelpEvent>
#include <QImage>
#include <QScrollBar>
#include <QToolTip>

#include "ftp_view/shown_ftp.h"
#include "support/keys.h"
#include "support/tooltip.h"

namespace tavlo::test {
namespace {

using platform::qt::FileList;

struct FileListTest : ShownFtp {
  FileListTest() {
    LetRowsMove();
    Listed();
  }

  int MarkedRow(const char* name) const {
    const QModelIndexList rows = List(name).selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
  }
  void EnterByTab(const char* name) {
    List(name).setFocus(Qt::TabFocusReason);
    shown.typist.Rest();
  }
  std::size_t Left() const { return shown.main.listFtpList.Rows().size(); }
  std::size_t Right() const { return shown.main.listFtpDownloadList.Rows().size(); }
};

TEST_F(FileListTest, AClickMovesTheRowUnderThePointer) {
  shown.typist.ClickAt(RowOf("listFtpList", 2));
  EXPECT_EQ(moved, "followup_0413.eU2 ");
  EXPECT_EQ(MarkedRow("listFtpList"), -1) << "the next row was not clicked";
}

TEST_F(FileListTest, ADoubleClickMovesOneRowAndNotTheOneThatSlidUnderThePointer) {
  shown.typist.DoubleClickAt(RowOf("listFtpList", 2));
  EXPECT_EQ(moved, "followup_0413.eU2 ");
  shown.typist.DoubleClickAt(RowOf("listFtpDownloadList", 0));
  EXPECT_EQ(moved, "followup_0413.eU2 followup_0413.eU2 ");
}

TEST_F(FileListTest, ADoubleClickOnARowThatStaysIsOneClick) {
  int clicks = 0;
  shown.main.listFtpList.OnClick = [&] { ++clicks; };
  shown.typist.DoubleClickAt(RowOf("listFtpList", 2));
  EXPECT_EQ(clicks, 1);
}

TEST_F(FileListTest, QuickClicksOnDifferentRowsMoveEachOfThem) {
  const QPoint first = RowOf("listFtpList", 6);
  const QPoint second = RowOf("listFtpList", 1);
  shown.typist.ClickAt(first);
  shown.typist.ClickAt(second);
  EXPECT_EQ(moved, "readme.txt cardio_0413.dS2 ");
}

TEST_F(FileListTest, APressThatIsLetGoOverAnotherRowMovesNothing) {
  shown.typist.PressAt(RowOf("listFtpList", 2));
  shown.typist.MoveTo(RowOf("listFtpList", 4));
  shown.typist.Release();
  EXPECT_EQ(moved, "");
}

TEST_F(FileListTest, ARowThatComesUnderAPressMeanwhileIsNotMeant) {
  shown.typist.PressAt(RowOf("listFtpList", 2));
  shown.main.listFtpList.Remove(0);
  shown.typist.Rest();
  shown.typist.Release();
  EXPECT_EQ(moved, "");
}

TEST_F(FileListTest, ArrowsWalkAndMoveNothing) {
  EnterByTab("listFtpList");
  EXPECT_EQ(MarkedRow("listFtpList"), 0);
  shown.typist.Keys({keys::kDown});
  shown.typist.Keys({keys::kDown});
  EXPECT_EQ(MarkedRow("listFtpList"), 2);
  shown.typist.Keys({keys::kEnd});
  EXPECT_EQ(MarkedRow("listFtpList"), 7);
  shown.typist.Keys({keys::kHome});
  EXPECT_EQ(MarkedRow("listFtpList"), 0);
  EXPECT_EQ(moved, "");
}

TEST_F(FileListTest, EnterAndSpaceMoveTheRowThatKeysAreAtAndStayThere) {
  EnterByTab("listFtpList");
  shown.typist.Keys({keys::kDown});
  shown.typist.Keys({keys::kReturn});
  EXPECT_EQ(moved, "cardio_0413.dS2 ");
  EXPECT_EQ(MarkedRow("listFtpList"), 1);
  shown.typist.Keys({' '});
  EXPECT_EQ(moved, "cardio_0413.dS2 followup_0413.eU2 ");
  EXPECT_EQ(MarkedRow("listFtpList"), 1);
}

TEST_F(FileListTest, KeysStayInAListWhoseLastRowGoes) {
  EnterByTab("listFtpList");
  shown.typist.Keys({keys::kEnd});
  shown.typist.Keys({keys::kReturn});
  EXPECT_EQ(moved, "ward round.eW2 ");
  EXPECT_EQ(MarkedRow("listFtpList"), 6);
}

TEST_F(FileListTest, LettersLeadToTheNextNameThatBeginsWithThem) {
  EnterByTab("listFtpList");
  shown.typist.Keys({'r'});
  EXPECT_EQ(MarkedRow("listFtpList"), 6);
  EXPECT_EQ(moved, "");
}

TEST_F(FileListTest, NothingIsMarkedInAListThatKeysHaveLeft) {
  states.Chosen(2);
  shown.typist.Rest();
  EnterByTab("listFtpList");
  EnterByTab("listFtpDownloadList");
  EXPECT_EQ(MarkedRow("listFtpList"), -1);
}

TEST_F(FileListTest, ARefusedClickLeavesItsRowMarkedAndKeysWalkOnFromThere) {
  shown.main.listFtpList.OnClick = nullptr;
  shown.main.listFtpList.OnRowClick = [] {};
  shown.typist.ClickAt(RowOf("listFtpList", 3));
  EXPECT_EQ(shown.main.listFtpList.ListIndex, 3);
  EXPECT_EQ(MarkedRow("listFtpList"), 3);
  shown.typist.Keys({keys::kDown});
  EXPECT_EQ(MarkedRow("listFtpList"), 4);
}

TEST_F(FileListTest, ALongListStaysWhereItWasScrolledToWhenARowGoes) {
  std::vector<std::string> names;
  for (int i = 0; i < 1000; ++i) names.push_back("dictation " + std::to_string(i) + ".dS2");
  states.Listed(names);
  shown.typist.Rest();
  QScrollBar& bar = *List("listFtpList").verticalScrollBar();
  bar.setValue(500);
  shown.typist.Rest();
  shown.typist.ClickAt(RowOf("listFtpList", 503));
  EXPECT_EQ(moved, "dictation 503.dS2 ");
  EXPECT_EQ(bar.value(), 500);
}

TEST_F(FileListTest, TheFileThatIsFetchedStandsOutAndNoOther) {
  states.Chosen(3);
  shown.typist.Rest();
  const auto row = [&](int number) {
    const FileList& list = List("listFtpDownloadList");
    const QRect cell = list.visualRect(list.model()->index(number, 0));
    const int beforeText = list.TextPlace(cell).left();
    return list.viewport()->grab(QRect(cell.topLeft(), QSize(beforeText, cell.height()))).toImage();
  };
  EXPECT_EQ(row(0), row(1));
  states.Downloading(" 1 bytes");
  shown.typist.Rest();
  EXPECT_NE(row(0), row(1));
  EXPECT_EQ(row(1), row(2));
  states.ConnectionLost();
  shown.typist.Rest();
  EXPECT_EQ(row(0), row(1));
}

TEST_F(FileListTest, SaysThatItIsEmptyWhileItStandsStillToo) {
  states.Idle();
  shown.typist.Rest();
  ASSERT_FALSE(List("listFtpList").isEnabled());
  const auto lines = List("listFtpList").EmptyLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].text, "Not connected");
  EXPECT_EQ(List("listFtpList").accessibleDescription(),
            "Not connected. Choose a server and press Connect to see what it has.");
}

TEST_F(FileListTest, TellsUnderThePointerWhatAClickDoesOrTheNameThatIsCutOff) {
  states.Listed(FtpStates::TroublesomeNames());
  shown.typist.Rest();
  FileList& list = List("listFtpList");
  const auto askAt = [&](int row) {
    const QPoint place = list.visualRect(list.model()->index(row, 0)).center();
    QToolTip::hideText();
    QHelpEvent question(QEvent::ToolTip, place, list.viewport()->mapToGlobal(place));
    QApplication::sendEvent(list.viewport(), &question);
    return TooltipLetters();
  };
  EXPECT_EQ(askAt(0), "<qt>" + std::string(251, 'W') + ".dS2</qt>");
  EXPECT_EQ(askAt(6), "Click a file to move it to download list");
}

}  // namespace
}  // namespace tavlo::test
