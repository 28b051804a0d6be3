#include "platform/curl/listing_text.h"

#include <gtest/gtest.h>

#include "ftp/ftp_client.h"

namespace tavlo::test {
namespace {

using platform::LineAbout;
using platform::ListingText;

constexpr std::size_t kMost = 25'000;

std::string NamesOf(const std::string& bytes, std::size_t most = kMost) {
  ListingText listing(most);
  for (const char byte : bytes) listing.Take({&byte, 1});
  return listing.Names();
}

TEST(ListingText, NamesWithBothSignsBehindThemStayAsTheyAre) {
  EXPECT_EQ(NamesOf("a.wav\r\nb.wav\r\n"), "a.wav\r\nb.wav\r\n");
}

TEST(ListingText, NamesWithALineFeedAloneGetBothSigns) {
  EXPECT_EQ(NamesOf("a.wav\nb.wav\n"), "a.wav\r\nb.wav\r\n");
}

TEST(ListingText, ALineFeedBesideOthersWithBothSignsIsPartOfItsName) {
  EXPECT_EQ(NamesOf("a.wav\r\nb\nc.wav\r\n"), "a.wav\r\nb\nc.wav\r\n");
}

TEST(ListingText, TheLastNameMayHaveNothingBehindIt) {
  EXPECT_EQ(NamesOf("a.wav\r\nb.wav"), "a.wav\r\nb.wav\r\n");
  EXPECT_EQ(NamesOf("a.wav\nb.wav"), "a.wav\r\nb.wav\r\n");
  EXPECT_EQ(NamesOf("a.wav"), "a.wav\r\n");
  EXPECT_EQ(NamesOf("a.wav\r"), "a.wav\r\n");
  EXPECT_EQ(NamesOf(""), "");
}

TEST(ListingText, NameThatWasCutIsNone) {
  EXPECT_EQ(NamesOf("a.wav\r\nb.wav\r\n", 10), "a.wav\r\nb.w");
  EXPECT_EQ(NamesOf("a.wav\nb.wav\n", 10), "a.wav\r\nb.w");
  EXPECT_LE(NamesOf(std::string(100, '\n'), 10).size(), 10U);
}

TEST(ListingText, WhatIsBehindTheMostIsCountedAndTakesNoMemory) {
  ListingText listing(kMost);
  const std::string piece(100'000, 'x');
  for (int i = 0; i < 500; ++i) listing.Take(piece);
  EXPECT_EQ(listing.Came(), 50'000'000U);
  EXPECT_EQ(listing.Kept().size(), kMost);
  EXPECT_LE(listing.Kept().capacity(), 2 * kMost);
}

TEST(ListingText, LineAboutAFileIsTheOneThatEndsWithItsName) {
  const std::string listing =
      "total 12\r\n-rw-r--r-- 1 u g 17 Mar 9 14:05 my a.wav\r\n"
      "-rw-r--r-- 1 u g 4711 Mar 9 14:05 a.wav\r\n";
  EXPECT_EQ(LineAbout(listing, "my a.wav"), "-rw-r--r-- 1 u g 17 Mar 9 14:05 my a.wav");
  EXPECT_EQ(LineAbout("03-09-04  02:05PM  4711 a.wav\n", "a.wav"), "03-09-04  02:05PM  4711 a.wav");
  EXPECT_EQ(LineAbout(listing, "b.wav"), "");
  EXPECT_EQ(LineAbout("xa.wav\r\n", "a.wav"), "");
}

TEST(ListingText, LengthIsFoundInALineThatIsMadeForIt) {
  for (const std::string name : {"a.wav", "12 34.wav", "5", " ", "- 1 ftp ftp 9 bytes x"}) {
    for (const std::int64_t length :
         {std::int64_t{0}, std::int64_t{17}, std::int64_t{6'000'000'000}}) {
      EXPECT_EQ(ftp::fceFileLength(LineAbout(length, name), 3, 7), length) << name;
    }
  }
}

}  // namespace
}  // namespace tavlo::test
