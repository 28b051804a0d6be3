#include "intake/auto_import.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/import_bench.h"

namespace tavlo::test {
namespace {

struct AutoImportTest : testing::Test, ImportBench {
  AutoImportTest() { config.txtAutoImport.Value = "Y"; }

  bool QueueHasOneOf(const std::string& beginning) {
    return std::ranges::count_if(
               Queued(), [&](const std::string& name) { return name.starts_with(beginning); }) == 1;
  }
};

TEST_F(AutoImportTest, DoesNothingWhileTheSettingSaysNo) {
  config.txtAutoImport.Value = "N";
  Put(0, "memo.wav");
  form.txtWavImportSubdirectory.Value = "7";
  autoImport.AutoImportAll();
  EXPECT_TRUE(Queued().empty());
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "7");
  EXPECT_EQ(loop.Breaths, 0);
}

TEST_F(AutoImportTest, SendsEveryDirectoryUnderItsProfileAndAsksAndSaysNothing) {
  for (int directory = 0; directory < intake::kImportDirectories; ++directory) {
    Put(directory, "memo.wav");
  }
  autoImport.AutoImportAll();
  EXPECT_EQ(Queued().size(), 26u);
  EXPECT_TRUE(QueueHasOneOf("0000 0 Author1 1 "));
  EXPECT_TRUE(QueueHasOneOf("0007 0 Author8 8 "));
  EXPECT_TRUE(QueueHasOneOf("0025 0 Author26 26 "));
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(prompts.empty());
  EXPECT_FALSE(importList.AutoImportRunning);
}

TEST_F(AutoImportTest, WithoutTheLinkEveryDirectoryTakesTheFirstProfile) {
  form.chkImportSynchronize.Value = false;
  form.comboAuthorLastName.RowClick(4);
  Put(7, "memo.wav");
  autoImport.AutoImportAll();
  EXPECT_TRUE(QueueHasOneOf("0007 0 Author1 1 "));
}

TEST_F(AutoImportTest, TheViewStandsAfterwardsAsBefore) {
  TurnTo(3);
  const std::string written = Put(3, "written.wav");
  disk.OpenWriter(written);
  Put(25, "memo.wav");
  form.txtImportSubject.Change("cardio");
  autoImport.AutoImportAll();
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "3");
  EXPECT_EQ(form.txtImportAuthorCount.Value.Get(), "4");
  EXPECT_EQ(form.txtImportSubject.Value.Get(), "cardio");
  EXPECT_EQ(database.Value(store::Table::ImportAuthors, 3, "Subject"), "cardio");
  EXPECT_TRUE(Names().empty());
  EXPECT_EQ(Caption(), "Import:     0     00:00:00");
}

TEST_F(AutoImportTest, WorksInsideTheListChangeOfItsCommandAndKeepsTheExitAway) {
  Put(0, "memo.wav");
  form.mnuFile.Enabled = false;
  bool exitAway = true;
  base::Timer look(loop, "look", base::Duration{1000});
  look.OnTick = [&] {
    exitAway =
        exitAway && !form.mnuFile.Enabled && form.frmMain.MousePointer == forms::Pointer::Hourglass;
  };
  look.Start();
  {
    const forms::Hourglass hourglass(form.frmMain);
    const window::ListPause pause(window.guards);
    autoImport.AutoImportAll();
    EXPECT_FALSE(form.mnuFile.Enabled);
    EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Hourglass);
  }
  EXPECT_TRUE(exitAway);
  EXPECT_EQ(Queued().size(), 1u);
}

TEST_F(AutoImportTest, OneBoxTellsOfAllDirectoriesThatCanNotBeReached) {
  for (int directory : {0, 1, 2}) disk.BreakListing(FolderOf(directory));
  Put(5, "memo.wav");
  form.frameImport.Visible = false;
  autoImport.AutoImportAll();
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(Queued().size(), 1u);
}

TEST_F(AutoImportTest, ADirectoryWithoutAProfileWaits) {
  database.WithRows(store::Table::ImportAuthors, 5);
  Put(4, "memo.wav");
  const std::string path = Put(9, "memo.wav");
  autoImport.AutoImportAll();
  EXPECT_TRUE(QueueHasOneOf("0004 0 Author5 5 "));
  EXPECT_TRUE(disk.Has(path));
}

}  // namespace
}  // namespace tavlo::test
