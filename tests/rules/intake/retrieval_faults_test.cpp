#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/intake_bench.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using Names = std::vector<std::string>;

/// A file in each drop folder; the folder of the .eW2 files, and the current one, are shares.
struct RetrievalFaults : testing::Test, IntakeBench {
  const std::string ew2 = folders.Ew2QueuePath + "a.eW2";
  const std::string ds2 = folders.Ds2QueuePath + "b.dS2";
  const std::string ee2 = "/current/e.eE2";

  RetrievalFaults() {
    MakeShareOf(folders.Ew2QueuePath);
    MakeShareOf("/current");
    disk.WithFile(ew2, "A");
  }
  void WithDs2OnAShare() {
    disk.Remove(ew2);
    MakeShareOf(folders.Ds2QueuePath);
    disk.WithFile(ds2, "B");
  }
};

TEST_F(RetrievalFaults, FolderThatCanNotBeListedGivesItsMessageAndThePassesAfterItRun) {
  disk.BreakListing("/current");
  passes.RunRetrievalPasses();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Network Fault");
  EXPECT_EQ(loop.Shown[0].text,
            "The .eE2 file's path  can not be found.\n\n\r"
            "The network may be down.  Please try again later, or enter the configuration menu to "
            "check the settings for this path");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Warning);
  EXPECT_TRUE(disk.Has(deck.Queued("a.wav")));
}

TEST_F(RetrievalFaults, EachPassNamesItsFolder) {
  for (const std::string& folder :
       {folders.FtpQueuePath, folders.Ds2QueuePath, folders.Eu2QueuePath, folders.Ew2QueuePath}) {
    disk.BreakListing(folder);
  }
  passes.RunRetrievalPasses();
  const Names beginnings{"The ftp file's path " + folders.FtpQueuePath + " can",
                         "The .dS2 file's path " + folders.Ds2QueuePath + " can",
                         "The .eU2 file's path " + folders.Eu2QueuePath + " can",
                         "The .eW2 file's path " + folders.Ew2QueuePath + " can"};
  ASSERT_EQ(loop.Shown.size(), beginnings.size());
  for (std::size_t i = 0; i < beginnings.size(); ++i) {
    EXPECT_TRUE(loop.Shown[i].text.starts_with(beginnings[i])) << loop.Shown[i].text;
  }
}

TEST_F(RetrievalFaults, WhatMovedBeforeTheMessageStaysMoved) {
  disk.WithFile(folders.Ew2QueuePath + "z.eW2");
  disk.BreakListingAfter(folders.Ew2QueuePath, 1);
  passes.RunRetrievalPasses();
  EXPECT_TRUE(disk.Has(deck.Queued("a.wav")));
  EXPECT_EQ(Titles(), Names{"Tavlo Deck - Network Fault"});
}

TEST_F(RetrievalFaults, ProcessWithoutHandlesSaysSoInTheQuietLine) {
  disk.OutOfHandlesAt = ew2;
  passes.RunRetrievalPasses();
  EXPECT_TRUE(loop.Shown.empty());
  ASSERT_EQ(front.said.size(), 1u);
  EXPECT_TRUE(front.said[0].starts_with("Not all of " + folders.Ew2QueuePath)) << front.said[0];
}

TEST_F(RetrievalFaults, CopyThatFailsEndsTheRunWithABoxThatNamesFileAndReason) {
  disk.SetFreeSpace(folders.InQueuePath, 0);
  passes.RunRetrievalPasses();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Retrieval");
  EXPECT_EQ(loop.Shown[0].text, "The file " + ew2 +
                                    " was not retrieved: the disk is full.\n\n"
                                    "The retrieval ends here. The next one tries it again.");
  EXPECT_EQ(disk.FilesHolding("A"), Names{ew2});
}

TEST_F(RetrievalFaults, NothingAfterTheFailureIsReachedInThatRun) {
  MakeShareOf(folders.FtpQueuePath);
  disk.WithFile(folders.FtpQueuePath + "f.mp3", "F");
  disk.SetFreeSpace(folders.InQueuePath, 0);
  passes.RunRetrievalPasses();
  EXPECT_EQ(Titles(), Names{"Tavlo Deck - Retrieval"});
  EXPECT_FALSE(front.ftpSortShows);
  EXPECT_TRUE(disk.Has(ew2));
}

