#include "lists/waiting_figures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using Four = std::array<int, 4>;

/// The folders that feed the Queue, on a disk in memory.
struct WaitingFigures : testing::Test {
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  store::WorkFolders folders{disk, "/root"};
  lists::WaitingFigures figures{loop, disk, folders};

  WaitingFigures() {
    disk.WithFolder("/root");
    folders.MakeTree();
    folders.ReloadQueuePaths({.ew2QueuePath = "/root/Files/eW2Queue",
                              .ds2QueuePath = "/root/Files/dS2Queue",
                              .wavQueuePath = "/root/Files/ImportQueue",
                              .eu2QueuePath = "/root/Files/eU2Queue",
                              .viewDelay = "0"});
  }
  void Put(const std::string& path) { disk.WithFile("/root/Files/" + path); }
  /// In the Queue's folders, of them priority, in those of the import, of them priority.
  Four Waiting() {
    figures.CountWaitingWork();
    return {figures.WaitingQueueCount, figures.WaitingQueuePriorityCount,
            figures.WaitingImportCount, figures.WaitingImportPriorityCount};
  }
  Four LastSeen() const {
    return {figures.LastQueueCount, figures.LastQueuePriorityCount, figures.LastImportCount,
            figures.LastImportPriorityCount};
  }
};

TEST_F(WaitingFigures, OfEmptyFoldersAreNought) { EXPECT_EQ(Waiting(), Four({0, 0, 0, 0})); }

TEST_F(WaitingFigures, CountTheFilesOfTheThreeDropFoldersAsTheQueues) {
  Put("eW2Queue/a.eW2");
  Put("dS2Queue/b.dS2");
  Put("eU2Queue/c.eU2");
  EXPECT_EQ(Waiting(), Four({3, 0, 0, 0}));
}

TEST_F(WaitingFigures, TakeAnEndingInEitherCaseAndNoOther) {
  Put("eW2Queue/a.ew2");
  Put("eW2Queue/b.EW2");
  Put("eW2Queue/c.wav");
  Put("dS2Queue/d.eW2");
  Put("eU2Queue/e.dS2");
  EXPECT_EQ(Waiting(), Four({2, 0, 0, 0}));
}

TEST_F(WaitingFigures, CountEveryFileOfEachImportDirectory) {
  Put("ImportQueue/root.wav");
  for (int directory = 1; directory <= 25; ++directory) {
    Put("ImportQueue/" + std::to_string(directory) + "/any.name");
  }
  EXPECT_EQ(Waiting(), Four({0, 0, 26, 0}));
}

TEST_F(WaitingFigures, LeaveTheQueueItselfAndWhatWasDownloadedAlone) {
  Put("InQueue/a.wav");
  Put("FtpQueue/b.eW2");
  Put("Completed/c.wav");
  EXPECT_EQ(Waiting(), Four({0, 0, 0, 0}));
}

TEST_F(WaitingFigures, CountAFileThatIsStillBeingWritten) {
  Put("dS2Queue/a.dS2");
  disk.OpenWriter("/root/Files/dS2Queue/a.dS2");
  EXPECT_EQ(Waiting(), Four({1, 0, 0, 0}));
}

TEST_F(WaitingFigures, LeaveOutWhatDecksHideFromEachOther) {
  Put("dS2Queue/.claim of another.dS2");
  EXPECT_EQ(Waiting(), Four({0, 0, 0, 0}));
}

TEST_F(WaitingFigures, TakeANameForPriorityThatHoldsTheMarkAnywhere) {
  Put("eW2Queue/7 0 Brown 12 3 9 2004 14 5 12 2 0 17 cardio 0 P_.eW2");
  Put("eW2Queue/7 0 Brown 12 3 9 2004 14 5 12 2 0 17 cardio 0 0_.eW2");
  Put("eU2Queue/P_.eU2");
  Put("ImportQueue/TOP_up.wav");
  Put("ImportQueue/4/top_up.wav");
  EXPECT_EQ(Waiting(), Four({3, 2, 2, 1}));
}

TEST_F(WaitingFigures, BecomeThoseOfTheLastLookWhereAFolderCanNotBeListed) {
  Put("dS2Queue/a.dS2");
  Put("ImportQueue/3/P_.wav");
  figures.TakeWaitingWorkAsSeen();
  const Four seen = LastSeen();
  EXPECT_EQ(seen, Four({1, 0, 1, 1}));
  Put("dS2Queue/b P_.dS2");
  Put("ImportQueue/P_.wav");
  for (const char* folder : {"eW2Queue", "dS2Queue", "ImportQueue", "ImportQueue/25", "eU2Queue"}) {
    disk.BreakListing("/root/Files/" + std::string(folder));
    EXPECT_EQ(Waiting(), seen) << folder;
    disk.MendListing("/root/Files/" + std::string(folder));
  }
  EXPECT_EQ(Waiting(), Four({2, 1, 2, 2}));
}

TEST_F(WaitingFigures, BecomeThoseOfTheLastLookWhereAListingBreaksOff) {
  Put("ImportQueue/a.wav");
  Put("ImportQueue/b.wav");
  disk.BreakListingAfter("/root/Files/ImportQueue", 1);
  EXPECT_EQ(Waiting(), Four({0, 0, 0, 0}));
}

