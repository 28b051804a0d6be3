#include "store/file_moves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using Failing = SimulatedDisk::Failing;

/// A disk with a Queue, a Completed folder and a share on another file system.
struct Place {
  Place() {
    disk.WithFolder(kRoot);
    folders.MakeTree();
    disk.WithFolder("/share").WithFileSystemAt("/share");
    disk.Operations.clear();
  }

  std::string Queued(const std::string& name) const { return folders.InQueuePath + name; }
  std::string Completed(const std::string& name) const { return folders.CompletedPath() + name; }
  std::string Rescued(const std::string& name) const { return folders.RescuedPath() + name; }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  store::WorkFolders folders{disk, kRoot};
  store::FileMoves moves{disk, folders};
};

struct FileMovesTest : testing::Test, Place {};

TEST_F(FileMovesTest, MoveOnOneFileSystemIsOneRename) {
  disk.WithFile(Queued("a.wav"), "A");
  EXPECT_EQ(moves.Move(Queued("a.wav"), Completed("a.wav")).result, DiskResult::Done);
  EXPECT_EQ(disk.FilesHolding("A"), std::vector{Completed("a.wav")});
  EXPECT_EQ(disk.Operations,
            std::vector{"Rename " + Queued("a.wav") + " -> " + Completed("a.wav")});
}

TEST_F(FileMovesTest, MoveInOneStepRefusesWhatWouldNeedACopyAndDoesNothing) {
  disk.WithFile(Queued("a.wav"), "A");
  EXPECT_EQ(moves.MoveInOneStep(Queued("a.wav"), "/share/a.wav").result,
            DiskResult::OtherFileSystem);
  EXPECT_EQ(disk.FilesHolding("A"), std::vector{Queued("a.wav")});
  EXPECT_EQ(moves.MoveInOneStep(Queued("a.wav"), Completed("a.wav")).result, DiskResult::Done);
  EXPECT_EQ(disk.FilesHolding("A"), std::vector{Completed("a.wav")});
}

TEST_F(FileMovesTest, CopyIntoAFolderTakesANumberWhereTheNameIsTaken) {
  disk.WithFile("/share/a.wav", "A").WithFile(Queued("a.wav"), "another");
  const auto place = moves.CopyInto("/share/a.wav", folders.InQueuePath);
  EXPECT_EQ(place.result, DiskResult::Done);
  EXPECT_EQ(place.path, Queued("a (2).wav"));
  EXPECT_EQ(disk.Contents(Queued("a.wav")), "another");
  EXPECT_EQ(disk.Contents(Queued("a (2).wav")), "A");
  EXPECT_EQ(disk.Contents("/share/a.wav"), "A");
}

TEST_F(FileMovesTest, CopyIntoAFolderOfAFileThatGrowsMeanwhileGivesNone) {
  disk.WithFile("/share/a.wav", "A");
  disk.OnNextCopy = [this] { disk.Write("/share/a.wav", "AA"); };
  EXPECT_EQ(moves.CopyInto("/share/a.wav", folders.InQueuePath).result, DiskResult::Failed);
  EXPECT_TRUE(disk.NamesIn(folders.InQueuePath).empty());
}

TEST_F(FileMovesTest, CopyIntoAFolderIsWholeOrNothingWhateverOperationFails) {
  for (int nth = 1;; ++nth) {
    Place place;
    place.disk.WithFile("/share/a.wav", "A");
    place.disk.FailOperation(nth, DiskResult::Failed);
    std::ignore = place.moves.CopyInto("/share/a.wav", place.folders.InQueuePath);
    EXPECT_EQ(place.disk.Contents("/share/a.wav"), "A");
    for (const std::string& name : place.disk.NamesIn(place.folders.InQueuePath)) {
      EXPECT_EQ(place.disk.Contents(place.Queued(name)), "A") << nth;
    }
    if (place.disk.FaultPending()) break;
  }
}

TEST_F(FileMovesTest, MoveToItselfDoesNothing) {
  disk.WithFile(Queued("a.wav"), "A");
  EXPECT_EQ(moves.Move(Queued("a.wav"), Queued("a.wav")).result, DiskResult::Done);
  EXPECT_TRUE(disk.Operations.empty());
}

