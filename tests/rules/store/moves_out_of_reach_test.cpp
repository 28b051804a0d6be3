#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "store/file_moves.h"
#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using store::InTheWay;
using Late = SimulatedPlaces::Late;
using Names = std::vector<std::string>;

/// Whatever is looked at of some paths fails, and says nothing of what stands there.
class DimDisk : public SimulatedDisk {
 public:
  using SimulatedDisk::SimulatedDisk;

  std::set<std::string> Unseen;

  std::optional<store::FileFacts> Facts(const std::string& path) override {
    if (Unseen.contains(path)) return {};
    return SimulatedDisk::Facts(path);
  }
  store::Entry Look(const std::string& path) override {
    return Unseen.contains(path) ? store::Entry::Other : SimulatedDisk::Look(path);
  }
};

/// A Queue and a Completed folder that are shares, each with a file system of its own.
struct SharesThatStall {
  SharesThatStall() {
    disk.WithFolder(kRoot);
    folders.MakeTree();
    disk.WithFileSystemAt(folders.InQueuePath).WithFileSystemAt(folders.CompletedPath());
    disk.WithFile(queued, "A");
    disk.Operations.clear();
  }

  Names Places() const { return disk.FilesHolding("A"); }
  void StallAtOnce(const std::string& folder) { disk.Places.Stall(folder); }
  /// The folder stalls at the first operation that is recorded so.
  void StallAt(const std::string& operation, const std::string& folder) {
    SharesThatStall rehearsal;
    std::ignore = rehearsal.moves.Move(queued, completed);
    const Names& all = rehearsal.disk.Operations;
    const auto found = std::ranges::find_if(
        all, [&](const std::string& next) { return next.starts_with(operation); });
    ASSERT_NE(found, all.end());
    disk.StallAtOperation(static_cast<int>(found - all.begin()) + 1, folder);
  }

  SimulatedLoop loop;
  DimDisk disk{loop};
  store::WorkFolders folders{disk, kRoot};
  store::FileMoves moves{disk, folders};
  const std::string queued = folders.InQueuePath + "a.wav";
  const std::string completed = folders.CompletedPath() + "a.wav";
  /// Where the first copy into Completed stands until it is whole.
  const std::string half = folders.CompletedPath() + ".TavloDeckMove";
};

struct MovesOutOfReach : testing::Test, SharesThatStall {};

TEST_F(MovesOutOfReach, RenameThatGivesNoAnswerIsTheLastStepOfItsMove) {
  const std::string saved = folders.InQueuePath + "b.wav";
  StallAtOnce(folders.InQueuePath);
  const store::Moved moved = moves.MoveOrRescue(queued, saved);
  EXPECT_EQ(moved.result, DiskResult::OutOfReach);
  EXPECT_TRUE(moved.asked);
  EXPECT_EQ(disk.Changes(), Names{"Rename " + queued + " -> " + saved});
  disk.Places.Resume(folders.InQueuePath, Late::Happens);
  EXPECT_EQ(Places(), Names{saved});
}

TEST_F(MovesOutOfReach, MoveAtAPlaceThatOwesAnAnswerAlreadyIsNotAskedForAndNeverHappens) {
  for (const std::string& owing : {folders.InQueuePath, folders.CompletedPath()}) {
    disk.Places.LeaveBehind(owing);
    const store::Moved moved = moves.MoveOrRescue(queued, completed);
    EXPECT_EQ(moved.result, DiskResult::OutOfReach);
    EXPECT_FALSE(moved.asked);
    EXPECT_EQ(moved.rescued, "");
    disk.Places.Resume(owing, Late::Happens);
    EXPECT_EQ(Places(), Names{queued});
  }
}

TEST_F(MovesOutOfReach, MoveThatIsNotAskedForMayHappenAllTheSameWhereAnEarlierOneMay) {
  const std::string saved = folders.InQueuePath + "b.wav";
  StallAtOnce(folders.InQueuePath);
  std::ignore = moves.MoveOrRescue(queued, saved);
  EXPECT_TRUE(moves.MoveOrRescue(queued, saved).asked);
  EXPECT_TRUE(moves.IsInDoubt(queued));
  disk.Places.Resume(folders.InQueuePath, Late::Fails);
  EXPECT_EQ(moves.MoveOrRescue(queued, saved).result, DiskResult::Done);
  EXPECT_FALSE(moves.IsInDoubt(queued));
}

