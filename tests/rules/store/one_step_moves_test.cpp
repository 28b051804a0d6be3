#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "store/file_moves.h"
#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using Names = std::vector<std::string>;

/// A Queue, and a share on another file system.
struct OneStepMoves : testing::Test {
  OneStepMoves() {
    disk.WithFolder(kRoot);
    folders.MakeTree();
    disk.WithFolder("/share").WithFileSystemAt("/share");
    disk.Operations.clear();
  }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  store::WorkFolders folders{disk, kRoot};
  store::FileMoves moves{disk, folders};
  const std::string dropped = folders.FtpQueuePath + "a.wav";
  const std::string queued = folders.InQueuePath + "a.wav";
};

TEST_F(OneStepMoves, MoveOfOneStepMovesAndSetsAsideAsAnyOther) {
  disk.WithFile(dropped, "new").WithFile(queued, "old");
  const store::Moved moved = moves.MoveInOneStep(dropped, queued);
  EXPECT_EQ(moved.result, DiskResult::Done);
  EXPECT_EQ(moved.displaced, folders.RescuedPath() + "a.wav");
  EXPECT_EQ(disk.Contents(queued), "new");
  EXPECT_EQ(disk.Contents(moved.displaced), "old");
}

TEST_F(OneStepMoves, MoveThatNeedsACopyDoesNothing) {
  disk.WithFile("/share/a.wav", "new").WithFile(queued, "old");
  EXPECT_EQ(moves.MoveInOneStep("/share/a.wav", queued).result, DiskResult::OtherFileSystem);
  EXPECT_EQ(disk.Contents("/share/a.wav"), "new");
  EXPECT_EQ(disk.Contents(queued), "old");
}

TEST_F(OneStepMoves, NameThatIsTakenGetsANumberBesideIt) {
  disk.WithFile("/share/a.wav", "A").WithFile("/share/b.wav", "B");
  const store::FileMoves::Place place = moves.RenameBeside("/share/a.wav", "b.wav");
  EXPECT_EQ(place.result, DiskResult::Done);
  EXPECT_EQ(place.path, "/share/b (2).wav");
  EXPECT_EQ(disk.NamesIn("/share"), (Names{"b (2).wav", "b.wav"}));
}

TEST_F(OneStepMoves, DotFilesAreListedAloneAndTellOfEveryChange) {
  disk.WithFile("/share/.a").WithFile("/share/b");
  EXPECT_EQ(disk.ListDotFiles("/share/").names, Names{".a"});
  EXPECT_EQ(disk.ListPlainFiles("/share/").names, Names{"b"});
  const auto written = disk.ChangedAt("/share/b");
  ASSERT_TRUE(written.has_value());
  loop.Advance(std::chrono::seconds{1});
  EXPECT_EQ(disk.Rename("/share/b", "/share/c"), DiskResult::Done);
  const auto renamed = disk.ChangedAt("/share/c");
  EXPECT_GT(renamed, written);
  loop.Advance(std::chrono::seconds{1});
  const auto facts = disk.Facts("/share/c");
  EXPECT_EQ(disk.Renew("/share/c"), DiskResult::Done);
  EXPECT_GT(disk.ChangedAt("/share/c"), renamed);
  EXPECT_EQ(disk.Facts("/share/c"), facts);
  EXPECT_EQ(disk.Renew("/share/b"), DiskResult::NotFound);
}

}  // namespace
}  // namespace tavlo::test
