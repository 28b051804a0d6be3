#include "store/document_name.h"

#include <gtest/gtest.h>

#include <string>

#include "support/documents.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

struct DocumentNameTest : testing::Test {
  DocumentNameTest() {
    loop.SetWallClock({.year = 2011, .month = 2, .day = 5, .hour = 9, .minute = 7, .second = 30});
  }

  const store::DocumentRecord& Parse(const std::string& name) {
    names.ParseDocumentName(name);
    return names.Record;
  }

  bool FallsBack(const std::string& name) {
    // A record that no fallback leaves behind.
    Parse(Document().System("0003").By("Before").Id(5).Name());
    return Parse(name).AuthorName == "Unknown" && names.Record.AuthorId == 999999;
  }
  bool FallsBack(const Document& document) { return FallsBack(document.Name()); }

  SimulatedLoop loop;
  store::DocumentNames names{loop};
};

TEST_F(DocumentNameTest, WellFormedNameFillsEveryField) {
  const auto& record = Parse("0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 83211 P_.wav");
  EXPECT_EQ(record.SystemId, "0007");
  EXPECT_EQ(record.Field2, "0");
  EXPECT_EQ(record.AuthorName, "Brown");
  EXPECT_EQ(record.AuthorId, 1234);
  EXPECT_EQ(record.Department, 2);
  EXPECT_EQ(record.WorkType, 17);
  EXPECT_EQ(record.Subject, "cardio");
  EXPECT_EQ(record.Field12, 0);
  EXPECT_EQ(record.Priority, "P");
  EXPECT_EQ(record.DictationDate, "03/09/2004");
  EXPECT_EQ(record.DictationTime, "14:05:12");
  EXPECT_EQ(record.DictationDateKey, 20040309);
  EXPECT_EQ(record.SavedPosition, 83211);
  EXPECT_EQ(record.Extension, "wav");
  EXPECT_EQ(record.DictationStamp, "20040309140512");
}

TEST_F(DocumentNameTest, DateFormatOtherThanMonthFirstPutsTheDayFirst) {
  names.DateFormat = "DDMMYY";
  EXPECT_EQ(Parse(Document().At("3 9 2004 14 5 12").Name()).DictationDate, "09/03/2004");
  names.DateFormat = "anything";
  EXPECT_EQ(Parse("foreign.mp3").DictationDate, "05/02/2011");
  names.DateFormat = "MMDDYY";
  EXPECT_EQ(Parse("foreign.mp3").DictationDate, "02/05/2011");
}

TEST_F(DocumentNameTest, ReservedFieldTwoIsThrownAway) {
  EXPECT_EQ(Parse(Document().Field(2, "whatever").Name()).Field2, "0");
  EXPECT_EQ(names.Record.AuthorName, "Brown");
}

TEST_F(DocumentNameTest, MonthAndDayGetTheirZeroByValueAndNotByLength) {
  const auto& record = Parse(Document().Field(5, "03").Name());
  EXPECT_EQ(record.DictationDate, "003/09/2004");
  EXPECT_EQ(record.DictationDateKey, 200400309);
  EXPECT_EQ(record.DictationStamp, "200400309140512");
}

TEST_F(DocumentNameTest, DateKeyThatPassesThirtyTwoBitsFallsBack) {
  EXPECT_FALSE(FallsBack(Document().Field(5, "03").Field(6, "09")));
  EXPECT_TRUE(FallsBack(Document().Field(5, "003").Field(6, "009")));
}

TEST_F(DocumentNameTest, TimeIsPaddedByValue) {
  EXPECT_EQ(Parse(Document().At("3 9 2004 0 5 12").Name()).DictationTime, "00:05:12");
  EXPECT_EQ(Parse(Document().Field(8, "07").Name()).DictationTime, "007:05:12");
  EXPECT_EQ(Parse(Document().Field(8, "").Name()).DictationTime, "0:05:12");
}

TEST_F(DocumentNameTest, SystemIdIsANumberUpToFourDigits) {
  EXPECT_FALSE(FallsBack(Document().System("0000")));
  EXPECT_FALSE(FallsBack(Document().System("9999")));
  EXPECT_FALSE(FallsBack(Document().System("-5")));
  EXPECT_TRUE(FallsBack(Document().System("10000")));
  EXPECT_TRUE(FallsBack(Document().System("abcd")));
  EXPECT_TRUE(FallsBack(Document().System("")));
}

