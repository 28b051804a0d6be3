#include "lists/finishing.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/hand.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using Prompts = std::vector<std::string>;
namespace column = forms::document_column;

struct FinishingTest : testing::Test, ListsBench {
  const std::string name = Document().By("Brown").Name();

  FinishingTest() {
    config.txtAutoPreview.Value = "0";
    Drop(name);
    queue.RefreshQueueList();
  }
};

TEST_F(FinishingTest, CompleteMovesTheDocumentToTheCompletedFolder) {
  WorkOn(name, 40'000);
  form.cmdComplete.Enabled = true;
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()), Prompts{name});
  EXPECT_TRUE(disk.NamesIn(folders.InQueuePath).empty());
  EXPECT_EQ(disk.Contents(folders.CompletedPath() + name), "sound of " + name);
  EXPECT_EQ(opening.SelectedQueueFile, "");
  EXPECT_EQ(Rows(), 0);
}

TEST_F(FinishingTest, CompleteOfASavedDocumentPutsItsPositionBackToZero) {
  const std::string saved = Document().By("Okafor").Saved(83'211).Name();
  Drop(saved);
  queue.RefreshQueueList();
  WorkOn(saved, 40'000);
  form.cmdComplete.Enabled = true;
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()), Prompts{Document().By("Okafor").Name()});
}

