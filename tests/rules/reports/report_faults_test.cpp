#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "support/reports_bench.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using Late = SimulatedPlaces::Late;
using Names = std::vector<std::string>;

const std::string kBefore = "the report of yesterday";

/// A Queue of one document, and the report of the day before.
struct ReportFaults : testing::Test, ReportsBench {
  const std::string folder = folders.ReportsPath().substr(0, folders.ReportsPath().size() - 1);

  ReportFaults() {
    disk.WithFile(queuePath, kBefore);
    Drop(Document());
    ShowQueue();
    disk.Operations.clear();
  }

  void ExpectRefusal(const std::string& why) {
    ASSERT_EQ(loop.Shown.size(), 1u);
    EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Report");
    EXPECT_EQ(loop.Shown[0].text, "The report could not be written: " + why + ".\n\n" + queuePath);
    EXPECT_EQ(loop.Shown[0].icon, base::Icon::Warning);
    EXPECT_TRUE(programs.Tried.empty());
    EXPECT_TRUE(programs.Opened.empty());
    EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
    EXPECT_EQ(form.frmMain.Focused(), &form.txtFocus);
  }
  /// Writes it again with nothing in the way.
  void ExpectTheNextOneIsWhole() {
    loop.Shown.clear();
    Print();
    EXPECT_TRUE(loop.Shown.empty());
    EXPECT_TRUE(disk.Contents(queuePath).ends_with("End of Queue Report\n"));
    EXPECT_EQ(disk.NamesIn(folder), Names{"Tavlo_Deck_Queue_Report.txt"});
  }
};

TEST_F(ReportFaults, ReadOnlyFolderIsToldAndTheReportOfBeforeStays) {
  disk.LockFolder(folder);
  Print();
  ExpectRefusal("access is denied");
  EXPECT_EQ(disk.Contents(queuePath), kBefore);
  disk.UnlockFolder(folder);
  ExpectTheNextOneIsWhole();
}

TEST_F(ReportFaults, FullDiskIsToldAndTheReportOfBeforeStays) {
  disk.SetFreeSpace(folder, 100);
  Print();
  ExpectRefusal("the disk is full");
  EXPECT_EQ(disk.NamesIn(folder), Names{"Tavlo_Deck_Queue_Report.txt"});
  EXPECT_EQ(disk.Contents(queuePath), kBefore);
  disk.SetFreeSpace(folder, 100'000);
  ExpectTheNextOneIsWhole();
}

TEST_F(ReportFaults, MissingFolderIsMade) {
  disk.Remove(queuePath);
  disk.Remove(folder);
  ExpectTheNextOneIsWhole();
}

TEST_F(ReportFaults, FileInPlaceOfTheFolderIsTold) {
  disk.Remove(queuePath);
  disk.Remove(folder);
  disk.WithFile(folder, "a note");
  Print();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(loop.Shown[0].text.starts_with("The report could not be written: "));
  EXPECT_EQ(disk.Contents(folder), "a note");
}

TEST_F(ReportFaults, FolderInPlaceOfTheReportIsTold) {
  disk.Remove(queuePath);
  disk.WithFolder(queuePath);
  Print();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(loop.Shown[0].text.starts_with("The report could not be written: "));
  EXPECT_EQ(disk.NamesIn(folder), Names{"Tavlo_Deck_Queue_Report.txt"});
}

TEST_F(ReportFaults, LeftoverOfAnEndInTheMiddleIsTakenAway) {
  disk.WithFile(folder + "/.Tavlo_Deck_Queue_Report.txt", "half of a rep");
  ExpectTheNextOneIsWhole();
}

TEST_F(ReportFaults, FolderWithoutAnAnswerIsToldAndAskedForNothingMore) {
  disk.Places.Stall(folder);
  Print();
  ExpectRefusal("the folder gives no answer");
  EXPECT_EQ(disk.Operations.size(), 1u);
  disk.Places.Resume(folder, Late::Happens);
  EXPECT_EQ(disk.Contents(queuePath), kBefore);
  ExpectTheNextOneIsWhole();
}

TEST_F(ReportFaults, ThereIsNeverHalfAReportWhateverFails) {
  for (const auto failing : {SimulatedDisk::Failing::Once, SimulatedDisk::Failing::ForGood}) {
    for (const DiskResult result : {DiskResult::NoSpace, DiskResult::NoAccess,
                                    DiskResult::ProcessInTrouble, DiskResult::Failed}) {
      bool fired = true;
      for (int nth = 1; fired; ++nth) {
        SCOPED_TRACE("operation " + std::to_string(nth));
        disk.Heal();
        disk.WithFile(queuePath, kBefore);
        disk.Operations.clear();
        loop.Shown.clear();
        disk.FailOperation(nth, result, failing);
        Print();
        fired = static_cast<int>(disk.Operations.size()) >= nth;
        disk.Heal();
        const std::string now = disk.Has(queuePath) ? disk.Contents(queuePath) : "";
        const bool whole = now.ends_with("End of Queue Report\n");
        EXPECT_TRUE(whole || now.empty() || now == kBefore) << now;
        EXPECT_EQ(loop.Shown.empty(), whole);
        ExpectTheNextOneIsWhole();
      }
    }
  }
}

TEST_F(ReportFaults, ThereIsNeverHalfAReportAfterAStallAtAnyStep) {
  for (const Late late : {Late::Happens, Late::Fails}) {
    bool fired = true;
    for (int nth = 1; fired; ++nth) {
      SCOPED_TRACE("operation " + std::to_string(nth));
      disk.WithFile(queuePath, kBefore);
      disk.Operations.clear();
      disk.StallAtOperation(nth, folder);
      Print();
      fired = static_cast<int>(disk.Operations.size()) >= nth;
      disk.ForgetStall();
      if (fired) disk.Places.Resume(folder, late);
      const std::string now = disk.Has(queuePath) ? disk.Contents(queuePath) : "";
      EXPECT_TRUE(now.ends_with("End of Queue Report\n") || now.empty() || now == kBefore) << now;
      ExpectTheNextOneIsWhole();
    }
  }
}

TEST_F(ReportFaults, ThereIsNeverHalfAReportAfterAPowerCut) {
  bool crashed = true;
  for (int nth = 1; crashed; ++nth) {
    SCOPED_TRACE("operation " + std::to_string(nth));
    disk.WithFile(queuePath, kBefore);
    disk.CrashAtOperation(nth);
    Print();
    crashed = disk.Crashed();
    disk.LoseWhatWasNotFlushed();
    disk.Heal();
    const std::string now = disk.Has(queuePath) ? disk.Contents(queuePath) : "";
    EXPECT_TRUE(now.ends_with("End of Queue Report\n") || now.empty() || now == kBefore) << now;
    ExpectTheNextOneIsWhole();
  }
}

}  // namespace
}  // namespace tavlo::test