TEST_F(RetrievalFaults, MissingTargetFolderEndsTheRunAndKeepsTheFile) {
  disk.WithFile(folders.FtpQueuePath + "f.mp3", "F");
  front.pointer = "99";
  passes.RunRetrievalPasses();
  EXPECT_EQ(Titles(), Names{"Tavlo Deck - Retrieval"});
  EXPECT_EQ(disk.FilesHolding("F"), Names{folders.FtpQueuePath + "f.mp3"});
}

TEST_F(RetrievalFaults, NextRunGoesOnWhereTheFailureWas) {
  disk.SetFreeSpace(folders.InQueuePath, 0);
  passes.RunRetrievalPasses();
  disk.SetFreeSpace(folders.InQueuePath, 1000);
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.FilesHolding("A"), Names{deck.Queued("a.wav")});
}

TEST_F(RetrievalFaults, Ee2FileWhoseCopyFailedGoesAndIsKeptBesideWhereItWas) {
  disk.Remove(ew2);
  disk.WithFile(ee2, "E");
  disk.SetFreeSpace(folders.InQueuePath, 0);
  passes.RunRetrievalPasses();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(disk.Has(ee2));
  EXPECT_EQ(disk.FilesHolding("E"), Names{"/current/.Rescued e.eE2"});
  EXPECT_EQ(front.said, Names{"The file e.eE2 was not retrieved and is kept as .Rescued e.eE2"});
}

TEST_F(RetrievalFaults, Ee2FileThatIsRetrievedButNotDeletedIsSetAsideAndSaidToBeBoth) {
  const std::string deleting = "Delete /current/.TavloClaim desk 41 e.eE2";
  IntakeBench dry;
  dry.MakeShareOf("/current");
  dry.disk.WithFile(ee2, "E");
  dry.disk.Operations.clear();
  dry.passes.RunRetrievalPasses();
  const auto nth = std::ranges::find(dry.disk.Operations, deleting) - dry.disk.Operations.begin();
  ASSERT_LT(nth, std::ssize(dry.disk.Operations));

  disk.Remove(ew2);
  disk.WithFile(ee2, "E");
  disk.FailOperation(static_cast<int>(nth) + 1, DiskResult::Failed);
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.Contents(deck.Queued("e.wav")), "E");
  EXPECT_EQ(disk.NamesIn("/current"), Names{".Rescued e.eE2"});
  EXPECT_EQ(front.said,
            Names{"The file e.eE2 was retrieved, but not deleted: it is kept as .Rescued e.eE2"});
}

TEST_F(RetrievalFaults, FolderWhoseFilesMayNotBeRenamedIsCopiedFromByNobody) {
  disk.LockFolder(folders.Ew2QueuePath);
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.FilesHolding("A"), Names{ew2});
  EXPECT_EQ(Titles(), Names{"Tavlo Deck - Retrieval"});
  EXPECT_EQ(front.said, Names{"Nothing was copied out of " + folders.Ew2QueuePath +
                              ", for this deck can not rename its files: access is denied."});
}

TEST_F(RetrievalFaults, CurrentFolderWhoseFilesMayNotBeRenamedIsPassedOver) {
  disk.WithFile(ee2, "E");
  disk.LockFolder("/current");
  passes.RunRetrievalPasses();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(disk.FilesHolding("E"), Names{ee2});
  EXPECT_TRUE(disk.Has(deck.Queued("a.wav")));
}

TEST_F(RetrievalFaults, FileThatMayNotBeClaimedIsNotConverted) {
  WithDs2OnAShare();
  disk.LockFolder(folders.Ds2QueuePath);
  passes.RunRetrievalPasses();
  EXPECT_TRUE(deck.libraries.calls.empty());
  EXPECT_EQ(Titles(), Names{"Tavlo Deck - Retrieval"});
  EXPECT_EQ(disk.FilesHolding("B"), Names{ds2});
}