TEST_F(MovesOutOfReach, SourceWhoseCopyGivesNoAnswerIsNeitherDeletedNorRescued) {
  StallAt("Copy ", folders.CompletedPath());
  const store::Moved moved = moves.MoveOrRescue(queued, completed);
  EXPECT_EQ(moved.result, DiskResult::OutOfReach);
  EXPECT_EQ(moved.rescued, "");
  EXPECT_EQ(Places(), Names{queued});
  EXPECT_TRUE(disk.Operations.back().starts_with("Copy ")) << disk.Operations.back();
}

TEST_F(MovesOutOfReach, CopyThatIsMadeLateGoesOnceItsFolderAnswers) {
  StallAt("Copy ", folders.CompletedPath());
  std::ignore = moves.MoveOrRescue(queued, completed);
  disk.Places.Resume(folders.CompletedPath(), Late::Happens);
  EXPECT_EQ(Places().size(), 2u);
  moves.TakeBackUnfinished();
  EXPECT_EQ(Places(), Names{queued});
}

TEST_F(MovesOutOfReach, HalfCopyThatWasLeftBehindGivesWayToTheNextMoveToo) {
  StallAt("Copy ", folders.InQueuePath);
  std::ignore = moves.MoveOrRescue(queued, completed);
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()).size(), 1u);
  disk.Places.Resume(folders.InQueuePath, Late::Fails);
  EXPECT_EQ(moves.MoveOrRescue(queued, completed).result, DiskResult::Done);
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()), Names{"a.wav"});
}

TEST_F(MovesOutOfReach, DocumentWhoseNewNameComesLateStandsOnceAgain) {
  StallAt("Rename " + folders.CompletedPath(), folders.CompletedPath());
  EXPECT_EQ(moves.MoveOrRescue(queued, completed).result, DiskResult::OutOfReach);
  disk.Places.Resume(folders.CompletedPath(), Late::Happens);
  EXPECT_EQ(Places().size(), 2u);
  moves.TakeBackUnfinished();
  EXPECT_EQ(Places(), Names{queued});
}

TEST_F(MovesOutOfReach, CopyStaysWhenTheSourceWasDeletedLate) {
  StallAt("Delete ", folders.InQueuePath);
  EXPECT_EQ(moves.MoveOrRescue(queued, completed).result, DiskResult::OutOfReach);
  disk.Places.Resume(folders.InQueuePath, Late::Happens);
  moves.TakeBackUnfinished();
  EXPECT_EQ(Places(), Names{completed});
}

TEST_F(MovesOutOfReach, CopyStaysWhileItIsNotKnownWhetherTheSourceWasDeletedAndIsThenSetAside) {
  StallAt("Delete ", folders.InQueuePath);
  std::ignore = moves.MoveOrRescue(queued, completed);
  moves.TakeBackUnfinished();
  EXPECT_TRUE(disk.Has(completed));
  disk.Places.Resume(folders.InQueuePath, Late::Fails);
  moves.TakeBackUnfinished();
  // A delete that is on its way yet must not find the only one.
  EXPECT_EQ(Places(), (Names{folders.CompletedPath() + ".Rescued a.wav", queued}));
}

TEST_F(MovesOutOfReach, CopyStaysWhenSomethingElseStandsWhereItsSourceWas) {
  StallAt("Delete ", folders.InQueuePath);
  std::ignore = moves.MoveOrRescue(queued, completed);
  disk.Places.Resume(folders.InQueuePath, Late::Happens);
  disk.WithFile(queued, "B");
  moves.TakeBackUnfinished();
  EXPECT_EQ(Places(), Names{completed});
  EXPECT_EQ(disk.Contents(queued), "B");
}

TEST_F(MovesOutOfReach, AnotherDocumentAtTheTargetIsNotTakenForTheCopy) {
  StallAt("Rename " + folders.CompletedPath(), folders.CompletedPath());
  std::ignore = moves.MoveOrRescue(queued, completed);
  disk.Places.Resume(folders.CompletedPath(), Late::Fails);
  disk.WithFile(completed, "another");
  moves.TakeBackUnfinished();
  EXPECT_EQ(disk.Contents(completed), "another");
  EXPECT_EQ(Places(), Names{queued});
}