TEST_F(DocumentNameTest, SystemIdStaysAsItStandsWhenItOnlyBeginsWithANumber) {
  EXPECT_EQ(Parse(Document().System("12ab").Name()).SystemId, "12ab");
  EXPECT_EQ(names.Record.AuthorName, "Brown");
}

TEST_F(DocumentNameTest, AuthorIdIsFromOneToOneBelowAMillion) {
  EXPECT_TRUE(FallsBack(Document().Id(0)));
  EXPECT_TRUE(FallsBack(Document().Id(1000000)));
  EXPECT_EQ(Parse(Document().Id(999999).Name()).AuthorId, 999999);
  EXPECT_EQ(Parse(Document().Id(999999).Name()).AuthorName, "Brown");
  EXPECT_EQ(Parse(Document().Id(1).Name()).AuthorId, 1);
}

TEST_F(DocumentNameTest, DateIsTestedByRangeAndNotByCalendar) {
  EXPECT_TRUE(FallsBack(Document().At("0 9 2004 14 5 12")));
  EXPECT_TRUE(FallsBack(Document().At("13 9 2004 14 5 12")));
  EXPECT_TRUE(FallsBack(Document().At("3 0 2004 14 5 12")));
  EXPECT_TRUE(FallsBack(Document().At("3 32 2004 14 5 12")));
  EXPECT_TRUE(FallsBack(Document().At("3 9 1994 14 5 12")));
  EXPECT_TRUE(FallsBack(Document().At("3 9 2101 14 5 12")));
  EXPECT_FALSE(FallsBack(Document().At("3 9 1995 14 5 12")));
  EXPECT_FALSE(FallsBack(Document().At("3 9 2100 14 5 12")));
  EXPECT_FALSE(FallsBack(Document().At("2 31 2004 14 5 12")));
}

TEST_F(DocumentNameTest, TimeIsTestedByRangeAndAnHourOfTwentyFourPasses) {
  EXPECT_FALSE(FallsBack(Document().At("3 9 2004 24 59 59")));
  EXPECT_TRUE(FallsBack(Document().At("3 9 2004 25 5 12")));
  EXPECT_TRUE(FallsBack(Document().At("3 9 2004 14 60 12")));
  EXPECT_TRUE(FallsBack(Document().At("3 9 2004 14 5 60")));
}

TEST_F(DocumentNameTest, DepartmentIsFromOneToNinetyNine) {
  EXPECT_TRUE(FallsBack(Document().Department(0)));
  EXPECT_TRUE(FallsBack(Document().Department(100)));
  EXPECT_EQ(Parse(Document().Department(99).Name()).Department, 99);
  EXPECT_EQ(names.Record.AuthorName, "Brown");
}

TEST_F(DocumentNameTest, ReservedFieldTwelveIsAtMostEightyNineAndFitsSixteenBits) {
  EXPECT_EQ(Parse(Document().Field(12, "89").Name()).Field12, 89);
  EXPECT_EQ(Parse(Document().Field(12, "-32768").Name()).Field12, -32768);
  EXPECT_TRUE(FallsBack(Document().Field(12, "90")));
  EXPECT_TRUE(FallsBack(Document().Field(12, "-32769")));
}

TEST_F(DocumentNameTest, WorkTypeIsFromNothingToNinetyNine) {
  EXPECT_EQ(Parse(Document().WorkType(0).Name()).WorkType, 0);
  EXPECT_EQ(names.Record.AuthorName, "Brown");
  EXPECT_FALSE(FallsBack(Document().WorkType(99)));
  EXPECT_TRUE(FallsBack(Document().WorkType(100)));
  EXPECT_TRUE(FallsBack(Document().WorkType(-1)));
}

TEST_F(DocumentNameTest, SubjectHasAtMostFifteenCharacters) {
  EXPECT_EQ(Parse(Document().About("").Name()).Subject, "");
  EXPECT_EQ(names.Record.AuthorName, "Brown");
  EXPECT_FALSE(FallsBack(Document().About(std::string(15, 's'))));
  EXPECT_TRUE(FallsBack(Document().About(std::string(16, 's'))));
}

