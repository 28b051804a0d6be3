#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QTableView>
#include <optional>
#include <string>
#include <vector>

#include "platform/qt/column_widths.h"
#include "support/effort.h"
#include "support/keys.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

namespace document_column = forms::document_column;

TEST(MainWindow, AClickOnAKeyPressesItsCommand) {
  ShownWindows shown;
  int presses = 0;
  shown.main.cmdRewind.OnPress = [&] { ++presses; };
  shown.ShowMain();
  shown.typist.Click("cmdRewind");
  EXPECT_EQ(presses, 1);
}

TEST(MainWindow, AClickOnADisabledKeyDoesNothing) {
  ShownWindows shown;
  int presses = 0;
  shown.main.cmdComplete.OnPress = [&] { ++presses; };
  shown.ShowMain();
  shown.typist.Click("cmdComplete");
  EXPECT_EQ(presses, 0);
  shown.main.cmdComplete.Enabled = true;
  shown.typist.Rest();
  shown.typist.Click("cmdComplete");
  EXPECT_EQ(presses, 1);
}

TEST(MainWindow, ThePlayKeyIsStopWhileTheDeckRuns) {
  ShownWindows shown;
  std::string pressed;
  shown.main.cmdPlay.OnPress = [&] { pressed += "play "; };
  shown.main.cmdStop.OnPress = [&] { pressed += "stop "; };
  shown.main.cmdImportCompleteSnipetStop.OnPress = [&] { pressed += "preview "; };
  shown.ShowMain();
  shown.FillQueue();
  shown.typist.Picture("main_idle");
  shown.typist.Click("cmdPlay");
  shown.main.listViewInQueue.ListIndex = 0;
  shown.PlayDocument();
  shown.typist.Rest();
  shown.typist.Picture("main_playing");
  shown.typist.Click("cmdStop");
  shown.main.cmdStop.Visible = false;
  shown.main.cmdImportCompleteSnipetStop.Enabled = true;
  shown.typist.Rest();
  shown.typist.Click("cmdImportCompleteSnipetStop");
  EXPECT_EQ(pressed, "play stop preview ");
}

TEST(MainWindow, TheUnderlinedLettersAreTheKeyboard) {
  ShownWindows shown;
  int plays = 0;
  int refreshes = 0;
  shown.main.cmdPlay.OnPress = [&] { ++plays; };
  shown.main.cmdUpdateFileList.OnPress = [&] { ++refreshes; };
  shown.ShowMain();
  shown.typist.Keys({keys::kAlt, 'p'});
  EXPECT_EQ(plays, 1);
  shown.typist.Keys({keys::kF5});
  EXPECT_TRUE(shown.typist.Until([&] { return refreshes == 1; }));
}

TEST(MainWindow, AMenuEntryPressesItsCommand) {
  ShownWindows shown;
  int abouts = 0;
  int reports = 0;
  shown.main.mnuAbout.OnPress = [&] { ++abouts; };
  shown.main.mnuReport.OnPress = [&] { ++reports; };
  shown.ShowMain();
  shown.typist.Keys({keys::kAlt, 'f'});
  shown.typist.Keys({'a'});
  EXPECT_EQ(abouts, 1);
  shown.typist.Keys({keys::kAlt, 'r'});
  EXPECT_EQ(reports, 1);
  shown.main.mnuFile.Enabled = false;
  shown.typist.Rest();
  shown.typist.Keys({keys::kAlt, 'f'});
  shown.typist.Keys({'a'});
  EXPECT_EQ(abouts, 1);
}

TEST(MainWindow, ASliderTellsPressMovesAndRelease) {
  ShownWindows shown;
  std::string told;
  shown.main.slPosition.OnPress = [&] { told += "press "; };
  shown.main.slPosition.OnChange = [&] {
    if (!told.ends_with("change ")) told += "change ";
  };
  shown.main.slPosition.OnRelease = [&] { told += "release"; };
  shown.ShowMain();
  QWidget* const slider = shown.typist.Widget("slPosition");
  const QPoint middle = slider->mapToGlobal(slider->rect().center());
  shown.typist.PressAt(middle);
  EXPECT_EQ(shown.main.slPosition.Value, 50) << "a press in the groove jumps there";
  shown.typist.MoveTo(middle + QPoint(slider->width() / 4, 0));
  EXPECT_NEAR(shown.main.slPosition.Value, 75, 2);
  EXPECT_EQ(told, "press change ");
  shown.typist.Release();
  EXPECT_EQ(told, "press change release");
}

