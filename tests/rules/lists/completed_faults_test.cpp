#include <gtest/gtest.h>

#include <string>

#include "lists/completed_list.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using forms::By;

/// Two documents in the Completed folder, and the view on show.
struct CompletedFaults : testing::Test, ListsBench {
  const std::string brown = Document().By("Brown").Name();
  const std::string okafor = Document().By("Okafor").Name();

  CompletedFaults() {
    completed.MakeColumns("Subject");
    form.frameInQueue.Visible = false;
    form.frameCompleted.Visible = true;
    for (const std::string& name : {brown, okafor}) {
      disk.WithFile(folders.CompletedPath() + name, "sound of " + name);
    }
    Enter();
  }
  void Enter() {
    completed.RefreshCompletedList();
    completed.SetCompletedButtons();
  }
  std::size_t CompletedRows() const { return form.listViewCompleted.Rows().size(); }
  const std::string& Notice() const { return form.lblNotice.Value; }
};

TEST_F(CompletedFaults, ScanWithoutHandlesSaysThatTheListIsNotWholeUntilItIs) {
  disk.OutOfHandlesAt = folders.CompletedPath() + okafor;
  form.frameCompleted.Caption = "Completed";
  Enter();
  EXPECT_EQ(CompletedRows(), 1u);
  EXPECT_EQ(form.frameCompleted.Caption.Get(), "Completed");
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(Notice(),
            "The Completed list is not whole: the program has no file handles or memory left. The "
            "next list shows the rest.");
  disk.OutOfHandlesAt.clear();
  Enter();
  EXPECT_EQ(CompletedRows(), 2u);
  EXPECT_EQ(Notice(), "");
}

TEST_F(CompletedFaults, DeleteAllInAFolderThatCanNotBeReadClaimsNothing) {
  loop.Expect({.reply = Reply::Yes});
  loop.Expect({.reply = Reply::Yes});
  disk.BreakListingAfter(folders.CompletedPath(), 1);
  form.cmdDeleteAllCompleted.Press(By::Hand);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(), "Not all documents were deleted: the disk reported an error.");
}

/// A key that moves or deletes must speak only of what happened, whichever operation fails.
TEST_F(CompletedFaults, ReturnAndDeleteOneSpeakOnlyOfWhatHappened) {
  for (forms::Command forms::MainForm::*key :
       {&forms::MainForm::cmdMoveToQueue, &forms::MainForm::cmdDeleteOneCompleted}) {
    bool fired = true;
    for (int nth = 1; fired; ++nth) {
      SCOPED_TRACE("operation " + std::to_string(nth));
      ListsBench bench;
      bench.completed.MakeColumns("Subject");
      bench.form.frameInQueue.Visible = false;
      bench.form.frameCompleted.Visible = true;
      const std::string path = bench.folders.CompletedPath() + brown;
      bench.disk.WithFile(path, "sound");
      bench.completed.RefreshCompletedList();
      bench.completed.SetCompletedButtons();
      bench.config.txtAutoPreview.Value = "0";
      bench.form.listViewCompleted.RowClick(0);
      bench.disk.Operations.clear();
      bench.disk.FailOperation(nth, store::DiskResult::NoAccess);
      const bool returns = key == &forms::MainForm::cmdMoveToQueue;
      if (!returns) bench.loop.Expect({.reply = Reply::Yes});
      (bench.form.*key).Press(By::Hand);
      fired = static_cast<int>(bench.disk.Operations.size()) >= nth;
      const auto places = bench.disk.FilesHolding("sound");
      const bool happened =
          returns ? places == std::vector{bench.folders.InQueuePath + brown} : places.empty();
      EXPECT_EQ(bench.prompts.empty(), !happened);
      EXPECT_EQ(bench.form.lblNotice.Visible, !happened);
      EXPECT_TRUE(!returns || !places.empty());
    }
  }
}

}  // namespace
}  // namespace tavlo::test
