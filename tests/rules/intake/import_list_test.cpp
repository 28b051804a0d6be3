#include "intake/import_list.h"

#include <gtest/gtest.h>

#include "support/import_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using forms::By;
using forms::Pointer;
using Spoken = std::vector<std::string>;
using Files = std::vector<std::string>;

struct ImportListTest : testing::Test, ImportBench {
  void Agree(int times) {
    for (int i = 0; i < times; ++i) loop.Expect({.reply = Reply::Yes});
  }
  std::string LengthAt(int row) {
    return form.listViewImport.TextAt(row, forms::import_column::Length);
  }
};

TEST_F(ImportListTest, ShowsEveryFileWhateverItsNameWithItsLength) {
  Put(0, "memo.wav", {.samples = 8000 * 61});
  Put(0, "notes.txt");
  file.Sounds.erase("/root/Files/ImportQueue/notes.txt");
  Refresh();
  EXPECT_EQ(Names(), (Files{"memo.wav", "notes.txt"}));
  EXPECT_EQ(LengthAt(0), "00:01:01");
  EXPECT_EQ(LengthAt(1), "00:00:00");
  EXPECT_EQ(form.listViewImport.Rows()[0].cells[forms::import_column::FileName].colour, 0u);
  EXPECT_EQ(importList.ImportCount, 2);
  EXPECT_EQ(Caption(), "Import:     2     00:01:01");
  EXPECT_TRUE(ButtonsAre(true));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
}

TEST_F(ImportListTest, AnEmptyDirectoryHasACaptionAndNoButtons) {
  Refresh();
  EXPECT_EQ(Caption(), "Import:     0     00:00:00");
  EXPECT_TRUE(ButtonsAre(false));
}

TEST_F(ImportListTest, ADirectoryWhoseFilesAreAllLockedGivesAnEmptyListWithItsCaption) {
  disk.OpenWriter(Put(0, "memo.wav"));
  Refresh();
  EXPECT_TRUE(Names().empty());
  EXPECT_EQ(Caption(), "Import:     0     00:00:00");
  EXPECT_TRUE(ButtonsAre(false));
}

TEST_F(ImportListTest, ColumnsAreMadeOnce) {
  const auto& columns = form.listViewImport.Columns();
  ASSERT_EQ(columns.size(), 3u);
  EXPECT_EQ(columns[forms::import_column::Nothing].width, 0);
  EXPECT_EQ(columns[forms::import_column::FileName].title, "File Name");
  EXPECT_EQ(columns[forms::import_column::FileName].width, 5000);
  EXPECT_EQ(columns[forms::import_column::Length].title, "Length");
}

TEST_F(ImportListTest, TheRootsOwnFoldersAreNoRows) {
  ASSERT_TRUE(disk.Has("/root/Files/ImportQueue/7"));
  Refresh();
  EXPECT_TRUE(Names().empty());
}

TEST_F(ImportListTest, TheScrollBarsEndIsDirectoryTwentyFiveAndItsBeginningTheRoot) {
  Put(0, "root.wav");
  Put(25, "last.wav");
  TurnTo(25);
  EXPECT_EQ(form.scrollImportWavSubDirectories.Value, 26);
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "25");
  EXPECT_EQ(Names(), Files{"last.wav"});
  TurnTo(0);
  EXPECT_EQ(form.scrollImportWavSubDirectories.Value, 1);
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "0");
  EXPECT_EQ(Names(), Files{"root.wav"});
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportListTest, TurningToADirectoryDisablesTheReportAndThawsTheRest) {
  Put(3, "memo.wav");
  TurnTo(3);
  EXPECT_FALSE(form.mnuReport.Enabled);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_TRUE(form.listViewImport.Enabled);
  EXPECT_TRUE(ButtonsAre(true));
}

TEST_F(ImportListTest, WithTheLinkADirectoryBringsItsProfile) {
  TurnTo(6);
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 6);
  EXPECT_EQ(form.txtImportAuthorCount.Value.Get(), "7");
  form.chkImportSynchronize.Click();
  TurnTo(9);
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 6);
  EXPECT_EQ(form.txtImportAuthorCount.Value.Get(), "7");
}

TEST_F(ImportListTest, ACheckedLinkBringsTheProfileOfTheDirectoryOnShow) {
  form.chkImportSynchronize.Click();
  EXPECT_EQ(form.txtImportSynchronize.Value.Get(), "N");
  TurnTo(4);
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 0);
  form.chkImportSynchronize.Click();
  EXPECT_EQ(form.txtImportSynchronize.Value.Get(), "Y");
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 4);
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "4");
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportListTest, NoDirectoryIsChosenInsideTheWaitOfAnotherListChange) {
  {
    const window::ListPause pause(window.guards);
    TurnTo(5);
    form.comboAuthorLastName.RowClick(8);
  }
  EXPECT_EQ(form.scrollImportWavSubDirectories.Value, 1);
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "0");
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 0);
}

