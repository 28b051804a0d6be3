#include "intake/import_sending.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/import_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using forms::By;
using Spoken = std::vector<std::string>;

struct ImportSendingTest : testing::Test, ImportBench {
  void SendOne() { form.cmdSendImportFileToQueue.Press(By::Hand); }
  void SendAll() {
    loop.Expect({.reply = Reply::Yes});
    form.cmdSendAllImportFilesToQueue.Press(By::Hand);
  }
  /// The name that the first profile gives a wave of the root.
  static std::string Sent(const std::string& time) {
    return "0000 0 Author1 1 3 9 2004 " + time + " 1 0 1 None 0 0_.wav";
  }
  void PutMany(int count) {
    for (int i = 1; i <= count; ++i) Put(0, "memo" + std::to_string(i) + ".wav");
  }
  /// The path of a file in the Queue by its contents.
  std::string Holding(const std::string& dropped) {
    const auto paths = disk.FilesHolding("sound of " + dropped);
    return paths.size() == 1 ? paths[0] : "";
  }
};

TEST_F(ImportSendingTest, SendsTheChosenFileUnderAComposedName) {
  Put(0, "memo.wav");
  Put(0, "other.wav");
  Choose("memo.wav");
  SendOne();
  EXPECT_EQ(Holding("0/memo.wav"), folders.InQueuePath + Sent("10 20 0"));
  EXPECT_EQ(Names(), std::vector<std::string>{"other.wav"});
  EXPECT_EQ(importList.SelectedImportFile, "");
  EXPECT_EQ(prompts, Spoken{"SentOneImport"});
  EXPECT_TRUE(ButtonsAre(true));
  EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
  EXPECT_TRUE(FocusIsAway());
  EXPECT_EQ(Notice(), "");
}

TEST_F(ImportSendingTest, SendOneWritesItsCountAboveTheCompletedList) {
  Put(0, "memo.wav");
  Put(0, "other.wav");
  Choose("memo.wav");
  SendOne();
  EXPECT_EQ(form.frameCompleted.Caption.Get(), "Import:     1     00:00:00");
  EXPECT_EQ(Caption(), "Import:     1     00:00:10");
}

TEST_F(ImportSendingTest, SendOneWithNothingChosenOnlySaysSo) {
  Put(0, "memo.wav");
  Refresh();
  SendOne();
  EXPECT_EQ(prompts, Spoken{"MoveErrQueue"});
  EXPECT_TRUE(Queued().empty());
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportSendingTest, TheProfileOnShowIsWrittenIntoTheName) {
  form.txtImportAuthorLastName.Change("Brown");
  form.txtImportAuthorID.Change("1234");
  form.txtImportDepartment.Change("2");
  form.txtImportWorktype.Change("17");
  form.txtImportSubject.Change("cardio");
  form.txtImportSystemID.Change("99");
  form.chkImportPriority.Click();
  Put(0, "memo.wav");
  Choose("memo.wav");
  SendOne();
  EXPECT_EQ(Holding("0/memo.wav"),
            folders.InQueuePath + "0000 0 Brown 1234 3 9 2004 10 20 0 2 0 17 cardio 0 P_.wav");
}

TEST_F(ImportSendingTest, TheDirectoryIsTheSystemId) {
  for (const auto& [directory, id] : {std::pair{7, "0007"}, std::pair{12, "0012"}}) {
    TurnTo(directory);
    Put(directory, "memo.wav");
    Choose("memo.wav");
    SendOne();
    const std::string sent = Holding(std::to_string(directory) + "/memo.wav");
    EXPECT_TRUE(sent.starts_with(folders.InQueuePath + id + " 0 Author")) << sent;
  }
}

TEST_F(ImportSendingTest, OnlyTheLastFourCharactersOfTheSourceStay) {
  Put(0, "a.jpeg");
  Choose("a.jpeg");
  SendOne();
  EXPECT_TRUE(Holding("0/a.jpeg").ends_with("0 0_jpeg"));
}

