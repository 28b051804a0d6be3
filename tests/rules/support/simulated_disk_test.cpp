#include "support/simulated_disk.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/folder_walk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using Names = std::vector<std::string>;

struct SimulatedDiskTest : testing::Test {
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
};

TEST_F(SimulatedDiskTest, ListingGivesPlainFilesInTheOrderOfTheirMaking) {
  disk.WithFile("/d/b").WithFile("/d/a").WithFile("/d/.hidden").WithFolder("/d/folder");
  disk.WithLink("/d/link", "/d/a").WithFifo("/d/fifo").WithFile("/d/folder/inner");
  const auto listing = disk.ListPlainFiles("/d/");
  EXPECT_TRUE(listing.started && listing.finished);
  EXPECT_EQ(listing.names, (Names{"b", "a"}));
}

TEST_F(SimulatedDiskTest, ListingOfTheEmptyFolderIsThatOfTheCurrentOne) {
  disk.WithFile("/current/a.eE2");
  EXPECT_EQ(disk.ListPlainFiles("").names, Names{"a.eE2"});
  EXPECT_TRUE(disk.Facts("a.eE2").has_value());
}

TEST_F(SimulatedDiskTest, BrokenListingStopsWhereItBroke) {
  disk.WithFile("/d/a").WithFile("/d/b");
  disk.BreakListingAfter("/d", 1);
  const auto half = disk.ListPlainFiles("/d");
  EXPECT_TRUE(half.started);
  EXPECT_FALSE(half.finished);
  EXPECT_EQ(half.names, Names{"a"});
  disk.BreakListing("/d");
  EXPECT_FALSE(disk.ListPlainFiles("/d").started);
  disk.MendListing("/d");
  EXPECT_TRUE(disk.ListPlainFiles("/d").finished);
}

TEST_F(SimulatedDiskTest, WalkStandsAtEachPlainFileAndOpensItOnce) {
  disk.WithFile("/d/b", "12").WithFile("/d/a").WithFile("/d/.hidden").WithFolder("/d/folder");
  disk.WithLink("/d/link", "/d/a").WithFifo("/d/fifo");
  const auto walk = disk.Walk("/d/");
  ASSERT_TRUE(walk->Started());
  ASSERT_TRUE(walk->Next());
  EXPECT_EQ(walk->Open().path, "/d/b");
  EXPECT_EQ(walk->Open().facts, disk.Facts("/d/b"));
  EXPECT_EQ(walk->TestReadiness(), store::Readiness::Free);
  ASSERT_TRUE(walk->Next());
  EXPECT_EQ(walk->TestReadiness(), store::Readiness::Free);
  EXPECT_FALSE(walk->Next());
  EXPECT_EQ(walk->End(), store::WalkEnd::Whole);
  EXPECT_EQ(disk.Operations, (Names{"List /d", "Open /d/b", "Facts /d/b", "Open /d/a"}));
}

TEST_F(SimulatedDiskTest, WalkHoldsTheFolderAndOneFileUntilItGoesOn) {
  disk.WithFile("/d/a").WithFile("/d/b");
  {
    const auto walk = disk.Walk("/d/");
    EXPECT_EQ(disk.HeldByWalks(), 1);
    while (walk->Next()) {
      EXPECT_EQ(disk.HeldByWalks(), 1);
      EXPECT_EQ(walk->Open().opened, DiskResult::Done);
      EXPECT_EQ(disk.HeldByWalks(), 2);
    }
  }
  EXPECT_EQ(disk.HeldByWalks(), 0);
}

TEST_F(SimulatedDiskTest, WalkRefusesWhatCanNotBeOpenedAnyMore) {
  disk.WithFile("/d/gone").WithFile("/d/pipe").WithFile("/d/barred").WithFile("/d/nohandle");
  disk.SetUnreadable("/d/barred");
  disk.OutOfHandlesAt = "/d/nohandle";
  const auto walk = disk.Walk("/d/");
  disk.Remove("/d/gone");
  disk.WithFifo("/d/pipe");
  for (const DiskResult expected : {DiskResult::NotFound, DiskResult::Failed, DiskResult::NoAccess,
                                    DiskResult::ProcessInTrouble}) {
    ASSERT_TRUE(walk->Next());
    EXPECT_EQ(walk->Open().opened, expected) << walk->Name();
    EXPECT_EQ(walk->SetAttributesNormal(), expected) << walk->Name();
    EXPECT_EQ(walk->TestReadiness(), expected == DiskResult::ProcessInTrouble
                                         ? store::Readiness::ProcessInTrouble
                                         : store::Readiness::Unusable);
  }
  EXPECT_EQ(disk.HeldByWalks(), 1);
}

