#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

#include "import_view/shown_import.h"
#include "platform/qt/colours.h"
#include "support/keys.h"

namespace tavlo::test {
namespace {

using ImportView = ShownImport;

constexpr const char* kOfTheImportView[] = {
    "listViewImport",           "cmdRefreshImportList",
    "cmdDeleteOneImportFile",   "cmdDeleteAllImportFile",
    "cmdSendImportFileToQueue", "cmdSendAllImportFilesToQueue",
    "txtWavImportSubdirectory", "scrollImportWavSubDirectories",
    "chkImportSynchronize",     "frameImportDemographics",
    "comboAuthorLastName",      "lblAuthorLastName",
    "txtImportAuthorLastName",  "lblAuthorID",
    "txtImportAuthorID",        "lblDepartment",
    "txtImportDepartment",      "lblWorktype",
    "txtImportWorktype",        "lblImportSubject",
    "txtImportSubject",         "lblSystemID",
    "txtImportSystemID",        "chkImportPriority",
    "lblImportGoesAs",          "lblImportDocument"};

QPalette DarkDesktop() {
  QPalette dark(QColor(0x35, 0x35, 0x35));
  dark.setColor(QPalette::Base, QColor(0x2A, 0x2A, 0x2A));
  return dark;
}

TEST_F(ImportView, HasAPlaceForEveryControlOfItsForm) {
  FillList();
  shown.ShowMain();
  shown.typist.Picture("import_light");
  for (const char* const name : kOfTheImportView) {
    const QWidget* const widget = shown.typist.Widget(name);
    ASSERT_NE(widget, nullptr) << name;
    EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << name;
    EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << name;
  }
}

TEST_F(ImportView, ShowsEverythingInAWindowOfItsUsualSize) {
  FillList();
  shown.ShowMain();
  for (const char* const name : kOfTheImportView) {
    const QWidget* const widget = shown.typist.Widget(name);
    ASSERT_NE(widget, nullptr) << name;
    EXPECT_EQ(widget->visibleRegion().boundingRect(), widget->rect()) << name;
  }
}

TEST_F(ImportView, StaysWholeWithLettersOfTwiceTheSize) {
  const DesktopLetters letters(20);
  FillList();
  shown.ShowMain();
  shown.typist.Picture("import_letters_200");
  for (const char* const name :
       {"cmdDeleteOneImportFile", "cmdDeleteAllImportFile", "cmdSendImportFileToQueue",
        "cmdSendAllImportFilesToQueue", "scrollImportWavSubDirectories", "cmdRefreshImportList"}) {
    const QWidget* const widget = shown.typist.Widget(name);
    ASSERT_NE(widget, nullptr) << name;
    EXPECT_EQ(widget->visibleRegion().boundingRect(), widget->rect()) << name;
  }
}

TEST_F(ImportView, FollowsADarkDesktop) {
  const QPalette desktop = QApplication::palette();
  QApplication::setPalette(DarkDesktop());
  FillList();
  shown.ShowMain();
  shown.typist.Picture("import_dark");
  const auto* const list = qobject_cast<QTableView*>(shown.typist.Widget("listViewImport"));
  EXPECT_LT(list->palette().color(QPalette::Base).lightness(), 128);
  const QPalette urgent = shown.typist.Widget("lblImportDocument")->palette();
  EXPECT_GE(platform::qt::Contrast(urgent.color(QPalette::WindowText), QColor(0x41, 0x41, 0x41)),
            4.5);
  QApplication::setPalette(desktop);
}

TEST_F(ImportView, SaysWhatToDoWhereADirectoryIsEmpty) {
  shown.ShowMain();
  shown.typist.Picture("import_empty");
  const QWidget* const list = shown.typist.Widget("listViewImport");
  EXPECT_EQ(list->accessibleDescription(),
            "Nothing to import. Files that are put into this directory show here.");
}

TEST_F(ImportView, SaysThatItsListIsBuiltWhereTheListWillStand) {
  FillList();
  shown.ShowMain();
  const QWidget* const list = shown.typist.Widget("listViewImport");
  const QRect place(list->mapToGlobal(QPoint(0, 0)), list->size());
  shown.main.listViewImport.Visible = false;
  shown.main.lblRefreshingImportList1.Visible = true;
  shown.main.lblRefreshingImportList2.Visible = true;
  shown.typist.Rest();
  shown.typist.Picture("import_refreshing");
  for (const char* const name : {"lblRefreshingImportList1", "lblRefreshingImportList2"}) {
    const QWidget* const words = shown.typist.Widget(name);
    ASSERT_NE(words, nullptr) << name;
    EXPECT_TRUE(place.contains(QRect(words->mapToGlobal(QPoint(0, 0)), words->size()))) << name;
  }
  shown.main.lblRefreshingImportList1.Visible = false;
  shown.main.lblRefreshingImportList2.Visible = false;
  shown.main.listViewImport.Visible = true;
  shown.typist.Rest();
  EXPECT_EQ(QRect(list->mapToGlobal(QPoint(0, 0)), list->size()), place);
}

TEST_F(ImportView, SaysOverWhicheverListShowsThatFilesAreSorted) {
  FillList();
  shown.ShowMain();
  const QWidget* const list = shown.typist.Widget("listViewImport");
  const int before = list->height();
  shown.main.lblFtpParsing.Visible = true;
  shown.main.lblFtpWait.Visible = true;
  shown.typist.Rest();
  shown.typist.Picture("import_sorting");
  const auto* const words = qobject_cast<QLabel*>(shown.typist.Widget("lblFtpParsing"));
  ASSERT_NE(words, nullptr);
  EXPECT_EQ(words->text(), "Processing files...");
  EXPECT_NE(shown.typist.Widget("lblFtpWait"), nullptr);
  EXPECT_EQ(list->height(), before) << "nothing moves for it";
  shown.main.lblFtpParsing.Visible = false;
  shown.main.lblFtpWait.Visible = false;
  shown.typist.Rest();
  EXPECT_FALSE(words->isVisible());
}

TEST_F(ImportView, TabLeadsOverItInReadingOrder) {
  FillList();
  shown.ShowMain();
  shown.main.frmMain.FocusOn(shown.main.sldVol);
  shown.typist.Rest();
  std::string order;
  for (int press = 0; press < 17; ++press) {
    shown.typist.Keys({keys::kTab});
    order += QGuiApplication::focusObject()->objectName().toStdString() + " ";
  }
  EXPECT_EQ(order,
            "cmdEQ chkImportSynchronize cmdRefreshImportList scrollImportWavSubDirectories "
            "listViewImport comboAuthorLastName txtImportAuthorLastName txtImportAuthorID "
            "txtImportSubject txtImportDepartment txtImportWorktype txtImportSystemID "
            "chkImportPriority cmdDeleteOneImportFile cmdDeleteAllImportFile "
            "cmdSendAllImportFilesToQueue cmdSendImportFileToQueue ");
}

TEST_F(ImportView, ItsKeysThatSendHaveLettersOfTheirOwn) {
  std::string sent;
  shown.main.cmdSendImportFileToQueue.OnPress = [&] { sent += "one "; };
  shown.main.cmdSendAllImportFilesToQueue.OnPress = [&] { sent += "all "; };
  FillList();
  shown.ShowMain();
  shown.typist.Keys({keys::kAlt, 'o'});
  shown.typist.Keys({keys::kAlt, 'l'});
  EXPECT_TRUE(shown.typist.Until([&] { return sent == "one all "; })) << sent;
  const auto* const key =
      qobject_cast<QAbstractButton*>(shown.typist.Widget("cmdSendImportFileToQueue"));
  EXPECT_EQ(key->text(), "Send &One to Queue");
  EXPECT_EQ(key->accessibleName(), "Send One to Queue");
}

TEST_F(ImportView, TheRefreshKeyOfAKeyboardRefreshesIt) {
  int refreshes = 0;
  shown.main.cmdRefreshImportList.OnPress = [&] { ++refreshes; };
  shown.ShowMain();
  shown.typist.Keys({keys::kF5});
  EXPECT_TRUE(shown.typist.Until([&] { return refreshes == 1; }));
}

}  // namespace
}  // namespace tavlo::test
