#include "intake/retrieval_passes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/intake_bench.h"

namespace tavlo::test {
namespace {

using Names = std::vector<std::string>;

struct RetrievalPasses : testing::Test, IntakeBench {
  std::string Ew2(const std::string& name) const { return folders.Ew2QueuePath + name; }
  std::string Ds2(const std::string& name) const { return folders.Ds2QueuePath + name; }
  std::string Eu2(const std::string& name) const { return folders.Eu2QueuePath + name; }
  std::string Ftp(const std::string& name) const { return folders.FtpQueuePath + name; }
  Names Queue() const { return disk.NamesIn(folders.InQueuePath); }
};

TEST_F(RetrievalPasses, FileOfEachKindReachesTheQueueAsAWave) {
  disk.WithFile(Ew2("a.eW2"), "A").WithFile(Ds2("b.dS2"), "B").WithFile(Eu2("c.eU2"), "C");
  passes.RunRetrievalPasses();
  EXPECT_EQ(Queue(), (Names{"a.wav", "b.wav", "c.wav"}));
  EXPECT_EQ(disk.Contents(deck.Queued("a.wav")), "A");
  EXPECT_EQ(disk.Contents(deck.Queued("b.wav")), "wave of B");
  EXPECT_EQ(disk.Contents(deck.Queued("c.wav")), "wave of C");
  EXPECT_EQ(disk.FileCount(), 3u);
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(RetrievalPasses, WhatFtpFetchedReachesTheQueueInTheSameRun) {
  disk.WithFile(Ftp("a.eW2")).WithFile(Ftp("b.dS2")).WithFile(Ftp("c.eU2"));
  passes.RunRetrievalPasses();
  EXPECT_EQ(Queue(), (Names{"a.wav", "b.wav", "c.wav"}));
  EXPECT_EQ(disk.FileCount(), 3u);
}

TEST_F(RetrievalPasses, GenericFileOfFtpWaitsInItsImportDirectoryWhenTheImportLooksThere) {
  front.pointer = "3";
  disk.WithFile(Ftp("note.mp3"));
  std::size_t seen = 0;
  deck.importChain.OnRun = [&] { seen = disk.NamesIn(deck.Import("3")).size(); };
  passes.RunRetrievalPasses();
  EXPECT_EQ(seen, 1u);
}

TEST_F(RetrievalPasses, DocumentOfTheSameNameIsOverwrittenWithoutABoxAndKeptInTheRescueFolder) {
  disk.WithFile(deck.Queued("a.wav"), "old").WithFile(Ew2("a.eW2"), "new");
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.Contents(deck.Queued("a.wav")), "new");
  EXPECT_EQ(disk.Contents(deck.Rescued("a.wav")), "old");
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(front.said, Names{"A document of the same name came in anew; the one before is kept "
                              "as " +
                              deck.Rescued("a.wav")});
}

TEST_F(RetrievalPasses, FileInTheWayThatAProgramStillWritesIsNotSetAsideHalf) {
  for (const char* kind : {".eW2", ".dS2", ".eU2"}) {
    disk.WithFile(folders.FtpQueuePath + "a" + kind, "new");
  }
  const std::string growing = folders.Ew2QueuePath + "a.eW2";
  const std::string queued = folders.InQueuePath + "a.wav";
  for (const std::string& path : {growing, queued}) {
    disk.WithFile(path, "half");
    disk.OpenWriter(path);
  }
  passes.RunRetrievalPasses();
  EXPECT_TRUE(disk.Has(folders.FtpQueuePath + "a.eW2"));
  EXPECT_TRUE(disk.Has(folders.Ds2QueuePath + "a.dS2"));
  EXPECT_TRUE(disk.Has(folders.Eu2QueuePath + "a.eU2"));
  EXPECT_EQ(disk.Contents(growing), "half");
  EXPECT_EQ(disk.Contents(queued), "half");
  EXPECT_TRUE(disk.NamesIn(folders.RescuedPath()).empty());
}

TEST_F(RetrievalPasses, WaveThatWasMadeOverwritesNoDocumentEither) {
  disk.WithFile(deck.Queued("b.wav"), "old").WithFile(Ds2("b.dS2"), "B");
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.Contents(deck.Queued("b.wav")), "wave of B");
  EXPECT_EQ(disk.Contents(deck.Rescued("b.wav")), "old");
}

TEST_F(RetrievalPasses, FileThatIsStillWrittenMovesOnTheFirstRunAfterItsWriterClosesIt) {
  disk.WithFile(Ew2("a.eW2"), "A");
  disk.OpenWriter(Ew2("a.eW2"));
  passes.RunRetrievalPasses();
  EXPECT_TRUE(disk.Has(Ew2("a.eW2")));
  EXPECT_TRUE(loop.Shown.empty());
  disk.CloseWriter(Ew2("a.eW2"));
  passes.RunRetrievalPasses();
  EXPECT_EQ(Queue(), Names{"a.wav"});
  EXPECT_FALSE(disk.Has(Ew2("a.eW2")));
}

TEST_F(RetrievalPasses, ReadOnlyFileMovesAllTheSame) {
  disk.WithFile(Ew2("a.eW2"));
  disk.SetReadOnly(Ew2("a.eW2"));
  passes.RunRetrievalPasses();
  EXPECT_EQ(Queue(), Names{"a.wav"});
  EXPECT_FALSE(disk.IsReadOnly(deck.Queued("a.wav")));
}

TEST_F(RetrievalPasses, NameInOtherCaseIsFoundAndKeepsItsName) {
  disk.WithFile(Ew2("X.EW2"), "E").WithFile(Ds2("Y.DS2"), "D").WithFile(Eu2("Z.EU2"), "U");
  passes.RunRetrievalPasses();
  EXPECT_EQ(Queue(), (Names{"X.EW2", "Y.DS2", "Z.wav"}));
  EXPECT_EQ(disk.Contents(deck.Queued("Y.DS2")), "wave of D");
}

TEST_F(RetrievalPasses, EachEndingWithinANameIsReplaced) {
  disk.WithFile(Ew2("a.eW2.eW2")).WithFile(Ds2("b.dS2.dS2"));
  passes.RunRetrievalPasses();
  EXPECT_EQ(Queue(), (Names{"a.wav.wav", "b.wav.wav"}));
}

TEST_F(RetrievalPasses, FileOfAnotherKindStaysInADropFolder) {
  disk.WithFile(Ew2("a.wav")).WithFile(Ds2("b.dss")).WithFile(Eu2("eU2"));
  passes.RunRetrievalPasses();
  EXPECT_TRUE(Queue().empty());
  EXPECT_EQ(disk.FileCount(), 3u);
}

TEST_F(RetrievalPasses, StrayFileInTheCurrentFolderIsSweptIntoTheQueue) {
  disk.WithFile("/current/stray.eE2", "A").WithFile("/current/Other.EE2", "B");
  passes.RunRetrievalPasses();
  EXPECT_EQ(passes.Ee2QueuePath, "");
  // What is left of the name after its last four characters decides, in either case.
  EXPECT_EQ(Queue(), (Names{"Other.wav", "stray.wav"}));
  EXPECT_TRUE(disk.NamesIn("/current").empty());
}

TEST_F(RetrievalPasses, EmptyFoldersGiveNoMessage) {
  passes.RunRetrievalPasses();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(front.ftpSortShown, 0);
}

TEST_F(RetrievalPasses, RunWithinARunDoesNothing) {
  disk.WithFile(Ew2("late.eW2"));
  deck.importChain.OnRun = [this] {
    passes.RunRetrievalPasses();
    EXPECT_TRUE(Queue().empty());
  };
  passes.RunRetrievalPasses();
  EXPECT_EQ(deck.importChain.runs, 1);
  EXPECT_EQ(Queue(), Names{"late.wav"});
}

TEST_F(RetrievalPasses, PassesBeforeAnImportListAreTheFirstTwo) {
  disk.WithFile("/current/a.eE2").WithFile(Ftp("b.eW2"));
  passes.RunImportPasses();
  EXPECT_EQ(Queue(), Names{"a.wav"});
  EXPECT_TRUE(disk.Has(Ew2("b.eW2")));
}

TEST_F(RetrievalPasses, LongPassSaysHowFarItIsAndTakesThatBack) {
  for (int number = 0; number < 50; ++number) {
    disk.WithFile(Ew2(std::to_string(number) + ".eW2"));
  }
  const int breaths = loop.Breaths;
  passes.RetrieveEw2Files();
  EXPECT_GE(loop.Breaths - breaths, 50);
  ASSERT_EQ(front.howFar.size(), 51u);
  EXPECT_EQ(front.howFar.front(), "Retrieving 1 of 50 files");
  EXPECT_EQ(front.howFar.back(), "");
}

TEST_F(RetrievalPasses, ImportComesBehindTheDssFilesAndBeforeThoseWithoutAHeader) {
  disk.WithFile(Ds2("a.dS2")).WithFile(Eu2("b.eU2")).WithFile(Ew2("c.eW2"));
  Names before;
  deck.importChain.OnRun = [&] { before = Queue(); };
  passes.RunRetrievalPasses();
  EXPECT_EQ(deck.importChain.runs, 1);
  EXPECT_EQ(before, Names{"a.wav"});
}

TEST_F(RetrievalPasses, RecordingIsConvertedWhileTheTwoBehindItArePrepared) {
  for (const char* const name : {"a", "b", "c", "d"})
    disk.WithFile(Ds2(name + std::string(".dS2")));
  std::vector<Names> preparedBefore;
  deck.libraries.meanwhile = [&] { preparedBefore.push_back(deck.libraries.prepared); };
  passes.RetrieveDs2Files();
  const Names first{Ds2("b.dS2"), Ds2("c.dS2")};
  const Names all{Ds2("b.dS2"), Ds2("c.dS2"), Ds2("d.dS2")};
  EXPECT_EQ(preparedBefore, (std::vector<Names>{first, all, all, all}));
  EXPECT_EQ(Queue().size(), 4u);
}

TEST_F(RetrievalPasses, OneRecordingAloneHasNothingPrepared) {
  disk.WithFile(Ds2("a.dS2")).WithFile(Ds2("note.txt"));
  passes.RetrieveDs2Files();
  EXPECT_EQ(deck.libraries.prepared, Names{});
  EXPECT_EQ(Queue(), Names{"a.wav"});
}

TEST_F(RetrievalPasses, ImportIsNotReachedInARunThatEndedBefore) {
  disk.WithFile(Ftp("note.mp3"));
  front.pointer = "99";
  passes.RunRetrievalPasses();
  EXPECT_EQ(Titles(), Names{"Tavlo Deck - Retrieval"});
  EXPECT_EQ(deck.importChain.runs, 0);
}

struct FtpSort : RetrievalPasses {
  FtpSort() {
    loop.SetWallClock({.year = 2026, .month = 11, .day = 5, .hour = 9, .minute = 7, .second = 3});
  }
};

TEST_F(FtpSort, GenericFileGetsTheClockIntoItsName) {
  disk.WithFile(Ftp("note.mp3"), "N");
  passes.SortFtpQueue();
  EXPECT_EQ(disk.Contents(deck.Import("note_2026115973.mp3")), "N");
}

TEST_F(FtpSort, NameWithTwoPointsGetsTheNumberTwice) {
  disk.WithFile(Ftp("a.b.mp3"));
  passes.SortFtpQueue();
  EXPECT_TRUE(disk.Has(deck.Import("a_2026115973.b_2026115973.mp3")));
}

TEST_F(FtpSort, NameThatTheNumberMakesTooLongStaysIsToldAndKeepsNoOtherFileOut) {
  const std::string tooLong = std::string(245, 'a') + ".mp3";
  disk.WithFile(Ftp(tooLong)).WithFile(Ftp("b.mp3"));
  EXPECT_EQ(passes.SortFtpQueue(), intake::PassEnd::Over);
  EXPECT_EQ(disk.NamesIn(folders.FtpQueuePath), Names{tooLong});
  EXPECT_EQ(front.said, Names{"The file " + Ftp(tooLong) +
                              " was not retrieved: its name is too long. Shorten it."});
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(FtpSort, TwoFilesOfOneSecondGetDifferentNumbers) {
  disk.WithFile(Ftp("a.mp3")).WithFile(Ftp("b.mp3"));
  passes.SortFtpQueue();
  EXPECT_TRUE(disk.Has(deck.Import("a_2026115973.mp3")));
  EXPECT_TRUE(disk.Has(deck.Import("b_2026115974.mp3")));
}

TEST_F(FtpSort, FileInUseStillUsesUpANumber) {
  disk.WithFile(Ftp("a.mp3")).WithFile(Ftp("b.mp3"));
  disk.OpenWriter(Ftp("a.mp3"));
  passes.SortFtpQueue();
  EXPECT_TRUE(disk.Has(Ftp("a.mp3")));
  EXPECT_TRUE(disk.Has(deck.Import("b_2026115974.mp3")));
}

TEST_F(FtpSort, PointerNamesTheImportDirectoryWhereverImportsAreSetToBe) {
  folders.WavQueuePath = "/elsewhere/";
  front.pointer = "12";
  disk.WithFile(Ftp("note.mp3"));
  passes.SortFtpQueue();
  EXPECT_TRUE(disk.Has(deck.Import("12/note_2026115973.mp3")));
}

TEST_F(FtpSort, EmptyPointerMeansTheImportFolderItself) {
  front.pointer = "";
  disk.WithFile(Ftp("note.mp3"));
  passes.SortFtpQueue();
  EXPECT_TRUE(disk.Has(deck.Import("note_2026115973.mp3")));
}

TEST_F(FtpSort, KindsAreComparedExactlyAndEe2IsGeneric) {
  disk.WithFile(Ftp("X.DS2")).WithFile(Ftp("Y.eE2"));
  passes.SortFtpQueue();
  EXPECT_TRUE(disk.Has(deck.Import("X_2026115973.DS2")));
  EXPECT_TRUE(disk.Has(deck.Import("Y_2026115974.eE2")));
}

TEST_F(FtpSort, LabelsShowWhileItSortsAndHideAtItsEnd) {
  disk.WithFile(Ftp("note.mp3"));
  disk.OpenWriter(Ftp("note.mp3"));
  passes.SortFtpQueue();
  EXPECT_EQ(front.ftpSortShown, 1);
  EXPECT_FALSE(front.ftpSortShows);
}

TEST_F(FtpSort, NetworkMessageLeavesTheLabelsAsTheyStand) {
  disk.WithFile(Ftp("a.mp3")).WithFile(Ftp("b.mp3"));
  disk.BreakListingAfter(folders.FtpQueuePath, 1);
  passes.SortFtpQueue();
  EXPECT_TRUE(front.ftpSortShows);
  EXPECT_TRUE(disk.Has(deck.Import("a_2026115973.mp3")));
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(loop.Shown[0].text.starts_with("The ftp file's path " + folders.FtpQueuePath));
}

}  // namespace
}  // namespace tavlo::test
