#include "intake/directory_counts.h"

#include <gtest/gtest.h>

#include "support/import_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;

/// What stands beside the numbers of the import directories.
struct DirectoryCounts : testing::Test, ImportBench {
  std::string Of(int directory) const {
    return form.frameImportDirectories.Panels.Get().at(static_cast<std::size_t>(directory));
  }
  void LookAround() { loop.Wait(2000ms); }
};

TEST_F(DirectoryCounts, OfTheListOnShowIsThereWithTheList) {
  Put(0, "a.wav");
  Put(0, "b.wav");
  EXPECT_EQ(Of(0), "");
  Refresh();
  EXPECT_EQ(Of(0), "2");
  EXPECT_EQ(Of(7), "") << "no command waits for the others";
}

TEST_F(DirectoryCounts, OfAllOthersFollowBehindANewList) {
  Put(7, "a.wav");
  Put(25, "b.wav");
  Put(25, "c.wav");
  Refresh();
  LookAround();
  EXPECT_EQ(Of(7), "1");
  EXPECT_EQ(Of(25), "2");
  EXPECT_EQ(Of(1), "0");
}

TEST_F(DirectoryCounts, OfTheListOnShowIsWhatTheListHasAlthoughMoreIsBeingWritten) {
  Put(0, "a.wav");
  disk.OpenWriter(Put(0, "b.wav"));
  Refresh();
  LookAround();
  EXPECT_EQ(Of(0), "1");
}

TEST_F(DirectoryCounts, AreRightAsOfTheLastLookOnly) {
  Refresh();
  LookAround();
  Put(3, "late.wav");
  loop.Wait(60'000ms);
  EXPECT_EQ(Of(3), "0");
  Refresh();
  LookAround();
  EXPECT_EQ(Of(3), "1");
}

TEST_F(DirectoryCounts, OfADirectoryThatIsNotThereIsNotKnown) {
  folders.WavQueuePath = "/nowhere/";

  Refresh();
  LookAround();
  EXPECT_EQ(Of(0), "");
  EXPECT_EQ(Of(4), "");
}

TEST_F(DirectoryCounts, AreNotLookedAtInAViewThatWasLeft) {
  Put(9, "a.wav");
  Refresh();
  form.frameImport.Visible = false;
  LookAround();
  EXPECT_EQ(Of(9), "");
}

TEST_F(DirectoryCounts, WaitForAListChangeThatIsUnderWay) {
  Put(9, "a.wav");
  Refresh();
  {
    const window::ListPause pause(window.guards);
    LookAround();
    EXPECT_EQ(Of(9), "");
  }
  LookAround();
  EXPECT_EQ(Of(9), "1");
}

TEST_F(DirectoryCounts, AnEmptiedDirectoryHasNone) {
  Put(0, "a.wav");
  Refresh();
  loop.Expect({.reply = base::Reply::Yes});
  form.cmdSendAllImportFilesToQueue.Press(forms::By::Hand);
  EXPECT_EQ(Of(0), "0");
}

TEST_F(DirectoryCounts, EndWhereThePlaceGivesNoAnswer) {
  Put(9, "a.wav");
  Refresh();
  disk.Places.Stall("/root/Files/ImportQueue");
  LookAround();
  EXPECT_EQ(Of(9), "");
}

}  // namespace
}  // namespace tavlo::test