TEST_F(MovesOutOfReach, DocumentThatWasSavedMeanwhileStandsOnceUnderItsNewName) {
  const std::string saved = folders.InQueuePath + "b.wav";
  StallAt("Rename " + folders.CompletedPath(), folders.CompletedPath());
  std::ignore = moves.MoveOrRescue(queued, completed);
  EXPECT_EQ(moves.Move(queued, saved, InTheWay::Stays).result, DiskResult::Done);
  disk.Places.Resume(folders.CompletedPath(), Late::Happens);
  moves.TakeBackUnfinished();
  EXPECT_EQ(Places(), Names{saved});
}

TEST_F(MovesOutOfReach, SameMoveOnceMoreLeavesOneDocument) {
  StallAt("Rename " + folders.CompletedPath(), folders.CompletedPath());
  std::ignore = moves.MoveOrRescue(queued, completed);
  disk.Places.Resume(folders.CompletedPath(), Late::Happens);
  const store::Moved again = moves.MoveOrRescue(queued, completed);
  EXPECT_EQ(again.result, DiskResult::Done);
  EXPECT_EQ(again.displaced, "");
  EXPECT_EQ(Places(), Names{completed});
}

TEST_F(MovesOutOfReach, DocumentThatALaterTryHasMovedIsNotTakenForACopyOfItself) {
  StallAt("Rename " + folders.CompletedPath(), folders.CompletedPath());
  std::ignore = moves.Move(queued, completed);
  // For all that is known this try may still move it in one step.
  EXPECT_EQ(moves.Move(queued, completed).result, DiskResult::OutOfReach);
  disk.Places.Resume(folders.CompletedPath(), Late::Fails);
  EXPECT_EQ(moves.Move(queued, completed).result, DiskResult::Done);
  moves.TakeBackUnfinished();
  EXPECT_EQ(Places(), Names{completed});
}

TEST_F(MovesOutOfReach, NothingIsTakenBackWhileALookFails) {
  for (const std::string& unseen : {half, completed, queued}) {
    SCOPED_TRACE(unseen);
    SharesThatStall share;
    share.StallAt("Rename " + share.folders.CompletedPath(), share.folders.CompletedPath());
    std::ignore = share.moves.MoveOrRescue(share.queued, share.completed);
    share.disk.Places.Resume(share.folders.CompletedPath(), Late::Happens);
    share.disk.Unseen = {unseen};
    share.moves.TakeBackUnfinished();
    EXPECT_EQ(share.Places(), (Names{share.completed, share.queued}));
    share.disk.Unseen.clear();
    share.moves.TakeBackUnfinished();
    EXPECT_EQ(share.Places(), Names{share.queued});
  }
}

TEST_F(MovesOutOfReach, RenameThatComesFromAMountBeforeCatchesNoOtherCopy) {
  StallAt("Rename " + folders.CompletedPath(), folders.CompletedPath());
  std::ignore = moves.MoveOrRescue(queued, completed);
  // Another mount stands in its place, and the call is on its way yet.
  disk.Places.Resume(folders.CompletedPath(), Late::Fails);
  disk.OnNextCopy = [&] { EXPECT_EQ(disk.Rename(half, completed), DiskResult::NotFound); };
  EXPECT_EQ(moves.MoveOrRescue(queued, completed).result, DiskResult::Done);
  EXPECT_EQ(Places(), Names{completed});
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()), Names{"a.wav"});
}

TEST_F(MovesOutOfReach, RenameThatComesFromAProgramBeforeCatchesNoCopy) {
  disk.WithFile(half, "half of another");
  disk.OnNextCopy = [&] { EXPECT_EQ(disk.Rename(half, completed), DiskResult::NotFound); };
  EXPECT_EQ(moves.MoveOrRescue(queued, completed).result, DiskResult::Done);
  EXPECT_EQ(Places(), Names{completed});
  EXPECT_EQ(disk.NamesIn(folders.CompletedPath()), Names{"a.wav"});
}

TEST_F(MovesOutOfReach, CopyThatIsSetAsideIsFollowedThere) {
  disk.WithFileSystemAt("/share");
  StallAt("Delete ", folders.InQueuePath);
  std::ignore = moves.MoveOrRescue(queued, completed);
  // Its rename, a look at it, and its copy.
  disk.StallAtOperation(3, "/share");
  EXPECT_EQ(moves.Move(completed, "/share/a.wav").result, DiskResult::OutOfReach);
  disk.Places.Resume(folders.InQueuePath, Late::Fails);
  disk.Places.Resume("/share", Late::Happens);
  EXPECT_EQ(Places().size(), 3U);
  moves.TakeBackUnfinished();
  moves.TakeBackUnfinished();
  EXPECT_EQ(Places(), (Names{folders.CompletedPath() + ".Rescued a.wav", queued}));
}

