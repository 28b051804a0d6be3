#include <gtest/gtest.h>

#include <string>

#include "lists/completed_purge.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using Late = SimulatedPlaces::Late;

/// Three documents of the year 2000 on a file system of their own, and a day to keep them.
struct PurgeDesk : ListsBench {
  lists::CompletedPurge purge{loop, files};

  PurgeDesk() {
    loop.SetWallClock({2004, 4, 1, 12, 0, 0, 0});
    disk.WithFileSystemAt(folders.CompletedPath());
    for (const char* author : {"Brown", "Okafor", "Weiss"}) {
      const std::string name = Document().By(author).At("3 9 2000 1 0 0").Name();
      disk.WithFile(folders.CompletedPath() + name, "sound of " + name);
    }
  }
  std::size_t Kept() const { return disk.NamesIn(folders.CompletedPath()).size(); }
  /// Documents that the log tells of.
  std::size_t Told() const {
    const std::string log = disk.Contents(folders.PurgeLogPath());
    return static_cast<std::size_t>(std::ranges::count(log, '\n'));
  }
  /// Of them those that may have stayed.
  std::size_t InDoubt() const {
    const std::string log = disk.Contents(folders.PurgeLogPath());
    return log.find(" may be deleted, ") == log.npos ? 0 : 1;
  }
  bool SaidNothing() const {
    return loop.Shown.empty() && prompts.empty() && form.lblNotice.Value.Get().empty();
  }
};

struct CompletedPurgeFaults : testing::Test, PurgeDesk {};

TEST_F(CompletedPurgeFaults, FolderThatIsMissingEndsTheRunInSilence) {
  disk.Remove(folders.CompletedPath().substr(0, folders.CompletedPath().size() - 1));
  purge.PurgeCompletedFiles(1);
  EXPECT_TRUE(SaidNothing());
  EXPECT_FALSE(disk.Has(folders.PurgeLogPath()));
}

TEST_F(CompletedPurgeFaults, FolderThatCanNotBeReadEndsTheRunInSilence) {
  disk.BreakListing(folders.CompletedPath());
  purge.PurgeCompletedFiles(1);
  EXPECT_EQ(Kept(), 3u);
  EXPECT_TRUE(SaidNothing());
}

TEST_F(CompletedPurgeFaults, WalkThatBreaksOffGivesTheNamesThatCameBefore) {
  disk.BreakListingAfter(folders.CompletedPath(), 2);
  purge.PurgeCompletedFiles(1);
  EXPECT_EQ(Kept(), 1u);
  EXPECT_EQ(Told(), 2u);
}

TEST_F(CompletedPurgeFaults, DeleteThatFailsEndsTheRun) {
  // The first operation is the listing.
  for (const int nth : {2, 3, 4}) {
    PurgeDesk desk;
    desk.disk.FailOperation(nth, DiskResult::Failed);
    desk.purge.PurgeCompletedFiles(1);
    const std::size_t gone = static_cast<std::size_t>(nth) - 2;
    EXPECT_EQ(desk.Kept(), 3 - gone) << nth;
    EXPECT_EQ(gone > 0 ? desk.Told() : 0, gone) << nth;
    EXPECT_TRUE(desk.SaidNothing());
  }
}

TEST_F(CompletedPurgeFaults, DocumentThatMayNotBeDeletedEndsTheRun) {
  disk.LockFolder(folders.CompletedPath());
  purge.PurgeCompletedFiles(1);
  EXPECT_EQ(Kept(), 3u);
  // It is tried twice, and none of the others.
  EXPECT_EQ(
      std::ranges::count_if(
          disk.Operations, [](const std::string& record) { return record.starts_with("Delete "); }),
      2);
  EXPECT_TRUE(SaidNothing());
}

TEST_F(CompletedPurgeFaults, WhateverFailsTheLogTellsOfNothingThatStayed) {
  bool failed = true;
  for (int nth = 1; failed; ++nth) {
    PurgeDesk desk;
    desk.disk.FailOperation(nth, DiskResult::Failed, SimulatedDisk::Failing::ForGood);
    desk.purge.PurgeCompletedFiles(1);
    const bool hasLog = desk.disk.Has(desk.folders.PurgeLogPath());
    EXPECT_LE(hasLog ? desk.Told() : 0, 3 - desk.Kept()) << nth;
    EXPECT_TRUE(desk.SaidNothing());
    failed = !hasLog;
    ASSERT_LT(nth, 100);
  }
}

TEST_F(CompletedPurgeFaults, FolderThatGivesNoAnswerEndsTheRunWhereverItStalls) {
  for (const Late late : {Late::Happens, Late::Fails}) {
    bool stalled = true;
    for (int nth = 1; stalled; ++nth) {
      PurgeDesk desk;
      const std::string folder = desk.folders.CompletedPath();
      desk.disk.StallAtOperation(nth, folder);
      desk.purge.PurgeCompletedFiles(1);
      stalled = desk.disk.Places.Stalls(folder);
      EXPECT_LE(desk.loop.BreathedFor, SimulatedPlaces::kPatience) << nth;
      EXPECT_TRUE(desk.SaidNothing());
      const bool hasLog = desk.disk.Has(desk.folders.PurgeLogPath());
      const std::size_t told = hasLog ? desk.Told() : 0;
      const std::size_t inDoubt = hasLog ? desk.InDoubt() : 0;
      EXPECT_EQ(told, 3 - desk.Kept() + inDoubt) << nth;
      desk.disk.Places.Resume(folder, late);
      EXPECT_LE(3 - desk.Kept(), told) << "what goes late is told of, too, " << nth;
      desk.disk.Heal();
      desk.purge.PurgeCompletedFiles(1);
      EXPECT_EQ(desk.Kept(), 0u) << nth;
    }
  }
}

TEST_F(CompletedPurgeFaults, RunThatIsCutOffGoesOnAtTheNextStart) {
  for (int nth = 1; nth <= 9; ++nth) {
    PurgeDesk desk;
    desk.disk.CrashAtOperation(nth);
    desk.purge.PurgeCompletedFiles(1);
    desk.disk.Heal();
    desk.purge.PurgeCompletedFiles(1);
    EXPECT_EQ(desk.Kept(), 0u) << nth;
  }
}

}  // namespace
}  // namespace tavlo::test