TEST_F(SimulatedDiskTest, WhatAWalkHoldsIsTheFileThatWasOpened) {
  disk.WithFile("/d/a", "12");
  disk.OpenWriter("/d/a");
  const auto walk = disk.Walk("/d/");
  ASSERT_TRUE(walk->Next());
  ASSERT_EQ(walk->Open().opened, DiskResult::Done);
  disk.WithFile("/d/a", "another");
  EXPECT_EQ(walk->Open().facts.size, 2u);
  EXPECT_EQ(walk->TestReadiness(), store::Readiness::InUse);
}

TEST_F(SimulatedDiskTest, WalkThatBreaksSaysWhetherItWasTheProcess) {
  disk.WithFile("/d/a").WithFile("/d/b");
  EXPECT_EQ(disk.Walk("/nowhere/")->End(), store::WalkEnd::OutOfReach);
  disk.BreakListingAfter("/d", 1);
  const auto walk = disk.Walk("/d/");
  EXPECT_TRUE(walk->Next());
  EXPECT_FALSE(walk->Next());
  EXPECT_EQ(walk->End(), store::WalkEnd::OutOfReach);
  disk.ListingBreaksForWantOfMemory = true;
  EXPECT_EQ(disk.Walk("/d/")->End(), store::WalkEnd::ProcessInTrouble);
  disk.MendListing("/d");
  disk.OutOfHandles = true;
  const auto none = disk.Walk("/d/");
  EXPECT_FALSE(none->Started());
  EXPECT_FALSE(none->Next());
  EXPECT_EQ(none->End(), store::WalkEnd::ProcessInTrouble);
}

TEST_F(SimulatedDiskTest, NothingIsOverwritten) {
  disk.WithFile("/d/a", "A").WithFile("/d/b", "B");
  EXPECT_EQ(disk.Rename("/d/a", "/d/b"), DiskResult::AlreadyThere);
  EXPECT_EQ(disk.Copy("/d/a", "/d/b"), DiskResult::AlreadyThere);
  EXPECT_EQ(disk.MakeLink("/d/a", "/d/b"), DiskResult::AlreadyThere);
  EXPECT_EQ(disk.MakeFolder("/d/b"), DiskResult::AlreadyThere);
  EXPECT_EQ(disk.Contents("/d/b"), "B");
}

TEST_F(SimulatedDiskTest, WhatIsMissingIsNotFound) {
  disk.WithFile("/d/a");
  EXPECT_EQ(disk.Rename("/d/x", "/d/y"), DiskResult::NotFound);
  EXPECT_EQ(disk.Rename("/d/a", "/nowhere/a"), DiskResult::NotFound);
  EXPECT_EQ(disk.Copy("/d/a", "/nowhere/a"), DiskResult::NotFound);
  EXPECT_EQ(disk.MakeFolder("/nowhere/folder"), DiskResult::NotFound);
  EXPECT_EQ(disk.Delete("/d/x"), DiskResult::NotFound);
}

TEST_F(SimulatedDiskTest, RenameDoesNotCrossFileSystems) {
  disk.WithFile("/d/a").WithFileSystemAt("/d/share");
  EXPECT_EQ(disk.Rename("/d/a", "/d/share/a"), DiskResult::OtherFileSystem);
  EXPECT_EQ(disk.Copy("/d/a", "/d/share/a"), DiskResult::Done);
}

TEST_F(SimulatedDiskTest, FullDiskLeavesHalfACopyBehind) {
  disk.WithFile("/d/a", "1234").WithFolder("/e");
  disk.SetFreeSpace("/", 3);
  EXPECT_EQ(disk.Copy("/d/a", "/e/a"), DiskResult::NoSpace);
  EXPECT_EQ(disk.Contents("/e/a"), "12");
}

TEST_F(SimulatedDiskTest, FaultComesOnceOrForGood) {
  disk.WithFolder("/d");
  disk.FailOperation(2, DiskResult::NoSpace);
  EXPECT_EQ(disk.MakeFolder("/d/1"), DiskResult::Done);
  EXPECT_EQ(disk.MakeFolder("/d/2"), DiskResult::NoSpace);
  EXPECT_EQ(disk.MakeFolder("/d/3"), DiskResult::Done);
  disk.FailOperation(1, DiskResult::NoAccess, SimulatedDisk::Failing::ForGood);
  EXPECT_EQ(disk.MakeFolder("/d/4"), DiskResult::NoAccess);
  EXPECT_EQ(disk.MakeFolder("/d/5"), DiskResult::NoAccess);
}