TEST_F(ImportSendingTest, ADssFileThatNoScanConvertedArrivesAsItIs) {
  Put(0, "memo.wav");
  Refresh();
  Put(0, "letter.dss");
  SendAll();
  EXPECT_TRUE(Holding("0/letter.dss").ends_with("_.dss"));
  EXPECT_TRUE(conversion.Asked.empty());
}

TEST_F(ImportSendingTest, ADocumentThatWaitsUnderTheSameNameStaysAndTheNextSecondIsTaken) {
  disk.WithFile(folders.InQueuePath + Sent("10 20 0"), "the one that waits");
  Put(0, "memo.wav");
  Choose("memo.wav");
  SendOne();
  EXPECT_EQ(disk.Contents(folders.InQueuePath + Sent("10 20 0")), "the one that waits");
  EXPECT_EQ(Holding("0/memo.wav"), folders.InQueuePath + Sent("10 20 1"));
}

TEST_F(ImportSendingTest, AFileWhoseMoveFailsIsRescuedAndNothingIsClaimed) {
  Put(0, "memo.wav");
  Choose("memo.wav");
  disk.Remove(folders.InQueuePath.substr(0, folders.InQueuePath.size() - 1));
  SendOne();
  EXPECT_EQ(Holding("0/memo.wav"), folders.RescuedPath() + "memo.wav");
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Notice(),
            "Not sent to the Queue: there is no such file or folder. The file is in the rescue "
            "folder: " +
                folders.RescuedPath() + "memo.wav");
}

TEST_F(ImportSendingTest, AFileThatIsWrittenGoesWithItsWriterOnOneDiskAndStaysOnAnother) {
  Put(0, "memo.wav");
  const std::string near = Put(0, "near.wav");
  Refresh();
  disk.OpenWriter(near);
  SendAll();
  EXPECT_EQ(Queued().size(), 2u);

  disk.WithFileSystemAt("/share");
  folders.WavQueuePath = "/share/";
  const std::string far = Put(0, "far.wav");
  Put(0, "done.wav");
  Refresh();
  disk.OpenWriter(far);
  SendAll();
  EXPECT_EQ(Queued().size(), 3u);
  EXPECT_TRUE(disk.Has(far));
  EXPECT_EQ(Notice(), "1 of 2 files went to the Queue. 1 file stays: still being written.");
}

TEST_F(ImportSendingTest, AFileOfAShareIsClaimedBeforeItIsCopiedSoThatItGoesToOneDeck) {
  disk.WithFileSystemAt("/share");
  folders.WavQueuePath = "/share/";
  Put(0, "memo.wav");
  Refresh();
  std::vector<std::string> besideMeanwhile;
  disk.OnNextCopy = [&] { besideMeanwhile = disk.NamesIn("/share/"); };
  SendAll();
  EXPECT_EQ(besideMeanwhile, std::vector<std::string>{".TavloClaim desk 41 memo.wav"});
  EXPECT_EQ(Queued().size(), 1u);
  EXPECT_TRUE(disk.NamesIn("/share/").empty());
}

TEST_F(ImportSendingTest, AQueueThatIsFullEndsTheBatchAndTheFilesOfTheShareStayInSight) {
  disk.WithFileSystemAt("/share");
  folders.WavQueuePath = "/share/";
  PutMany(3);
  Refresh();
  disk.SetFreeSpace(folders.InQueuePath, 0);
  SendAll();
  EXPECT_EQ(disk.NamesIn("/share/").size(), 3u);
  EXPECT_EQ(Names().size(), 3u);
  EXPECT_TRUE(ButtonsAre(true));
  EXPECT_EQ(Notice(),
            "0 of 3 files went to the Queue. 1 did not: the disk is full. The others wait here for "
            "the next Send All.");
  EXPECT_TRUE(prompts.empty());
}

