#include "shell/load.h"

#include <gtest/gtest.h>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

struct LoadTest : testing::Test, DeckBench {
  void LoadWith(const std::string& field, const std::string& value) {
    PlaceSettings({{field, value}});
    usbWatcher.OnStart = [this] { attachedBeforeThePedals = ftp.attached; };
    deck.Start();
    shell::Load load(loop, deck.windows, *deck.Built());
    load.LoadMainWindow();
    form.frmMain.OnActivate = nullptr;
  }

  bool attachedBeforeThePedals = false;
};

TEST_F(LoadTest, ServersComeBeforeThePedals) {
  LoadWith("AudioPromptsFlag", "Y");
  EXPECT_TRUE(attachedBeforeThePedals);
}

TEST_F(LoadTest, SettingsOfAnOldDatabaseShowAtTheStartThatTakesThemOver) {
  SettingsTables old = databases.Shipped();
  old.at(store::Table::GeneralSettings).at(0).at("SubjectHeading") = "Patient";
  old.at(store::Table::ImportAuthors).at(0).at("AuthorLastName") = "Brown";
  databases.Place(Path("/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.mdb"), old);
  loop.Expect({.reply = base::Reply::Yes});
  LoadWith("AudioPromptsFlag", "Y");
  EXPECT_EQ(config.txtSubjectHeading.Value.Get(), "Patient");
  EXPECT_EQ(form.txtImportAuthorLastName.Value.Get(), "Brown");
}

TEST_F(LoadTest, OldDatabaseThatCouldNotBeReadIsNamedInTheQuietLineUntilTheFirstCommand) {
  disk.WithFile(Path("/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.mdb"), "no database");
  loop.Expect({.reply = base::Reply::Yes});
  StartUntilReady();
  EXPECT_EQ(loop.Shown.back().text, "Tavlo Deck upgrade is complete.");
  EXPECT_TRUE(form.lblNotice.Visible);
  EXPECT_NE(form.lblNotice.Value.Get().find("Nothing of the old settings was taken over."),
            std::string::npos);
  form.cmdUpdateFileList.Press(forms::By::Hand);
  EXPECT_FALSE(form.lblNotice.Visible);
}

TEST_F(LoadTest, PathsOfARootThatWasCopiedFromAnotherHomeAreThisRootsFromTheFirstSweepOn) {
  disk.WithFile(Path("/Files/eW2Queue/a.eW2"));
  LoadWith("Ew2QueuePath", "/home/anna/Lyrane/TavloDeck/Files/eW2Queue");
  EXPECT_EQ(config.txtEw2QueuePath.Value.Get(), Path("/Files/eW2Queue"));
  EXPECT_NE(form.lblNotice.Value.Get().find("/home/anna"), std::string::npos);
  loop.Advance(2s);
  ASSERT_EQ(form.listViewInQueue.Rows().size(), 1u);
}

TEST_F(LoadTest, WhatWaitsInADropFolderIsInTheQueueOnceTheWindowShows) {
  const std::string dropped = Path("/Files/eW2Queue/a.eW2");
  disk.WithFile(dropped);
  LoadWith("AudioPromptsFlag", "Y");
  EXPECT_TRUE(disk.Has(dropped));
  loop.Advance(2s);
  EXPECT_FALSE(disk.Has(dropped));
  ASSERT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_EQ(form.listViewInQueue.TextAt(0, forms::document_column::FileName), "a.wav");
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

TEST_F(LoadTest, ImportListGetsItsColumnsAndShowsTheFirstDirectoryAndProfile) {
  LoadWith("ImportWavSynchronizeFlag", "Y");
  EXPECT_EQ(form.listViewImport.Columns().size(), 3u);
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "0");
  EXPECT_EQ(form.txtImportAuthorLastName.Value.Get(), "Author1");
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

TEST_F(LoadTest, WhatWaitsIsTakenAsSeenBeforeTheFirstRefreshBringsItIn) {
  disk.WithFile(Path("/Files/eW2Queue/a.eW2"));
  disk.WithFile(Path("/Files/ImportQueue/letter P_.wav"));
  LoadWith("WorkWaitingAlertMode", "A");
  ASSERT_TRUE(deck.Built()->refresh.tmrGetAllJobs.Enabled())
      << "the first refresh is still to come";
  const lists::WaitingFigures& figures = deck.Built()->waitingFigures;
  EXPECT_EQ(figures.LastQueueCount, 1);
  EXPECT_EQ(figures.LastQueuePriorityCount, 0);
  EXPECT_EQ(figures.LastImportCount, 1);
  EXPECT_EQ(figures.LastImportPriorityCount, 1);
}

TEST_F(LoadTest, AlertTimerOfNoAlertTakesTheIntervalOfTheRefresh) {
  LoadWith("AutoQueueRefreshInterval", "60");
  EXPECT_EQ(deck.Built()->waitingWork.tmrWorkWaitingAlert.Interval(), 3000ms);
  EXPECT_TRUE(deck.Built()->waitingWork.tmrWorkWaitingAlert.Enabled());
  EXPECT_TRUE(deck.Built()->refresh.tmrGetAllJobs.Enabled());
}

}  // namespace
}  // namespace tavlo::test