TEST_F(FileMovesTest, MoveToItselfUnderAnotherSpellingLosesNothing) {
  disk.WithFile(Queued("a.wav"), "A");
  EXPECT_NE(moves.Move(Queued("a.wav"), folders.InQueuePath + "/a.wav").result, DiskResult::Done);
  EXPECT_EQ(disk.FilesHolding("A"), std::vector{Queued("a.wav")});
}

TEST_F(FileMovesTest, MoveOfAMissingSourceLeavesTheTargetAlone) {
  disk.WithFile(Completed("a.wav"), "B");
  EXPECT_EQ(moves.Move(Queued("a.wav"), Completed("a.wav")).result, DiskResult::NotFound);
  EXPECT_EQ(disk.FilesHolding("B"), std::vector{Completed("a.wav")});
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::NotFound);
}

TEST_F(FileMovesTest, DocumentThatWouldBeOverwrittenGoesIntoTheRescueFolder) {
  disk.WithFile(Queued("a.wav"), "new").WithFile(Completed("a.wav"), "old");
  EXPECT_EQ(moves.Move(Queued("a.wav"), Completed("a.wav")).result, DiskResult::Done);
  EXPECT_EQ(disk.FilesHolding("new"), std::vector{Completed("a.wav")});
  EXPECT_EQ(disk.FilesHolding("old"), std::vector{Rescued("a.wav")});
}

TEST_F(FileMovesTest, DocumentThatIsToStayStopsTheMove) {
  disk.WithFile(Queued("a.wav"), "new").WithFile(Queued("b.wav"), "old");
  const store::Moved moved = moves.Move(Queued("a.wav"), Queued("b.wav"), store::InTheWay::Stays);
  EXPECT_EQ(moved.result, DiskResult::AlreadyThere);
  EXPECT_EQ(disk.FilesHolding("new"), std::vector{Queued("a.wav")});
  EXPECT_EQ(disk.FilesHolding("old"), std::vector{Queued("b.wav")});
}

TEST_F(FileMovesTest, RescuedDocumentsOfOneNameAreNumberedBeforeTheExtension) {
  for (const char* contents : {"first", "second", "third"}) {
    disk.WithFile(Queued("a b.wav"), contents);
    EXPECT_EQ(moves.Rescue(Queued("a b.wav")).result, DiskResult::Done);
  }
  EXPECT_EQ(disk.Contents(Rescued("a b.wav")), "first");
  EXPECT_EQ(disk.Contents(Rescued("a b (2).wav")), "second");
  EXPECT_EQ(disk.Contents(Rescued("a b (3).wav")), "third");
}

TEST_F(FileMovesTest, RescueFromAnotherFileSystemGoesBehindADotInItsOwnFolder) {
  disk.WithFile("/share/a.wav", "A").WithFile("/share/.Rescued a.wav", "B");
  EXPECT_EQ(moves.Rescue("/share/a.wav").result, DiskResult::Done);
  EXPECT_EQ(disk.Contents("/share/.Rescued a (2).wav"), "A");
  EXPECT_EQ(disk.Contents("/share/.Rescued a.wav"), "B");
}

TEST_F(FileMovesTest, RescueWithoutARescueFolderGoesBehindADotToo) {
  disk.WithFile("/elsewhere/a.wav", "A").WithFile("/elsewhere/b.wav", "B");
  disk.Remove(kRoot + "/Files");
  EXPECT_EQ(moves.Move("/elsewhere/a.wav", "/elsewhere/b.wav").result, DiskResult::Done);
  EXPECT_EQ(disk.Contents("/elsewhere/b.wav"), "A");
  EXPECT_EQ(disk.Contents("/elsewhere/.Rescued b.wav"), "B");
}