TEST_F(ImportListTest, OfTwoChoicesInOneTurnTheLastOneShows) {
  Put(8, "eight.wav");
  loop.Post([this] { TurnTo(8); });
  TurnTo(5);
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "8");
  EXPECT_EQ(Names(), Files{"eight.wav"});
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 8);
}

TEST_F(ImportListTest, ADssFileInEitherCaseIsConvertedAndItsWaveTakesItsPlace) {
  Put(0, "LETTER.DSS");
  Refresh();
  EXPECT_EQ(conversion.Asked, Files{"LETTER.DSS"});
  EXPECT_EQ(Names(), Files{"LETTER.wav"});
  EXPECT_EQ(LengthAt(0), "00:00:10");
  EXPECT_FALSE(disk.Has("/root/Files/ImportQueue/LETTER.DSS"));
}

TEST_F(ImportListTest, ADssFileThatIsNotConvertedStandsUnderTheNameOfItsWave) {
  conversion.Fails = true;
  Put(0, "letter.dss");
  Refresh();
  EXPECT_EQ(Names(), Files{"letter.wav"});
  EXPECT_EQ(LengthAt(0), "00:00:00");
  EXPECT_TRUE(disk.Has("/root/Files/ImportQueue/letter.dss"));
}

TEST_F(ImportListTest, ADssFileThatWasNotConvertedIsFoundAgainByTheNextScan) {
  conversion.Fails = true;
  Put(0, "letter.dss");
  Refresh();
  Refresh();
  EXPECT_EQ(conversion.Asked, (Files{"letter.dss", "letter.dss"}));
  EXPECT_EQ(Names(), Files{"letter.wav"});
}

TEST_F(ImportListTest, DeleteAllTakesADssFileThatWasNotConvertedToo) {
  conversion.Fails = true;
  Put(0, "letter.dss");
  Refresh();
  loop.Expect({.reply = base::Reply::Yes});
  loop.Expect({.reply = base::Reply::Yes});
  form.cmdDeleteAllImportFile.Press(forms::By::Hand);
  EXPECT_FALSE(disk.Has("/root/Files/ImportQueue/letter.dss"));
  EXPECT_EQ(Notice(), "");
}

TEST_F(ImportListTest, ALockedDssFileIsNotConverted) {
  disk.OpenWriter(Put(0, "letter.dss"));
  Refresh();
  EXPECT_TRUE(conversion.Asked.empty());
}

TEST_F(ImportListTest, NothingElseChangesTheListUnderTheBoxOfAConversion) {
  Put(0, "letter.dss");
  conversion.Meanwhile = [this] { form.cmdRefreshImportList.Press(); };
  Refresh();
  EXPECT_EQ(conversion.Asked.size(), 1u);
  EXPECT_EQ(Names().size(), 1u);
}

