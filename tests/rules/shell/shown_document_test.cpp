// A key acts only on what the window shows.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::operator""s;
using forms::By;
using Names = std::vector<std::string>;

struct ShownDocument : testing::Test, DeckBench {
  const std::string waits = Document().By("Brown").Name();
  const std::string typed = Document().By("Okafor").Name();

  ShownDocument() {
    Drop(waits);
    Keep(typed);
    StartUntilReady();
    config.txtAutoPreview.Value = "15";
  }
  lists::Opening& Chosen() { return deck.Built()->opening; }
  bool TellsOfNoDocument() {
    return form.StatusBar1.Panels.Get() == Names(form.StatusBar1.Panels.Get().size()) &&
           form.lblFilePositionHMS.Value.Get() == "00:00:00" &&
           form.lblFileLengthHMS.Value.Get() == "00:00:00" && form.slPosition.Value == 0 &&
           !form.slPosition.Enabled;
  }
};

TEST_F(ShownDocument, PreviewThatEndsInTheCompletedViewDoesNotOfferComplete) {
  ClickRow(0);
  form.mnuViewCompleted.Press(By::Hand);
  form.listViewCompleted.RowClick(0);
  ASSERT_TRUE(deck.Built()->engine.IsPlaying);
  loop.Advance(13s);
  ASSERT_FALSE(deck.Built()->engine.IsPlaying);
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(ShownDocument, PreviewThatEndsInTheQueueOffersComplete) {
  ClickRow(0);
  loop.Advance(13s);
  EXPECT_TRUE(form.cmdComplete.Enabled);
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(Completed()).size(), 2u);
}

