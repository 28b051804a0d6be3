#include "shell/load.h"

#include <gtest/gtest.h>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

/// Loads the main window with every hook of the rooms beside it filled.
struct LoadTest : testing::Test, DeckBench {
  std::string ran;

  void LoadWith(const std::string& field, const std::string& value) {
    auto tables = databases.Shipped();
    tables[store::Table::GeneralSettings][0][field] = value;
    databases.Place(SettingsPath(), tables);
    deck.Start();
    shell::Rooms& rooms = *deck.Built();
    shell::Load load(loop, form, config, rooms.mainWindow, rooms.configuration, rooms.binding,
                     deckFolders, rooms.engine, rooms.soundShaping, rooms.queue, rooms.completed,
                     rooms.refresh, rooms.branding, rooms.fascia, rooms.sound, rooms.listHooks,
                     {.attachFtp = [this] { ran += "ftp "; },
                      .upgradeDatabase = [this] { ran += "upgrade "; },
                      .purgeCompletedFiles = [this] { ran += "purge "; },
                      .startUsbPedal = [this] { ran += "usb "; }});
    load.LoadMainWindow();
    form.frmMain.OnActivate = nullptr;
  }

  store::WorkFolders deckFolders{disk, kRoot};
};

TEST_F(LoadTest, RoomsBesideItAreStartedInTheirOrder) {
  LoadWith("DeleteCompletedFiles", "30");
  EXPECT_EQ(ran, "ftp upgrade purge usb ");
}

TEST_F(LoadTest, NoDaysToKeepRunNoPurge) {
  LoadWith("DeleteCompletedFiles", "0");
  EXPECT_EQ(ran, "ftp upgrade usb ");
}

TEST_F(LoadTest, DaysThatAreNoByteRunNoPurge) {
  LoadWith("DeleteCompletedFiles", "300");
  EXPECT_EQ(ran, "ftp upgrade usb ");
}

TEST_F(LoadTest, BothListsOfDocumentsGetTheirColumnsUnderTheUsersOwnWord) {
  LoadWith("SubjectHeading", "Patient");
  for (const forms::Table* list : {&form.listViewInQueue, &form.listViewCompleted}) {
    ASSERT_EQ(list->Columns().size(), 14u) << list->Name;
    EXPECT_EQ(list->Columns()[forms::document_column::Subject].title, "Patient");
  }
}

TEST_F(LoadTest, ImportLinkIsCheckedWhenItsSettingSaysSo) {
  LoadWith("ImportWavSynchronizeFlag", "Y");
  EXPECT_TRUE(form.chkImportSynchronize.Value);
}

TEST_F(LoadTest, FullShapeIsTakenAsTheWindowStandsOnTheScreen) {
  LoadWith("AudioPromptsFlag", "Y");
  const window::MainWindow& window = deck.Built()->mainWindow;
  EXPECT_EQ(window.WindowHeight, form.frmMain.Height);
  EXPECT_EQ(window.WindowWidth, form.frmMain.Width);
  EXPECT_EQ(form.frmMain.Left, (form.frmMain.ScreenWidth - form.frmMain.Width) / 2);
  EXPECT_TRUE(deck.Built()->binding.AudioPromptsOn);
}

TEST_F(LoadTest, TitleBarThatIsNotStoredStaysToBeMeasured) {
  form.frmMain.AboveContent = 450;
  LoadWith("TitleBarHeight", "");
  EXPECT_EQ(form.txtTitleBarHeight.Value.Get(), "");
}

TEST_F(LoadTest, AlertTimerOfNoAlertTakesTheIntervalOfTheRefresh) {
  LoadWith("AutoQueueRefreshInterval", "60");
  EXPECT_EQ(deck.Built()->refresh.tmrWorkWaitingAlert.Interval(), 3000ms);
  EXPECT_TRUE(deck.Built()->refresh.tmrWorkWaitingAlert.Enabled());
  EXPECT_TRUE(deck.Built()->refresh.tmrGetAllJobs.Enabled());
}

}  // namespace
}  // namespace tavlo::test
