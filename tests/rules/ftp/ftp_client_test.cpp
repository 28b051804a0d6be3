#include "ftp/ftp_client.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace tavlo::test {
namespace {

using ftp::fceFileLength;
using ftp::fceMatchFile;

constexpr std::size_t kAnswer = 128;

TEST(MatchFile, NameThatIsALineIsTheAnswer) {
  const std::string listing = "a.wav\r\nb.wav\r\nBrown 3 9.eU2\r\n";
  for (const std::string name : {"a.wav", "b.wav", "Brown 3 9.eU2"}) {
    EXPECT_EQ(fceMatchFile(listing, 0, name, kAnswer), name);
  }
}

TEST(MatchFile, PartOfALineOrAnotherCaseIsNoMatch) {
  const std::string listing = "a.wav\r\nba.wav\r\n";
  for (const std::string_view name : {"a.wa", ".wav", "A.WAV", "a.wav ", "wav\r\nba", "c", ""}) {
    EXPECT_EQ(fceMatchFile(listing, 0, name, kAnswer), "") << name;
  }
}

TEST(MatchFile, LastLineWithoutItsBreakIsNone) {
  EXPECT_EQ(fceMatchFile("a.wav\r\nb.wav", 0, "b.wav", kAnswer), "");
  EXPECT_EQ(fceMatchFile("a.wav\r\nb.wav\r", 0, "b.wav", kAnswer), "b.wav");
}

TEST(MatchFile, SearchBeginsAtTheStart) {
  const std::string listing = "a.wav\r\nb.wav\r\n";
  EXPECT_EQ(fceMatchFile(listing, 7, "a.wav", kAnswer), "");
  EXPECT_EQ(fceMatchFile(listing, 7, "b.wav", kAnswer), "b.wav");
  EXPECT_EQ(fceMatchFile(listing, 14, "b.wav", kAnswer), "");
  EXPECT_EQ(fceMatchFile(listing, std::numeric_limits<std::size_t>::max(), "b.wav", kAnswer), "");
}

TEST(MatchFile, LongNameIsAnsweredAsFarAsThereIsRoom) {
  const std::string name(300, 'n');
  EXPECT_EQ(fceMatchFile(name + "\r\n", 0, name, kAnswer), name.substr(0, kAnswer));
}

TEST(MatchFile, EmptyListingHasNoName) {
  EXPECT_EQ(fceMatchFile("", 0, "a.wav", kAnswer), "");
  EXPECT_EQ(fceMatchFile(std::string(25'000, ' '), 0, "a.wav", kAnswer), "");
}

TEST(MatchFile, BytesAreComparedAsTheyAre) {
  const std::string_view name("a\0b\nc\xff", 6);
  const std::string listing = "\r\n" + std::string(name) + "\r\n";
  EXPECT_EQ(fceMatchFile(listing, 0, name, kAnswer), name);
}

struct Line {
  const char* text;
  std::int64_t length;
};

void ExpectLengths(std::initializer_list<Line> lines) {
  for (const Line& line : lines) {
    EXPECT_EQ(fceFileLength(line.text, 3, 7), line.length) << line.text;
  }
}

TEST(FileLength, UnixLineHasItBehindOwnerAndGroup) {
  ExpectLengths({{"-rw-r--r--   1 brown typists   83211 Nov 23 05:56 a.wav\r\n", 83'211},
                 {"-rw-r--r-- 1 brown domain users 83211 Nov 23 05:56 a.wav", 83'211},
                 {"-rw-r--r-- 1 jan may 7 Nov 23 05:56 a.wav", 7},
                 {"-rw-r--r-- 1 brown 83211 Nov 23 05:56 a.wav", 83'211},
                 {"-rw-r--r-- brown 83211 Nov 23 05:56 a.wav", 83'211},
                 {"-rw-r--r-- 1 brown typists 0 Nov 23 2004 a.wav", 0},
                 {"-rw-r--r-- 1 brown typists 5000000000 Nov 23 2004 a.wav", 5'000'000'000},
                 {"-rw-r--r-- 1 brown typists 83211 2004-11-23 05:56 a.wav", 83'211},
                 {"-rw-r--r-- 1 brown typists 83211 23. Nov 05:56 a.wav", 83'211}});
}

TEST(FileLength, OwnerAndGroupThatAreNumbersAreNotIt) {
  ExpectLengths({{"-rw-r--r-- 1 1000 1001 83211 Nov 23 05:56 a.wav", 83'211},
                 {"-rw-r--r-- 1 1000 typists 83211 Nov 23 05:56 a.wav", 83'211},
                 {"-rw-r--r-- 1 brown 10 1000 Nov 23 05:56 a.wav", 1'000},
                 {"-rw-r--r-- 1 5 10 1000 Nov 23 2004 a.wav", 1'000},
                 {"-rw-r--r-- 1 0 0 0 Nov 23 05:56 a.wav", 0},
                 {"-rw-r--r-- 1 0 0 7 Nov 23 05:56 a.wav", 7}});
}

TEST(FileLength, DosLineHasItBehindDateAndTime) {
  ExpectLengths({{"11-23-04  05:56AM                83211 a.wav", 83'211},
                 {"11-23-04  05:56AM       <DIR>          in", 0},
                 {"2004-11-23  05:56                83211 a.wav", 83'211}});
}

TEST(FileLength, NumbersInTheNameAreNotIt) {
  ExpectLengths({{"-rw-r--r-- 1 brown typists 83211 Nov 23 05:56 3 9 2004.wav", 83'211},
                 {"-rw-r--r-- brown 83211 Nov 23 05:56 3 9 2004", 83'211},
                 {"-rw-r--r-- brown 83211 Nov 23 2004 3 9 2004", 83'211},
                 {"-rw-r--r-- 1 brown 83211 2004-11-23 05:56 3 9 2004.wav", 83'211},
                 {"- 1 brown typists 83211 bytes 3 9 2004 14 5 12.wav", 83'211},
                 {"11-23-04  05:56AM                83211 3 9 2004 14 5 12.wav", 83'211},
                 {"11-23-04  05:56AM                83211 2004", 83'211},
                 {"11-23-04  05:56AM       <DIR>          3 9 2004", 0}});
}

TEST(FileLength, FactsNameIt) {
  ExpectLengths({{"type=file;size=83211;modify=20041123055600; a.wav", 83'211},
                 {" Type=file;Modify=20041123055600;SIZE=83211; 3 9 2004.wav", 83'211},
                 {"modify=20041123055600; 3 9 2004 1 2 3.wav", 0},
                 {"size=; 3 9 2004 1 2 3.wav", 0},
                 {"size=-5; 3 9 2004 1 2 3.wav", 0},
                 {"type=file;x.size=7; 3 9 2004 1 2 3.wav", 0}});
}

TEST(FileLength, LineWithoutALengthHasNone) {
  ExpectLengths({{"", 0},
                 {"\r\n", 0},
                 {"a.wav", 0},
                 {"1 2", 0},
                 {"83211 83211 83211", 0},
                 {"550 No such file", 0},
                 {"total 8", 0}});
}

TEST(FileLength, FurtherLinesAreNotLookedAt) {
  ExpectLengths({{"-rw-r--r-- 1 brown typists\r\n83211 83211 83211 a.wav\r\n", 0},
                 {"total 8\r\n-rw-r--r-- 1 brown typists 83211 Nov 23 05:56 a.wav\r\n", 0}});
}

TEST(FileLength, NumberThatNobodyCanCountToIsNoLength) {
  ExpectLengths({{"-rw-r--r-- 1 brown typists 99999999999999999999 Nov 23 05:56 a.wav", 0},
                 {"-rw-r--r-- 1 brown typists -83211 Nov 23 05:56 a.wav", 0},
                 {"-rw-r--r-- 1 brown typists +83211 Nov 23 05:56 a.wav", 0},
                 {"-rw-r--r-- 1 brown typists 83211k Nov 23 05:56 a.wav", 0},
                 {"size=99999999999999999999; a.wav", 0},
                 {"-rw-r--r-- 1 brown typists 9223372036854775807 Nov 23 05:56 a.wav",
                  std::numeric_limits<std::int64_t>::max()}});
}

TEST(FileLength, BufferBehindTheLineIsNotLookedAt) {
  std::string buffer = "-rw-r--r-- 1 brown typists 83211 Nov 23 05:56 a.wav";
  EXPECT_EQ(fceFileLength(buffer + std::string(1, '\0') + " 9 9 9 9 9", 3, 7), 83'211);
  buffer.resize(256, ' ');
  EXPECT_EQ(fceFileLength(buffer, 3, 7), 83'211);
  EXPECT_EQ(fceFileLength(std::string(256, ' '), 3, 7), 0);
  EXPECT_EQ(fceFileLength(std::string(256, '\0'), 3, 7), 0);
}

TEST(FileLength, OnlyTheColumnsThatAreAskedForAreLookedAt) {
  const std::string line = "a b c d e f g 83211 name";
  EXPECT_EQ(fceFileLength(line, 3, 7), 0);
  EXPECT_EQ(fceFileLength(line, 3, 8), 83'211);
  EXPECT_EQ(fceFileLength(line, 9, 20), 0);
}

}  // namespace
}  // namespace tavlo::test