TEST_F(ShownDocument, EndOfAWindOffersCompleteOnlyForADocumentThatShows) {
  ClickRow(0);
  form.mnuViewCompleted.Press(By::Hand);
  form.listViewCompleted.RowClick(0);
  deck.Built()->transport.SkipToEndCommand();
  EXPECT_FALSE(form.cmdComplete.Enabled);
  deck.Built()->transport.ForwardCommand();
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(ShownDocument, CompleteTakesNothingThatDoesNotShowThoughItIsLit) {
  ClickRow(0);
  form.mnuViewCompleted.Press(By::Hand);
  form.cmdComplete.Enabled = true;
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(disk.NamesIn(InQueue()), Names{waits});
  EXPECT_EQ(disk.NamesIn(Completed()), Names{typed});
}

TEST_F(ShownDocument, DocumentThatCanNotBePlayedIsNotOfferedToCompleteInAnotherView) {
  file.Sounds.erase(InQueue() + waits);
  ClickRow(0);
  ASSERT_TRUE(form.cmdComplete.Enabled);
  form.mnuViewFtp.Press(By::Hand);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(ShownDocument, RefreshLeavesNothingToPlayAndNothingToComplete) {
  // It was half copied when it was clicked, and is whole now.
  const SimulatedSound sound = file.Sounds.at(InQueue() + waits);
  file.Sounds.erase(InQueue() + waits);
  ClickRow(0);
  ASSERT_TRUE(form.cmdComplete.Enabled);
  file.Sounds[InQueue() + waits] = sound;
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_EQ(form.listViewInQueue.ListIndex, -1);
  EXPECT_EQ(Chosen().SelectedQueueFile, waits);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(ShownDocument, RefreshThatFailsLeavesNothingToPlayAndNothingToComplete) {
  file.Sounds.erase(InQueue() + waits);
  ClickRow(0);
  disk.BreakListing(InQueue());
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(ShownDocument, CompleteOfTheRowBeforeIsNotOfferedForTheNextOne) {
  const std::string other = Drop(Document().By("Third").At("1 1 2020 8 0 0").Name());
  file.Sounds.erase(InQueue() + waits);
  form.cmdUpdateFileList.Press(By::Hand);
  ClickRow(0);
  ASSERT_TRUE(form.cmdComplete.Enabled);
  file.TroubleWith = InQueue() + other;
  ClickRow(1);
  ASSERT_EQ(Chosen().SelectedQueueFile, other);
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(ShownDocument, AutoQueueTakesNothingFromAListThatCouldNotBeRead) {
  const std::string next = Drop(Document().By("Next").At("1 1 2020 8 0 0").Name());
  form.cmdUpdateFileList.Press(By::Hand);
  config.txtAutoQueueJob.Value = "Y";
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  disk.BreakListing(InQueue());
  form.cmdSkip.Press(By::Hand);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
  EXPECT_EQ(form.listViewInQueue.ListIndex, -1);
  EXPECT_EQ(Chosen().SelectedQueueFile, waits);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(ShownDocument, AutoQueueTakesNothingFromAWalkThatBrokeOff) {
  Drop(Document().By("Next").At("1 1 2020 8 0 0").Name());
  form.cmdUpdateFileList.Press(By::Hand);
  config.txtAutoQueueJob.Value = "Y";
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  disk.BreakListingAfter(InQueue(), 1);
  form.cmdSkip.Press(By::Hand);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_EQ(form.listViewInQueue.ListIndex, -1);
  EXPECT_FALSE(deck.Built()->engine.IsPlaying);
}

TEST_F(ShownDocument, AllDoneIsNotSaidOfAListThatCouldNotBeRead) {
  config.txtAutoQueueJob.Value = "N";
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.cmdSkipEnd.Press(By::Hand);
  disk.OpenWriter(InQueue() + Drop(Document().By("Third").Name()));
  disk.BreakListingAfter(InQueue(), 1);
  form.cmdComplete.Press(By::Hand);
  ASSERT_EQ(deck.Built()->queue.QueueCount, 0);
  for (const std::string& sounded : promptControl.Sounded) {
    EXPECT_EQ(sounded.find("AllDone"), std::string::npos);
  }
}

TEST_F(ShownDocument, DeleteOneDeletesNothingOnceTheListIsBuiltAnew) {
  const std::string third = Keep(Document().By("Third").Name());
  form.mnuViewCompleted.Press(By::Hand);
  form.listViewCompleted.RowClick(0);
  form.mnuViewCompleted.Press(By::Hand);
  ASSERT_EQ(form.listViewCompleted.ListIndex, -1);
  form.cmdDeleteOneCompleted.Press(By::Hand);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(disk.NamesIn(Completed()).size(), 2u);
}

TEST_F(ShownDocument, ReturnToQueueReturnsNothingOnceOneHasBeenReturned) {
  Keep(Document().By("Third").Name());
  form.mnuViewCompleted.Press(By::Hand);
  form.listViewCompleted.RowClick(0);
  form.cmdMoveToQueue.Press(By::Hand);
  const std::string returned = Chosen().SelectedCompletedFile;
  // Another one of that name is completed before anybody looks.
  Keep(returned.empty() ? typed : returned);
  const auto before = disk.Changes().size();
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_EQ(disk.Changes().size(), before);
}

TEST_F(ShownDocument, EveryQuestionThatDeletesIsAnsweredNoByDefault) {
  form.mnuViewCompleted.Press(By::Hand);
  form.listViewCompleted.RowClick(0);
  loop.Expect({.reply = base::Reply::No});
  form.cmdDeleteOneCompleted.Press(By::Hand);
  loop.Expect({.reply = base::Reply::Yes});
  loop.Expect({.reply = base::Reply::No});
  form.cmdDeleteAllCompleted.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 3u);
  for (const base::MessageBox& box : loop.Shown) {
    EXPECT_EQ(box.byDefault, base::Reply::No) << box.title;
  }
}

TEST_F(ShownDocument, KeyOfTheCompletedViewThatWaitsBehindARowClickIsDropped) {
  form.mnuViewCompleted.Press(By::Hand);
  for (forms::Command* key :
       {&form.cmdMoveToQueue, &form.cmdDeleteOneCompleted, &form.cmdDeleteAllCompleted}) {
    loop.Post([key] { key->Press(By::Hand); });
    form.listViewCompleted.RowClick(0);
    EXPECT_TRUE(loop.Shown.empty()) << key->Name;
    EXPECT_TRUE(disk.Has(Completed() + typed)) << key->Name;
    EXPECT_TRUE(deck.Built()->engine.IsPlaying) << key->Name;
  }
}

TEST_F(ShownDocument, CenterPedalUnderTheBoxOfAQueueThatCanNotBeReachedBeginsNothing) {
  ClickRow(0);
  form.mnuViewCompleted.Press(By::Hand);
  disk.BreakListing(InQueue());
  loop.Expect({.meanwhile = [&] {
    // Whatever lit the key: the list is inside its change.
    form.cmdPlay.Enabled = true;
    deck.Built()->footPedal.Take(false, true, false);
    deck.Built()->footPedal.DispatchPedalEvent();
    EXPECT_FALSE(deck.Built()->engine.IsPlaying);
  }});
  form.mnuViewQueue.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_FALSE(form.cmdSkip.Enabled);
  EXPECT_TRUE(deck.Built()->mainWindow.guards.ListsMayChange());
}

TEST_F(ShownDocument, EveryOtherViewTellsOfNoDocument) {
  for (forms::Command* entry : {&form.mnuViewCompleted, &form.mnuViewImport, &form.mnuViewFtp}) {
    form.mnuViewQueue.Press(By::Hand);
    ClickRow(0);
    loop.Advance(4s);
    form.cmdImportCompleteSnipetStop.Press(By::Hand);
    ASSERT_FALSE(TellsOfNoDocument());
    entry->Press(By::Hand);
    EXPECT_TRUE(TellsOfNoDocument()) << entry->Name;
  }
}

TEST_F(ShownDocument, RefreshedListTellsOfNoDocument) {
  ClickRow(0);
  loop.Advance(4s);
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_TRUE(TellsOfNoDocument());
}

TEST_F(ShownDocument, ListAfterASkippedDocumentTellsOfNone) {
  config.txtAutoQueueJob.Value = "N";
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  loop.Advance(4s);
  form.cmdSkip.Press(By::Hand);
  EXPECT_TRUE(TellsOfNoDocument());
}

TEST_F(ShownDocument, ListThatCouldNotBeReadDoesNotSayThatNothingWaits) {
  disk.Remove(InQueue() + waits);
  disk.OpenWriter(InQueue() + Drop(Document().By("Third").Name()));
  disk.BreakListingAfter(InQueue(), 1);
  form.cmdUpdateFileList.Press(By::Hand);
  ASSERT_TRUE(form.listViewInQueue.Rows().empty());
  EXPECT_EQ(form.listViewInQueue.WhenEmpty.Get(),
            "This list is not whole\nIt shows what is there once it can be read again.");
  disk.MendListing(InQueue());
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_TRUE(form.listViewInQueue.WhenEmpty.Get().starts_with("Nothing waits to be typed"));
}

TEST_F(ShownDocument, DeleteAllThatFailsDoesNotSayThatNothingIsCompleted) {
  form.mnuViewCompleted.Press(By::Hand);
  loop.Expect({.reply = base::Reply::Yes});
  loop.Expect({.reply = base::Reply::Yes});
  disk.LockFolder(Completed());
  form.cmdDeleteAllCompleted.Press(By::Hand);
  ASSERT_TRUE(disk.Has(Completed() + typed));
  EXPECT_EQ(form.listViewCompleted.WhenEmpty.Get(),
            "Some files stay in the folder\nThe list shows them when you come back.");
}

TEST_F(ShownDocument, RewindNearTheEndDoesNotTakeWhatTheSliderRoundsForAnEnd) {
  file.Sounds[InQueue() + waits] = {.samples = 8000 * 10'800};
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.cmdStop.Press(By::Hand);
  deck.Built()->documentInWork.CurrentSamplePosition = 8000 * 10'750;
  form.cmdRewind.Press(By::Hand);
  ASSERT_EQ(form.slPosition.Value, 100);
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(ShownDocument, PlayUnderTheBoxOfAFileThatCouldNotBePlayedIsNotOfferedToComplete) {
  config.txtAutoPreview.Value = "0";
  const SimulatedSound sound = file.Sounds.at(InQueue() + waits);
  file.Sounds.erase(InQueue() + waits);
  ClickRow(0);
  loop.Expect({.meanwhile = [&] {
    // It was still being copied, and is whole now.
    file.Sounds[InQueue() + waits] = sound;
    deck.Built()->footPedal.Take(false, true, false);
    deck.Built()->footPedal.DispatchPedalEvent();
    ASSERT_TRUE(deck.Built()->engine.IsPlaying);
  }});
  form.cmdPlay.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(ShownDocument, ListEmptiedByDeleteAllSpeaksOfTheFilesThatStay) {
  Keep("Memo.mp3");
  form.mnuViewCompleted.Press(By::Hand);
  loop.Expect({.reply = base::Reply::Yes});
  loop.Expect({.reply = base::Reply::Yes});
  form.cmdDeleteAllCompleted.Press(By::Hand);
  ASSERT_TRUE(form.listViewCompleted.Rows().empty());
  EXPECT_EQ(form.listViewCompleted.WhenEmpty.Get(),
            "Some files stay in the folder\nThe list shows them when you come back.");
  EXPECT_TRUE(TellsOfNoDocument());
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_EQ(form.listViewCompleted.Rows().size(), 1u);
  EXPECT_EQ(form.listViewCompleted.WhenEmpty.Get(),
            "Nothing completed yet\nA dictation comes here when you press Complete.");
}

}  // namespace
}  // namespace tavlo::test
