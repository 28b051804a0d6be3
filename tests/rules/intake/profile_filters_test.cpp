#include "intake/profile_filters.h"

#include <gtest/gtest.h>

namespace tavlo::test {
namespace {

using intake::LettersAndDigits;
using intake::NumberFromOne;
using intake::SubjectOf;
using intake::WholeNumberOf;

TEST(ProfileFilters, AWholeNumberIsTheLongestNumericBeginning) {
  EXPECT_EQ(WholeNumberOf("12a"), "12");
  EXPECT_EQ(WholeNumberOf("00012"), "12");
  EXPECT_EQ(WholeNumberOf("7.9"), "7");
  EXPECT_EQ(WholeNumberOf("abc"), "0");
  EXPECT_EQ(WholeNumberOf(""), "0");
}

TEST(ProfileFilters, ANumberThatIsNeverNoughtBecomesOne) {
  EXPECT_EQ(NumberFromOne(""), "1");
  EXPECT_EQ(NumberFromOne("0"), "1");
  EXPECT_EQ(NumberFromOne("000"), "1");
  EXPECT_EQ(NumberFromOne("12"), "12");
}

TEST(ProfileFilters, ATextIsCutFromItsEndUntilNoBadCharacterIsLeft) {
  EXPECT_EQ(LettersAndDigits("Brown7"), "Brown7");
  EXPECT_EQ(LettersAndDigits("ab cd"), "ab");
  EXPECT_EQ(LettersAndDigits("ab "), "ab");
  EXPECT_EQ(LettersAndDigits("a_b"), "a");
  EXPECT_EQ(LettersAndDigits("J\xC3\xBCrgen"), "J");
  EXPECT_EQ(LettersAndDigits("_"), "");
}

TEST(ProfileFilters, ASubjectIsNeverEmpty) {
  EXPECT_EQ(SubjectOf(""), "0");
  EXPECT_EQ(SubjectOf(" cardio"), "0");
  EXPECT_EQ(SubjectOf("cardio "), "cardio");
}

}  // namespace
}  // namespace tavlo::test
