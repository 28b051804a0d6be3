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

}  // namespace
}  // namespace tavlo::test
