#include "platform/qt/transfer_rate.h"

#include <gtest/gtest.h>

#include "platform/qt/byte_count.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;
using platform::qt::ByteCount;
using platform::qt::RateInWords;
using platform::qt::ReadByteCount;
using platform::qt::TransferRate;

constexpr base::MonotonicTime At(base::Duration time) { return {time}; }

TEST(ByteCounts, AreReadWithAndWithoutAPercent) {
  const std::optional<ByteCount> half = ReadByteCount(" 12345 bytes  45%");
  ASSERT_TRUE(half);
  EXPECT_EQ(half->bytes, 12345);
  EXPECT_EQ(half->percent, 45);
  const std::optional<ByteCount> some = ReadByteCount(" 12345 bytes");
  ASSERT_TRUE(some);
  EXPECT_EQ(some->bytes, 12345);
  EXPECT_FALSE(some->percent);
  const std::optional<ByteCount> none = ReadByteCount("0");
  ASSERT_TRUE(none);
  EXPECT_EQ(none->bytes, 0);
  EXPECT_FALSE(none->percent);
}

TEST(ByteCounts, OfMoreThanTheLengthAreFull) {
  EXPECT_EQ(ReadByteCount(" 500 bytes  250%")->percent, 100);
}

TEST(ByteCounts, AreNotReadFromOtherTexts) {
  EXPECT_FALSE(ReadByteCount(""));
  EXPECT_FALSE(ReadByteCount(" bytes  %"));
}

TEST(TransferRate, IsTheBytesOverTheLastThreeSeconds) {
  TransferRate rate;
  for (int tenth = 0; tenth <= 100; ++tenth) {
    // A hundred thousand bytes a second, and twice as many in the last five.
    rate.Note(tenth <= 50 ? tenth * 10'000 : 500'000 + (tenth - 50) * 20'000, At(tenth * 100ms));
  }
  ASSERT_TRUE(rate.At(At(10s)));
  EXPECT_NEAR(*rate.At(At(10s)), 200'000, 1);
}

TEST(TransferRate, IsNotToldBeforeHalfASecondHasBeenSeen) {
  TransferRate rate;
  EXPECT_FALSE(rate.At(At(1s)));
  rate.Note(0, At(1s));
  rate.Note(4000, At(1400ms));
  EXPECT_FALSE(rate.At(At(1499ms)));
  ASSERT_TRUE(rate.At(At(1500ms)));
  EXPECT_NEAR(*rate.At(At(1500ms)), 8000, 1);
}

TEST(TransferRate, FallsToNothingWhenNothingComesAnyMore) {
  TransferRate rate;
  rate.Note(0, At(0s));
  rate.Note(3'000'000, At(1s));
  EXPECT_NEAR(*rate.At(At(2s)), 1'500'000, 1);
  EXPECT_GT(*rate.At(At(3900ms)), 0);
  EXPECT_EQ(*rate.At(At(4s)), 0);
  EXPECT_EQ(*rate.At(At(40s)), 0);
}

TEST(TransferRate, GoesOnOverFilesThatFollowEachOther) {
  TransferRate rate;
  for (int file = 0; file < 20; ++file) {
    rate.Note(0, At(file * 100ms));
    rate.Note(20'000, At(file * 100ms + 60ms));
  }
  EXPECT_NEAR(*rate.At(At(2s)), 200'000, 1);
}

TEST(TransferRate, BeginsAnewOnceItIsForgotten) {
  TransferRate rate;
  rate.Note(0, At(0s));
  rate.Note(9'000'000, At(1s));
  rate.Forget();
  EXPECT_FALSE(rate.At(At(2s)));
  rate.Note(0, At(2s));
  rate.Note(1000, At(3s));
  EXPECT_NEAR(*rate.At(At(3s)), 1000, 1);
}

TEST(TransferRate, IsSaidInTheUnitThatAPersonWouldTake) {
  EXPECT_EQ(RateInWords(0), "waiting for the server");
  EXPECT_EQ(RateInWords(512), "512 bytes a second");
  EXPECT_EQ(RateInWords(640'000), "640 kB a second");
  EXPECT_EQ(RateInWords(1'840'000), "1.8 MB a second");
}

}  // namespace
}  // namespace tavlo::test
