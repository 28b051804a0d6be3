#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lists/completed_list.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using forms::By;
using Late = SimulatedPlaces::Late;
using Names = std::vector<std::string>;

/// Three documents in a Completed folder on a share, the first one chosen.
struct CompletedDesk : ListsBench {
  CompletedDesk() {
    completed.MakeColumns("Subject");
    form.frameInQueue.Visible = false;
    form.frameCompleted.Visible = true;
    config.txtAutoPreview.Value = "0";
    disk.WithFileSystemAt(folders.CompletedPath());
    for (const char* author : {"Brown", "Okafor", "Weiss"}) {
      const std::string name = Document().By(author).Name();
      disk.WithFile(folders.CompletedPath() + name, "sound of " + name);
    }
    Enter();
    form.listViewCompleted.RowClick(0);
    chosen = form.listViewCompleted.TextAt(0, forms::document_column::FileName);
    disk.Operations.clear();
    loop.Shown.clear();
  }
  void Enter() {
    completed.RefreshCompletedList();
    completed.SetCompletedButtons();
  }
  void Agree(int times) {
    for (; times > 0; --times) loop.Expect({.reply = Reply::Yes});
  }
  Names Places() const { return disk.FilesHolding("sound of " + chosen); }
  const std::string& Notice() const { return form.lblNotice.Value; }

  std::string chosen;
};

struct CompletedOutOfReach : testing::Test, CompletedDesk {};

TEST_F(CompletedOutOfReach, ReturnToQueueClaimsNothingAndAsksOnce) {
  disk.Places.Stall(folders.CompletedPath());
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(),
            "It is not known whether the document was returned to the Queue: the folder gives no "
            "answer. The next list shows it. Document: " +
                chosen);
  EXPECT_EQ(disk.Changes().size(), 1u);
}

TEST_F(CompletedOutOfReach, DocumentOnItsWayBackIsListedOnceWhereverTheReturnStalls) {
  for (const std::string& folder : {folders.CompletedPath(), folders.InQueuePath}) {
    for (const Late late : {Late::Happens, Late::Fails}) {
      bool stalled = true;
      for (int nth = 1; stalled; ++nth) {
        SCOPED_TRACE(folder + ", operation " + std::to_string(nth));
        CompletedDesk desk;
        desk.disk.StallAtOperation(nth, folder);
        desk.form.cmdMoveToQueue.Press(By::Hand);
        stalled = desk.disk.Places.Stalls(folder);
        EXPECT_LE(desk.loop.BreathedFor, SimulatedPlaces::kPatience);
        desk.disk.Places.Resume(folder, late);
        desk.disk.Heal();
        desk.Enter();
        const std::size_t aside = SetAside(desk.Places());
        EXPECT_LE(aside, 1u);
        EXPECT_EQ(desk.Places().size(), 1 + aside);
        EXPECT_EQ(desk.disk.FileCount(), 3 + aside);
      }
    }
  }
}

TEST_F(CompletedOutOfReach, DeleteOneClaimsNothingAndTheNextListShowsTheTruth) {
  for (const Late late : {Late::Happens, Late::Fails}) {
    CompletedDesk desk;
    desk.disk.Places.Stall(desk.folders.CompletedPath());
    desk.Agree(1);
    desk.form.cmdDeleteOneCompleted.Press(By::Hand);
    EXPECT_TRUE(desk.prompts.empty());
    EXPECT_EQ(desk.Notice(),
              "It is not known whether the document was deleted: the folder gives no answer. The "
              "next list shows it. Document: " +
                  desk.chosen);
    EXPECT_EQ(desk.disk.Changes().size(), 1u);
    desk.disk.Places.Resume(desk.folders.CompletedPath(), late);
    desk.Enter();
    EXPECT_EQ(desk.form.listViewCompleted.Rows().size(), late == Late::Happens ? 2u : 3u);
  }
}

TEST_F(CompletedOutOfReach, WhatAnEarlierCallKeptFromBeingAskedForIsSaidNotToHaveHappened) {
  disk.Places.LeaveBehind(folders.CompletedPath());
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_EQ(
      Notice(),
      "Not returned to the Queue: the folder gives no answer. It stays in Completed: " + chosen);
  CompletedDesk desk;
  desk.disk.Places.LeaveBehind(desk.folders.CompletedPath());
  desk.Agree(1);
  desk.form.cmdDeleteOneCompleted.Press(By::Hand);
  EXPECT_EQ(desk.Notice(), "Not deleted: the folder gives no answer. Document: " + desk.chosen);
  desk.disk.Places.Resume(desk.folders.CompletedPath(), Late::Happens);
  EXPECT_EQ(desk.Places().size(), 1u);
}

TEST_F(CompletedOutOfReach, SecondTryClaimsNothingWhileTheFirstOneMayStillHappen) {
  for (const bool deletes : {true, false}) {
    CompletedDesk desk;
    desk.disk.Places.Stall(desk.folders.CompletedPath());
    desk.Agree(1);
    desk.form.cmdDeleteOneCompleted.Press(By::Hand);
    desk.form.listViewCompleted.RowClick(0);
    desk.window.ForgetNotice();
    if (deletes) desk.Agree(1);
    (deletes ? desk.form.cmdDeleteOneCompleted : desk.form.cmdMoveToQueue).Press(By::Hand);
    EXPECT_TRUE(desk.Notice().starts_with("It is not known whether ")) << desk.Notice();
    desk.disk.Places.Resume(desk.folders.CompletedPath(), Late::Happens);
    EXPECT_TRUE(desk.Places().empty());
  }
}

TEST_F(CompletedOutOfReach, DeleteAllEndsAtTheFirstThatGivesNoAnswer) {
  Agree(2);
  // Behind the listing and the first delete.
  disk.StallAtOperation(3, folders.CompletedPath());
  form.cmdDeleteAllCompleted.Press(By::Hand);
  EXPECT_EQ(disk.Changes().size(), 2u);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(),
            "It is not known whether all documents were deleted: the folder gives no answer. The "
            "next list shows it.");
  disk.Places.Resume(folders.CompletedPath(), Late::Happens);
  Enter();
  EXPECT_EQ(form.listViewCompleted.Rows().size(), 1u);
}

TEST_F(CompletedOutOfReach, DeleteAllInAFolderThatGivesNoAnswerLeavesAWindowThatCanBeClosed) {
  Agree(2);
  disk.Places.Stall(folders.CompletedPath());
  form.cmdDeleteAllCompleted.Press(By::Hand);
  EXPECT_TRUE(prompts.empty());
  EXPECT_TRUE(disk.Changes().empty());
  EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
  EXPECT_NE(Notice(), "");
}

}  // namespace
}  // namespace tavlo::test