TEST_F(ImportListTest, AScanStopsWhatPlays) {
  Put(0, "memo.wav");
  Play();
  Refresh();
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(ImportListTest, AScanPutsTheTimesToNought) {
  form.lblFileLengthHMS.Value = "00:01:00";
  form.lblFilePositionHMS.Value = "00:00:30";
  Refresh();
  EXPECT_EQ(form.lblFileLengthHMS.Value.Get(), "00:00:00");
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:00");
}

TEST_F(ImportListTest, ANegativeStatusEndsTheScanWithTheRowsMadeSoFar) {
  Put(0, "first.wav");
  file.TroubleWith = Put(0, "second.wav");
  Put(0, "third.wav");
  form.frameImport.Caption = "Import";
  Refresh();
  EXPECT_EQ(Names(), Files{"first.wav"});
  EXPECT_EQ(Caption(), "Import");
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
}

TEST_F(ImportListTest, ADirectoryThatCanNotBeReachedShowsTheBoxWithItsPath) {
  const std::string behind =
      " can not be found.\n\n\r"
      "The network may be down.  Please try again later, or enter the Configuration menu to check "
      "the settings for this path";
  disk.BreakListing(FolderOf(0));
  disk.BreakListing(FolderOf(7));
  Refresh();
  TurnTo(7);
  ASSERT_EQ(loop.Shown.size(), 2u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Network Fault");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Warning);
  EXPECT_EQ(loop.Shown[0].text, "The import file's path /root/Files/ImportQueue/" + behind);
  EXPECT_EQ(loop.Shown[1].text, "The import file's path /root/Files/ImportQueue/7" + behind);
}

TEST_F(ImportListTest, AWalkThatBreaksOffShowsTheBoxAndKeepsTheRowsMadeSoFar) {
  Put(0, "first.wav");
  Put(0, "second.wav");
  disk.BreakListingAfter(FolderOf(0), 1);
  Refresh();
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(Names(), Files{"first.wav"});
}

TEST_F(ImportListTest, RowsOfAnotherDirectoryDoNotStandForOneThatCanNotBeReached) {
  Put(0, "memo.wav");
  Refresh();
  disk.BreakListing(FolderOf(7));
  TurnTo(7);
  EXPECT_TRUE(Names().empty());
}

TEST_F(ImportListTest, AClickOnAHeaderFlipsTheOrderAndEveryListIsSortedFromThenOn) {
  Put(0, "alpha.wav");
  Put(0, "memo.wav");
  Refresh();
  form.listViewImport.HeaderClick(forms::import_column::FileName);
  EXPECT_EQ(Names(), (Files{"memo.wav", "alpha.wav"}));
  Put(0, "zebra.wav");
  Refresh();
  EXPECT_EQ(Names(), (Files{"zebra.wav", "memo.wav", "alpha.wav"}));
}

TEST_F(ImportListTest, RefreshHidesTheListWhileItIsBuiltAndSaysSo) {
  Put(0, "memo.wav");
  bool hidden = false;
  std::string caption;
  base::Timer look(loop, "look", base::Duration{1000});
  look.OnTick = [&] {
    hidden = !form.listViewImport.Visible && !form.cmdRefreshImportList.Visible &&
             !form.mnuFile.Enabled && !form.mnuView.Enabled && !form.mnuReport.Enabled;
    caption = Caption();
    look.Stop();
  };
  look.Start();
  form.cmdRefreshImportList.Press(By::Hand);
  EXPECT_TRUE(hidden);
  EXPECT_EQ(caption, "Import");
  EXPECT_EQ(Caption(), "Import:     1     00:00:10");
  EXPECT_TRUE(form.listViewImport.Visible);
  EXPECT_TRUE(form.cmdRefreshImportList.Visible);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_TRUE(form.mnuReport.Enabled);
  EXPECT_TRUE(ButtonsAre(true));
  EXPECT_EQ(prompts, Spoken{"RefreshImport"});
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportListTest, AListThatWasNotReadIsNotSaidToBeUpToDate) {
  disk.BreakListing(FolderOf(0));
  form.cmdRefreshImportList.Press(By::Hand);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(ImportListTest, AQuietRefreshLeavesTheKeyboardWhereItIs) {
  form.frmMain.FocusOn(form.txtImportSubject);
  const window::QuietRefreshing quiet(window.guards);
  form.cmdRefreshImportList.Press();
  EXPECT_EQ(form.frmMain.Focused(), &form.txtImportSubject);
}

TEST_F(ImportListTest, NothingIsChosenOnceTheListIsBuiltAnew) {
  Put(0, "memo.wav");
  Choose("memo.wav");
  ASSERT_EQ(importList.SelectedImportFile, "memo.wav");
  TurnTo(7);
  EXPECT_EQ(importList.SelectedImportFile, "");
}

TEST_F(ImportListTest, DeleteOneAsksAndDeletesInTheDirectoryOnShow) {
  Put(0, "memo.wav");
  Put(7, "memo.wav");
  TurnTo(7);
  Choose("memo.wav");
  Agree(1);
  form.cmdDeleteOneImportFile.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Import");
  EXPECT_EQ(loop.Shown[0].text, "Are you sure you want to delete the selected Imported file?");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Question);
  EXPECT_EQ(loop.Shown[0].buttons, base::Buttons::YesNo);
  EXPECT_TRUE(disk.Has(FolderOf(0) + "memo.wav"));
  EXPECT_FALSE(disk.Has(FolderOf(7) + "memo.wav"));
  EXPECT_TRUE(Names().empty());
  EXPECT_EQ(importList.SelectedImportFile, "");
  EXPECT_EQ(prompts, Spoken{"DeleteOne"});
  EXPECT_TRUE(ButtonsAre(false));
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportListTest, DeleteOneWithNothingChosenOnlySaysSo) {
  Put(0, "memo.wav");
  Refresh();
  form.cmdDeleteOneImportFile.Press(By::Hand);
  EXPECT_EQ(prompts, Spoken{"DeleteError"});
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportListTest, DeleteOneThatIsRefusedKeepsFileAndChoice) {
  const std::string path = Put(0, "memo.wav");
  Choose("memo.wav");
  loop.Expect({.reply = Reply::No});
  form.cmdDeleteOneImportFile.Press(By::Hand);
  EXPECT_TRUE(disk.Has(path));
  EXPECT_EQ(importList.SelectedImportFile, "memo.wav");
}

TEST_F(ImportListTest, AFileThatCameUnderTheNameOfTheChosenOneIsNotDeleted) {
  const std::string path = Put(0, "memo.wav");
  Choose("memo.wav");
  loop.Expect({.reply = Reply::Yes,
               .meanwhile = [&] { disk.Write(path, "the next dictation of the recorder"); }});
  form.cmdDeleteOneImportFile.Press(By::Hand);
  EXPECT_EQ(disk.Contents(path), "the next dictation of the recorder");
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(), "Not deleted: it has changed since the list was built. File: memo.wav");
}

TEST_F(ImportListTest, DeleteAllAsksTwiceAndEmptiesOnlyTheDirectoryOnShow) {
  Put(0, "memo.wav");
  Put(0, "notes.txt");
  Put(7, "memo.wav");
  Choose("memo.wav");
  Agree(2);
  form.cmdDeleteAllImportFile.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 2u);
  EXPECT_EQ(loop.Shown[0].text, "Are you sure you want to delete all the Imported files?");
  EXPECT_EQ(loop.Shown[1].text,
            "Are you absolutely sure you want to delete all the Imported files?");
  for (const base::MessageBox& box : loop.Shown) EXPECT_EQ(box.title, "Tavlo Deck - Import");
  EXPECT_FALSE(disk.Has(FolderOf(0) + "memo.wav"));
  EXPECT_FALSE(disk.Has(FolderOf(0) + "notes.txt"));
  EXPECT_TRUE(disk.Has(FolderOf(7) + "memo.wav"));
  EXPECT_TRUE(Names().empty());
  EXPECT_EQ(importList.SelectedImportFile, "");
  EXPECT_TRUE(ButtonsAre(false));
  EXPECT_EQ(prompts, Spoken{"DeleteAllImport"});
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportListTest, AfterDeleteAllTheCaptionCountsTheCompletedList) {
  for (int i = 0; i < 7; ++i) form.listViewCompleted.Add("");
  Put(0, "memo.wav");
  Refresh();
  Agree(2);
  form.cmdDeleteAllImportFile.Press(By::Hand);
  EXPECT_EQ(Caption(), "Import:     7     00:00:00");
  EXPECT_TRUE(Names().empty());
  Refresh();
  EXPECT_EQ(Caption(), "Import:     0     00:00:00");
}

