#include <gtest/gtest.h>

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

/// A completed document that may not be written, in a folder that is a file system of its own.
struct DeleteForGood : testing::Test {
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  store::WorkFolders folders{disk, kRoot};
  store::FileMoves moves{disk, folders};
  const std::string path = folders.CompletedPath() + "a.wav";

  DeleteForGood() {
    disk.WithFolder(kRoot);
    folders.MakeTree();
    disk.WithFileSystemAt(folders.CompletedPath());
    disk.WithFile(path, "A").SetReadOnly(path);
    disk.Operations.clear();
  }
};

TEST_F(DeleteForGood, DeletesAtTheFirstTryWhatMostPlacesLetGo) {
  EXPECT_EQ(moves.DeleteForGood(path), DiskResult::Done);
  EXPECT_TRUE(disk.FilesHolding("A").empty());
  EXPECT_EQ(disk.Operations, Names{"Delete " + path});
  EXPECT_EQ(moves.DeleteForGood(path), DiskResult::NotFound);
}

TEST_F(DeleteForGood, MakesWritableWhatIsRefusedAndTriesOnceMore) {
  disk.FailOperation(1, DiskResult::NoAccess);
  EXPECT_EQ(moves.DeleteForGood(path), DiskResult::Done);
  EXPECT_TRUE(disk.FilesHolding("A").empty());
  EXPECT_EQ(disk.Operations,
            (Names{"Delete " + path, "SetAttributesNormal " + path, "Delete " + path}));
}

TEST_F(DeleteForGood, TriesNoThirdTime) {
  disk.LockFolder(folders.CompletedPath());
  EXPECT_EQ(moves.DeleteForGood(path), DiskResult::NoAccess);
  EXPECT_EQ(disk.Operations.size(), 3u);
  EXPECT_EQ(disk.FilesHolding("A"), Names{path});
}

TEST_F(DeleteForGood, ThatFailsForAnotherReasonIsNotTriedAgain) {
  disk.FailOperation(1, DiskResult::Failed);
  EXPECT_EQ(moves.DeleteForGood(path), DiskResult::Failed);
  EXPECT_EQ(disk.Operations, Names{"Delete " + path});
  EXPECT_TRUE(disk.IsReadOnly(path));
}

TEST_F(DeleteForGood, OfWhatCanNotBeMadeWritableIsNotTriedAgain) {
  disk.LockFolder(folders.CompletedPath());
  disk.FailOperation(2, DiskResult::Failed);
  EXPECT_EQ(moves.DeleteForGood(path), DiskResult::Failed);
  EXPECT_EQ(disk.Operations.size(), 2u);
}

TEST_F(DeleteForGood, IsInDoubtOnlyWhereADeleteAndNotWhereTheAttributesAreOutOfReach) {
  disk.LockFolder(folders.CompletedPath());
  disk.StallAtOperation(2, folders.CompletedPath());
  EXPECT_EQ(moves.DeleteForGood(path), DiskResult::OutOfReach);
  EXPECT_FALSE(moves.IsInDoubt(path));
  disk.Places.Resume(folders.CompletedPath(), SimulatedPlaces::Late::Happens);
  disk.StallAtOperation(3, folders.CompletedPath());
  EXPECT_EQ(moves.DeleteForGood(path), DiskResult::OutOfReach);
  EXPECT_TRUE(moves.IsInDoubt(path));
  EXPECT_EQ(disk.FilesHolding("A"), Names{path});
}

}  // namespace
}  // namespace tavlo::test
