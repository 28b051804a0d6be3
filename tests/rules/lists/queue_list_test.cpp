#include "lists/queue_list.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::operator""s;
namespace column = forms::document_column;

constexpr forms::Colour kBlack = 0x000000;
constexpr forms::Colour kRed = 0xFF0000;
constexpr forms::Colour kBlue = 0x0000FF;

struct QueueListTest : testing::Test, ListsBench {
  const std::string& Caption() { return form.frameInQueue.Caption; }
  forms::Colour ColourOf(int row, int at) {
    return form.listViewInQueue.Rows().at(row).cells.at(at).colour;
  }
};

TEST_F(QueueListTest, EmptyFolderGivesAnEmptyListAndSaysSo) {
  queue.RefreshQueueList();
  EXPECT_EQ(Rows(), 0);
  EXPECT_EQ(Caption(), "Queue:     0     00:00:00");
}

TEST_F(QueueListTest, EmptyListSaysWhereToDropDictations) {
  queue.MakeColumns("Subject");
  std::string folder = folders.InQueuePath;
  folder.pop_back();
  EXPECT_EQ(form.listViewInQueue.WhenEmpty.Get(),
            "Nothing waits to be typed\nDrop dictations into " + folder);
}

TEST_F(QueueListTest, FiguresStandAtTheRight) {
  queue.MakeColumns("Subject");
  for (int at = 0; at <= column::StampSort; ++at) {
    const bool figures =
        at == column::Id || at == column::Department || at == column::Work || at == column::Length;
    EXPECT_EQ(form.listViewInQueue.Columns()[at].figures, figures) << at;
  }
}

TEST_F(QueueListTest, RowShowsWhatTheNameSaysAndTheLengthOfTheSound) {
  const std::string name =
      Document().By("Okafor").Id(8801).Department(5).WorkType(3).About("ward").Name();
  Drop(name, {.samples = 8000LL * 3661, .rate = 8000});
  queue.RefreshQueueList();
  ASSERT_EQ(Rows(), 1);
  const std::string expected[] = {"",     "",     "Okafor",   "8801",          "5",
                                  "3",    "ward", "01:01:01", "03/09/2004",    "14:05:12",
                                  "0007", name,   "",         "20040309140512"};
  for (int at = 0; at <= column::StampSort; ++at) EXPECT_EQ(Cell(0, at), expected[at]) << at;
}

TEST_F(QueueListTest, ColumnsHaveTheirTitlesAndWidths) {
  queue.MakeColumns("Patient");
  const std::pair<std::string, int> expected[] = {
      {"Pri", 375},    {"Saved", 650},    {"Author", 1500}, {"Id", 850},    {"Dept", 600},
      {"Work", 600},   {"Patient", 1500}, {"Length", 900},  {"Date", 1100}, {"Time", 900},
      {"System", 800}, {"File Name", 0},  {"", 0},          {"", 0}};
  ASSERT_EQ(form.listViewInQueue.Columns().size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(form.listViewInQueue.Columns()[i].title, expected[i].first);
    EXPECT_EQ(form.listViewInQueue.Columns()[i].width, expected[i].second);
  }
}

TEST_F(QueueListTest, PriorityRowIsRedAndTheWordSavedIsBlueWhateverThePriority) {
  Drop(Document().By("Red").Priority().Saved(9));
  Drop(Document().By("Black").Saved(9));
  queue.RefreshQueueList();
  EXPECT_EQ(Cell(0, column::Priority), "Pri");
  EXPECT_EQ(Cell(0, column::Saved), "Saved");
  for (const int at : {0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}) {
    EXPECT_EQ(ColourOf(0, at), kRed) << at;
    EXPECT_EQ(ColourOf(1, at), kBlack) << at;
  }
  EXPECT_EQ(ColourOf(0, column::Saved), kBlue);
  EXPECT_EQ(ColourOf(1, column::Saved), kBlue);
}

TEST_F(QueueListTest, PriorityDocumentDatedLaterStandsAboveANormalOne) {
  Drop(Document().By("Old").At("1 1 2004 8 0 0"));
  Drop(Document().By("New").At("12 31 2005 8 0 0").Priority());
  queue.RefreshQueueList();
  EXPECT_EQ(Cell(0, column::Author), "New");
  EXPECT_EQ(Cell(1, column::Author), "Old");
}