TEST_F(ImportListTest, EitherNoKeepsEveryFile) {
  const std::string path = Put(0, "memo.wav");
  Refresh();
  loop.Expect({.reply = Reply::No});
  form.cmdDeleteAllImportFile.Press(By::Hand);
  EXPECT_EQ(loop.Shown.size(), 1u);
  Agree(1);
  loop.Expect({.reply = Reply::No});
  form.cmdDeleteAllImportFile.Press(By::Hand);
  EXPECT_EQ(loop.Shown.size(), 3u);
  EXPECT_TRUE(disk.Has(path));
}

TEST_F(ImportListTest, DeleteAllLeavesWhatIsWrittenAndWhatCameSinceTheListWasBuilt) {
  Put(0, "memo.wav");
  const std::string written = Put(0, "written.wav");
  Refresh();
  disk.OpenWriter(written);
  const std::string unseen = Put(0, "unseen.wav");
  Agree(2);
  form.cmdDeleteAllImportFile.Press(By::Hand);
  EXPECT_FALSE(disk.Has(FolderOf(0) + "memo.wav"));
  EXPECT_TRUE(disk.Has(written));
  EXPECT_TRUE(disk.Has(unseen));
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(),
            "Not all files were deleted. 1 file stays: new since the list was built. 1 file "
            "stays: still being written.");
}

TEST_F(ImportListTest, DeleteAllOfADirectoryThatIsEmptyByNowEndsAsUsual) {
  const std::string path = Put(0, "memo.wav");
  Refresh();
  disk.Remove(path);
  Agree(2);
  form.cmdDeleteAllImportFile.Press(By::Hand);
  EXPECT_EQ(prompts, Spoken{"DeleteAllImport"});
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
}

}  // namespace
}  // namespace tavlo::test
