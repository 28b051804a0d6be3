#include <gtest/gtest.h>

#include <QApplication>
#include <QTableView>
#include <string>

#include "support/keys.h"
#include "support/shown_windows.h"
#include "support/simulated_folders.h"
#include "window/folder_browser.h"

namespace tavlo::test {
namespace {

/// The page of the paths, with the real rules of its list of folders behind it.
class FolderList : public testing::Test {
 protected:
  FolderList() {
    browser.OfferPlaces();
    form.frmConfiguration.Centre();
    form.frmConfiguration.Visible = true;
    form.frameSettings.Visible = false;
    form.frameConfigAlternatePath.Visible = true;
    shown.typist.Rest(300);
  }

  const std::string& Browsed() const { return form.lblBrowsedFolder.Value; }
  QPoint RowAt(int row) {
    auto* const view = qobject_cast<QTableView*>(shown.typist.Widget("Dir1"));
    return view->viewport()->mapToGlobal(view->visualRect(view->model()->index(row, 0)).center());
  }

  ShownWindows shown;
  forms::ConfigurationForm& form = shown.configuration;
  SimulatedFolders machine;
  window::FolderBrowser browser{form, machine};
};

TEST_F(FolderList, DoubleClickOpensAFolderAndTheFirstRowLeadsOut) {
  ASSERT_EQ(form.Dir1.TextAt(3, 0), "work");
  shown.typist.DoubleClickAt(RowAt(3));
  EXPECT_EQ(Browsed(), "/home/typist/work");
  shown.typist.DoubleClickAt(RowAt(0));
  EXPECT_EQ(Browsed(), "/home/typist");
}

TEST_F(FolderList, EnterOpensTheFolderThatTheArrowsReachAndBackspaceLeadsOut) {
  shown.typist.ClickAt(RowAt(1));
  shown.typist.Keys({keys::kDown});
  shown.typist.Keys({keys::kDown});
  shown.typist.Keys({keys::kReturn});
  EXPECT_EQ(Browsed(), "/home/typist/work");
  shown.typist.Keys({keys::kBackspace});
  EXPECT_EQ(Browsed(), "/home/typist");
  shown.typist.Keys({keys::kBackspace});
  shown.typist.Keys({keys::kBackspace});
  EXPECT_EQ(Browsed(), "/");
  shown.typist.Keys({keys::kBackspace});
  EXPECT_EQ(Browsed(), "/");
}

TEST_F(FolderList, EscapeClosesTheListThatIsDroppedDownAndThenTheWindow) {
  int asked = 0;
  form.frmConfiguration.OnCloseRequest = [&] { ++asked; };
  shown.typist.Click("Drive1");
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  shown.typist.Keys({keys::kEscape});
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  EXPECT_EQ(asked, 0);
  shown.typist.Keys({keys::kEscape});
  EXPECT_EQ(asked, 1);
}

TEST_F(FolderList, RestsWhileTheDriveCannotBeRead) {
  machine.places.push_back({"STICK", "/media/stick"});
  browser.OfferPlaces();
  form.Drive1.RowClick(2);
  shown.typist.Rest();
  shown.typist.Picture("drive-unreadable");
  EXPECT_FALSE(shown.typist.Widget("Dir1")->isEnabled());
  form.Drive1.RowClick(1);
  shown.typist.Rest();
  EXPECT_TRUE(shown.typist.Widget("Dir1")->isEnabled());
  EXPECT_EQ(Browsed(), "/");
}

}  // namespace
}  // namespace tavlo::test
