#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "lists/document_scan.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using forms::By;
using base::operator""s;
using Late = SimulatedPlaces::Late;

/// Three documents that wait on a share.
struct ScanOutOfReach : testing::Test, ListsBench {
  const std::string first = Drop(Document().By("A"));
  const std::string second = Drop(Document().By("B"));
  const std::string third = Drop(Document().By("C"));

  ScanOutOfReach() {
    completed.MakeColumns("Subject");
    disk.Operations.clear();
  }

  /// The share stalls just before that operation.
  void StallAt(const std::string& operation) {
    ListsBench rehearsal;
    for (const char* author : {"A", "B", "C"}) rehearsal.Drop(Document().By(author));
    rehearsal.disk.Operations.clear();
    rehearsal.queue.RefreshQueueList();
    const auto& all = rehearsal.disk.Operations;
    const auto found = std::ranges::find(all, operation);
    ASSERT_NE(found, all.end()) << operation;
    disk.StallAtOperation(static_cast<int>(found - all.begin()) + 1, folders.InQueuePath);
  }
  /// The last thing that the share was asked.
  std::string LastAsked() const {
    const auto& all = disk.Operations;
    const auto found = std::find_if(all.rbegin(), all.rend(), [this](const std::string& operation) {
      return operation.find(folders.InQueuePath) != operation.npos;
    });
    return found == all.rend() ? "" : *found;
  }
  base::Duration Passed() const { return loop.Now().sinceStart; }
  void ExpectTheQueuesOwnBox() {
    ASSERT_EQ(loop.Shown.size(), 1u);
    EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Network Fault");
    EXPECT_EQ(loop.Shown[0].text, folders.QueueNetworkFault().text);
  }
};

TEST_F(ScanOutOfReach, FolderThatGivesNoAnswerIsSaidToBeUnreachableAndTheListKeepsItsRows) {
  queue.RefreshQueueList();
  disk.Places.Stall(folders.InQueuePath);
  EXPECT_FALSE(queue.RefreshQueueList());
  ExpectTheQueuesOwnBox();
  EXPECT_EQ(Rows(), 3);
  EXPECT_EQ(form.listViewInQueue.ListIndex, -1);
  EXPECT_EQ(Passed(), 5s);
}

TEST_F(ScanOutOfReach, FileThatGivesNoAnswerEndsTheScanWithTheRowsMadeSoFar) {
  StallAt("Open " + second);
  form.frameInQueue.Caption = "Queue";
  EXPECT_FALSE(queue.RefreshQueueList());
  ExpectTheQueuesOwnBox();
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(form.frameInQueue.Caption.Get(), "Queue");
  EXPECT_EQ(queue.QueueCount, 1);
  EXPECT_EQ(disk.HeldByWalks(), 0);
  EXPECT_EQ(LastAsked(), "Open " + second);
}

TEST_F(ScanOutOfReach, AttributesThatGiveNoAnswerEndTheScanToo) {
  disk.SetReadOnly(second);
  // Behind the listing and the openings of the first two.
  disk.StallAtOperation(4, folders.InQueuePath);
  EXPECT_FALSE(queue.RefreshQueueList());
  EXPECT_EQ(LastAsked(), "SetAttributesNormal " + second);
  ExpectTheQueuesOwnBox();
  EXPECT_EQ(Rows(), 1);
}

TEST_F(ScanOutOfReach, SoundThatGivesNoAnswerIsNotListedAsEmpty) {
  file.OnOpen = [this](const std::string& path) {
    if (path != second) return;
    disk.Places.LeaveBehind(folders.InQueuePath);
    file.OutOfReach.insert(path);
  };
  EXPECT_FALSE(queue.RefreshQueueList());
  ExpectTheQueuesOwnBox();
  EXPECT_EQ(Rows(), 1);
}

TEST_F(ScanOutOfReach, NoRefreshDuringAStallWaitsAgain) {
  disk.Places.Stall(folders.InQueuePath);
  queue.RefreshQueueList();
  const base::Duration before = Passed();
  for (int again = 0; again < 10; ++again) queue.RefreshQueueList();
  EXPECT_EQ(Passed(), before);
}

TEST_F(ScanOutOfReach, ListIsWholeAgainOnceTheFolderAnswers) {
  disk.Places.Stall(folders.InQueuePath);
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_TRUE(prompts.empty());
  disk.Places.Resume(folders.InQueuePath, Late::Fails);
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_EQ(Rows(), 3);
  EXPECT_EQ(prompts, std::vector<std::string>{"RefreshQueue"});
}

TEST_F(ScanOutOfReach, SlowFolderIsReadToItsEndHoweverLongThatTakes) {
  disk.Places.SlowDown(folders.InQueuePath, 2s);
  EXPECT_TRUE(queue.RefreshQueueList());
  EXPECT_EQ(Rows(), 3);
  EXPECT_GT(Passed(), 5s);
}

TEST_F(ScanOutOfReach, QueueOnAnotherFolderIsListedWhileTheCompletedOnesAreOutOfReach) {
  disk.Places.Stall(folders.CompletedPath());
  completed.RefreshCompletedList();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].text, folders.CompletedPathFault().text);
  EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
  EXPECT_TRUE(queue.RefreshQueueList());
  EXPECT_EQ(Rows(), 3);
}

}  // namespace
}  // namespace tavlo::test
