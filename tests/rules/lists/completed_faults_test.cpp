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

/// A place that refuses to delete what may not be written.
TEST_F(CompletedFaults, BothDeletesMakeWritableWhatIsRefusedAndDeleteItAtTheSecondTry) {
  for (forms::Command* const key : {&form.cmdDeleteOneCompleted, &form.cmdDeleteAllCompleted}) {
    const bool one = key == &form.cmdDeleteOneCompleted;
    const std::string& name = one ? brown : okafor;
    const std::string path = folders.CompletedPath() + name;
    disk.SetReadOnly(path);
    config.txtAutoPreview.Value = "0";
    if (one) form.listViewCompleted.RowClick(0);
    EXPECT_EQ(opening.SelectedCompletedFile, one ? brown : "");
    for (int question = one ? 1 : 0; question < 2; ++question) loop.Expect({.reply = Reply::Yes});
    disk.Operations.clear();
    prompts.clear();
    // Delete All lists the folder first.
    disk.FailOperation(one ? 1 : 2, store::DiskResult::NoAccess);
    key->Press(By::Hand);
    EXPECT_FALSE(disk.Has(path));
    std::vector<std::string> asked;
    for (const std::string& record : disk.Changes()) {
      if (record.ends_with(path)) asked.push_back(record);
    }
    EXPECT_EQ(asked, (std::vector<std::string>{"Delete " + path, "SetAttributesNormal " + path,
                                               "Delete " + path}));
    EXPECT_EQ(prompts, std::vector<std::string>{one ? "DeleteOne" : "DeleteAllComp"});
    EXPECT_EQ(Notice(), "");
  }
}

/// A key that moves or deletes must speak only of what happened, whichever operation fails.
TEST_F(CompletedFaults, ReturnAndDeleteOneSpeakOnlyOfWhatHappened) {
  using Failing = SimulatedDisk::Failing;
  for (const Failing failing : {Failing::Once, Failing::ForGood}) {
    for (const bool returns : {true, false}) {
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
        bench.disk.FailOperation(nth, store::DiskResult::NoAccess, failing);
        if (!returns) bench.loop.Expect({.reply = Reply::Yes});
        auto& key = returns ? bench.form.cmdMoveToQueue : bench.form.cmdDeleteOneCompleted;
        key.Press(By::Hand);
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
}

}  // namespace
}  // namespace tavlo::test