TEST_F(DocumentNameTest, SubjectIsCountedInCharactersAndNotInBytes) {
  EXPECT_FALSE(FallsBack(Document().About("äääääöööööüüüüü")));
  EXPECT_TRUE(FallsBack(Document().About("äääääöööööüüüüüß")));
  EXPECT_FALSE(FallsBack(Document().About(std::string(15, '\xFF'))));
  EXPECT_TRUE(FallsBack(Document().About(std::string(16, '\xFF'))));
}

TEST_F(DocumentNameTest, SavedPositionFitsThirtyTwoBits) {
  EXPECT_EQ(Parse(Document().Saved(2147483647).Name()).SavedPosition, 2147483647);
  EXPECT_EQ(Parse(Document().Saved(-2147483648).Name()).SavedPosition, -2147483648);
  EXPECT_TRUE(FallsBack(Document().Saved(2147483648)));
}

TEST_F(DocumentNameTest, SavedPositionWithAFractionIsRounded) {
  EXPECT_EQ(Parse(Document().Field(15, "83211.7").Name()).SavedPosition, 83212);
  EXPECT_EQ(Parse(Document().Field(15, "83211.2").Name()).SavedPosition, 83211);
}

TEST_F(DocumentNameTest, PriorityFlagIsOneOfTwo) {
  EXPECT_EQ(Parse(Document().Priority().Name()).Priority, "P");
  EXPECT_EQ(Parse(Document().Name()).Priority, "0");
  EXPECT_EQ(names.Record.AuthorName, "Brown");
  EXPECT_TRUE(FallsBack(Document().Field(16, "X")));
  EXPECT_TRUE(FallsBack(Document().Field(16, "p")));
  EXPECT_TRUE(FallsBack(Document().Field(16, "")));
  EXPECT_TRUE(FallsBack(Document().Field(16, "P0")));
}

TEST_F(DocumentNameTest, AnyFurtherUnderlineIsAnOrdinaryCharacter) {
  EXPECT_FALSE(FallsBack(Document().Ending("._wav_")));
  EXPECT_EQ(names.Record.Extension, "av_");
}

TEST_F(DocumentNameTest, ValidTailLeavesTheDictationFieldsUntouched) {
  const auto& record = Parse(Document().Saved(9).Tail("Jones 901 12 31 2009 23 59 58").Name());
  EXPECT_EQ(record.AuthorName, "Brown");
  EXPECT_EQ(record.DictationDate, "03/09/2004");
  EXPECT_EQ(record.DictationStamp, "20040309140512");
  EXPECT_EQ(record.SavedPosition, 9);
}

TEST_F(DocumentNameTest, BadTailSendsTheWholeNameToTheFallback) {
  EXPECT_FALSE(FallsBack(Document().Tail("Jones 989 12 31 2009 24 59 59")));
  for (const std::string tail : {"Jones 900 12 31 2009 23 59 58", "Jones 990 12 31 2009 23 59 58",
                                 "Jones 901 0 31 2009 23 59 58", "Jones 901 13 31 2009 23 59 58",
                                 "Jones 901 12 0 2009 23 59 58", "Jones 901 12 32 2009 23 59 58",
                                 "Jones 901 12 31 1994 23 59 58", "Jones 901 12 31 2101 23 59 58",
                                 "Jones 901 12 31 2009 25 59 58", "Jones 901 12 31 2009 23 60 58",
                                 "Jones 901 12 31 2009 23 59 60"}) {
    EXPECT_TRUE(FallsBack(Document().Tail(tail))) << tail;
  }
}

TEST_F(DocumentNameTest, TailNeedsADotAtItsEnd) {
  EXPECT_TRUE(FallsBack(Document().Tail("Jones 901 12 31 2009 23 59 58").Ending("")));
}

TEST_F(DocumentNameTest, TailWithoutBlanksFallsBack) {
  EXPECT_TRUE(FallsBack(Document().Tail("x")));
  EXPECT_TRUE(FallsBack(Document().Ending("")));
}

TEST_F(DocumentNameTest, DotBehindTheUnderlineMeansNoTailWhateverFollows) {
  EXPECT_FALSE(FallsBack(Document().Ending(".a b c d e f g h")));
}