TEST(MainWindow, AKeyOnASliderIsPressChangeAndRelease) {
  ShownWindows shown;
  std::string told;
  shown.main.slPosition.OnPress = [&] { told += "press "; };
  shown.main.slPosition.OnChange = [&] { told += "change "; };
  shown.main.slPosition.OnRelease = [&] { told += "release"; };
  shown.ShowMain();
  shown.main.frmMain.FocusOn(shown.main.slPosition);
  shown.typist.Rest();
  shown.typist.Keys({keys::kRight});
  EXPECT_EQ(told, "press change release");
  EXPECT_EQ(shown.main.slPosition.Value, 1);
}

TEST(MainWindow, AProgramsWriteMovesTheSliderWithoutARelease) {
  ShownWindows shown;
  int releases = 0;
  shown.main.slPosition.OnRelease = [&] { ++releases; };
  shown.ShowMain();
  shown.main.slPosition.Value = 40;
  shown.typist.Rest();
  EXPECT_EQ(qobject_cast<QAbstractSlider*>(shown.typist.Widget("slPosition"))->value(), 40);
  EXPECT_EQ(releases, 0);
}

TEST(QueueList, AClickOnARowChoosesIt) {
  ShownWindows shown;
  std::string told;
  shown.main.listViewInQueue.OnRowClick = [&] { told += "row "; };
  shown.main.listViewInQueue.OnClick = [&] { told += "click "; };
  shown.ShowMain();
  shown.FillQueue();
  shown.typist.Rest();
  shown.typist.ClickAt(shown.QueueRow(2));
  EXPECT_EQ(shown.main.listViewInQueue.ListIndex, 2);
  EXPECT_EQ(told, "row click ");
  shown.typist.Keys({keys::kDown});
  EXPECT_EQ(shown.main.listViewInQueue.ListIndex, 3);
}

TEST(QueueList, ARowThatTheFormRefusedIsNotMarked) {
  ShownWindows shown;
  shown.ShowMain();
  shown.FillQueue();
  shown.main.listViewInQueue.ListIndex = 1;
  shown.typist.Rest();
  shown.main.listViewInQueue.OnClick = [&] { shown.main.listViewInQueue.ListIndex = 1; };
  shown.typist.ClickAt(shown.QueueRow(4));
  const auto* const list = qobject_cast<QTableView*>(shown.typist.Widget("listViewInQueue"));
  ASSERT_EQ(list->selectionModel()->selectedRows().size(), 1);
  EXPECT_EQ(list->selectionModel()->selectedRows().front().row(), 1);
}

TEST(QueueList, AClickOnAHeaderTellsTheColumn) {
  ShownWindows shown;
  std::optional<int> clicked;
  shown.main.listViewInQueue.OnHeaderClick = [&](int column) { clicked = column; };
  shown.ShowMain();
  shown.FillQueue();
  shown.typist.Rest();
  const QPoint firstRow = shown.QueueRow(0);
  shown.typist.ClickAt(firstRow - QPoint(0, 26));
  EXPECT_EQ(clicked, 2);
}

TEST(QueueList, EveryHeadingHasRoomForItsSortArrow) {
  ShownWindows shown;
  shown.ShowMain();
  shown.FillQueue();
  shown.typist.Rest();
  const auto* const list = qobject_cast<QTableView*>(shown.typist.Widget("listViewInQueue"));
  const QHeaderView* const headings = list->horizontalHeader();
  constexpr int kArrow = 14;
  for (int column = document_column::Priority; column <= document_column::System; ++column) {
    const QString title = list->model()->headerData(column, Qt::Horizontal).toString();
    EXPECT_GE(headings->sectionSize(column),
              headings->fontMetrics().horizontalAdvance(title) + kArrow)
        << title.toStdString();
  }
  EXPECT_EQ(headings->length(), list->viewport()->width());
}

