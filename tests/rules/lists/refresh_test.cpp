#include "lists/refresh.h"

#include <gtest/gtest.h>

#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct RefreshTest : testing::Test, ListsBench {
  RefreshTest() { Drop(Document()); }
};

TEST_F(RefreshTest, RefreshWaitsTwiceAndShowsTheListAgain) {
  form.cmdPlay.Enabled = true;
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_EQ(loop.Now().sinceStart, 1000ms);
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(retrievals, 1);
  EXPECT_TRUE(form.listViewInQueue.Visible);
  EXPECT_TRUE(form.cmdUpdateFileList.Visible);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
  EXPECT_EQ(prompts, std::vector<std::string>{"RefreshQueue"});
  EXPECT_EQ(form.frmMain.Focused(), &form.txtFocus);
  EXPECT_EQ(waitingWorkSeen, 1);
  EXPECT_TRUE(waitingWork.tmrWorkWaitingAlert.Enabled());
}

TEST_F(RefreshTest, ListThatCanNotBeReadIsNotSaidToBeUpToDate) {
  disk.BreakListing(folders.InQueuePath);
  form.cmdUpdateFileList.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(prompts.empty());
}

TEST_F(RefreshTest, ListThatIsNotWholeIsNotSaidToBeUpToDate) {
  Drop("second.wav");
  disk.BreakListingAfter(folders.InQueuePath, 1);
  disk.ListingBreaksForWantOfMemory = true;
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(prompts.empty());
}

TEST_F(RefreshTest, WindowIsFrozenWhileItWaits) {
  base::Timer look(loop, "look", 250ms);
  bool looked = false;
  look.OnTick = [&] {
    look.Stop();
    looked = true;
    EXPECT_FALSE(form.listViewInQueue.Visible);
    EXPECT_FALSE(form.cmdUpdateFileList.Visible);
    EXPECT_FALSE(form.mnuFile.Enabled);
    EXPECT_FALSE(form.mnuView.Enabled);
    EXPECT_FALSE(form.mnuReport.Enabled);
    EXPECT_EQ(form.frameInQueue.Caption.Get(), "Queue");
    EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Hourglass);
    EXPECT_FALSE(waitingWork.tmrWorkWaitingAlert.Enabled());
  };
  look.Start();
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_TRUE(looked);
}

TEST_F(RefreshTest, SecondPressDuringARefreshIsDropped) {
  loop.Post([&] { form.cmdUpdateFileList.Press(By::Hand); });
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_EQ(retrievals, 1);
}

TEST_F(RefreshTest, RefreshIsDroppedInTheMomentOfSelecting) {
  queue.RefreshQueueList();
  loop.Post([&] { form.cmdUpdateFileList.Press(By::Hand); });
  form.listViewInQueue.RowClick(0);
  EXPECT_EQ(retrievals, 0);
  EXPECT_EQ(form.listViewInQueue.ListIndex, 0);
  EXPECT_TRUE(form.cmdPlay.Enabled);
}

TEST_F(RefreshTest, NeitherPlayNorARowIsToBeHadWhileARefreshWaits) {
  queue.RefreshQueueList();
  form.listViewInQueue.RowClick(0);
  for (const auto moment : {250ms, 750ms}) {
    base::Timer hand(loop, "hand", moment);
    hand.OnTick = [&] {
      hand.Stop();
      form.listViewInQueue.RowClick(0);
      form.cmdPlay.Enabled = true;
      form.cmdPlay.Press(By::Hand);
    };
    hand.Start();
    form.cmdUpdateFileList.Press(By::Hand);
    EXPECT_FALSE(form.cmdSkip.Enabled);
    EXPECT_TRUE(form.frameFiles.Visible);
    EXPECT_EQ(form.listViewInQueue.ListIndex, -1);
  }
  EXPECT_TRUE(form.listViewInQueue.Enabled);
  EXPECT_TRUE(window.guards.ListsMayChange());
}