/// Ends the session behind one of its answers.
class EndingDisk : public SimulatedDisk {
 public:
  using SimulatedDisk::SimulatedDisk;

  int AnswersUntilTheEnd = 0;
  std::function<void()> End;

  std::optional<store::FileFacts> Facts(const std::string& path) override {
    return Answered(SimulatedDisk::Facts(path));
  }
  DiskResult Copy(const std::string& from, const std::string& to) override {
    return Answered(SimulatedDisk::Copy(from, to));
  }
  DiskResult Rename(const std::string& from, const std::string& to) override {
    return Answered(SimulatedDisk::Rename(from, to));
  }
  DiskResult Delete(const std::string& path) override {
    return Answered(SimulatedDisk::Delete(path));
  }
  DiskResult MakeFolder(const std::string& path) override {
    return Answered(SimulatedDisk::MakeFolder(path));
  }
  DiskResult FlushFolder(const std::string& folder) override {
    return Answered(SimulatedDisk::FlushFolder(folder));
  }

 private:
  template <typename Answer>
  Answer Answered(Answer answer) {
    if (--AnswersUntilTheEnd == 0) End();
    return answer;
  }
};

TEST(MoveThatIsBegunAnew, InABreathOfItselfAtTheEndOfTheSessionLeavesEachDocumentOnce) {
  for (const bool occupied : {false, true}) {
    bool ended = true;
    for (int nth = 1; ended; ++nth) {
      SCOPED_TRACE((occupied ? "occupied, answer " : "answer ") + std::to_string(nth));
      SimulatedLoop loop;
      EndingDisk disk(loop);
      disk.WithFolder(kRoot);
      store::WorkFolders folders(disk, kRoot);
      folders.MakeTree();
      disk.WithFileSystemAt(folders.InQueuePath).WithFileSystemAt(folders.CompletedPath());
      const std::string queued = folders.InQueuePath + "a.wav";
      const std::string completed = folders.CompletedPath() + "a.wav";
      disk.WithFile(queued, "the new one");
      if (occupied) disk.WithFile(completed, "the old one");
      store::FileMoves moves(disk, folders);
      ended = false;
      disk.AnswersUntilTheEnd = nth;
      disk.End = [&] {
        ended = true;
        std::ignore = moves.MoveOrRescue(queued, completed);
        // The process is gone, and nothing that it still does reaches the disk.
        disk.CrashAtOperation(0);
      };
      std::ignore = moves.MoveOrRescue(queued, completed);
      EXPECT_EQ(disk.FilesHolding("the new one"), Names{completed});
      EXPECT_EQ(disk.FilesHolding("the old one").size(), occupied ? 1U : 0U);
    }
  }
}

/// Which folder stalls, and what becomes of the call that was left behind.
struct StallingFolder {
  const char* name;
  std::string folder;
};
const StallingFolder kStallingFolders[] = {{"the Queue", kRoot + "/Files/InQueue"},
                                           {"Completed", kRoot + "/Files/Completed"},
                                           {"the rescue folder", kRoot + "/Files/Rescued"},
                                           {"the whole root", kRoot}};

struct StalledMove {
  bool elsewhere = false;  ///< Each folder lies on a file system of its own.
  bool occupied = false;   ///< Another document stands at the target.
  InTheWay inTheWay = InTheWay::GoesToRescue;
};
const StalledMove kStalledMoves[] = {
    {},
    {.elsewhere = true},
    {.occupied = true},
    {.elsewhere = true, .occupied = true},
    {.occupied = true, .inTheWay = InTheWay::Stays},
    {.elsewhere = true, .occupied = true, .inTheWay = InTheWay::Stays}};

/// Counts what is asked for after something was out of reach.
class AskedDisk : public SimulatedDisk {
 public:
  using SimulatedDisk::SimulatedDisk;

  int askedInVain = 0;

