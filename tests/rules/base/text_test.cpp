#include "base/text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace tavlo::test {
namespace {

constexpr double kHighest = std::numeric_limits<double>::max();

TEST(NumberValue, IsTheLongestNumberThatTheTextBeginsWith) {
  EXPECT_EQ(base::NumberValue("12ab"), 12);
  EXPECT_EQ(base::NumberValue("-3.5.1"), -3.5);
  EXPECT_EQ(base::NumberValue("+7"), 7);
  EXPECT_EQ(base::NumberValue(".5"), 0.5);
  EXPECT_EQ(base::NumberValue("."), 0);
  EXPECT_EQ(base::NumberValue("-"), 0);
  EXPECT_EQ(base::NumberValue("word"), 0);
  EXPECT_EQ(base::NumberValue(""), 0);
}

TEST(NumberValue, OfMoreDigitsThanANumberHoldsIsTheHighest) {
  EXPECT_EQ(base::NumberValue(std::string(400, '9')), kHighest);
  EXPECT_EQ(base::NumberValue("-" + std::string(400, '9') + ".5"), -kHighest);
}

TEST(NumberValue, ThatIsTooSmallToBeToldFromNothingIsNothing) {
  const std::string small = "0." + std::string(400, '0') + "1";
  EXPECT_EQ(base::NumberValue(small), 0);
  EXPECT_EQ(base::NumberValue("-" + small), 0);
  EXPECT_EQ(base::NumberValue(std::string(400, '0') + "7"), 7);
}

TEST(FormatHMS, DropsTheFractionOfASecond) {
  EXPECT_EQ(base::FormatHMS(0), "00:00:00");
  EXPECT_EQ(base::FormatHMS(999), "00:00:00");
  EXPECT_EQ(base::FormatHMS(999.9), "00:00:00");
  EXPECT_EQ(base::FormatHMS(1000), "00:00:01");
}

TEST(FormatHMS, CarriesSecondsIntoMinutesAndMinutesIntoHours) {
  EXPECT_EQ(base::FormatHMS(59'999), "00:00:59");
  EXPECT_EQ(base::FormatHMS(60'000), "00:01:00");
  EXPECT_EQ(base::FormatHMS(3'599'000), "00:59:59");
  EXPECT_EQ(base::FormatHMS(3'661'000), "01:01:01");
  EXPECT_EQ(base::FormatHMS(36'000'000), "10:00:00");
}

TEST(FormatHMS, TakesAsManyDigitsAsTheHoursNeed) {
  EXPECT_EQ(base::FormatHMS(359'999'000), "99:59:59");
  EXPECT_EQ(base::FormatHMS(360'000'000), "100:00:00");
  EXPECT_EQ(base::FormatHMS(4'444'444'000), "1234:34:04");
}

TEST(FormatHMS, OfANegativeTimeIsNothing) {
  EXPECT_EQ(base::FormatHMS(-1), "00:00:00");
  EXPECT_EQ(base::FormatHMS(-500), "00:00:00");
  EXPECT_EQ(base::FormatHMS(-3'661'000), "00:00:00");
}

TEST(FirstCharacters, AreCountedAsTheyAreRead) {
  EXPECT_EQ(base::FirstCharacters("abcd", 3), "abc");
  EXPECT_EQ(base::FirstCharacters("ab", 3), "ab");
  EXPECT_EQ(base::FirstCharacters("\xC3\x85ngstr\xC3\xB6m", 7), "\xC3\x85ngstr\xC3\xB6");
  EXPECT_EQ(base::FirstCharacters("\xFF\xFE\xC3", 2), "\xFF\xFE");
  EXPECT_EQ(base::FirstCharacters("abcd", 0), "");
}

TEST(FirstCharacters, OfALongTextCostNoMoreThanThose) {
  const std::string book(50'000'000, 'x');
  for (int times = 100'000; times > 0; --times) {
    ASSERT_EQ(base::FirstCharacters(book, 14).size(), 14u);
  }
}

TEST(FirstBytes, AreThoseOfWholeCharacters) {
  EXPECT_EQ(base::FirstBytes("abcd", 3), "abc");
  EXPECT_EQ(base::FirstBytes("ab", 3), "ab");
  EXPECT_EQ(base::FirstBytes("", 3), "");
  EXPECT_EQ(base::FirstBytes("abcd", 0), "");
  const std::string four = "\xF0\x9F\x98\x80\xF0\x9F\x98\x81";
  EXPECT_EQ(base::FirstBytes(four, 8), four);
  for (std::size_t count = 4; count < 8; ++count) {
    EXPECT_EQ(base::FirstBytes(four, count), four.substr(0, 4)) << count;
  }
  EXPECT_EQ(base::FirstBytes(four, 3), "");
  EXPECT_EQ(base::FirstBytes("abc\xC3\xA4\xC3\xB6", 6), "abc\xC3\xA4");
}

TEST(FirstBytes, OfAByteThatIsNoTextAreItself) {
  EXPECT_EQ(base::FirstBytes("\xFF\xFE\xC3\xC3\xC3\xC3", 5), "\xFF\xFE\xC3\xC3\xC3");
  const std::string stray(20, '\x80');
  EXPECT_EQ(base::FirstBytes(stray, 15), stray.substr(0, 15));
}

TEST(Text, EndOfANameIsFoundInEitherCase) {
  EXPECT_TRUE(base::EndsInEitherCase("letter.DSS", ".dss"));
  EXPECT_TRUE(base::EndsInEitherCase("memo.ew2", ".eW2"));
  EXPECT_TRUE(base::EndsInEitherCase("anything", ""));
  EXPECT_FALSE(base::EndsInEitherCase("dss", ".dss"));
  EXPECT_FALSE(base::EndsInEitherCase("letter.dss2", ".dss"));
}

}  // namespace
}  // namespace tavlo::test