TEST_F(FileMovesTest, FolderOrLinkAtTheTargetStaysAndStopsTheMove) {
  disk.WithFile(Queued("a.wav"), "A").WithFile(Completed("a.wav") + "/inside", "B");
  EXPECT_EQ(moves.Move(Queued("a.wav"), Completed("a.wav")).result, DiskResult::AlreadyThere);
  EXPECT_TRUE(disk.Has(Completed("a.wav") + "/inside"));
  disk.WithLink("/share/a.wav", "/elsewhere");
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::AlreadyThere);
  EXPECT_EQ(disk.NamesIn("/share"), std::vector<std::string>{"a.wav"});
  EXPECT_EQ(disk.FilesHolding("A"), std::vector{Queued("a.wav")});
}

TEST_F(FileMovesTest, MoveToAnotherFileSystemDeletesTheSourceLast) {
  disk.WithFile(Queued("a.wav"), "A");
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::Done);
  const std::string half = "/share/.TavloDeckMove";
  const std::vector<std::string> expected{
      "Rename " + Queued("a.wav") + " -> /share/a.wav", "Copy " + Queued("a.wav") + " -> " + half,
      "Rename " + half + " -> /share/a.wav", "FlushFolder /share", "Delete " + Queued("a.wav")};
  EXPECT_EQ(disk.Changes(), expected);
  EXPECT_EQ(disk.FilesHolding("A"), std::vector<std::string>{"/share/a.wav"});
}

TEST_F(FileMovesTest, MoveToAnotherFileSystemKeepsTheStamp) {
  disk.WithFile(Queued("a.wav"), "A");
  const auto before = disk.Facts(Queued("a.wav"));
  loop.Advance(base::Duration{60'000'000});
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::Done);
  EXPECT_EQ(disk.Facts("/share/a.wav"), before);
}

TEST_F(FileMovesTest, MoveToAnotherFileSystemRescuesWhatStandsThere) {
  disk.WithFile(Queued("a.wav"), "new").WithFile("/share/a.wav", "old");
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::Done);
  EXPECT_EQ(disk.Contents("/share/a.wav"), "new");
  EXPECT_EQ(disk.Contents("/share/.Rescued a.wav"), "old");
}

TEST_F(FileMovesTest, FullDiskLeavesTheSourceAndNoHalfCopy) {
  disk.WithFile(Queued("a.wav"), "a long dictation").WithFile("/share/a.wav", "old");
  disk.SetFreeSpace("/share", 3);
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::NoSpace);
  EXPECT_EQ(disk.FilesHolding("a long dictation"), std::vector{Queued("a.wav")});
  EXPECT_EQ(disk.NamesIn("/share"), std::vector<std::string>{"a.wav"});
  EXPECT_EQ(disk.Contents("/share/a.wav"), "old");
}

TEST_F(FileMovesTest, SourceThatGrowsDuringTheCopyIsNotMoved) {
  disk.WithFile(Queued("a.wav"), "A");
  disk.OnNextCopy = [&] { disk.Write(Queued("a.wav"), "A and more"); };
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::Failed);
  EXPECT_EQ(disk.Contents(Queued("a.wav")), "A and more");
  EXPECT_TRUE(disk.NamesIn("/share").empty());
}

TEST_F(FileMovesTest, CopyThatArrivesShorterIsNotTakenForTheDocument) {
  disk.WithFile(Queued("a.wav"), "a long dictation");
  disk.OnNextCopy = [&] { disk.Write("/share/.TavloDeckMove", "a long"); };
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::Failed);
  EXPECT_EQ(disk.FilesHolding("a long dictation"), std::vector{Queued("a.wav")});
}

TEST_F(FileMovesTest, HalfCopyOfACrashGivesWayInOurOwnTree) {
  disk.WithFile("/share/a.wav", "A").WithFile(Queued(".TavloDeckMove"), "half");
  EXPECT_EQ(moves.Move("/share/a.wav", Queued("a.wav")).result, DiskResult::Done);
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath), std::vector<std::string>{"a.wav"});
}

TEST_F(FileMovesTest, HalfCopyOutsideOurTreeMayBeAnotherDecksAndStays) {
  disk.WithFile(Queued("a.wav"), "A").WithFile("/share/.TavloDeckMove", "half");
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::Done);
  EXPECT_EQ(disk.Contents("/share/.TavloDeckMove"), "half");
  EXPECT_EQ(disk.Contents("/share/a.wav"), "A");
}