TEST_F(WaitingFigures, BecomeThoseOfTheLastLookWhereAFolderGivesNoAnswer) {
  Put("eU2Queue/a.eU2");
  disk.Places.Stall("/root/Files/ImportQueue");
  EXPECT_EQ(Waiting(), Four({0, 0, 0, 0}));
  EXPECT_EQ(loop.BreathedFor, SimulatedPlaces::kPatience);
  EXPECT_EQ(Waiting(), Four({0, 0, 0, 0}));
  EXPECT_EQ(loop.BreathedFor, SimulatedPlaces::kPatience) << "nothing more is asked there";
}

TEST_F(WaitingFigures, TakeANumberedDirectoryThatIsNotThereForAnEmptyOne) {
  disk.WithFolder("/site/import");
  disk.WithFile("/site/import/a.wav");
  folders.WavQueuePath = "/site/import/";
  Put("dS2Queue/b.dS2");
  EXPECT_EQ(Waiting(), Four({1, 0, 1, 0}));
}

TEST_F(WaitingFigures, KnowNothingWhereTheImportFolderItselfIsGone) {
  Put("dS2Queue/b.dS2");
  folders.WavQueuePath = "/unplugged/";
  EXPECT_EQ(Waiting(), Four({0, 0, 0, 0}));
}

TEST_F(WaitingFigures, AreTakenAsSeenOnlyAsTheyWereCounted) {
  Put("dS2Queue/a.dS2");
  figures.CountWaitingWork();
  Put("dS2Queue/b.dS2");
  figures.SyncLastSeenFigures();
  EXPECT_EQ(LastSeen(), Four({1, 0, 0, 0}));
}

TEST_F(WaitingFigures, StayAtTheirLargestValueWhereMoreWaits) {
  for (int file = 0; file < 32'770; ++file) Put("eU2Queue/" + std::to_string(file) + ".eU2");
  EXPECT_EQ(Waiting(), Four({32'767, 0, 0, 0}));
}

TEST_F(WaitingFigures, LetTheWindowPaintBetweenTwoFolders) {
  disk.Operations.clear();
  figures.CountWaitingWork();
  EXPECT_GE(loop.Breaths, 29);
  EXPECT_TRUE(disk.Changes().empty());
}

/// The folders tell whether their names have changed.
struct MarkedFolders : WaitingFigures {
  MarkedFolders() { disk.FoldersAreMarked = true; }

  /// How many folders another count lists.
  int Listed() {
    disk.Operations.clear();
    figures.CountWaitingWork();
    return static_cast<int>(std::ranges::count_if(
        disk.Operations, [](const std::string& what) { return what.starts_with("List "); }));
  }
};

TEST_F(MarkedFolders, AreNotListedAgainAndCountAsBefore) {
  Put("eW2Queue/a P_.eW2");
  Put("ImportQueue/7/any.wav");
  EXPECT_EQ(Waiting(), Four({1, 1, 1, 0}));
  EXPECT_EQ(Listed(), 0);
  EXPECT_EQ(Waiting(), Four({1, 1, 1, 0}));
}

TEST_F(MarkedFolders, ThatHaveChangedAreListedAndNoOthers) {
  EXPECT_EQ(Waiting(), Four({0, 0, 0, 0}));
  Put("dS2Queue/a.dS2");
  EXPECT_EQ(Listed(), 1);
  EXPECT_EQ(Waiting(), Four({1, 0, 0, 0}));
  disk.Remove("/root/Files/dS2Queue/a.dS2");
  EXPECT_EQ(Waiting(), Four({0, 0, 0, 0}));
}

TEST_F(MarkedFolders, ThatAreOfOtherPathsAreListed) {
  Put("eW2Queue/a.eW2");
  disk.WithFolder("/mnt/drop");
  disk.WithFile("/mnt/drop/b.eW2").WithFile("/mnt/drop/c.eW2");
  EXPECT_EQ(Waiting(), Four({1, 0, 0, 0}));
  folders.Ew2QueuePath = "/mnt/drop/";
  EXPECT_EQ(Waiting(), Four({2, 0, 0, 0}));
}

TEST_F(MarkedFolders, ThatAreSharedByTwoKindsCountEachKind) {
  folders.Ds2QueuePath = folders.Ew2QueuePath;
  Put("eW2Queue/a.eW2");
  Put("eW2Queue/b.dS2");
  Put("eW2Queue/c.dS2");
  EXPECT_EQ(Waiting(), Four({3, 0, 0, 0}));
  EXPECT_EQ(Waiting(), Four({3, 0, 0, 0}));
}

TEST_F(MarkedFolders, OfWhichOneFailsAreListedAfterThat) {
  Put("eW2Queue/a.eW2");
  EXPECT_EQ(Waiting(), Four({1, 0, 0, 0}));
  disk.BreakListing("/root/Files/eW2Queue");
  EXPECT_EQ(figures.CountWaitingWork(), lists::Counted::Failed);
  disk.MendListing("/root/Files/eW2Queue");
  EXPECT_EQ(Listed(), 1);
  EXPECT_EQ(Waiting(), Four({1, 0, 0, 0}));
}

TEST_F(MarkedFolders, ThatTellNothingAreListedEachTime) {
  disk.FoldersAreMarked = false;
  EXPECT_EQ(Listed(), Listed());
  EXPECT_GT(Listed(), 0);
}

}  // namespace
}  // namespace tavlo::test
