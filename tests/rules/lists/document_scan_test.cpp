#include "lists/document_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

namespace column = forms::document_column;

/// What the two scans have in common.
struct DocumentScanTest : testing::Test, ListsBench {
  DocumentScanTest() { completed.MakeColumns("Subject"); }

  std::string Keep(const Document& document) {
    const std::string path = folders.CompletedPath() + document.Name();
    disk.WithFile(path, "sound");
    file.Sounds[path] = {.samples = 80'000};
    return path;
  }
  /// How often a document was opened, in whatever way.
  std::ptrdiff_t Openings(const std::string& path) {
    return std::count(disk.Operations.begin(), disk.Operations.end(), "Open " + path) +
           std::count(disk.Operations.begin(), disk.Operations.end(), "Test " + path) +
           file.OpenCount - file.HeldOpenCount;
  }
  /// Runs once, in the breath before the next file is looked at.
  void AtTheNextBreath(const std::function<void()>& act) {
    feed.OnTick = [this, act] {
      feed.Stop();
      act();
    };
    feed.Start();
    loop.Busy(base::Duration{1});
  }

  base::Timer feed{loop, "another program", base::Duration{1}, base::TimerKind::Feed};
};

TEST_F(DocumentScanTest, EachDocumentOfTheQueueIsOpenedOnce) {
  const std::string fresh = Drop(Document().By("A"));
  const std::string saved = Drop(Document().By("B").Saved(7));
  const std::string written = Drop(Document().By("C"));
  const std::string text = Drop(Document().By("D"));
  file.Sounds.erase(text);
  disk.OpenWriter(written);
  disk.Operations.clear();
  queue.RefreshQueueList();
  EXPECT_EQ(Rows(), 3);
  for (const std::string& path : {fresh, saved, written, text}) EXPECT_EQ(Openings(path), 1);
  EXPECT_EQ(file.HeldOpenCount, 3);
}

TEST_F(DocumentScanTest, EachCompletedDocumentIsOpenedOnce) {
  const std::string brown = Keep(Document().By("Brown"));
  const std::string okafor = Keep(Document().By("Okafor"));
  disk.Operations.clear();
  completed.RefreshCompletedList();
  EXPECT_EQ(completed.CompletedCount, 2);
  EXPECT_EQ(Openings(brown), 1);
  EXPECT_EQ(Openings(okafor), 1);
}

TEST_F(DocumentScanTest, NothingIsHeldOnceAScanHasEnded) {
  const std::string path = Drop(Document().By("A"));
  Drop(Document().By("B"));
  queue.RefreshQueueList();
  EXPECT_EQ(disk.HeldByWalks(), 0);
  disk.OutOfHandlesAt = path;
  queue.RefreshQueueList();
  EXPECT_EQ(disk.HeldByWalks(), 0);
  disk.OutOfHandlesAt.clear();
  disk.BreakListingAfter(folders.InQueuePath, 1);
  queue.RefreshQueueList();
  EXPECT_EQ(disk.HeldByWalks(), 0);
  disk.BreakListing(folders.InQueuePath);
  queue.RefreshQueueList();
  EXPECT_EQ(disk.HeldByWalks(), 0);
}

TEST_F(DocumentScanTest, NoDocumentIsHeldWhileTheWindowPaints) {
  Drop(Document().By("A"));
  Drop(Document().By("B"));
  std::vector<int> held;
  feed.OnTick = [&] {
    held.push_back(disk.HeldByWalks());
    loop.Busy(base::Duration{1});
  };
  feed.Start();
  loop.Busy(base::Duration{1});
  queue.RefreshQueueList();
  // At each document the folder is open, and no file in it.
  EXPECT_EQ(held, (std::vector<int>{1, 1}));
}

TEST_F(DocumentScanTest, LongListIsEmptyAtOnceAndTheLoopBreathesWhileItsRowsAreFreed) {
  constexpr int kRows = 10'000;
  for (int i = 0; i < kRows; ++i) form.listViewInQueue.Add("row");
  int rowsSeen = 0;
  feed.OnTick = [&] {
    rowsSeen += Rows();
    loop.Busy(base::Duration{1});
  };
  feed.Start();
  loop.Busy(base::Duration{1});
  queue.RefreshQueueList();
  EXPECT_GT(loop.Breaths, 10);
  EXPECT_EQ(rowsSeen, 0);
}

TEST_F(DocumentScanTest, SavedDocumentThatVanishesAfterTheListingStandsWithLengthZero) {
  Drop(Document().By("First"));
  const std::string gone = Drop(Document().By("Gone").Saved(5));
  AtTheNextBreath([&] { disk.Remove(gone); });
  EXPECT_TRUE(queue.RefreshQueueList());
  ASSERT_EQ(Rows(), 2);
  const int row = RowOf(Document().By("Gone").Saved(5).Name());
  EXPECT_EQ(Cell(row, column::Length), "00:00:00");
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(DocumentScanTest, WhatMayNotBeReadHasNoRowAndSavedWithLengthZero) {
  disk.SetUnreadable(Drop(Document().By("New")));
  disk.SetUnreadable(Drop(Document().By("Saved").Saved(5)));
  Drop(Document().By("Open"));
  EXPECT_TRUE(queue.RefreshQueueList());
  ASSERT_EQ(Rows(), 2);
  EXPECT_EQ(RowOf(Document().By("New").Name()), -1);
  EXPECT_EQ(Cell(RowOf(Document().By("Saved").Saved(5).Name()), column::Length), "00:00:00");
}

TEST_F(DocumentScanTest, PipeInThePlaceOfADocumentHasNoRowAndIsNotWaitedFor) {
  const std::string path = Drop(Document().By("Pipe"));
  Drop(Document().By("Last"));
  AtTheNextBreath([&] { disk.WithFifo(path); });
  EXPECT_TRUE(queue.RefreshQueueList());
  ASSERT_EQ(Rows(), 1);
  EXPECT_EQ(Cell(0, column::Author), "Last");
}

TEST_F(DocumentScanTest, SavedDocumentForWhichThereIsNoHandleCutsTheScanShort) {
  Drop(Document().By("A"));
  disk.OutOfHandlesAt = Drop(Document().By("B").Saved(5));
  Drop(Document().By("C"));
  EXPECT_FALSE(queue.RefreshQueueList());
  EXPECT_EQ(Rows(), 1);
  EXPECT_TRUE(form.lblNotice.Visible);
  EXPECT_TRUE(loop.Shown.empty());
}

}  // namespace
}  // namespace tavlo::test
