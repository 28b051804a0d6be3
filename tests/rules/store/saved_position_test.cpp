#include "store/saved_position.h"

#include <gtest/gtest.h>

#include <string>

#include "store/document_name.h"
#include "support/documents.h"
#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

struct SavedPositionTest : testing::Test {
  SavedPositionTest() { disk.WithFolder(folders.InQueuePath); }

  /// Puts the document into the Queue, selects it and writes the position.
  std::string Write(const std::string& name, double position) {
    disk.WithFile(folders.InQueuePath + name, "dictation");
    std::string selected = name;
    result = store::WriteSavedPosition(position, selected, folders, moves).result;
    return selected;
  }

  store::DiskResult result = store::DiskResult::Done;
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  store::WorkFolders folders{disk, kRoot};
  store::FileMoves moves{disk, folders};
};

TEST_F(SavedPositionTest, PositionIsWrittenIntoFieldFifteen) {
  const auto selected = Write(Document().Name(), 83211);
  EXPECT_EQ(selected, Document().Saved(83211).Name());
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath), std::vector{selected});
  EXPECT_EQ(disk.Contents(folders.InQueuePath + selected), "dictation");
  EXPECT_EQ(result, store::DiskResult::Done);
}

TEST_F(SavedPositionTest, PositionZeroMakesASavedDocumentUnsaved) {
  const auto selected = Write(Document().Saved(83211).Priority().Name(), 0);
  EXPECT_EQ(selected, Document().Saved(0).Priority().Name());
}

TEST_F(SavedPositionTest, SamePositionTouchesNoFile) {
  EXPECT_EQ(Write(Document().Saved(83211).Name(), 83211), Document().Saved(83211).Name());
  EXPECT_TRUE(disk.Operations.empty());
}

TEST_F(SavedPositionTest, FractionIsKeptInTheName) {
  EXPECT_EQ(Write(Document().Name(), 83211.5), Document().Field(15, "83211.5").Name());
}

TEST_F(SavedPositionTest, LargePositionIsWrittenWithoutAnExponent) {
  EXPECT_EQ(Write(Document().Name(), 2147483647.0), Document().Saved(2147483647).Name());
}

TEST_F(SavedPositionTest, NameThatDoesNotParseByItsBlanksIsLeftAlone) {
  for (const auto& name : {std::string("song.wav"), Document().By("De Brown").Name(),
                           Document().Ending(". wav").Name(), std::string()}) {
    EXPECT_EQ(Write(name, 5), name);
  }
  EXPECT_TRUE(disk.Operations.empty());
}

TEST_F(SavedPositionTest, NameWithATailGetsThePositionInTheTailsMinute) {
  const auto selected =
      Write(Document().Saved(7).Tail("Jones 901 12 31 2009 23 59 58").Name(), 83211);
  EXPECT_EQ(selected, Document().Saved(7).Tail("Jones 901 12 31 2009 23 83211 58").Name());
  store::DocumentNames names(loop);
  names.ParseDocumentName(selected);
  EXPECT_EQ(names.Record.AuthorName, "Unknown");
}

TEST_F(SavedPositionTest, EmptyFieldFifteenIsFilled) {
  EXPECT_EQ(Write(Document().Field(15, "").Name(), 4), Document().Saved(4).Name());
}

TEST_F(SavedPositionTest, BehindTheFieldAsManyCharactersAreKeptAsStandBeforeItsEnd) {
  // Sixteen characters up to the last blank, and thus sixteen from it on.
  const std::string head = std::string(14, ' ') + "7 ";
  EXPECT_EQ(store::WithSavedPosition(head + "P_.abcdefghijklmnop", 8),
            std::string(14, ' ') + "8 P_.abcdefghijkl");
}

TEST_F(SavedPositionTest, CharactersAreCountedAndNotBytes) {
  const auto name = Document().By("Bräun").Ending(".wäv").Name();
  EXPECT_EQ(store::WithSavedPosition(name, 5),
            Document().By("Bräun").Saved(5).Ending(".wäv").Name());
  EXPECT_EQ(store::WithSavedPosition(std::string(14, ' ') + "7 P_.äbcdefghijklmnop", 8),
            std::string(14, ' ') + "8 P_.äbcdefghijkl");
}

TEST_F(SavedPositionTest, DocumentThatWaitsUnderTheNewNameStaysAndTheOldNameIsKept) {
  disk.WithFile(folders.InQueuePath + Document().Saved(5).Name(), "another dictation");
  EXPECT_EQ(Write(Document().Name(), 5), Document().Name());
  EXPECT_EQ(disk.Contents(folders.InQueuePath + Document().Saved(5).Name()), "another dictation");
  EXPECT_EQ(disk.Contents(folders.InQueuePath + Document().Name()), "dictation");
  EXPECT_EQ(result, store::DiskResult::AlreadyThere);
}

TEST_F(SavedPositionTest, FailedMoveKeepsTheOldNameSelected) {
  disk.FailOperation(1, store::DiskResult::NoAccess);
  EXPECT_EQ(Write(Document().Name(), 5), Document().Name());
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath), std::vector{Document().Name()});
  EXPECT_EQ(result, store::DiskResult::NoAccess);
}

TEST_F(SavedPositionTest, PositionThatMakesTheNameTooLongForTheDiskKeepsTheOldName) {
  const std::size_t spare = 255 - Document().By("").Name().size();
  const auto name = Document().By(std::string(spare, 'b')).Name();
  EXPECT_EQ(Write(name, 10), name);
  EXPECT_TRUE(disk.Has(folders.InQueuePath + name));
}

TEST_F(SavedPositionTest, PositionThatTheParserWouldRefuseIsTheLastThatItTakes) {
  const auto selected = Write(Document().By("Okafor").Name(), 3e9);
  EXPECT_EQ(selected, Document().By("Okafor").Saved(2'147'483'647).Name());
  store::DocumentNames names(loop);
  names.ParseDocumentName(selected);
  EXPECT_EQ(names.Record.AuthorName, "Okafor");
}

TEST_F(SavedPositionTest, CompletedNameStandsAtZeroUnlessThatWouldBeTooLong) {
  EXPECT_EQ(store::CompletedName(Document().Saved(83211).Name()), Document().Name());
  EXPECT_EQ(store::CompletedName("song.wav"), "song.wav");
  const std::size_t spare = 255 - Document().Field(15, "").By("").Name().size();
  const auto longest = Document().Field(15, "").By(std::string(spare, 'b')).Name();
  EXPECT_EQ(store::CompletedName(longest), longest);
}

TEST_F(SavedPositionTest, DocumentThatHasVanishedKeepsItsNameSelected) {
  std::string selected = Document().Name();
  EXPECT_EQ(store::WriteSavedPosition(5, selected, folders, moves).result,
            store::DiskResult::NotFound);
  EXPECT_EQ(selected, Document().Name());
}

}  // namespace
}  // namespace tavlo::test