TEST_F(FileMovesTest, SourceThatCannotBeDeletedStandsBesideItsCopy) {
  disk.WithFile(Queued("a.wav"), "A");
  disk.FailOperation(8, DiskResult::NoAccess);
  EXPECT_EQ(moves.Move(Queued("a.wav"), "/share/a.wav").result, DiskResult::NoAccess);
  EXPECT_EQ(disk.Operations.back(), "Delete " + Queued("a.wav"));
  EXPECT_EQ(disk.FilesHolding("A").size(), 2u);
}

TEST_F(FileMovesTest, MoveOrRescueIsAMoveWhenThatSucceeds) {
  disk.WithFile(Queued("a.wav"), "A");
  EXPECT_EQ(moves.MoveOrRescue(Queued("a.wav"), Completed("a.wav")).result, DiskResult::Done);
  EXPECT_EQ(disk.FilesHolding("A"), std::vector{Completed("a.wav")});
}

TEST_F(FileMovesTest, SourceThatGoesAlthoughItsCopyFailedIsRescued) {
  disk.WithFile(Queued("a.wav"), "A");
  disk.Remove(folders.CompletedPath());
  EXPECT_EQ(moves.MoveOrRescue(Queued("a.wav"), Completed("a.wav")).result, DiskResult::NotFound);
  EXPECT_EQ(disk.FilesHolding("A"), std::vector{Rescued("a.wav")});
}

TEST_F(FileMovesTest, NameOf255BytesIsRescuedUnderAShorterStem) {
  const std::string name = std::string(251, 'n') + ".wav";
  disk.WithFile(Queued(name), "A").WithFile(Rescued(name), "B");
  EXPECT_EQ(moves.Rescue(Queued(name)).result, DiskResult::Done);
  EXPECT_EQ(disk.Contents(Rescued(std::string(247, 'n') + " (2).wav")), "A");
  disk.WithFile("/share/" + name, "C");
  EXPECT_EQ(moves.Rescue("/share/" + name).result, DiskResult::Done);
  EXPECT_EQ(disk.FilesHolding("C").size(), 1u);
}

TEST_F(FileMovesTest, NamesThatAreNotTextAreMovedAndRescued) {
  const std::string name = "a\xFF\n b.wav";
  disk.WithFile(Queued(name), "A").WithFile(Completed(name), "B").WithFile(Rescued(name), "C");
  EXPECT_EQ(moves.Move(Queued(name), Completed(name)).result, DiskResult::Done);
  EXPECT_EQ(disk.Contents(Completed(name)), "A");
  EXPECT_EQ(disk.Contents(Rescued("a\xFF\n b (2).wav")), "B");
}

TEST(NumberedName, NumberStandsBeforeTheExtension) {
  EXPECT_EQ(store::NumberedName("a.wav", 1), "a.wav");
  EXPECT_EQ(store::NumberedName("a.b.wav", 2), "a.b (2).wav");
  EXPECT_EQ(store::NumberedName("a", 3), "a (3)");
  EXPECT_EQ(store::NumberedName(".wav", 2), ".wav (2)");
}

TEST(NumberedName, StemIsCutBetweenCharacters) {
  std::string stem;
  for (int i = 0; i < 125; ++i) stem += "ä";
  const std::string cut = store::NumberedName(stem + "x.wav", 2);
  EXPECT_EQ(cut, stem.substr(0, 246) + " (2).wav");
}

TEST(NumberedName, EndlessExtensionIsTakenForAStem) {
  EXPECT_EQ(store::NumberedName("a." + std::string(253, 'x'), 2),
            "a." + std::string(249, 'x') + " (2)");
}

/// A move that some fault befalls. Both documents must survive every fault, whole.
struct Scene {
  const char* name;
  std::string source;
  std::string target;
  bool targetStands;
};