TEST_F(SimulatedDiskTest, NothingReachesTheDiskAfterACrash) {
  disk.WithFolder("/d");
  disk.CrashAtOperation(2);
  EXPECT_EQ(disk.MakeFolder("/d/1"), DiskResult::Done);
  EXPECT_EQ(disk.MakeFolder("/d/2"), DiskResult::Failed);
  EXPECT_EQ(disk.MakeFolder("/d/3"), DiskResult::Failed);
  EXPECT_EQ(disk.NamesIn("/d"), Names{"1"});
}

TEST_F(SimulatedDiskTest, PowerCutTakesBackTheRenamesThatNoFlushMadeLasting) {
  disk.WithFile("/d/a").WithFile("/d/b").WithFolder("/e");
  EXPECT_EQ(disk.Rename("/d/a", "/e/a"), DiskResult::Done);
  EXPECT_EQ(disk.FlushFolder("/e/"), DiskResult::Done);
  EXPECT_EQ(disk.Rename("/d/b", "/e/b"), DiskResult::Done);
  disk.LoseWhatWasNotFlushed();
  EXPECT_EQ(disk.NamesIn("/e"), Names{"a"});
  EXPECT_EQ(disk.NamesIn("/d"), Names{"b"});
}

TEST_F(SimulatedDiskTest, RenameOlderThanHalfAMinuteLastsWithoutAFlush) {
  disk.WithFile("/d/a").WithFile("/d/b").WithFolder("/e");
  EXPECT_EQ(disk.Rename("/d/a", "/e/a"), DiskResult::Done);
  loop.Advance(base::Duration{1'000});
  EXPECT_EQ(disk.Rename("/d/b", "/e/b"), DiskResult::Done);
  loop.Advance(base::Duration{30'000'000});
  disk.LoseWhatWasNotFlushed();
  EXPECT_EQ(disk.NamesIn("/e"), Names{"a"});
  EXPECT_EQ(disk.NamesIn("/d"), Names{"b"});
}

TEST_F(SimulatedDiskTest, StampIsTheMomentOfTheLastChange) {
  disk.WithFile("/d/a", "A");
  const auto before = disk.Facts("/d/a");
  loop.Advance(base::Duration{1'500'000});
  disk.Write("/d/a", "AB");
  const auto after = disk.Facts("/d/a");
  EXPECT_EQ(after->stamp - before->stamp, 1'500'000'000);
  EXPECT_EQ(after->size, 2u);
}

TEST_F(SimulatedDiskTest, TwoChangesInOneMomentHaveTwoStamps) {
  disk.WithFile("/d/a", "A");
  const auto before = disk.Facts("/d/a");
  disk.Write("/d/a", "B");
  EXPECT_NE(disk.Facts("/d/a"), before);
}

TEST_F(SimulatedDiskTest, NameOfOver255BytesIsRefused) {
  disk.WithFile("/d/a");
  EXPECT_EQ(disk.Rename("/d/a", "/d/" + std::string(255, 'n')), DiskResult::Done);
  EXPECT_EQ(disk.MakeFolder("/d/" + std::string(256, 'n')), DiskResult::Failed);
}

TEST_F(SimulatedDiskTest, LooksFollowLinksAndSayWhatTheyLeadTo) {
  disk.WithFile("/d/a").WithLink("/d/link", "/d/a").WithLink("/d/lost", "/d/nowhere");
  EXPECT_EQ(disk.Look("/d/link"), store::Entry::PlainFile);
  EXPECT_EQ(disk.Look("/d/lost"), store::Entry::Other);
  EXPECT_EQ(disk.Look("/d"), store::Entry::Folder);
  EXPECT_EQ(disk.Look("/d/nothing"), store::Entry::Nothing);
  EXPECT_FALSE(disk.Facts("/d/link").has_value());
}

TEST_F(SimulatedDiskTest, FoldersAreRemovedWithAllThatTheyHold) {
  disk.WithFile("/d/in/a").WithFile("/d/in.wav");
  EXPECT_EQ(disk.RemoveFolder("/d/in"), DiskResult::Done);
  EXPECT_EQ(disk.NamesIn("/d"), Names{"in.wav"});
  EXPECT_EQ(disk.Append("/d/log", "1"), DiskResult::Done);
  EXPECT_EQ(disk.Append("/d/log", "2"), DiskResult::Done);
  EXPECT_EQ(disk.Contents("/d/log"), "12");
}

}  // namespace
}  // namespace tavlo::test
