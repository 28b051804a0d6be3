#include "store/purge_date.h"

#include <gtest/gtest.h>

#include "support/documents.h"

namespace tavlo::test {
namespace {

using base::CalendarTime;
using store::MinutesBetween;
using store::PurgeDate;

std::optional<CalendarTime> At(const std::string& moment) {
  return PurgeDate(Document().At(moment).Name());
}

TEST(PurgeDate, StandsBetweenTheFourthAndTheTenthBlankMonthFirst) {
  EXPECT_EQ(At("3 9 2004 11 5 12"), (CalendarTime{2004, 3, 9, 11, 5, 12, 0}));
  EXPECT_EQ(PurgeDate("a b c d 12 31 1999 1 2 3 and what follows"),
            (CalendarTime{1999, 12, 31, 1, 2, 3, 0}));
}

TEST(PurgeDate, TailHasNoPart) {
  const std::string name = Document().At("3 9 2004 11 5 12").Tail("Ames 950 4 1 2005 8 0 0").Name();
  EXPECT_EQ(PurgeDate(name), (CalendarTime{2004, 3, 9, 11, 5, 12, 0}));
}

TEST(PurgeDate, HourAboveTwelveIsAnHourOfTheAfternoon) {
  EXPECT_EQ(At("3 9 2004 13 0 0")->hour, 13);
  EXPECT_EQ(At("3 9 2004 23 0 0")->hour, 23);
  EXPECT_EQ(At("3 9 2004 0 0 0")->hour, 0);
  EXPECT_EQ(At("3 9 2004 11 0 0")->hour, 11);
}

TEST(PurgeDate, HalfPastTwelveIsHalfPastMidnight) {
  EXPECT_EQ(At("3 9 2004 12 30 0"), (CalendarTime{2004, 3, 9, 0, 30, 0, 0}));
}

TEST(PurgeDate, HourOf24IsNoonForTwelveTakenFromItIsTwelveInTheAfternoon) {
  EXPECT_EQ(At("3 9 2004 24 30 0"), (CalendarTime{2004, 3, 9, 12, 30, 0, 0}));
  EXPECT_FALSE(At("3 9 2004 25 0 0"));
}

TEST(PurgeDate, LeadingZerosCountForNothing) {
  EXPECT_EQ(At("03 09 2004 01 05 08"), (CalendarTime{2004, 3, 9, 1, 5, 8, 0}));
}

TEST(PurgeDate, KnowsTheDaysOfTheCalendar) {
  EXPECT_TRUE(At("2 29 2004 1 0 0"));
  for (const char* moment :
       {"2 29 2005 1 0 0", "2 31 2004 1 0 0", "4 31 2004 1 0 0", "13 9 2004 1 0 0",
        "0 9 2004 1 0 0", "3 0 2004 1 0 0", "3 32 2004 1 0 0", "256 9 2004 1 0 0",
        "3 9 20040 1 0 0", "3 9 2004 1 60 0", "3 9 2004 1 0 60"}) {
    EXPECT_FALSE(At(moment)) << moment;
  }
}

TEST(PurgeDate, FieldThatIsNotAllDigitsTellsOfNoMoment) {
  for (const char* moment :
       {"3x 9 2004 1 0 0", "3 +9 2004 1 0 0", "3 9 2004.0 1 0 0", "3 9 2004 -1 0 0",
        "3 9 2004 1 0.5 0", "3 9 2004 1 0 99999999999", " 9 2004 1 0 0", "3 9 2004  0 0"}) {
    EXPECT_FALSE(At(moment)) << moment;
  }
}

TEST(PurgeDate, NameOfTooFewBlanksTellsOfNoMoment) {
  EXPECT_FALSE(PurgeDate(""));
  EXPECT_FALSE(PurgeDate("letter.dss"));
  EXPECT_FALSE(PurgeDate("a b c d 3 9 2004 14 5 12"));
}

TEST(PurgeDate, MinutesAreWholeOnesOfTheCalendar) {
  const CalendarTime noon{2004, 2, 28, 12, 0, 30, 0};
  EXPECT_EQ(MinutesBetween(noon, noon), 0);
  EXPECT_EQ(MinutesBetween(noon, {2004, 2, 28, 12, 1, 29, 999}), 0);
  EXPECT_EQ(MinutesBetween(noon, {2004, 2, 28, 12, 1, 30, 0}), 1);
  EXPECT_EQ(MinutesBetween(noon, {2004, 3, 1, 12, 0, 30, 0}), 2 * 1440);
  EXPECT_EQ(MinutesBetween({1999, 12, 31, 23, 59, 0, 0}, {2000, 1, 1, 0, 0, 0, 0}), 1);
  EXPECT_LT(MinutesBetween({2004, 3, 1, 0, 0, 0, 0}, noon), 0);
}

}  // namespace
}  // namespace tavlo::test