TEST_F(QueueListTest, EachGroupStandsOldestFirst) {
  Drop(Document().By("C").At("3 9 2004 14 5 12"));
  Drop(Document().By("A").At("3 8 2004 9 12 31"));
  Drop(Document().By("B").At("3 8 2004 11 2 9"));
  Drop(Document().By("Q").At("3 9 2004 15 0 0").Priority());
  Drop(Document().By("P").At("3 9 2004 14 0 0").Priority());
  queue.RefreshQueueList();
  std::string order;
  for (int row = 0; row < Rows(); ++row) order += Cell(row, column::Author);
  EXPECT_EQ(order, "PQABC");
}

TEST_F(QueueListTest, ForeignNameListsAsUnknownAtThePresentMomentAndSortsLast) {
  loop.SetWallClock({.year = 2026, .month = 1, .day = 5, .hour = 7, .minute = 8, .second = 9});
  Drop("memo.mp3");
  Drop(Document().By("Brown"));
  queue.RefreshQueueList();
  EXPECT_EQ(Cell(1, column::Author), "Unknown");
  EXPECT_EQ(Cell(1, column::Id), "999999");
  EXPECT_EQ(Cell(1, column::StampSort), "20260105070809");
}

TEST_F(QueueListTest, CaptionCountsTheRowsAndAddsTheirLengths) {
  Drop(Document().By("A"), {.samples = 8000 * 61});
  Drop(Document().By("B"), {.samples = 8000 * 3600});
  queue.RefreshQueueList();
  EXPECT_EQ(Caption(), "Queue:     2     01:01:01");
}

TEST_F(QueueListTest, FileThatIsStillBeingWrittenGetsItsRowOnceItIsReleased) {
  const std::string path = Drop(Document().By("Late"));
  Drop(Document().By("Ready"));
  disk.OpenWriter(path);
  queue.RefreshQueueList();
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(Caption(), "Queue:     1     00:00:10");
  disk.CloseWriter(path);
  disk.SetReadOnly(path);
  queue.RefreshQueueList();
  EXPECT_EQ(Rows(), 2);
  EXPECT_FALSE(disk.IsReadOnly(path));
}

TEST_F(QueueListTest, SavedDocumentIsTakenWithoutTheReadinessTest) {
  const std::string path = Drop(Document().Saved(5));
  disk.OpenWriter(path);
  queue.RefreshQueueList();
  EXPECT_EQ(Rows(), 1);
}

