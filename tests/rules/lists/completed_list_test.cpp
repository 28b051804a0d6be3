#include "lists/completed_list.h"

#include <gtest/gtest.h>

#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using base::operator""s;
using forms::By;
using forms::Pointer;
namespace column = forms::document_column;

struct CompletedListTest : testing::Test, ListsBench {
  const std::string brown = Document().By("Brown").At("3 9 2004 14 5 12").Name();
  const std::string okafor = Document().By("Okafor").At("3 8 2004 9 0 0").Name();

  CompletedListTest() {
    completed.MakeColumns("Subject");
    form.frameInQueue.Visible = false;
    form.frameCompleted.Visible = true;
    config.txtAutoPreview.Value = "0";
  }

  std::string Keep(const std::string& name, const SimulatedSound& sound = {.samples = 80'000}) {
    const std::string path = folders.CompletedPath() + name;
    disk.WithFile(path, "sound of " + name);
    file.Sounds[path] = sound;
    return path;
  }
  void Enter() {
    completed.RefreshCompletedList();
    completed.SetCompletedButtons();
  }
  void Choose(const std::string& name) {
    for (int row = 0; row < CompletedRows(); ++row) {
      if (At(row, column::FileName) == name) form.listViewCompleted.RowClick(row);
    }
    ASSERT_EQ(opening.SelectedCompletedFile, name);
  }
  int CompletedRows() { return static_cast<int>(form.listViewCompleted.Rows().size()); }
  std::string At(int row, int at) { return form.listViewCompleted.TextAt(row, at); }
  const std::string& Caption() { return form.frameCompleted.Caption; }
  const std::string& Notice() { return form.lblNotice.Value; }
  bool ButtonsAre(bool enabled) {
    return form.cmdMoveToQueue.Enabled == enabled &&
           form.cmdDeleteOneCompleted.Enabled == enabled &&
           form.cmdDeleteAllCompleted.Enabled == enabled;
  }
  bool FocusIsAway() { return form.frmMain.Focused() == &form.txtFocus; }
};

using Spoken = std::vector<std::string>;

TEST_F(CompletedListTest, EmptyFolderGivesAnEmptyListWithoutButtons) {
  Enter();
  EXPECT_EQ(CompletedRows(), 0);
  EXPECT_EQ(Caption(), "Completed:     0     00:00:00");
  EXPECT_TRUE(ButtonsAre(false));
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
}

TEST_F(CompletedListTest, EmptyListSaysHowADictationComesToIt) {
  EXPECT_EQ(form.listViewCompleted.WhenEmpty.Get(),
            "Nothing completed yet\nA dictation comes here when you press Complete.");
}

TEST_F(CompletedListTest, ColumnsAreThoseOfTheQueueSaveThatSavedHasNoWidth) {
  completed.MakeColumns("Patient");
  queue.MakeColumns("Patient");
  const auto& columns = form.listViewCompleted.Columns();
  const auto& model = form.listViewInQueue.Columns();
  ASSERT_EQ(columns.size(), model.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    EXPECT_EQ(columns[i].title, model[i].title);
    EXPECT_EQ(columns[i].width, i == column::Saved ? 0 : model[i].width) << i;
  }
}

TEST_F(CompletedListTest, RowsStandPriorityFirstAndOldestFirst) {
  const std::string urgent = Document().By("Urgent").At("12 31 2005 8 0 0").Priority().Name();
  Keep(brown, {.samples = 8000 * 61});
  Keep(okafor);
  Keep(urgent);
  Enter();
  ASSERT_EQ(CompletedRows(), 3);
  EXPECT_EQ(At(0, column::FileName), urgent);
  EXPECT_EQ(At(1, column::FileName), okafor);
  EXPECT_EQ(At(2, column::FileName), brown);
  EXPECT_EQ(At(2, column::Length), "00:01:01");
  EXPECT_EQ(form.listViewCompleted.Rows()[0].cells[column::Author].colour, 0xFF0000u);
  EXPECT_EQ(completed.CompletedCount, 3);
  EXPECT_EQ(Caption(), "Completed:     3     00:01:21");
  EXPECT_TRUE(ButtonsAre(true));
}

TEST_F(CompletedListTest, EveryFileIsTestedForReadinessWhateverItsSavedPosition) {
  const std::string saved = Document().By("Saved").Saved(5).Name();
  const std::string path = Keep(saved);
  disk.OpenWriter(path);
  Enter();
  EXPECT_EQ(CompletedRows(), 0);
  disk.CloseWriter(path);
  disk.SetReadOnly(path);
  Enter();
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_FALSE(disk.IsReadOnly(path));
}

TEST_F(CompletedListTest, ScanStopsWhatPlaysAndLeavesNoFileOpen) {
  Keep(brown);
  Play();
  Enter();
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(CompletedListTest, HourglassShowsWhileTheListIsBuilt) {
  Keep(brown);
  Pointer during = Pointer::Arrow;
  base::Timer look(loop, "look", base::Duration{1}, base::TimerKind::Feed);
  look.OnTick = [&] { during = form.frmMain.MousePointer; };
  look.Start();
  loop.Busy(base::Duration{1});
  Enter();
  EXPECT_EQ(during, Pointer::Hourglass);
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
}

TEST_F(CompletedListTest, FileThatIsNoAudioStandsWithLengthZero) {
  file.Sounds.erase(Keep(brown));
  Enter();
  EXPECT_EQ(At(0, column::Length), "00:00:00");
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(CompletedListTest, NegativeStatusEndsTheScanWithTheRowsMadeSoFar) {
  Keep(brown);
  file.TroubleWith = Keep(okafor);
  Keep(Document().By("Third").Name());
  Enter();
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_EQ(Caption(), "Completed");
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(CompletedListTest, FolderThatCanNotBeReachedShowsTheBoxAndKeepsTheList) {
  Keep(brown);
  Enter();
  disk.BreakListing(folders.CompletedPath());
  Enter();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Path Fault");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Warning);
  EXPECT_EQ(loop.Shown[0].text,
            "The completed files path can not be found.\n"
            "Please verify that a /root/Files/Completed directory exists");
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_TRUE(ButtonsAre(true));
}

TEST_F(CompletedListTest, WalkThatBreaksOffShowsTheBoxAndKeepsTheRowsMadeSoFar) {
  Keep(brown);
  Keep(okafor);
  disk.BreakListingAfter(folders.CompletedPath(), 1);
  Enter();
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_EQ(completed.CompletedCount, 1);
  EXPECT_EQ(Caption(), "Completed");
}

TEST_F(CompletedListTest, HeaderClickSortsByTheTextOfTheColumn) {
  Keep(brown);
  Keep(okafor);
  Enter();
  form.listViewCompleted.HeaderClick(column::Author);
  EXPECT_EQ(At(0, column::Author), "Brown");
  form.listViewCompleted.HeaderClick(column::Author);
  EXPECT_EQ(At(0, column::Author), "Okafor");
}

TEST_F(CompletedListTest, ReturnToQueueMovesTheDocumentBackUnderItsName) {
  const std::string path = Keep(brown);
  Keep(okafor);
  Enter();
  Choose(brown);
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_FALSE(disk.Has(path));
  EXPECT_EQ(disk.Contents(folders.InQueuePath + brown), "sound of " + brown);
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_EQ(prompts, Spoken{"MovedToQueue"});
  EXPECT_TRUE(ButtonsAre(true));
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(CompletedListTest, AfterReturnToQueueTheCaptionCountsAndItsTimeIsNought) {
  Keep(brown);
  Keep(okafor);
  Enter();
  Choose(brown);
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_EQ(Caption(), "Completed:     1     00:00:00");
  Enter();
  EXPECT_EQ(Caption(), "Completed:     1     00:00:10");
}

TEST_F(CompletedListTest, ReturnOfTheLastDocumentDisablesTheButtons) {
  Keep(brown);
  Enter();
  Choose(brown);
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_TRUE(ButtonsAre(false));
  EXPECT_EQ(Caption(), "Completed:     0     00:00:00");
}

TEST_F(CompletedListTest, ReturnToQueueWithNothingChosenOnlySaysSo) {
  Keep(brown);
  Enter();
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_EQ(prompts, Spoken{"MoveErrQueue"});
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_EQ(Caption(), "Completed:     1     00:00:10");
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(CompletedListTest, ReturnToQueueStopsThePreview) {
  config.txtAutoPreview.Value = "5";
  Keep(brown);
  Enter();
  Choose(brown);
  ASSERT_TRUE(engine.IsPlaying);
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(engine.tmrPlaySnipet.Enabled());
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(CompletedListTest, DocumentThatWaitsUnderTheSameNameStaysAndNothingReturns) {
  Keep(brown);
  disk.WithFile(folders.InQueuePath + brown, "the one that waited");
  Enter();
  Choose(brown);
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_EQ(disk.Contents(folders.InQueuePath + brown), "the one that waited");
  EXPECT_EQ(disk.Contents(folders.CompletedPath() + brown), "sound of " + brown);
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(),
            "Not returned to the Queue: another document of that name waits. It stays in "
            "Completed: " +
                brown);
}

TEST_F(CompletedListTest, DocumentThatCanNotBeMovedLeavesTheFolderAndIsRescued) {
  Keep(brown);
  Enter();
  Choose(brown);
  disk.Remove(folders.InQueuePath.substr(0, folders.InQueuePath.size() - 1));
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_EQ(disk.Contents(folders.RescuedPath() + brown), "sound of " + brown);
  EXPECT_EQ(CompletedRows(), 0);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(),
            "Not returned to the Queue: there is no such file or folder. The document is in the "
            "rescue folder: " +
                folders.RescuedPath() + brown);
}

TEST_F(CompletedListTest, ClickThatWaitsDoesNotChangeWhichDocumentReturns) {
  Keep(brown);
  const std::string path = Keep(okafor);
  Enter();
  Choose(brown);
  loop.Post([&] {
    form.listViewCompleted.RowClick(0);
    form.cmdMoveToQueue.Press(By::Hand);
    form.cmdPlay.Enabled = true;
    form.cmdPlay.Press();
  });
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_TRUE(disk.Has(path));
  EXPECT_TRUE(disk.Has(folders.InQueuePath + brown));
  EXPECT_EQ(prompts, Spoken{"MovedToQueue"});
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(form.frameCompleted.Enabled);
  EXPECT_TRUE(window.guards.ListsMayChange());
}

TEST_F(CompletedListTest, DeleteOneAsksAndDeletes) {
  const std::string path = Keep(brown);
  Keep(okafor);
  Enter();
  Choose(brown);
  loop.Expect({.reply = Reply::Yes});
  form.cmdDeleteOneCompleted.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Delete");
  EXPECT_EQ(loop.Shown[0].text, "Are you sure you want to delete the selected Completed document?");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Question);
  EXPECT_EQ(loop.Shown[0].buttons, base::Buttons::YesNo);
  EXPECT_TRUE(disk.FilesHolding("sound of " + brown).empty());
  EXPECT_FALSE(disk.Has(path));
  EXPECT_EQ(Caption(), "Completed:     1     00:00:10");
  EXPECT_TRUE(opening.SelectedCompletedFile.empty());
  EXPECT_EQ(prompts, Spoken{"DeleteOne"});
  EXPECT_TRUE(ButtonsAre(true));
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(CompletedListTest, DeleteOneWithNothingChosenSaysSoAndAsksNothing) {
  Keep(brown);
  Enter();
  form.cmdDeleteOneCompleted.Press(By::Hand);
  EXPECT_EQ(prompts, Spoken{"DeleteError"});
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(CompletedListTest, DeleteOneThatIsRefusedKeepsDocumentAndChoice) {
  const std::string path = Keep(brown);
  Enter();
  Choose(brown);
  loop.Expect({.reply = Reply::No});
  form.cmdDeleteOneCompleted.Press(By::Hand);
  EXPECT_TRUE(disk.Has(path));
  EXPECT_EQ(opening.SelectedCompletedFile, brown);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(CompletedListTest, DeleteOfTheLastDocumentDisablesTheButtons) {
  Keep(brown);
  Enter();
  Choose(brown);
  loop.Expect({.reply = Reply::Yes});
  form.cmdDeleteOneCompleted.Press(By::Hand);
  EXPECT_TRUE(ButtonsAre(false));
}

TEST_F(CompletedListTest, DeleteThatFailsShowsWhatIsOnTheDisk) {
  Keep(brown);
  Enter();
  Choose(brown);
  loop.Expect({.reply = Reply::Yes});
  disk.LockFolder(folders.CompletedPath());
  form.cmdDeleteOneCompleted.Press(By::Hand);
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(), "Not deleted: access is denied. Document: " + brown);
  EXPECT_TRUE(ButtonsAre(true));
}

TEST_F(CompletedListTest, DeleteAllAsksTwiceAndDeletesEveryWave) {
  Keep(brown);
  Keep("memo.WAV");
  const std::string other = Keep("letter.dss");
  Enter();
  Choose(brown);
  loop.Expect({.reply = Reply::Yes});
  loop.Expect({.reply = Reply::Yes});
  form.cmdDeleteAllCompleted.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 2u);
  EXPECT_EQ(loop.Shown[0].title, "Delete all Completed documents");
  EXPECT_EQ(loop.Shown[0].text, "Are you sure you want to delete all the Completed documents?");
  EXPECT_EQ(loop.Shown[1].title, "Tavlo Deck - Delete");
  EXPECT_EQ(loop.Shown[1].text,
            "Are you absolutely sure you want to delete all the Completed documents?");
  for (const base::MessageBox& box : loop.Shown) {
    EXPECT_EQ(box.icon, base::Icon::Question);
    EXPECT_EQ(box.buttons, base::Buttons::YesNo);
  }
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()), std::vector<std::string>{"letter.dss"});
  EXPECT_EQ(CompletedRows(), 0);
  EXPECT_EQ(Caption(), "Completed:     0     00:00:00");
  EXPECT_TRUE(ButtonsAre(false));
  EXPECT_TRUE(opening.SelectedCompletedFile.empty());
  EXPECT_EQ(prompts, Spoken{"DeleteAllComp"});
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
  EXPECT_TRUE(FocusIsAway());
  Enter();
  EXPECT_EQ(CompletedRows(), 1);
}

TEST_F(CompletedListTest, EitherNoKeepsEveryDocument) {
  const std::string path = Keep(brown);
  Enter();
  loop.Expect({.reply = Reply::No});
  form.cmdDeleteAllCompleted.Press(By::Hand);
  EXPECT_EQ(loop.Shown.size(), 1u);
  loop.Expect({.reply = Reply::Yes});
  loop.Expect({.reply = Reply::No});
  form.cmdDeleteAllCompleted.Press(By::Hand);
  EXPECT_EQ(loop.Shown.size(), 3u);
  EXPECT_TRUE(disk.Has(path));
  EXPECT_EQ(CompletedRows(), 1);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(CompletedListTest, DeleteAllWithoutAnyWaveLeavesTheHourglassUntilTheNextList) {
  Keep("letter.dss");
  Enter();
  Choose("letter.dss");
  loop.Expect({.reply = Reply::Yes});
  loop.Expect({.reply = Reply::Yes});
  form.cmdDeleteAllCompleted.Press(By::Hand);
  EXPECT_EQ(CompletedRows(), 0);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(opening.SelectedCompletedFile, "letter.dss");
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Hourglass);
  Enter();
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
}

TEST_F(CompletedListTest, DeleteAllGoesOnPastAFileThatCanNotBeDeleted) {
  Keep(brown);
  Keep(okafor);
  Enter();
  loop.Expect({.reply = Reply::Yes});
  loop.Expect({.reply = Reply::Yes});
  disk.LockFolder(folders.CompletedPath());
  disk.Operations.clear();
  // The listing, and both tries at the first file.
  disk.BetweenOperations = [&] {
    if (disk.Operations.size() == 4) disk.UnlockFolder(folders.CompletedPath());
  };
  form.cmdDeleteAllCompleted.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()).size(), 1u);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(), "Not all documents were deleted: access is denied.");
}

}  // namespace
}  // namespace tavlo::test