TEST_F(DocumentNameTest, BlanksMustBeFifteenBeforeAndNoneOrSevenBehind) {
  EXPECT_TRUE(FallsBack(Document().By("De Brown")));
  EXPECT_TRUE(FallsBack("0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio P_.wav"));
  EXPECT_TRUE(FallsBack(Document().Ending(". wav")));
  EXPECT_TRUE(FallsBack(Document().Tail("Jones 901 12 31 2009 23 59 58 1")));
}

TEST_F(DocumentNameTest, HeadThatNoUnderlineClosesFallsBack) {
  EXPECT_TRUE(FallsBack("0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 P"));
}

TEST_F(DocumentNameTest, FallbackRowIsByAnUnknownAuthorNow) {
  const auto& record = Parse("song.wav");
  EXPECT_EQ(record.Field2, "0");
  EXPECT_EQ(record.AuthorName, "Unknown");
  EXPECT_EQ(record.AuthorId, 999999);
  EXPECT_EQ(record.DictationDate, "02/05/2011");
  EXPECT_EQ(record.DictationDateKey, 20110205);
  EXPECT_EQ(record.DictationTime, "09:07:30");
  EXPECT_EQ(record.DictationStamp, "20110205090730");
  EXPECT_EQ(record.Department, 1);
  EXPECT_EQ(record.Field12, 0);
  EXPECT_EQ(record.WorkType, 0);
  EXPECT_EQ(record.Subject, "0");
  EXPECT_EQ(record.SavedPosition, 0);
  EXPECT_EQ(record.Priority, "0");
}

TEST_F(DocumentNameTest, FallbackKeepsNothingOfAGoodNameBefore) {
  Parse(Document().Saved(83211).Priority().WorkType(5).Name());
  const auto& record = Parse("song.mp3");
  EXPECT_EQ(record.SavedPosition, 0);
  EXPECT_EQ(record.Priority, "0");
  EXPECT_EQ(record.WorkType, 0);
  EXPECT_EQ(record.Subject, "0");
}

TEST_F(DocumentNameTest, FallbackOfAWaveFileIsOfSystem9999) {
  Parse(Document().System("0042").Name());
  const auto& record = Parse("song.wav");
  EXPECT_EQ(record.SystemId, "9999");
  EXPECT_EQ(record.FormatLetter + record.FormatPrefix + record.FormatSuffix, "We2");
}

TEST_F(DocumentNameTest, FallbackOfAnotherFileKeepsTheSystemIdOfTheNameBefore) {
  Parse(Document().System("0042").Name());
  EXPECT_EQ(Parse("song.mp3").SystemId, "0042");
  EXPECT_EQ(Parse(Document().By("De Brown").System("0001").Ending(".dss").Name()).SystemId, "0042");
}

TEST_F(DocumentNameTest, FallbackAfterTheSystemIdWasReadKeepsThatOne) {
  Parse(Document().System("0042").Name());
  EXPECT_EQ(Parse(Document().System("0001").Id(0).Ending(".mp3").Name()).SystemId, "0001");
  EXPECT_EQ(Parse(Document().System("abcd").Ending(".mp3").Name()).SystemId, "abcd");
}

TEST_F(DocumentNameTest, FormatLetterOfAnotherFileStaysWhenItIsKnown) {
  EXPECT_EQ(Parse("song.mp3").FormatLetter, "U");
  Parse("song.wav");
  EXPECT_EQ(Parse("song.mp3").FormatLetter, "W");
  names.Record.FormatLetter = "X";
  EXPECT_EQ(Parse("song.mp3").FormatLetter, "U");
  EXPECT_EQ(names.Record.FormatPrefix + names.Record.FormatSuffix, "e2");
}

TEST_F(DocumentNameTest, ExtensionIsTheLastThreeCharactersWhateverTheyAre) {
  EXPECT_EQ(Parse(Document().Ending(".jpeg").Name()).Extension, "peg");
  EXPECT_EQ(Parse(Document().Ending(".äöü").Name()).Extension, "äöü");
  EXPECT_EQ(Parse("x\xFF\xFEy").Extension, "\xFF\xFEy");
  EXPECT_EQ(Parse("ab").Extension, "ab");
  EXPECT_EQ(Parse("").Extension, "");
}

