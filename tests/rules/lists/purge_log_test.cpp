#include "lists/purge_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lists/completed_purge.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using lists::PurgeLog;
using store::DiskResult;

struct PurgeLogTest : testing::Test, ListsBench {
  const std::string log = folders.PurgeLogPath();
  const std::string old = folders.OldPurgeLogPath();
  lists::CompletedPurge purge{loop, files};

  PurgeLogTest() { loop.SetWallClock({2004, 4, 1, 8, 0, 2, 0}); }

  std::string Keep(const std::string& name) {
    disk.WithFile(folders.CompletedPath() + name, "sound of " + name);
    return name;
  }
  std::string KeepOld(const std::string& author = "Brown") {
    return Keep(Document().By(author).At("3 9 2004 14 5 12").Name());
  }
  void Purge() { purge.PurgeCompletedFiles(1); }
};

TEST_F(PurgeLogTest, TellsOfEachDeletedDocumentWhenItWentHowOldItWasAndItsName) {
  KeepOld();
  Keep(Document().By("Okafor").At("3 31 2004 7 0 0").Name());
  Keep(Document().By("Young").At("4 1 2004 7 0 0").Name());
  Purge();
  EXPECT_EQ(disk.Contents(log),
            "2004-04-01 08:00:02 deleted, 22 days 17 hours old: "
            "0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 0_.wav\n"
            "2004-04-01 08:00:02 deleted, 1 day 1 hour old: "
            "0007 0 Okafor 1234 3 31 2004 7 0 0 2 0 17 cardio 0 0_.wav\n");
}

TEST_F(PurgeLogTest, IsWrittenInOneGoAfterTheRun) {
  for (const char* author : {"Brown", "Okafor", "Weiss"}) KeepOld(author);
  Purge();
  const auto isAppend = [](const std::string& record) { return record.starts_with("Append"); };
  EXPECT_EQ(std::ranges::count_if(disk.Operations, isAppend), 1);
  EXPECT_TRUE(isAppend(disk.Operations.back()));
}

TEST_F(PurgeLogTest, NextRunAddsToIt) {
  KeepOld("Brown");
  Purge();
  const std::string before = disk.Contents(log);
  KeepOld("Okafor");
  Purge();
  EXPECT_TRUE(disk.Contents(log).starts_with(before));
  EXPECT_NE(disk.Contents(log).find("Okafor"), std::string::npos);
}

TEST_F(PurgeLogTest, RunThatDeletesNothingWritesNothing) {
  Keep(Document().At("4 1 2004 7 0 0").Name());
  disk.Operations.clear();
  Purge();
  EXPECT_FALSE(disk.Has(log));
  EXPECT_TRUE(disk.Changes().empty());
}

TEST_F(PurgeLogTest, NameIsOneLineOfTextWhateverItHolds) {
  KeepOld("A\nB\x1B[2J\xFF\xE2\x80\xAE");
  Purge();
  const std::string text = disk.Contents(log);
  EXPECT_EQ(std::ranges::count(text, '\n'), 1);
  EXPECT_NE(text.find(" A\\x0AB\\x1B[2J\\xFF\\xE2\\x80\\xAE "), std::string::npos) << text;
}

TEST_F(PurgeLogTest, ReportsFolderIsMadeWhereThereIsNone) {
  const std::string reports = folders.ReportsPath();
  disk.Remove(reports.substr(0, reports.size() - 1));
  KeepOld();
  Purge();
  EXPECT_TRUE(disk.Has(log));
}

TEST_F(PurgeLogTest, FullLogBecomesTheOldOneInPlaceOfTheOneBefore) {
  const std::string full(PurgeLog::kMostBytes + 1, 'x');
  disk.WithFile(log, full).WithFile(old, "the one before");
  KeepOld();
  Purge();
  EXPECT_EQ(disk.Contents(old), full);
  EXPECT_TRUE(disk.Contents(log).starts_with("2004-04-01"));
}

TEST_F(PurgeLogTest, LogOfJustThatManyBytesGoesOn) {
  disk.WithFile(log, std::string(PurgeLog::kMostBytes, 'x'));
  KeepOld();
  Purge();
  EXPECT_FALSE(disk.Has(old));
  EXPECT_GT(disk.Contents(log).size(), PurgeLog::kMostBytes);
}

TEST_F(PurgeLogTest, FullLogThatCanNotBecomeTheOldOneGrowsNoMore) {
  disk.WithFile(log, std::string(PurgeLog::kMostBytes + 1, 'x')).WithFolder(old);
  const std::string name = KeepOld();
  Purge();
  EXPECT_EQ(disk.Contents(log).size(), PurgeLog::kMostBytes + 1);
  EXPECT_FALSE(disk.Has(folders.CompletedPath() + name));
}

TEST_F(PurgeLogTest, LogThatCanNotBeWrittenKeepsNoDocumentAndSaysNothing) {
  disk.LockFolder(folders.ReportsPath());
  const std::string name = KeepOld();
  Purge();
  EXPECT_FALSE(disk.Has(log));
  EXPECT_FALSE(disk.Has(folders.CompletedPath() + name));
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(form.lblNotice.Value.Get().empty());
}

}  // namespace
}  // namespace tavlo::test