TEST_F(ImportSendingTest, WhatEndsABatchIsToldThoughAnotherFileFailedBefore) {
  disk.WithFileSystemAt("/share");
  folders.WavQueuePath = "/share/";
  PutMany(3);
  Refresh();
  disk.SetUnreadable("/share/memo1.wav");
  disk.SetFreeSpace(folders.InQueuePath, 0);
  SendAll();
  // A file that can not be read has no row.
  EXPECT_EQ(Names().size(), 2u);
  EXPECT_EQ(Notice(),
            "0 of 3 files went to the Queue. 2 did not: the disk is full. The others wait here for "
            "the next Send All.");
}

TEST_F(ImportSendingTest, AFileThatArrivedAndStaysIsSaidToBeBoth) {
  const auto begin = [](ImportBench& bench) {
    bench.disk.WithFileSystemAt("/share");
    bench.folders.WavQueuePath = "/share/";
    bench.Put(0, "memo.wav");
    bench.Refresh();
    bench.disk.Operations.clear();
  };
  ImportBench dry;
  begin(dry);
  dry.loop.Expect({.reply = Reply::Yes});
  dry.form.cmdSendAllImportFilesToQueue.Press(By::Hand);
  const auto nth =
      std::ranges::find(dry.disk.Operations, "Delete /share/.TavloClaim desk 41 memo.wav") -
      dry.disk.Operations.begin();
  ASSERT_LT(nth, std::ssize(dry.disk.Operations));

  begin(*this);
  disk.FailOperation(static_cast<int>(nth) + 1, store::DiskResult::NoAccess);
  SendAll();
  EXPECT_EQ(Queued().size(), 1u);
  EXPECT_EQ(Notice(), "1 of 1 file went to the Queue. 1 file could not be deleted here.");
  EXPECT_TRUE(prompts.empty());
}

TEST_F(ImportSendingTest, ATakenNameCostsNoCopyOfAFileOfAShare) {
  disk.WithFileSystemAt("/share");
  folders.WavQueuePath = "/share/";
  disk.WithFile(folders.InQueuePath + Sent("10 20 0"), "the one that waits");
  Put(0, "memo.wav");
  Choose("memo.wav");
  disk.Operations.clear();
  SendOne();
  EXPECT_EQ(Holding("0/memo.wav"), folders.InQueuePath + Sent("10 20 1"));
  EXPECT_EQ(std::ranges::count_if(disk.Operations,
                                  [](const auto& done) { return done.starts_with("Copy "); }),
            1);
}

TEST_F(ImportSendingTest, ALongBatchSaysHowFarItIs) {
  disk.WithFileSystemAt("/share");
  folders.WavQueuePath = "/share/";
  PutMany(50);
  Refresh();
  std::string meanwhile;
  disk.OnNextCopy = [&] { meanwhile = Notice(); };
  SendAll();
  EXPECT_EQ(meanwhile, "Sending 1 of 50 files");
  EXPECT_EQ(Notice(), "");
}

TEST_F(ImportSendingTest, SendAllAsksAndSendsTheDirectoryAndNotTheList) {
  for (int i = 0; i < 7; ++i) form.listViewCompleted.Add("");
  Put(0, "memo.wav");
  Refresh();
  Put(0, "unlisted.wav");
  SendAll();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Import");
  EXPECT_EQ(loop.Shown[0].text,
            "Are you sure you want to send all the Imported files to the Queue?");
  EXPECT_EQ(loop.Shown[0].buttons, base::Buttons::YesNo);
  EXPECT_EQ(Queued().size(), 2u);
  EXPECT_TRUE(Names().empty());
  EXPECT_EQ(importList.ImportCount, 0);
  EXPECT_EQ(Caption(), "Import:     7     00:00:00");
  EXPECT_TRUE(ButtonsAre(false));
  EXPECT_EQ(prompts, Spoken{"SentAllImport"});
  EXPECT_EQ(Notice(), "");
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportSendingTest, SendAllThatIsRefusedSendsNothing) {
  Put(0, "memo.wav");
  Refresh();
  loop.Expect({.reply = Reply::No});
  form.cmdSendAllImportFilesToQueue.Press(By::Hand);
  EXPECT_TRUE(Queued().empty());
  EXPECT_TRUE(prompts.empty());
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportSendingTest, SendAllOfADirectoryThatIsEmptyByNowAsksNothing) {
  const std::string path = Put(0, "memo.wav");
  Refresh();
  disk.Remove(path);
  form.cmdSendAllImportFilesToQueue.Press(By::Hand);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(prompts.empty());
}