TEST_F(DocumentNameTest, LongestNameParsesAndALongerOneFallsBack) {
  const auto length = [](const Document& document) { return document.Name().size(); };
  const std::size_t spare = 255 - length(Document().By(""));
  EXPECT_FALSE(FallsBack(Document().By(std::string(spare, 'b'))));
  EXPECT_TRUE(FallsBack(Document().By(std::string(spare + 1, 'b'))));
}

TEST_F(DocumentNameTest, NameOfOver255CharactersKeepsTheExtensionOfTheNameBefore) {
  Parse(Document().System("0042").Ending(".mp3").Name());
  EXPECT_EQ(Parse(std::string(252, 'x') + ".wav").Extension, "mp3");
  EXPECT_EQ(names.Record.SystemId, "0042");
}

TEST_F(DocumentNameTest, NameLengthIsCountedInCharacters) {
  std::string author;
  for (int i = 0; i < 100; ++i) author += "ä";
  EXPECT_FALSE(FallsBack(Document().By(author + std::string(60, 'b'))));
  EXPECT_EQ(names.Record.AuthorName, author + std::string(60, 'b'));
}

TEST_F(DocumentNameTest, NamesMayHoldAnyBytes) {
  EXPECT_FALSE(FallsBack(Document().By("Br\xFFwn\n")));
  EXPECT_EQ(names.Record.AuthorName, "Br\xFFwn\n");
  EXPECT_TRUE(FallsBack("\n\xC3"));
}

TEST_F(DocumentNameTest, EveryBeginningOfANameParsesOrFallsBack) {
  const auto name = Document().Tail("Jones 901 12 31 2009 23 59 58").Name();
  for (std::size_t length = 0; length < name.size(); ++length) {
    const bool whole = length > name.find_last_of('.');
    EXPECT_EQ(FallsBack(name.substr(0, length)), !whole) << name.substr(0, length);
  }
}

struct ComposeTest : testing::Test {
  store::NewDocument document{
      .systemId = "7",
      .authorName = "Brown",
      .authorId = "1234",
      .sentAt = {.year = 2004, .month = 3, .day = 9, .hour = 14, .minute = 5, .second = 12},
      .department = "2",
      .workType = "17",
      .subject = "cardio",
      .priority = true,
      .sourceName = "DICT0001.wav"};
};

TEST_F(ComposeTest, NewNameJoinsTheFieldsUnpadded) {
  EXPECT_EQ(store::ComposeDocumentName(document),
            "0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 P_.wav");
  document.priority = false;
  EXPECT_EQ(store::ComposeDocumentName(document),
            "0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 0_.wav");
}

TEST_F(ComposeTest, SystemIdIsPaddedByItsLength) {
  const auto systemId = [&](const std::string& directory) {
    document.systemId = directory;
    const auto name = store::ComposeDocumentName(document);
    return name.substr(0, name.find(' '));
  };
  EXPECT_EQ(systemId("7"), "0007");
  EXPECT_EQ(systemId("12"), "0012");
  EXPECT_EQ(systemId("123"), "123");
  EXPECT_EQ(systemId("0"), "0000");
  EXPECT_EQ(systemId(""), "");
}

TEST_F(ComposeTest, LastFourCharactersOfTheSourceEndTheName) {
  const auto ending = [&](const std::string& sourceName) {
    document.sourceName = sourceName;
    const auto name = store::ComposeDocumentName(document);
    return name.substr(name.find('_'));
  };
  EXPECT_EQ(ending("a.dss"), "_.dss");
  EXPECT_EQ(ending("a.jpeg"), "_jpeg");
  EXPECT_EQ(ending("a.wäv"), "_.wäv");
  EXPECT_EQ(ending("ab"), "_ab");
}

TEST_F(ComposeTest, ComposedNameIsReadBackAsItWasMeant) {
  SimulatedLoop loop;
  store::DocumentNames names(loop);
  document.subject = "";
  names.ParseDocumentName(store::ComposeDocumentName(document));
  EXPECT_EQ(names.Record.AuthorName, "Brown");
  EXPECT_EQ(names.Record.DictationStamp, "20040309140512");
  EXPECT_EQ(names.Record.Subject, "");
  EXPECT_EQ(names.Record.Priority, "P");
}

}  // namespace
}  // namespace tavlo::test
