#include "lists/completed_purge.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using Names = std::vector<std::string>;

/// It is noon of a first of April.
struct CompletedPurgeTest : testing::Test, ListsBench {
  lists::CompletedPurge purge{loop, files};

  CompletedPurgeTest() { loop.SetWallClock({2004, 4, 1, 12, 0, 0, 0}); }

  /// Puts a document into the Completed folder that was dictated then, and gives its name.
  std::string Keep(const std::string& moment, const std::string& author = "Brown") {
    return KeepFile(Document().By(author).At(moment).Name());
  }
  std::string KeepFile(const std::string& name) {
    disk.WithFile(folders.CompletedPath() + name, "sound of " + name);
    return name;
  }
  bool Stays(const std::string& name) { return disk.Has(folders.CompletedPath() + name); }
  std::size_t Kept() { return disk.NamesIn(folders.CompletedPath()).size(); }
};

TEST_F(CompletedPurgeTest, OfOneDayADocumentOf25HoursGoesAndOneOf23Stays) {
  const std::string older = Keep("3 31 2004 11 0 0");
  const std::string younger = Keep("3 31 2004 13 0 0");
  purge.PurgeCompletedFiles(1);
  EXPECT_FALSE(Stays(older));
  EXPECT_TRUE(Stays(younger));
  EXPECT_TRUE(disk.FilesHolding("sound of " + older).empty());
}

TEST_F(CompletedPurgeTest, DocumentGoesInTheMinuteAfterItsLastDay) {
  const std::string name = Keep("3 31 2004 11 59 30");
  purge.PurgeCompletedFiles(1);
  EXPECT_TRUE(Stays(name));
  loop.SetWallClock({2004, 4, 1, 12, 0, 30, 0});
  purge.PurgeCompletedFiles(1);
  EXPECT_FALSE(Stays(name));
}

TEST_F(CompletedPurgeTest, LimitOf22DaysWorks) {
  const std::string older = Keep("3 10 2004 11 0 0");
  const std::string younger = Keep("3 10 2004 13 0 0");
  purge.PurgeCompletedFiles(22);
  EXPECT_FALSE(Stays(older));
  EXPECT_TRUE(Stays(younger));
}

TEST_F(CompletedPurgeTest, LimitOf23DaysAndMoreDeletesNothing) {
  const std::string name = Keep("3 9 2000 14 5 12");
  for (const std::uint8_t days : std::vector<std::uint8_t>{23, 45, 46, 255}) {
    purge.PurgeCompletedFiles(days);
    EXPECT_TRUE(Stays(name)) << int{days};
  }
}

TEST_F(CompletedPurgeTest, NoDaysKeepEverything) {
  const std::string name = Keep("3 9 2000 14 5 12");
  purge.PurgeCompletedFiles(0);
  EXPECT_TRUE(Stays(name));
}

TEST_F(CompletedPurgeTest, RunLooksAtAThousandNamesAndTheNextAtTheRest) {
  for (int number = 0; number < 1001; ++number) Keep("3 9 2000 1 0 0", std::to_string(number));
  purge.PurgeCompletedFiles(1);
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()),
            Names{Document().By("1000").At("3 9 2000 1 0 0").Name()});
  purge.PurgeCompletedFiles(1);
  EXPECT_EQ(Kept(), 0u);
}

TEST_F(CompletedPurgeTest, NamesThatStayCountAmongTheThousand) {
  for (int number = 0; number < 1000; ++number) Keep("3 31 2004 13 0 0", std::to_string(number));
  const std::string old = Keep("3 9 2000 1 0 0");
  purge.PurgeCompletedFiles(1);
  EXPECT_TRUE(Stays(old));
}

TEST_F(CompletedPurgeTest, AgeIsThatOfTheNameAndNotThatOfTheFile) {
  loop.SetWallClock({2000, 1, 1, 0, 0, 0, 0});
  const std::string young = Keep("4 1 2004 9 0 0");
  loop.SetWallClock({2004, 4, 1, 12, 0, 0, 0});
  const std::string old = Keep("3 1 2004 9 0 0");
  purge.PurgeCompletedFiles(1);
  EXPECT_TRUE(Stays(young));
  EXPECT_FALSE(Stays(old));
}

TEST_F(CompletedPurgeTest, DocumentOfHalfPastTwelveIsAgedFromHalfPastMidnight) {
  const std::string name = Keep("3 31 2004 12 30 0");
  loop.SetWallClock({2004, 4, 1, 0, 30, 59, 0});
  purge.PurgeCompletedFiles(1);
  EXPECT_TRUE(Stays(name));
  loop.SetWallClock({2004, 4, 1, 0, 31, 0, 0});
  purge.PurgeCompletedFiles(1);
  EXPECT_FALSE(Stays(name));
}