TEST_F(ImportSendingTest, TheGapsBetweenTheSecondsOfABatchWiden) {
  PutMany(11);
  Refresh();
  SendAll();
  for (const char* time : {"10 20 1", "10 20 3", "10 20 6", "10 20 10", "10 20 15", "10 20 21",
                           "10 20 28", "10 20 36", "10 20 45", "10 20 55", "10 21 0"}) {
    EXPECT_TRUE(disk.Has(folders.InQueuePath + Sent(time))) << time;
  }
  EXPECT_EQ(Queued().size(), 11u);
}

TEST_F(ImportSendingTest, ABatchAtMidnightBeginsTheHoursAnewOnTheSameDate) {
  loop.SetWallClock({2004, 3, 9, 23, 59, 59});
  PutMany(1);
  Refresh();
  SendAll();
  EXPECT_EQ(Queued(), std::vector<std::string>{Sent("0 0 0")});
}

TEST(BatchTimes, EndWhereSecondAndStepPassAByte) {
  intake::BatchTimes times({2004, 3, 9, 10, 20, 59});
  int files = 0;
  while (times.Next()) ++files;
  EXPECT_EQ(files, 255);
}

TEST_F(ImportSendingTest, ABatchThatRunsPastItsTimesEndsThereAndTheRestStaysAndShows) {
  PutMany(300);
  Refresh();
  SendAll();
  EXPECT_EQ(Queued().size(), 255u);
  EXPECT_EQ(Names().size(), 45u);
  EXPECT_EQ(importList.ImportCount, 45);
  EXPECT_EQ(Caption(), "Import:     45     00:07:30");
  EXPECT_TRUE(ButtonsAre(true));
  EXPECT_EQ(importList.SelectedImportFile, "");
  EXPECT_EQ(Notice(),
            "255 of 300 files went to the Queue. The others wait here for the next Send All.");
  EXPECT_EQ(prompts, Spoken{"SentAllImport"});
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ImportSendingTest, TwoBatchesWhoseTimesMeetLoseNothing) {
  PutMany(12);
  Refresh();
  SendAll();
  loop.SetWallClock({2004, 3, 9, 10, 20, 0});
  for (int i = 1; i <= 12; ++i) Put(0, "more" + std::to_string(i) + ".wav");
  Refresh();
  SendAll();
  EXPECT_EQ(Queued().size(), 24u);
}

TEST_F(ImportSendingTest, NothingOfABatchIsLostWhateverOperationFails) {
  for (int nth = 1;; ++nth) {
    ImportBench bench;
    for (const char* name : {"a.wav", "b.wav", "c.wav"}) bench.Put(0, name);
    bench.Refresh();
    bench.loop.Expect({.reply = Reply::Yes});
    bench.disk.FailOperation(nth, store::DiskResult::Failed);
    bench.form.cmdSendAllImportFilesToQueue.Press(By::Hand);
    for (const char* name : {"a.wav", "b.wav", "c.wav"}) {
      EXPECT_EQ(bench.disk.FilesHolding(std::string("sound of 0/") + name).size(), 1u)
          << name << " at operation " << nth;
    }
    if (bench.disk.FaultPending()) break;
  }
}

}  // namespace
}  // namespace tavlo::test
