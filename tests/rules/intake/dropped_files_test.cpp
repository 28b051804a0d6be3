#include "intake/dropped_files.h"

#include <gtest/gtest.h>

#include "support/import_bench.h"

namespace tavlo::test {
namespace {

using Files = std::vector<std::string>;

struct DroppedFilesTest : testing::Test, ImportBench {
  DroppedFilesTest() { disk.WithFolder("/home/typist/Desktop"); }

  std::string OnDesktop(const std::string& name, const std::string& contents = "from the desktop") {
    const std::string path = "/home/typist/Desktop/" + name;
    disk.WithFile(path, contents);
    return path;
  }
  void DropOnImport(const Files& paths) { form.listViewImport.DropFiles(paths); }
};

TEST_F(DroppedFilesTest, AreCopiedIntoTheDirectoryOnShowAndListed) {
  TurnTo(7);
  const std::string source = OnDesktop("memo.wav");
  DropOnImport({source, OnDesktop("other.wav")});
  EXPECT_EQ(disk.Contents(FolderOf(7) + "memo.wav"), "from the desktop");
  EXPECT_TRUE(disk.Has(source));
  EXPECT_EQ(Names(), (Files{"memo.wav", "other.wav"}));
  EXPECT_EQ(Notice(), "");
}

TEST_F(DroppedFilesTest, GoIntoTheFolderOfTheQueueWhenTheyAreLetGoOverIt) {
  form.frameImport.Visible = false;
  form.frameInQueue.Visible = true;
  form.listViewInQueue.DropFiles({OnDesktop("memo.wav")});
  EXPECT_EQ(disk.Contents(folders.InQueuePath + "memo.wav"), "from the desktop");
  EXPECT_EQ(retrievals, 1);
  EXPECT_EQ(RowOf("memo.wav"), 0);
}

TEST_F(DroppedFilesTest, NeverOverwriteButTakeANumber) {
  Put(0, "memo.wav");
  DropOnImport({OnDesktop("memo.wav")});
  DropOnImport({OnDesktop("memo.wav")});
  EXPECT_EQ(disk.Contents(FolderOf(0) + "memo.wav"), "sound of 0/memo.wav");
  EXPECT_EQ(disk.Contents(FolderOf(0) + "memo (2).wav"), "from the desktop");
  EXPECT_EQ(disk.Contents(FolderOf(0) + "memo (3).wav"), "from the desktop");
}

TEST_F(DroppedFilesTest, FoldersLinksAndOurOwnTreeAreRefusedWithWords) {
  disk.WithFolder("/home/typist/Desktop/tapes");
  disk.WithLink("/home/typist/Desktop/link.wav", OnDesktop("memo.wav"));
  disk.WithFifo("/home/typist/Desktop/pipe");
  const std::string ours = Put(3, "memo.wav");
  const std::size_t before = disk.FileCount();
  const auto refuses = [&](const std::string& path, const std::string& words) {
    DropOnImport({path});
    EXPECT_EQ(Notice(), "Not taken: " + words + ".") << path;
  };
  refuses("/home/typist/Desktop/tapes", "tapes (it is a folder)");
  refuses("/home/typist/Desktop/link.wav", "link.wav (it is a link)");
  refuses("/home/typist/Desktop/pipe", "pipe (it is no file)");
  refuses("/home/typist/Desktop/gone", "gone (there is no such file or folder)");
  refuses(ours, "memo.wav (it lies in a folder of Tavlo Deck)");
  refuses("/home/../root/Files/ImportQueue/3/memo.wav",
          "memo.wav (it lies in a folder of Tavlo Deck)");
  refuses(OnDesktop(".hidden"), ".hidden (its name begins with a dot)");
  EXPECT_EQ(disk.FileCount(), before + 1);
}

TEST_F(DroppedFilesTest, AFileOfADropFolderElsewhereIsRefusedSinceItComesByItself) {
  folders.Ds2QueuePath = "/share/dictation/";
  disk.WithFile("/share/dictation/memo.dS2");
  DropOnImport({"/share/dictation/memo.dS2"});
  EXPECT_EQ(Notice(), "Not taken: memo.dS2 (it lies in a folder of Tavlo Deck).");
}

TEST_F(DroppedFilesTest, AFileThatIsStillWrittenIsRefused) {
  const std::string path = OnDesktop("memo.wav");
  disk.OpenWriter(path);
  DropOnImport({path});
  EXPECT_TRUE(Names().empty());
  EXPECT_EQ(Notice(), "Not taken: memo.wav (a program is still writing it).");
}

TEST_F(DroppedFilesTest, WhatIsRefusedKeepsNothingElseFromComing) {
  disk.WithFolder("/home/typist/Desktop/tapes");
  DropOnImport({"/home/typist/Desktop/tapes", OnDesktop("memo.wav")});
  EXPECT_EQ(Names(), Files{"memo.wav"});
  EXPECT_EQ(Notice(), "Not taken: tapes (it is a folder).");
}

TEST_F(DroppedFilesTest, OfManyThatAreRefusedTheFirstAreNamed) {
  DropOnImport({"/a", "/b", "/c", "/d", "/e"});
  const std::string why = " (there is no such file or folder)";
  EXPECT_EQ(Notice(), "Not taken: a" + why + ", b" + why + ", c" + why + " and 2 more.");
}

TEST_F(DroppedFilesTest, ACopyThatFailsLeavesNothingBehind) {
  disk.SetFreeSpace("/root", 3);
  DropOnImport({OnDesktop("memo.wav")});
  EXPECT_TRUE(Names().empty());
  EXPECT_EQ(disk.FilesHolding("from the desktop").size(), 1u);
  EXPECT_EQ(Notice(), "Not taken: memo.wav (the disk is full).");
}

TEST_F(DroppedFilesTest, NothingIsTakenInsideTheWaitOfAListChange) {
  const window::ListPause pause(window.guards);
  DropOnImport({OnDesktop("memo.wav")});
  EXPECT_FALSE(disk.Has(FolderOf(0) + "memo.wav"));
  EXPECT_EQ(Notice(), "Not taken: the list is just being built. Drop the files again.");
}

}  // namespace
}  // namespace tavlo::test