  DiskResult Copy(const std::string& from, const std::string& to) override {
    return Noted(SimulatedDisk::Copy(from, to));
  }
  DiskResult Rename(const std::string& from, const std::string& to) override {
    return Noted(SimulatedDisk::Rename(from, to));
  }
  DiskResult Delete(const std::string& path) override { return Noted(SimulatedDisk::Delete(path)); }
  DiskResult FlushFolder(const std::string& folder) override {
    return Noted(SimulatedDisk::FlushFolder(folder));
  }

 private:
  DiskResult Noted(DiskResult result) {
    askedInVain += outOfReach_;
    outOfReach_ = outOfReach_ || result == DiskResult::OutOfReach;
    return result;
  }

  bool outOfReach_ = false;
};

struct StalledDesk {
  explicit StalledDesk(const StalledMove& trial) {
    disk.WithFolder(kRoot);
    folders.MakeTree();
    if (trial.elsewhere) {
      disk.WithFileSystemAt(folders.InQueuePath).WithFileSystemAt(folders.CompletedPath());
    }
    disk.WithFile(queued, "the new one");
    if (trial.occupied) disk.WithFile(completed, "the old one");
    disk.Operations.clear();
  }

  SimulatedLoop loop;
  AskedDisk disk{loop};
  store::WorkFolders folders{disk, kRoot};
  store::FileMoves moves{disk, folders};
  const std::string queued = folders.InQueuePath + "a.wav";
  const std::string completed = folders.CompletedPath() + "a.wav";
};

/// Runs the move once for each N with each folder stalling at its Nth operation, and lets what was
/// left behind happen or not.
void StallAtEachStepOfAMove(
    const std::function<void(StalledDesk&, const StalledMove&, const store::Moved&)>& look) {
  for (const StalledMove& trial : kStalledMoves) {
    for (const StallingFolder& stall : kStallingFolders) {
      for (const Late late : {Late::Happens, Late::Fails}) {
        int operations = 1;
        for (int nth = 1; nth <= operations; ++nth) {
          SCOPED_TRACE(std::string(trial.elsewhere ? "elsewhere, " : "") +
                       (trial.occupied ? "occupied, " : "") + stall.name + " at operation " +
                       std::to_string(nth) + (late == Late::Happens ? ", late" : ", never"));
          StalledDesk desk(trial);
          desk.disk.StallAtOperation(nth, stall.folder);
          const auto moved = desk.moves.MoveOrRescue(desk.queued, desk.completed, trial.inTheWay);
          operations = std::max(operations, static_cast<int>(desk.disk.Operations.size()));
          EXPECT_EQ(desk.disk.askedInVain, 0);
          EXPECT_LE(desk.loop.Now().sinceStart, SimulatedPlaces::kPatience);
          desk.disk.Places.Resume(stall.folder, late);
          desk.moves.TakeBackUnfinished();
          look(desk, trial, moved);
        }
      }
    }
  }
}

TEST(MovesThatStall, LeaveEachDocumentOnceWhereverTheyStallAndWhateverBecomesOfIt) {
  int outOfReach = 0;
  StallAtEachStepOfAMove(
      [&](StalledDesk& desk, const StalledMove& trial, const store::Moved& moved) {
        outOfReach += moved.result == DiskResult::OutOfReach;
        EXPECT_EQ(desk.disk.FilesHolding("the new one").size(), 1u);
        EXPECT_EQ(desk.disk.FilesHolding("the old one").size(), trial.occupied ? 1u : 0u);
        EXPECT_EQ(desk.disk.FileCount(), trial.occupied ? 2u : 1u) << "half a copy was left";
      });
  EXPECT_GT(outOfReach, 20);
}

TEST(MovesThatStall, SayDoneOnlyOfADocumentThatStandsAtItsTarget) {
  StallAtEachStepOfAMove([](StalledDesk& desk, const StalledMove&, const store::Moved& moved) {
    if (moved.result != DiskResult::Done) return;
    EXPECT_EQ(desk.disk.FilesHolding("the new one"), Names{desk.completed});
  });
}

TEST(MovesThatStall, NameWhereADisplacedDocumentIsOrMayBe) {
  StallAtEachStepOfAMove(
      [](StalledDesk& desk, const StalledMove& trial, const store::Moved& moved) {
        if (!trial.occupied) return;
        const Names places = desk.disk.FilesHolding("the old one");
        EXPECT_TRUE(places == Names{desk.completed} || places == Names{moved.displaced});
      });
}

}  // namespace
}  // namespace tavlo::test