const Scene kScenes[] = {
    {"plain", kRoot + "/Files/InQueue/a.wav", kRoot + "/Files/Completed/a.wav", false},
    {"over another", kRoot + "/Files/InQueue/a.wav", kRoot + "/Files/Completed/a.wav", true},
    {"to a share", kRoot + "/Files/InQueue/a.wav", "/share/a.wav", false},
    {"from a share over another", "/share/a.wav", kRoot + "/Files/InQueue/a.wav", true},
    {"to a share over another", kRoot + "/Files/InQueue/a.wav", "/share/a.wav", true},
};

struct MoveTrial : Place {
  explicit MoveTrial(const Scene& scene) {
    disk.WithFile(scene.source, "the new dictation");
    if (scene.targetStands) disk.WithFile(scene.target, "the old dictation");
  }
};

using Routine = std::function<store::Moved(store::FileMoves&, const Scene&)>;
const Routine kMove = [](store::FileMoves& moves, const Scene& scene) {
  return moves.Move(scene.source, scene.target);
};
const Routine kMoveOrRescue = [](store::FileMoves& moves, const Scene& scene) {
  return moves.MoveOrRescue(scene.source, scene.target);
};

/// Runs the routine once for each N with a fault at its Nth operation, until none is left to fail.
void ForEachOperation(const Scene& scene, const Routine& routine,
                      const std::function<void(MoveTrial&, int)>& arm,
                      const std::function<void(MoveTrial&, const store::Moved&)>& check) {
  int operations = 1;
  for (int nth = 1; nth <= operations; ++nth) {
    SCOPED_TRACE(std::string(scene.name) + ", operation " + std::to_string(nth));
    MoveTrial trial(scene);
    arm(trial, nth);
    const store::Moved moved = routine(trial.moves, scene);
    operations = std::max(operations, static_cast<int>(trial.disk.Operations.size()));
    check(trial, moved);
  }
  EXPECT_GE(operations, 1);
}

void ExpectNothingLost(MoveTrial& trial, const Scene& scene) {
  EXPECT_FALSE(trial.disk.FilesHolding("the new dictation").empty());
  if (scene.targetStands) {
    EXPECT_EQ(trial.disk.FilesHolding("the old dictation").size(), 1u);
  }
}

TEST(FileMovesFaults, FailureOfAnyOperationLosesNothing) {
  for (const Scene& scene : kScenes) {
    for (const auto failing : {Failing::Once, Failing::ForGood}) {
      for (const auto fault : {DiskResult::NoAccess, DiskResult::NoSpace, DiskResult::NotFound}) {
        for (const Routine& routine : {kMove, kMoveOrRescue}) {
          ForEachOperation(
              scene, routine,
              [&](MoveTrial& trial, int nth) { trial.disk.FailOperation(nth, fault, failing); },
              [&](MoveTrial& trial, const store::Moved&) { ExpectNothingLost(trial, scene); });
        }
      }
    }
  }
}

TEST(FileMovesFaults, MoveThatFailsLeavesTheSourceInItsPlace) {
  for (const Scene& scene : kScenes) {
    ForEachOperation(
        scene, kMove,
        [](MoveTrial& trial, int nth) { trial.disk.FailOperation(nth, DiskResult::NoAccess); },
        [&](MoveTrial& trial, const store::Moved& moved) {
          const bool sourceStands = trial.disk.Contents(scene.source) == "the new dictation";
          EXPECT_EQ(sourceStands, moved.result != DiskResult::Done);
        });
  }
}

TEST(FileMovesFaults, MoveThatSaysDoneHasAWholeTarget) {
  for (const Scene& scene : kScenes) {
    ForEachOperation(
        scene, kMove,
        [](MoveTrial& trial, int nth) { trial.disk.FailOperation(nth, DiskResult::Failed); },
        [&](MoveTrial& trial, const store::Moved& moved) {
          const bool whole = trial.disk.Contents(scene.target) == "the new dictation";
          EXPECT_EQ(moved.arrived, whole);
          EXPECT_TRUE(moved.result != DiskResult::Done || whole);
        });
  }
}