TEST_F(FinishingTest, CompleteOfASavedDocumentLeavesAWaitingOneOfItsFirstNameAlone) {
  const std::string saved = Document().By("Brown").Saved(83'211).Name();
  Drop(saved);
  queue.RefreshQueueList();
  WorkOn(saved, 40'000);
  form.cmdComplete.Enabled = true;
  const auto before = disk.Changes().size();
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(disk.Contents(folders.InQueuePath + name), "sound of " + name);
  EXPECT_EQ(disk.Contents(folders.CompletedPath() + name), "sound of " + saved);
  EXPECT_EQ(disk.Changes().size(), before + 1);
}

TEST_F(FinishingTest, CompletedNameThatCanHoldNoPositionStaysAsItIs) {
  const std::size_t spare = 255 - Document().Field(15, "").By("").Name().size();
  const std::string longest = Document().Field(15, "").By(std::string(spare, 'b')).Name();
  for (const std::string& foreign : {std::string("song.wav"), longest}) {
    Drop(foreign);
    queue.RefreshQueueList();
    WorkOn(foreign, 40'000);
    form.cmdComplete.Enabled = true;
    form.cmdComplete.Press(By::Hand);
    EXPECT_EQ(disk.Contents(folders.CompletedPath() + foreign), "sound of " + foreign);
  }
}

TEST_F(FinishingTest, SaveLeavesADocumentAloneThatWaitsUnderTheNewName) {
  const std::string waiting = Document().By("Brown").Saved(40'000).Name();
  Drop(waiting);
  queue.RefreshQueueList();
  WorkOn(name, 40'000);
  form.cmdSave.Press(By::Hand);
  EXPECT_EQ(disk.Contents(folders.InQueuePath + waiting), "sound of " + waiting);
  EXPECT_EQ(disk.Contents(folders.InQueuePath + name), "sound of " + name);
  EXPECT_EQ(opening.SelectedQueueFile, name);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "The position was not saved: another document of that name waits. Document: " + name);
}

TEST_F(FinishingTest, CompleteThatTookThePlaceOfAnotherDocumentTellsWhereThatIs) {
  disk.WithFile(folders.CompletedPath() + name, "the earlier one");
  WorkOn(name, 0);
  form.cmdComplete.Enabled = true;
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(prompts, (Prompts{"Complete", "AllDone"}));
  EXPECT_EQ(disk.Contents(folders.RescuedPath() + name), "the earlier one");
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "Completed; another document of that name is in the rescue folder: " +
                folders.RescuedPath() + name);
}

TEST_F(FinishingTest, SaveOfANameThatCanNotGiveAPositionBackIsNoSave) {
  const std::string tailed = Document().Tail("Jones 901 12 31 2009 23 59 58").Name();
  for (const std::string& foreign : {std::string("song.wav"), tailed}) {
    Drop(foreign);
    queue.RefreshQueueList();
    WorkOn(foreign, 40'000);
    form.cmdSave.Press(By::Hand);
    EXPECT_TRUE(prompts.empty());
    EXPECT_EQ(form.lblNotice.Value.Get(),
              "The position was not saved: the name of this document can not hold one. Document: " +
                  opening.SelectedQueueFile);
    file.Sounds[folders.InQueuePath + opening.SelectedQueueFile] = {.samples = 80'000};
    WorkOn(opening.SelectedQueueFile, 0);
    form.cmdSave.Press(By::Hand);
    EXPECT_EQ(prompts, Prompts{"Save"});
  }
}

TEST_F(FinishingTest, QuietLineOutlivesTheNextDocumentThatComesByItself) {
  Drop(Document().By("Next").At("1 1 2010 8 0 0").Name());
  config.txtAutoQueueJob.Value = "Y";
  queue.RefreshQueueList();
  WorkOn(name, 40'000);
  config.txtAutoPreview.Value = "5";
  disk.FailOperation(1, store::DiskResult::NoSpace);
  form.cmdSave.Press(By::Hand);
  ASSERT_TRUE(engine.IsPlaying);
  loop.Advance(3s);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "The position was not saved: the disk is full. Document: " + name);
  ClickRowOf(name);
  EXPECT_FALSE(form.lblNotice.Visible);
}

TEST_F(FinishingTest, AllDoneIsNotSaidOfAQueueThatWasNotReadToItsEnd) {
  const std::string other = Drop(Document().By("Other"));
  queue.RefreshQueueList();
  WorkOn(name, 0);
  form.cmdComplete.Enabled = true;
  disk.OutOfHandlesAt = other;
  form.cmdComplete.Press(By::Hand);
  ASSERT_EQ(Rows(), 0);
  EXPECT_EQ(prompts, Prompts{"Complete"});
  EXPECT_TRUE(form.lblNotice.Visible);
}

TEST_F(FinishingTest, CompletedDocumentIsNotChosenAnyMoreThoughTheNetworkIsDown) {
  WorkOn(name, 0);
  form.cmdComplete.Enabled = true;
  disk.BreakListing(folders.InQueuePath);
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(form.listViewInQueue.ListIndex, -1);
}

TEST_F(FinishingTest, CompleteOfTheLastDocumentSaysSo) {
  WorkOn(name, 0);
  form.cmdComplete.Enabled = true;
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(prompts, (Prompts{"Complete", "AllDone"}));
}

TEST_F(FinishingTest, CompleteTakesAnUnplayableDocumentOutOfTheQueue) {
  file.Sounds.clear();
  config.txtAutoPreview.Value = "5";
  ClickRowOf(name);
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()), Prompts{name});
}

TEST_F(FinishingTest, FailedCopyStillTakesTheDocumentOutOfTheQueueAndLosesNothing) {
  disk.WithFileSystemAt("/root/Files/Completed");
  disk.SetFreeSpace("/root/Files/Completed", 0);
  WorkOn(name, 0);
  form.cmdComplete.Enabled = true;
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(Rows(), 0);
  EXPECT_EQ(disk.FilesHolding("sound of " + name), Prompts{folders.RescuedPath() + name});
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "Not moved to Completed: the disk is full. The document is in the rescue folder: " +
                folders.RescuedPath() + name);
}

TEST_F(FinishingTest, SaveMarksTheRowAndTheNextPlayStartsThere) {
  WorkOn(name, 83'211 / 2);
  form.cmdSave.Press(By::Hand);
  const std::string saved = Document().By("Brown").Saved(83'211 / 2).Name();
  EXPECT_EQ(opening.SelectedQueueFile, saved);
  ASSERT_EQ(RowOf(saved), 0);
  EXPECT_EQ(Cell(0, column::Saved), "Saved");
  EXPECT_EQ(prompts, Prompts{"Save"});
  file.Sounds[folders.InQueuePath + saved] = {.samples = 80'000};
  ClickRowOf(saved);
  form.cmdPlay.Press(By::Hand);
  EXPECT_EQ(file.Seeks.back(), 83'211 / 2);
}

TEST_F(FinishingTest, SaveOfADocumentThatCouldNotBeReadOnStoresWhereTheEarWas) {
  file.Sounds[folders.InQueuePath + name].readable = 42'500;
  ClickRowOf(name);
  form.cmdPlay.Press(By::Hand);
  loop.Advance(12s);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  form.cmdSave.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath),
            Prompts{Document().By("Brown").Saved(42'500).Name()});
}

TEST_F(FinishingTest, SaveAtZeroOfANewDocumentTouchesNoFile) {
  WorkOn(name, 0);
  const auto changes = disk.Changes().size();
  form.cmdSave.Press(By::Hand);
  EXPECT_EQ(disk.Changes().size(), changes);
  EXPECT_EQ(Cell(0, column::Saved), "");
}

TEST_F(FinishingTest, SkipChangesNoFile) {
  WorkOn(name, 40'000);
  const auto changes = disk.Changes().size();
  form.cmdSkip.Press(By::Hand);
  EXPECT_EQ(disk.Changes().size(), changes);
  EXPECT_EQ(prompts, Prompts{"Return"});
  EXPECT_EQ(opening.SelectedQueueFile, name);
}

TEST_F(FinishingTest, WindowReturnsFromThePlayerToTheList) {
  WorkOn(name, 40'000);
  ASSERT_FALSE(form.frameFiles.Visible);
  form.frmMain.Left = 4500;
  form.frmMain.Top = 750;
  form.cmdSkip.Press(By::Hand);
  EXPECT_TRUE(form.frameFiles.Visible);
  EXPECT_EQ(form.frmMain.Height, window.WindowHeight);
  EXPECT_EQ(form.frmMain.Left, (form.frmMain.ScreenWidth - form.frmMain.Width) / 2);
  EXPECT_EQ(form.txtPlayerLeft.Value.Get(), "4500");
  EXPECT_EQ(form.txtPlayerTop.Value.Get(), "750");
  EXPECT_TRUE(form.listViewInQueue.Enabled);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_FALSE(form.cmdSkip.Enabled);
  EXPECT_FALSE(form.cmdStop.Visible);
  EXPECT_TRUE(form.cmdImportCompleteSnipetStop.Visible);
  EXPECT_FALSE(form.lblFilePositionHMS.Visible);
  EXPECT_FALSE(window.PlayRequested);
  EXPECT_TRUE(window.guards.TransportMayAct());
  EXPECT_TRUE(window.guards.ListsMayChange());
  EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
}

TEST_F(FinishingTest, SpeedSliderShowsTheSpeedInForceAndIsLockedWithEqualizerAndNormalSpeed) {
  for (forms::Command* finish : {&form.cmdSkip, &form.cmdSave, &form.cmdComplete}) {
    WorkOn(name, 0);
    engine.PlaySpeedPercent = 85;
    form.Slider1.Press();
    form.Slider1.Change(40);
    form.cmdComplete.Enabled = true;
    for (const forms::Control* control : std::initializer_list<const forms::Control*>{
             &form.Slider1, &form.cmdEQ, &form.cmdNormalSpeed}) {
      ASSERT_TRUE(control->Enabled) << control->Name;
    }
    finish->Press(By::Hand);
    EXPECT_EQ(form.Slider1.Value, -15) << finish->Name;
    EXPECT_EQ(engine.PlaySpeedPercent, 85) << finish->Name;
    EXPECT_FALSE(form.Slider1.Enabled) << finish->Name;
    EXPECT_FALSE(form.cmdEQ.Enabled) << finish->Name;
    EXPECT_FALSE(form.cmdNormalSpeed.Enabled) << finish->Name;
  }
}

TEST_F(FinishingTest, SaveInMidPlayStoresWhereTheEarWas) {
  ClickRowOf(name);
  form.cmdPlay.Press(By::Hand);
  loop.Advance(3s);
  const double ear = documentInWork.CurrentSamplePosition;
  ASSERT_NEAR(ear, 24'000, 160);
  form.cmdSave.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath),
            Prompts{Document().By("Brown").Saved(static_cast<int>(ear)).Name()});
}

TEST_F(FinishingTest, HandsAndWaitsOfTheTransitionDoNotChangeThePositionThatIsStored) {
  WorkOn(name, 40'000);
  const auto disturb = [this] {
    ASSERT_FALSE(window.guards.TransportMayAct());
    for (forms::Command* key :
         {&form.cmdRewind, &form.cmdForward, &form.cmdSkipBeg, &form.cmdSkipEnd}) {
      key->Enabled = true;
      key->Press(By::Hand);
    }
    Drag(form.slPosition, 75);
  };
  loop.Post(disturb);
  form.cmdSave.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath),
            Prompts{Document().By("Brown").Saved(40'000).Name()});
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 40'000);
  EXPECT_TRUE(std::ranges::find(prompts, "RewindTone") == prompts.end());
}

TEST_F(FinishingTest, MinimizedPlayersPlaceIsNotTaken) {
  WorkOn(name, 40'000);
  form.frmMain.WindowShape = forms::Shape::Minimized;
  form.cmdSkip.Press();
  EXPECT_EQ(placesStored, 0);
  EXPECT_EQ(form.frmMain.WindowShape, forms::Shape::Normal);
}

TEST_F(FinishingTest, TransportIsRefusedUntilTheListIsRebuilt) {
  WorkOn(name, 40'000);
  base::Timer press(loop, "press", 250ms);
  bool pressed = false;
  press.OnTick = [&] {
    press.Stop();
    pressed = true;
    EXPECT_FALSE(window.guards.TransportMayAct());
    form.cmdPlay.Enabled = true;
    form.cmdPlay.Press(By::Hand);
    EXPECT_FALSE(engine.IsPlaying);
  };
  press.Start();
  form.cmdSkip.Press(By::Hand);
  EXPECT_TRUE(pressed);
}

TEST_F(FinishingTest, AutoQueueSelectsAndPreviewsTheNextUnsavedDocument) {
  const std::string saved = Document().By("Saved").At("1 1 2001 8 0 0").Saved(7).Name();
  const std::string next = Document().By("Next").At("1 1 2010 8 0 0").Name();
  Drop(saved);
  Drop(next);
  config.txtAutoQueueJob.Value = "Y";
  queue.RefreshQueueList();
  WorkOn(name, 0);
  form.cmdComplete.Enabled = true;
  config.txtAutoPreview.Value = "5";
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(opening.SelectedQueueFile, next);
  EXPECT_EQ(form.listViewInQueue.ListIndex, RowOf(next));
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdPlay.Enabled);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(FinishingTest, AutoQueueWithOnlySavedRowsLeftSelectsNothing) {
  Drop(Document().By("Saved").Saved(7));
  config.txtAutoQueueJob.Value = "Y";
  queue.RefreshQueueList();
  WorkOn(name, 0);
  form.cmdComplete.Enabled = true;
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(opening.SelectedQueueFile, "");
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(FinishingTest, CompleteWithNothingSelectedTouchesNoFileAndClaimsNothing) {
  form.cmdComplete.Enabled = true;
  const auto changes = disk.Changes();
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(disk.Changes(), changes);
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath), Prompts{name});
  EXPECT_EQ(Rows(), 1);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(FinishingTest, ClickInTheMomentOfLeavingDoesNotChangeWhichDocumentIsCompleted) {
  const std::string other = Document().By("Other").Name();
  Drop(other);
  queue.RefreshQueueList();
  WorkOn(name, 0);
  form.cmdComplete.Enabled = true;
  form.listViewInQueue.Enabled = true;
  form.frameFiles.Visible = true;
  loop.Post([&] { ClickRowOf(other); });
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()), Prompts{name});
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath), Prompts{other});
}

TEST_F(FinishingTest, CompletePressedInTheMomentOfSelectingIsDropped) {
  const std::string other = Document().By("Other").Name();
  Drop(other);
  queue.RefreshQueueList();
  ClickRowOf(name);
  form.cmdComplete.Enabled = true;
  loop.Post([&] { form.cmdComplete.Press(By::Hand); });
  ClickRowOf(other);
  EXPECT_TRUE(disk.NamesIn(folders.CompletedPath()).empty());
  EXPECT_EQ(opening.SelectedQueueFile, other);
}

TEST_F(FinishingTest, FinishingCountsAsTheUsersActAndAsALookAtTheWork) {
  for (forms::Command* const key : {&form.cmdSkip, &form.cmdSave, &form.cmdComplete}) {
    SCOPED_TRACE(key->Name);
    WorkOn(Cell(0, column::FileName), 0);
    key->Enabled = true;
    waitingWork.Pause();
    waitingWork.AlertTicks = 7;
    waitingWorkSeen = 0;
    retrievals = 0;
    key->Press(By::Hand);
    EXPECT_EQ(waitingWork.AlertTicks, 0);
    EXPECT_EQ(waitingWorkSeen, 1);
    EXPECT_EQ(retrievals, 1);
    EXPECT_TRUE(waitingWork.tmrWorkWaitingAlert.Enabled());
  }
}

}  // namespace
}  // namespace tavlo::test