TEST_F(RefreshTest, QuietRefreshNeitherSpeaksNorTakesTheFocus) {
  const window::QuietRefreshing quiet(window.guards);
  form.cmdUpdateFileList.Press();
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(form.frmMain.Focused(), nullptr);
}

TEST_F(RefreshTest, RefreshStopsPreviewAndClosesTheFile) {
  queue.RefreshQueueList();
  form.listViewInQueue.RowClick(0);
  ASSERT_TRUE(engine.IsPlaying);
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(engine.tmrPlaySnipet.Enabled());
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(RefreshTest, NewFileShowsAndAGoneOneLeaves) {
  queue.RefreshQueueList();
  disk.Remove(folders.InQueuePath + Document().Name());
  Drop(Document().By("New"));
  form.cmdUpdateFileList.Press(By::Hand);
  ASSERT_EQ(Rows(), 1);
  EXPECT_EQ(Cell(0, forms::document_column::Author), "New");
}

TEST_F(RefreshTest, FirstRefreshRunsOnceAndFreesTheWindow) {
  form.listViewInQueue.Visible = false;
  form.cmdUpdateFileList.Enabled = false;
  form.mnuFile.Enabled = form.mnuView.Enabled = form.mnuReport.Enabled = false;
  refresh.tmrGetAllJobs.Start();
  loop.Advance(99ms);
  EXPECT_EQ(retrievals, 0);
  loop.Advance(1ms);
  EXPECT_EQ(retrievals, 1);
  EXPECT_EQ(loop.Now().sinceStart, 1600ms);
  EXPECT_EQ(Rows(), 1);
  EXPECT_TRUE(form.listViewInQueue.Visible);
  EXPECT_TRUE(form.cmdUpdateFileList.Enabled);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_TRUE(form.mnuView.Enabled);
  EXPECT_TRUE(form.mnuReport.Enabled);
  loop.Advance(60s);
  EXPECT_EQ(retrievals, 1);
}

TEST_F(RefreshTest, FirstRefreshShowsTheListBeforeItsLastWaitAndTheHourglassToItsEnd) {
  form.listViewInQueue.Visible = false;
  form.cmdUpdateFileList.Enabled = false;
  refresh.tmrGetAllJobs.Start();
  int looks = 0;
  base::Timer look(loop, "look", 70ms);
  look.OnTick = [&] {
    ++looks;
    const base::Duration now = loop.Now().sinceStart;
    const bool runs = now > 100ms && now < 1600ms;
    EXPECT_EQ(form.frmMain.MousePointer == forms::Pointer::Hourglass, runs) << now.count();
    EXPECT_EQ(form.listViewInQueue.Visible, now > 1100ms) << now.count();
    EXPECT_EQ(form.cmdUpdateFileList.Enabled, now > 1600ms) << now.count();
  };
  look.Start();
  loop.Advance(1700ms);
  EXPECT_EQ(looks, 24);
}

TEST_F(RefreshTest, NoHandTakesARowBeforeTheFirstRefreshIsDone) {
  refresh.tmrGetAllJobs.Start();
  base::Timer hand(loop, "hand", 1300ms);
  hand.OnTick = [&] {
    hand.Stop();
    EXPECT_TRUE(form.listViewInQueue.Visible);
    form.listViewInQueue.RowClick(0);
    form.cmdPlay.Press(forms::By::Hand);
  };
  hand.Start();
  loop.Advance(2s);
  EXPECT_EQ(opening.SelectedQueueFile, "");
  EXPECT_FALSE(engine.IsPlaying);
  form.listViewInQueue.RowClick(0);
  EXPECT_NE(opening.SelectedQueueFile, "");
}

TEST_F(RefreshTest, FirstRefreshUnderTheFtpViewLeavesTheReportDisabled) {
  form.mnuReport.Enabled = false;
  form.frameFtp.Visible = true;
  refresh.tmrGetAllJobs.Start();
  loop.Advance(100ms);
  EXPECT_FALSE(form.mnuReport.Enabled);
}

}  // namespace
}  // namespace tavlo::test