TEST_F(RetrievalFaults, ShareThatStallsGivesItsMessageAndLosesNothing) {
  disk.Places.Stall(folders.Ew2QueuePath);
  passes.RunRetrievalPasses();
  EXPECT_EQ(Titles(), Names{"Tavlo Deck - Network Fault"});
  disk.Places.Resume(folders.Ew2QueuePath, SimulatedPlaces::Late::Happens);
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.FilesHolding("A"), Names{deck.Queued("a.wav")});
}

TEST_F(RetrievalFaults, QueueThatStallsEndsTheRunAndNothingIsClaimed) {
  disk.Places.Stall(folders.InQueuePath);
  passes.RunRetrievalPasses();
  ASSERT_EQ(Titles(), Names{"Tavlo Deck - Retrieval"});
  EXPECT_TRUE(loop.Shown[0].text.starts_with("It is not known whether the file " + ew2));
  EXPECT_EQ(disk.FilesHolding("A"), Names{ew2});
}

TEST_F(RetrievalFaults, NoFailureAtAnyOperationLosesAFileOrKeepsItOut) {
  for (int nth = 1; nth < 200; ++nth) {
    IntakeBench bench;
    bench.MakeShareOf(bench.folders.Ew2QueuePath);
    bench.MakeShareOf(bench.folders.Ds2QueuePath);
    bench.disk.WithFile(bench.folders.Ew2QueuePath + "a.eW2", "A");
    bench.disk.WithFile(bench.folders.Ds2QueuePath + "b.dS2", "B");
    const std::size_t before = bench.disk.Operations.size();
    bench.disk.FailOperation(nth, DiskResult::Failed);
    bench.passes.RunRetrievalPasses();
    const bool fired = bench.disk.Operations.size() - before >= static_cast<std::size_t>(nth);
    bench.disk.Heal();
    // The first makes good what failed, the second what was claimed and not given back.
    bench.passes.RunRetrievalPasses();
    bench.loop.Advance(intake::Claims::kAbandonedAfter);
    bench.passes.RunRetrievalPasses();
    EXPECT_EQ(bench.disk.Contents(bench.deck.Queued("a.wav")), "A") << nth;
    EXPECT_EQ(bench.disk.Contents(bench.deck.Queued("b.wav")), "wave of B") << nth;
    EXPECT_FALSE(bench.disk.Has(bench.folders.Ew2QueuePath + "a.eW2")) << nth;
    EXPECT_FALSE(bench.disk.Has(bench.folders.Ds2QueuePath + "b.dS2")) << nth;
    if (!fired) return;
  }
}

TEST_F(RetrievalFaults, DeckThatDiesAtAnyOperationLosesNoFile) {
  for (int nth = 1; nth < 200; ++nth) {
    SimulatedLoop its;
    SimulatedDisk shared{its};
    bool died = false;
    {
      IntakeDeck dying(its, shared, kRoot, {.host = "desk", .process = 1});
      shared.WithFileSystemAt(dying.folders.Ew2QueuePath)
          .WithFileSystemAt(dying.folders.Ds2QueuePath)
          .WithFile(dying.folders.Ew2QueuePath + "a.eW2", "A")
          .WithFile(dying.folders.Ds2QueuePath + "b.dS2", "B");
      shared.CrashAtOperation(nth);
      dying.passes.RunRetrievalPasses();
      died = shared.Crashed();
    }
    shared.Heal();
    its.Advance(intake::Claims::kAbandonedAfter);
    IntakeDeck next(its, shared, kRoot, {.host = "desk", .process = 2});
    next.passes.RunRetrievalPasses();
    EXPECT_EQ(shared.Contents(next.Queued("a.wav")), "A") << nth;
    EXPECT_EQ(shared.Contents(next.Queued("b.wav")), "wave of B") << nth;
    EXPECT_TRUE(shared.NamesIn(next.folders.Ew2QueuePath).empty()) << nth;
    EXPECT_TRUE(shared.NamesIn(next.folders.Ds2QueuePath).empty()) << nth;
    if (!died) return;
  }
}

}  // namespace
}  // namespace tavlo::test
