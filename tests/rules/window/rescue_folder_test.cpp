#include "window/rescue_folder.h"

#include <gtest/gtest.h>

#include "support/import_bench.h"

namespace tavlo::test {
namespace {

using forms::By;

struct RescueFolderTest : testing::Test, ImportBench {
  const std::string path = "/root/Files/Rescued";

  void Rescue(const std::string& name) {
    disk.WithFolder(path);
    disk.WithFile(path + "/" + name, "kept");
  }
  bool Shows() const { return form.cmdRescued.Visible; }
  const std::string& Caption() const { return form.cmdRescued.Caption; }
  std::string Box() const { return loop.Shown.empty() ? "" : loop.Shown.back().text; }
};

TEST_F(RescueFolderTest, IsNotShownBeforeAnythingWasRescued) {
  queue.RefreshQueueList();
  EXPECT_FALSE(Shows());
  EXPECT_FALSE(disk.Has(path));
}

TEST_F(RescueFolderTest, IsNotShownWhileItIsEmpty) {
  disk.WithFolder(path);
  queue.RefreshQueueList();
  EXPECT_FALSE(Shows());
}

TEST_F(RescueFolderTest, ShowsThatItHoldsOne) {
  Rescue("memo.wav");
  queue.RefreshQueueList();
  EXPECT_TRUE(Shows());
  EXPECT_EQ(Caption(), "Rescued: 1");
}

TEST_F(RescueFolderTest, ShowsHowManyItHolds) {
  for (int number = 1; number <= 1200; ++number) Rescue(std::to_string(number) + ".wav");
  queue.RefreshQueueList();
  EXPECT_EQ(Caption(), "Rescued: 1200");
}

TEST_F(RescueFolderTest, CountsNoFoldersLinksAndHalfCopies) {
  Rescue("memo.wav");
  disk.WithFolder(path + "/sorted");
  disk.WithLink(path + "/link.wav", path + "/memo.wav");
  disk.WithFile(path + "/.half", "half");
  queue.RefreshQueueList();
  EXPECT_EQ(Caption(), "Rescued: 1");
}

TEST_F(RescueFolderTest, IsCountedAtTheEndOfEachList) {
  Rescue("a.wav");
  completed.RefreshCompletedList();
  EXPECT_EQ(Caption(), "Rescued: 1");
  Rescue("b.wav");
  importList.RefreshImportList("0");
  EXPECT_EQ(Caption(), "Rescued: 2");
  Rescue("c.wav");
  importList.ShowAsEmptied(true);
  EXPECT_EQ(Caption(), "Rescued: 3");
}

TEST_F(RescueFolderTest, IsCountedThoughTheListCouldNotBeRead) {
  Rescue("memo.wav");
  disk.BreakListing("/root/Files/InQueue");
  queue.RefreshQueueList();
  EXPECT_EQ(Caption(), "Rescued: 1");
}

TEST_F(RescueFolderTest, ShowsADocumentThatHasJustGivenWay) {
  disk.WithFile("/root/Files/Completed/memo.wav", "typed yesterday");
  disk.WithFile("/root/Files/InQueue/memo.wav", "typed today");
  EXPECT_EQ(moves
                .Move(folders.InQueuePath + "memo.wav", folders.CompletedPath() + "memo.wav",
                      store::InTheWay::GoesToRescue)
                .displaced,
            path + "/memo.wav");
  queue.RefreshQueueList();
  EXPECT_EQ(Caption(), "Rescued: 1");
}

TEST_F(RescueFolderTest, GoesOutOfSightOnceItWasCleared) {
  Rescue("memo.wav");
  queue.RefreshQueueList();
  disk.Remove(path + "/memo.wav");
  queue.RefreshQueueList();
  EXPECT_FALSE(Shows());
  Rescue("memo.wav");
  queue.RefreshQueueList();
  disk.Remove(path + "/memo.wav");
  disk.Remove(path);
  queue.RefreshQueueList();
  EXPECT_FALSE(Shows());
}

TEST_F(RescueFolderTest, OpensInTheFileManagerAtAClick) {
  Rescue("memo.wav");
  queue.RefreshQueueList();
  form.cmdRescued.Press(By::Hand);
  EXPECT_EQ(foldersOpened, (std::vector<std::string>{path}));
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(RescueFolderTest, IsNamedInABoxWhereThereIsNoFileManager) {
  hasFileManager = false;
  Rescue("memo.wav");
  queue.RefreshQueueList();
  form.cmdRescued.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1U);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Rescued");
  EXPECT_EQ(Box(),
            "The rescued documents are in the folder\n/root/Files/Rescued\n\n"
            "No file manager could be started.");
}

TEST_F(RescueFolderTest, KeepsWhatItShowsWhileTheFolderIsOutOfReach) {
  Rescue("memo.wav");
  queue.RefreshQueueList();
  Rescue("other.wav");
  disk.Places.Stall(path);
  queue.RefreshQueueList();
  EXPECT_TRUE(Shows());
  EXPECT_EQ(Caption(), "Rescued: 1");
  disk.Places.Resume(path, SimulatedPlaces::Late::Fails);
  queue.RefreshQueueList();
  EXPECT_EQ(Caption(), "Rescued: 2");
}

TEST_F(RescueFolderTest, IsAskedNothingWhileItOwesAnAnswer) {
  disk.Places.Stall(path);
  queue.RefreshQueueList();
  disk.Operations.clear();
  queue.RefreshQueueList();
  for (const std::string& operation : disk.Operations) {
    EXPECT_EQ(operation.find(path), operation.npos) << operation;
  }
}

TEST_F(RescueFolderTest, OutOfReachIsNamedAndNotOpened) {
  Rescue("memo.wav");
  queue.RefreshQueueList();
  disk.Places.Stall(path);
  form.cmdRescued.Press(By::Hand);
  EXPECT_TRUE(foldersOpened.empty());
  EXPECT_EQ(Box(),
            "The rescued documents are in the folder\n/root/Files/Rescued\n\n"
            "It gives no answer.");
}

TEST_F(RescueFolderTest, ThatCanNotBeListedIsNotSaidToBeEmpty) {
  Rescue("memo.wav");
  queue.RefreshQueueList();
  disk.BreakListing(path);
  queue.RefreshQueueList();
  EXPECT_TRUE(Shows());
  disk.BreakListingAfter(path, 0);
  queue.RefreshQueueList();
  EXPECT_EQ(Caption(), "Rescued: 1");
}

TEST_F(RescueFolderTest, ThatIsGoneByTheClickGoesOutOfSight) {
  Rescue("memo.wav");
  queue.RefreshQueueList();
  disk.Remove(path + "/memo.wav");
  disk.Remove(path);
  form.cmdRescued.Press(By::Hand);
  EXPECT_FALSE(Shows());
  EXPECT_TRUE(foldersOpened.empty());
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(RescueFolderTest, IsNotReachedFromTheMiniPlayer) {
  Rescue("memo.wav");
  queue.RefreshQueueList();
  form.frameFiles.Visible = false;
  form.cmdRescued.Press(By::Hand);
  EXPECT_TRUE(foldersOpened.empty());
}

}  // namespace
}  // namespace tavlo::test