TEST(QueueList, DatesAndFiguresAreWholeInTheNarrowestWindow) {
  ShownWindows shown;
  shown.ShowMain();
  shown.FillQueue();
  shown.main.frmMain.Width = 0;
  shown.typist.Rest(300);
  const auto* const list = qobject_cast<QTableView*>(shown.typist.Widget("listViewInQueue"));
  for (const int column : {document_column::Id, document_column::Length, document_column::Date,
                           document_column::Time, document_column::System}) {
    const QString text = list->model()->index(0, column).data().toString();
    EXPECT_GT(list->columnWidth(column), list->fontMetrics().horizontalAdvance(text) + 12)
        << text.toStdString();
  }
}

TEST(QueueList, ItsColumnsScrollWhereTheHeadingsDoNotFit) {
  EXPECT_EQ(platform::qt::SharedWidths({10, 30, 0}, {0, 0, 0}, 100), (std::vector{25, 75, 0}));
  EXPECT_EQ(platform::qt::SharedWidths({10, 30, 60}, {20, 0, 0}, 100), (std::vector{20, 26, 54}));
  EXPECT_EQ(platform::qt::SharedWidths({10, 90}, {60, 60}, 100), (std::vector{60, 60}));
}

TEST(QueueList, TenThousandRowsAreShownForUnderFiftyMillisecondsOfComputing) {
  ShownWindows shown;
  shown.ShowMain();
  for (int i = 0; i < 10'000; ++i) {
    shown.main.listViewInQueue.Add({{{""}, {""}, {"Author " + std::to_string(i)}}});
  }
  const Effort effort;
  shown.loop.Yield();
  EXPECT_LT(effort.Computed(), std::chrono::milliseconds(50));
  const auto* const list = qobject_cast<QTableView*>(shown.typist.Widget("listViewInQueue"));
  EXPECT_EQ(list->model()->rowCount(), 10'000);
}

TEST(QueueList, ANameThatIsNoTextIsShownAllTheSame) {
  ShownWindows shown;
  shown.ShowMain();
  shown.main.listViewInQueue.Add({{{""}, {""}, {"a\nb\xFF"}}});
  shown.typist.Rest();
  const auto* const list = qobject_cast<QTableView*>(shown.typist.Widget("listViewInQueue"));
  EXPECT_EQ(list->model()->index(0, 2).data().toString(), QString::fromUtf16(u"a\u240Ab\uFFFD"));
}

TEST(MainWindow, TheCloseButtonOnlyAsks) {
  ShownWindows shown;
  int requests = 0;
  shown.main.frmMain.OnCloseRequest = [&] { ++requests; };
  shown.ShowMain();
  shown.typist.Keys({keys::kAlt, keys::kF4});
  EXPECT_TRUE(shown.typist.Until([&] { return requests == 1; }));
  EXPECT_TRUE(shown.typist.Widget("frmMain")->isVisible());
}

TEST(MainWindow, IsAsHighAsTheFormSaysFrameIncluded) {
  ShownWindows shown;
  shown.ShowMain();
  const QWidget* const window = shown.typist.Widget("frmMain");
  const QWidget* const deck = shown.typist.Widget("framePlayer");
  EXPECT_EQ(window->frameGeometry().height() * 15, shown.main.frmMain.Height);
  EXPECT_EQ(window->frameGeometry().left() * 15, shown.main.frmMain.Left);
  EXPECT_EQ(window->frameGeometry().top() * 15, shown.main.frmMain.Top);
  EXPECT_GE(shown.main.frmMain.AboveContent,
            (deck->mapToGlobal(QPoint(0, 0)).y() - window->frameGeometry().top()) * 15);
}

TEST(MainWindow, IsNoLargerThanTheScreenAndStandsOnIt) {
  ShownWindows shown;
  shown.ShowMain();
  forms::Window& form = shown.main.frmMain;
  const QWidget* const window = shown.typist.Widget("frmMain");
  form.Left = 30000;
  form.Top = 30000;
  form.Height = 30000;
  shown.typist.Rest(300);
  EXPECT_TRUE(window->screen()->availableGeometry().contains(window->frameGeometry()));
  EXPECT_EQ(form.Height, window->frameGeometry().height() * 15) << "the form knows what it got";
  EXPECT_EQ(form.Left, window->frameGeometry().left() * 15);
}

TEST(MainWindow, TabLeadsOverTheDeckInReadingOrderAndIntoTheList) {
  ShownWindows shown;
  shown.ShowMain();
  shown.FillQueue();
  shown.main.frmMain.FocusOn(shown.main.txtFocus);
  shown.typist.Rest();
  std::string order;
  for (int press = 0; press < 12; ++press) {
    shown.typist.Keys({keys::kTab});
    order += QGuiApplication::focusObject()->objectName().toStdString() + " ";
  }
  EXPECT_EQ(order,
            "slPosition cmdSkipBeg cmdRewind cmdPlay cmdForward cmdSkipEnd Slider1 cmdNormalSpeed "
            "sldVol cmdEQ cmdUpdateFileList listViewInQueue ");
}

TEST(MainWindow, TheMiniPlayerIsTheDeckAndNothingElse) {
  ShownWindows shown;
  shown.ShowMain();
  forms::Window& form = shown.main.frmMain;
  shown.PlayDocument();
  shown.main.mnuFile.Enabled = false;
  shown.main.mnuView.Enabled = false;
  shown.main.mnuReport.Enabled = false;
  shown.main.frameFiles.Visible = false;
  form.Height = form.AboveContent + shown.main.framePlayer.Height;
  form.Left = 150;
  form.Top = 300;
  shown.typist.Rest(300);
  shown.typist.Picture("mini_player");
  const QWidget* const deck = shown.typist.Widget("framePlayer");
  const QRect outer = shown.typist.Widget("frmMain")->frameGeometry();
  EXPECT_EQ(outer.topLeft(), QPoint(10, 20));
  EXPECT_EQ(outer.height() * 15, form.Height);
  EXPECT_EQ(deck->height() * 15, shown.main.framePlayer.Height);
  EXPECT_LE(deck->mapToGlobal(deck->rect().bottomLeft()).y(), outer.bottom());

  shown.main.frameFiles.Visible = true;
  form.Height = 9600;
  shown.typist.Rest(300);
  EXPECT_EQ(shown.typist.Widget("frmMain")->frameGeometry().height(), 640);
}

TEST(MainWindow, GoesWhereTheUserDragsItAndStaysThere) {
  ShownWindows shown;
  shown.ShowMain();
  forms::Window& form = shown.main.frmMain;
  const QWidget* const window = shown.typist.Widget("frmMain");
  const forms::Twips left = form.Left;
  const forms::Twips top = form.Top;
  const QPoint title = window->frameGeometry().topLeft() + QPoint(window->width() / 2, 8);
  shown.typist.PressAt(title);
  shown.typist.MoveTo(title + QPoint(30, 20));
  shown.typist.MoveTo(title + QPoint(60, 40));
  shown.typist.Release();
  EXPECT_TRUE(shown.typist.Until([&] { return form.Left != left; }));
  EXPECT_NEAR(form.Left - left, 60 * 15, 15 * 10);
  EXPECT_NEAR(form.Top - top, 40 * 15, 15 * 10);
  const QPoint place = window->frameGeometry().topLeft();
  form.Visible = false;
  shown.typist.Rest();
  form.Visible = true;
  shown.typist.Rest(300);
  EXPECT_EQ(window->frameGeometry().topLeft(), place);
}

TEST(MainWindow, MinimizesAndComesBack) {
  ShownWindows shown;
  int resizes = 0;
  shown.main.frmMain.OnResize = [&] { ++resizes; };
  shown.ShowMain();
  const int before = resizes;
  QWidget* const window = shown.typist.Widget("frmMain");
  shown.main.frmMain.WindowShape = forms::Shape::Minimized;
  EXPECT_TRUE(
      shown.typist.Until([&] { return shown.typist.HasState(*window, "_NET_WM_STATE_HIDDEN"); }));
  EXPECT_EQ(resizes, before) << "what a rule itself has written does not come back as a resize";
  shown.typist.Summon(*window);
  EXPECT_TRUE(
      shown.typist.Until([&] { return shown.main.frmMain.WindowShape == forms::Shape::Normal; }));
  EXPECT_EQ(resizes, before + 1);
  EXPECT_FALSE(shown.typist.HasState(*window, "_NET_WM_STATE_HIDDEN"));
}

TEST(MainWindow, ARuleBringsItBackAtAnotherHeight) {
  ShownWindows shown;
  shown.ShowMain();
  int resizes = 0;
  shown.main.frmMain.OnResize = [&] { ++resizes; };
  const QWidget* const window = shown.typist.Widget("frmMain");
  const auto hidden = [&] { return shown.typist.HasState(*window, "_NET_WM_STATE_HIDDEN"); };
  shown.main.frmMain.WindowShape = forms::Shape::Minimized;
  ASSERT_TRUE(shown.typist.Until(hidden));
  shown.main.frmMain.WindowShape = forms::Shape::Normal;
  shown.main.frmMain.Height = 7500;
  EXPECT_TRUE(shown.typist.Until([&] { return !hidden(); }));
  shown.typist.Rest(300);
  EXPECT_EQ(window->frameGeometry().height(), 500);
  EXPECT_EQ(shown.main.frmMain.WindowShape, forms::Shape::Normal);
  EXPECT_EQ(resizes, 0);
}

TEST(MainWindow, GettingTheDesktopsFocusActivatesItOnce) {
  ShownWindows shown;
  int activations = 0;
  shown.main.frmMain.OnActivate = [&] { ++activations; };
  shown.ShowMain();
  EXPECT_EQ(activations, 1);
  shown.about.frmAbout.Visible = true;
  shown.typist.Rest(300);
  shown.about.frmAbout.Visible = false;
  shown.typist.Rest(300);
  EXPECT_EQ(activations, 2);
}

TEST(MainWindow, StaysOnTopThroughHideAndShow) {
  ShownWindows shown;
  shown.ShowMain();
  const QWidget* const window = shown.typist.Widget("frmMain");
  const auto above = [&] { return shown.typist.HasState(*window, "_NET_WM_STATE_ABOVE"); };
  shown.main.frmMain.TopMost = true;
  EXPECT_TRUE(shown.typist.Until(above));
  shown.main.frmMain.Visible = false;
  shown.typist.Rest();
  shown.main.frmMain.Visible = true;
  EXPECT_TRUE(shown.typist.Until(above));
  shown.main.frmMain.TopMost = false;
  EXPECT_TRUE(shown.typist.Until([&] { return !above(); }));
}

TEST(SplashWindow, AClickOnTheSignEndsTheWait) {
  ShownWindows shown;
  int clicks = 0;
  shown.splash.picIcon.OnClick = [&] { ++clicks; };
  shown.splash.lblVersion.Value = "Version:  03.08.00.TD   1";
  shown.splash.ProgressBar1.Value = 6;
  shown.splash.frmInitSplash.Centre();
  shown.splash.frmInitSplash.Visible = true;
  shown.typist.Rest(300);
  shown.typist.Picture("splash");
  shown.typist.Click("picIcon");
  EXPECT_TRUE(shown.typist.Until([&] { return clicks == 1; }));
}

TEST(AboutBox, ClosesByItsButton) {
  ShownWindows shown;
  shown.about.mnuClose.OnPress = [&] { shown.about.frmAbout.Visible = false; };
  shown.about.lblVersion.Value = "Version 03.08.00.TD   1";
  shown.about.lblAboutDescription.Value =
      "Retrieve and play audio files from digital portable recorders, pc dictate stations, digital "
      "dictation systems, and ftp sites";
  shown.about.frmAbout.Centre();
  shown.about.frmAbout.Visible = true;
  shown.typist.Rest(300);
  shown.typist.Picture("about");
  shown.typist.Click("mnuClose");
  EXPECT_TRUE(shown.typist.Until([&] { return !shown.about.frmAbout.Visible; }));
}

}  // namespace
}  // namespace tavlo::test