TEST_F(QueueListTest, FileThatIsNoAudioStandsWithLengthZero) {
  const std::string path = Drop(Document().By("Text"));
  file.Sounds.erase(path);
  queue.RefreshQueueList();
  EXPECT_EQ(Cell(0, column::Length), "00:00:00");
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(QueueListTest, NegativeStatusEndsTheScanWithTheRowsMadeSoFar) {
  Drop(Document().By("A"));
  file.TroubleWith = Drop(Document().By("B"));
  Drop(Document().By("C"));
  form.frameInQueue.Caption = "Queue";
  queue.RefreshQueueList();
  ASSERT_EQ(Rows(), 1);
  EXPECT_EQ(Cell(0, column::Author), "A");
  EXPECT_EQ(Caption(), "Queue");
  EXPECT_TRUE(loop.Shown.empty());
}

/// Where a scan may find no handle.
const std::function<void(ListsBench&, const std::string&)> kTroubles[] = {
    [](ListsBench& bench, const std::string& path) { bench.disk.OutOfHandlesAt = path; },
    [](ListsBench& bench, const std::string& path) { bench.file.TroubleWith = path; },
    [](ListsBench& bench, const std::string&) {
      bench.disk.BreakListingAfter(bench.folders.InQueuePath, 1);
      bench.disk.ListingBreaksForWantOfMemory = true;
    },
};

TEST(QueueListWithoutHandles, ScanEndsWithTheRowsMadeSoFarAndTheNextOneListsAll) {
  for (const auto& trouble : kTroubles) {
    ListsBench bench;
    bench.Drop(Document().By("A"));
    const std::string second = bench.Drop(Document().By("B"));
    bench.Drop(Document().By("C"));
    bench.form.frameInQueue.Caption = "Queue";
    trouble(bench, second);
    EXPECT_FALSE(bench.queue.RefreshQueueList());
    ASSERT_EQ(bench.Rows(), 1);
    EXPECT_EQ(bench.form.frameInQueue.Caption.Get(), "Queue");
    EXPECT_TRUE(bench.loop.Shown.empty());
    EXPECT_FALSE(bench.file.IsOpen());
    EXPECT_EQ(bench.form.lblNotice.Value.Get(),
              "The Queue list is not whole: the program has no file handles or memory left. The "
              "next list shows the rest.");
    bench.disk.OutOfHandlesAt.clear();
    bench.file.TroubleWith.clear();
    bench.disk.MendListing(bench.folders.InQueuePath);
    EXPECT_TRUE(bench.queue.RefreshQueueList());
    EXPECT_EQ(bench.Rows(), 3);
    EXPECT_FALSE(bench.form.lblNotice.Visible);
  }
}

TEST_F(QueueListTest, ScanThatFindsNoHandleForTheFolderKeepsTheListAndHighlightsNothing) {
  Drop(Document());
  queue.RefreshQueueList();
  form.listViewInQueue.ListIndex = 0;
  disk.OutOfHandles = true;
  EXPECT_FALSE(queue.RefreshQueueList());
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(form.listViewInQueue.ListIndex, -1);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(form.lblNotice.Visible);
}

TEST_F(QueueListTest, FolderThatCanNotBeReachedShowsTheBoxAndKeepsTheList) {
  Drop(Document());
  queue.RefreshQueueList();
  disk.BreakListing(folders.InQueuePath);
  queue.RefreshQueueList();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Network Fault");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Warning);
  EXPECT_EQ(loop.Shown[0].text,
            "The .wav file's path /root/Files/InQueue/ can not be found.\n\n\rThe network may be "
            "down.  Please try again later, or enter the configuration menu to check the settings "
            "for this path");
  EXPECT_EQ(Rows(), 1);
}

TEST_F(QueueListTest, WalkThatBreaksOffShowsTheBoxAndKeepsTheRowsMadeSoFar) {
  for (const char* author : {"A", "B", "C"}) Drop(Document().By(author));
  disk.BreakListingAfter(folders.InQueuePath, 2);
  queue.RefreshQueueList();
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(Rows(), 2);
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(QueueListTest, FoldersLinksAndDotFilesAreNoDocuments) {
  disk.WithFolder(folders.InQueuePath + "folder.wav");
  disk.WithLink(folders.InQueuePath + "dangling.wav", "/nowhere");
  disk.WithFifo(folders.InQueuePath + "fifo.wav");
  disk.WithFile(folders.InQueuePath + ".hidden.wav");
  queue.RefreshQueueList();
  EXPECT_EQ(Rows(), 0);
}

TEST_F(QueueListTest, FileThatVanishesAfterTheListingLeavesTheRestAlone) {
  Drop(Document().By("First"));
  const std::string gone = Drop(Document().By("Gone"));
  Drop(Document().By("Last"));
  base::Timer other(loop, "other", base::Duration{1}, base::TimerKind::Feed);
  other.OnTick = [&] { disk.Remove(gone); };
  other.Start();
  loop.Busy(base::Duration{1});
  queue.RefreshQueueList();
  EXPECT_FALSE(disk.Has(gone));
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Caption(), "Queue:     2     00:00:20");
}

TEST_F(QueueListTest, ScanStopsWhatPlaysAndLeavesNoFileOpen) {
  Drop(Document());
  Play();
  ASSERT_TRUE(engine.IsPlaying);
  queue.RefreshQueueList();
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(QueueListTest, ScanOfAnEmptyFolderLeavesPlaybackAlone) {
  Play();
  queue.RefreshQueueList();
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(QueueListTest, ScanLetsTheWindowPaintAtEveryFile) {
  for (int i = 1; i <= 25; ++i) Drop(Document().Id(i));
  queue.RefreshQueueList();
  EXPECT_EQ(loop.Breaths, 25);
}

TEST_F(QueueListTest, ScanResetsTheTimesOfThePlayer) {
  form.lblFileLengthHMS.Value = "00:00:10";
  form.lblFilePositionHMS.Value = "00:00:05";
  queue.RefreshQueueList();
  EXPECT_EQ(form.lblFileLengthHMS.Value.Get(), "00:00:00");
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:00");
}

TEST_F(QueueListTest, HeaderClickSortsByTheTextOfTheColumnAndFlipsTheOrder) {
  Drop(Document().By("A").Id(9));
  Drop(Document().By("B").Id(10));
  queue.RefreshQueueList();
  form.listViewInQueue.HeaderClick(column::Id);
  EXPECT_EQ(form.listViewInQueue.Order(), forms::SortOrder::Ascending);
  EXPECT_EQ(Cell(0, column::Id), "10");
  form.listViewInQueue.HeaderClick(column::Id);
  EXPECT_EQ(Cell(0, column::Id), "9");
}

TEST_F(QueueListTest, NamesThatAreNotUtf8OrHoldNewlinesKeepTheirBytes) {
  const std::string odd = std::string("a\xFF\n") + "b.wav";
  Drop(odd);
  queue.RefreshQueueList();
  EXPECT_EQ(Cell(0, column::FileName), odd);
}

}  // namespace
}  // namespace tavlo::test