TEST_F(CompletedPurgeTest, MonthComesFirstWhateverTheListsShow) {
  loop.SetWallClock({2004, 4, 3, 12, 0, 0, 0});
  names.DateFormat = "DDMMYY";
  const std::string ofMarch = Keep("3 4 2004 12 0 0");
  const std::string ofApril = Keep("4 3 2004 9 0 0");
  purge.PurgeCompletedFiles(20);
  EXPECT_FALSE(Stays(ofMarch));
  EXPECT_TRUE(Stays(ofApril));
}

TEST_F(CompletedPurgeTest, DocumentOfTheFutureStays) {
  const std::string name = Keep("4 1 2034 12 0 0");
  purge.PurgeCompletedFiles(1);
  EXPECT_TRUE(Stays(name));
}

TEST_F(CompletedPurgeTest, NameOfAnotherFormEndsTheRunAtThatFile) {
  const Names strangers{
      "letter.dss",
      "0007 0 Brown 1234 3 9 2000.wav",
      Document().At("3 9 2000 14 5 12").Id(0).Name(),
      Document().At("3 9 2000 14 5 12").Field(16, "X").Name(),
      Document().At("3 9 2000 14 5 12").About("two words").Name(),
      Document().At("3 9 2000 14 5 12").Tail(" 7 0 0").Name(),
      Document().At("2 31 2000 14 5 12").Name(),
      Document().At("3 9 2000 -1 5 12").Name(),
      Document().At("3 9 2000  5 12").Name(),
      Document().At("3 9 2000 14x 5 12").Name(),
      Document().At("13 9 2000 14 5 12").Name(),
      Document().At("3 9 1994 14 5 12").Name(),
      "\xFF\xFE.wav",
      "line\nbreak.wav",
      " ",
  };
  for (const std::string& stranger : strangers) {
    const std::string before = Keep("3 9 2000 1 0 0", "Before");
    KeepFile(stranger);
    const std::string behind = Keep("3 9 2000 1 0 0", "Behind");
    purge.PurgeCompletedFiles(1);
    EXPECT_FALSE(Stays(before)) << stranger;
    EXPECT_TRUE(Stays(stranger)) << stranger;
    EXPECT_TRUE(Stays(behind)) << stranger;
    for (const std::string& name : {stranger, behind}) disk.Remove(folders.CompletedPath() + name);
  }
}

TEST_F(CompletedPurgeTest, WhatNoListShowsIsNotLookedAt) {
  KeepFile(".Rescued letter.wav");
  disk.WithFolder(folders.CompletedPath() + "folder.wav");
  disk.WithLink(folders.CompletedPath() + "link.wav", "/root/Files");
  const std::string old = Keep("3 9 2000 14 5 12");
  purge.PurgeCompletedFiles(1);
  EXPECT_FALSE(Stays(old));
  EXPECT_EQ(Kept(), 3u);
}

TEST_F(CompletedPurgeTest, ReadOnlyDocumentGoesToo) {
  const std::string name = Keep("3 9 2000 14 5 12");
  disk.SetReadOnly(folders.CompletedPath() + name);
  purge.PurgeCompletedFiles(1);
  EXPECT_FALSE(Stays(name));
}

TEST_F(CompletedPurgeTest, DocumentThatIsRefusedGetsItsNormalAttributesAndGoes) {
  const std::string name = Keep("3 9 2000 14 5 12");
  disk.SetReadOnly(folders.CompletedPath() + name);
  // The first operation is the listing.
  disk.FailOperation(2, DiskResult::NoAccess);
  disk.Operations.clear();
  purge.PurgeCompletedFiles(1);
  EXPECT_FALSE(Stays(name));
  const std::string path = folders.CompletedPath() + name;
  ASSERT_GE(disk.Operations.size(), 4u);
  EXPECT_EQ(disk.Operations[2], "SetAttributesNormal " + path);
  EXPECT_EQ(disk.Operations[3], "Delete " + path);
}

TEST_F(CompletedPurgeTest, WindowPaintsBeforeEachDocument) {
  for (int number = 0; number < 40; ++number) Keep("3 9 2000 1 0 0", std::to_string(number));
  const int before = loop.Breaths;
  purge.PurgeCompletedFiles(1);
  EXPECT_EQ(loop.Breaths - before, 40);
}

TEST_F(CompletedPurgeTest, RunSaysAndSpeaksNothing) {
  Keep("3 9 2000 1 0 0");
  KeepFile("letter.dss");
  purge.PurgeCompletedFiles(1);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(prompts.empty());
  EXPECT_TRUE(form.lblNotice.Value.Get().empty());
}

TEST_F(CompletedPurgeTest, SystemIdThatAStrangerInAListInheritsIsNotChanged) {
  Keep("3 9 2000 1 0 0");
  names.ParseDocumentName(Document().System("42").Name());
  purge.PurgeCompletedFiles(1);
  names.ParseDocumentName("letter.dss");
  EXPECT_EQ(names.Record.SystemId, "42");
}

}  // namespace
}  // namespace tavlo::test