/// Where the move says that it put something stands just that, and what it does not speak of stands
/// where it stood.
void ExpectTold(const MoveTrial& trial, const Scene& scene, const store::Moved& moved) {
  if (!moved.rescued.empty()) {
    EXPECT_NE(moved.result, DiskResult::Done);
    EXPECT_EQ(trial.disk.Contents(moved.rescued), "the new dictation");
  }
  EXPECT_EQ(trial.disk.Contents(scene.source) == "the new dictation",
            moved.result != DiskResult::Done && moved.rescued.empty());
  if (scene.targetStands) {
    const std::string old = moved.displaced.empty() ? scene.target : moved.displaced;
    EXPECT_EQ(trial.disk.Contents(old), "the old dictation");
  } else {
    EXPECT_EQ(moved.displaced, "");
  }
}

TEST(FileMovesFaults, WhereEachDocumentIsAfterAFailureIsTold) {
  for (const Scene& scene : kScenes) {
    for (const auto failing : {Failing::Once, Failing::ForGood}) {
      for (const Routine& routine : {kMove, kMoveOrRescue}) {
        ForEachOperation(
            scene, routine,
            [&](MoveTrial& trial, int nth) {
              trial.disk.FailOperation(nth, DiskResult::NoAccess, failing);
            },
            [&](MoveTrial& trial, const store::Moved& moved) { ExpectTold(trial, scene, moved); });
      }
    }
  }
}

TEST(FileMovesFaults, DocumentThatIsToStayIsNeverDisplaced) {
  for (const Scene& scene : kScenes) {
    ForEachOperation(
        scene,
        [](store::FileMoves& moves, const Scene& of) {
          return moves.Move(of.source, of.target, store::InTheWay::Stays);
        },
        [](MoveTrial& trial, int nth) { trial.disk.FailOperation(nth, DiskResult::NoSpace); },
        [&](MoveTrial& trial, const store::Moved& moved) {
          if (scene.targetStands) {
            EXPECT_EQ(trial.disk.Contents(scene.target), "the old dictation");
            EXPECT_EQ(trial.disk.Contents(scene.source), "the new dictation");
          }
          ExpectTold(trial, scene, moved);
        });
  }
}

TEST(FileMovesFaults, CrashAtAnyOperationLosesNothing) {
  for (const Scene& scene : kScenes) {
    for (int nth = 1; nth <= 20; ++nth) {
      SCOPED_TRACE(std::string(scene.name) + ", operation " + std::to_string(nth));
      MoveTrial trial(scene);
      trial.disk.CrashAtOperation(nth);
      std::ignore = trial.moves.Move(scene.source, scene.target);
      ExpectNothingLost(trial, scene);
    }
  }
}

TEST(FileMovesFaults, PowerCutAtAnyOperationLosesNothing) {
  for (const Scene& scene : kScenes) {
    for (int nth = 1; nth <= 20; ++nth) {
      SCOPED_TRACE(std::string(scene.name) + ", operation " + std::to_string(nth));
      MoveTrial trial(scene);
      trial.disk.CrashAtOperation(nth);
      std::ignore = trial.moves.Move(scene.source, scene.target);
      trial.disk.LoseWhatWasNotFlushed();
      // A half copy's name is no place to find a document again.
      auto places = trial.disk.FilesHolding("the new dictation");
      std::erase_if(places, [](const auto& path) { return path.ends_with("/.TavloDeckMove"); });
      EXPECT_FALSE(places.empty());
      if (scene.targetStands) {
        EXPECT_FALSE(trial.disk.FilesHolding("the old dictation").empty());
      }
    }
  }
}

TEST(FileMovesFaults, SameMoveAfterACrashSettlesTheMatter) {
  for (const Scene& scene : kScenes) {
    for (int nth = 1; nth <= 20; ++nth) {
      SCOPED_TRACE(std::string(scene.name) + ", operation " + std::to_string(nth));
      MoveTrial trial(scene);
      trial.disk.CrashAtOperation(nth);
      std::ignore = trial.moves.Move(scene.source, scene.target);
      trial.disk.Heal();
      std::ignore = trial.moves.Move(scene.source, scene.target);
      EXPECT_EQ(trial.disk.Contents(scene.target), "the new dictation");
      EXPECT_FALSE(trial.disk.Has(scene.source));
      ExpectNothingLost(trial, scene);
    }
  }
}

}  // namespace
}  // namespace tavlo::test
