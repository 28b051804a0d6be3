#include "prepared_waves.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "conversion/dss_writer.h"

namespace tavlo::test {
namespace {

using File = std::vector<std::uint8_t>;

constexpr int kRate = 11'000;
constexpr int kFrames = 40;

File Recording(unsigned seed) {
  DssWriter writer(dss::Mode::StandardPlay);
  writer.Append(StandardPlayFrames(kFrames, seed));
  const std::string bytes = writer.File(0);
  return {bytes.begin(), bytes.end()};
}

struct PreparedWaves : testing::Test {
  dss::PreparedWaves waves{kRate};
};

TEST_F(PreparedWaves, RecordingIsGivenOutOnceAsAWholeWave) {
  waves.Begin(Recording(1));
  const auto wave = waves.Take(Recording(1));
  ASSERT_TRUE(wave);
  const auto samples = DecodedFrames(dss::Mode::StandardPlay, StandardPlayFrames(kFrames, 1));
  ASSERT_EQ(wave->size(), 44 + 2 * samples.size());
  EXPECT_EQ(std::memcmp(wave->data() + 44, samples.data(), 2 * samples.size()), 0);
  EXPECT_FALSE(waves.Take(Recording(1)));
}

TEST_F(PreparedWaves, OtherBytesAreNotTakenForIt) {
  waves.Begin(Recording(1));
  File other = Recording(1);
  other.back() ^= 1U;
  EXPECT_FALSE(waves.Take(other));
  other = Recording(1);
  other.pop_back();
  EXPECT_FALSE(waves.Take(other));
  EXPECT_TRUE(waves.Take(Recording(1)));
}

TEST_F(PreparedWaves, ThoseBeforeTheOneThatIsTakenGo) {
  for (const unsigned seed : {1U, 2U, 3U}) waves.Begin(Recording(seed));
  EXPECT_TRUE(waves.Take(Recording(2)));
  EXPECT_FALSE(waves.Take(Recording(1)));
  EXPECT_TRUE(waves.Take(Recording(3)));
}

TEST_F(PreparedWaves, FourthMakesTheFirstGo) {
  for (const unsigned seed : {1U, 2U, 3U, 4U}) waves.Begin(Recording(seed));
  EXPECT_FALSE(waves.Take(Recording(1)));
  for (const unsigned seed : {2U, 3U, 4U}) EXPECT_TRUE(waves.Take(Recording(seed))) << seed;
}

TEST_F(PreparedWaves, WhatIsNoRecordingHasNoWave) {
  waves.Begin(File(2048, 7));
  EXPECT_TRUE(waves.MayHold(2048));
  EXPECT_FALSE(waves.Take(File(2048, 7)));
  EXPECT_FALSE(waves.MayHold(2048));
}

/// Blocks full of frames that were not sent, a byte each: 7.65 s of silence in 512 bytes.
File Silence(int blocks) {
  DssWriter writer(dss::Mode::LongPlay);
  for (int block = 0; block < blocks; ++block) {
    writer.Append(std::vector<std::string>(255, "\x03"));
    writer.Pause();
  }
  const std::string bytes = writer.File(0);
  return {bytes.begin(), bytes.end()};
}

TEST_F(PreparedWaves, LongSilenceInAShortRecordingHasNone) {
  // Of a block there are 168 KB of wave.
  for (const int blocks : {90, 110}) {
    const File recording = Silence(blocks);
    ASSERT_LT(recording.size(), dss::PreparedWaves::kMostBytes);
    waves.Begin(recording);
    EXPECT_EQ(waves.Take(recording).has_value(), blocks == 90);
  }
}

TEST_F(PreparedWaves, OnlyShortRecordingsAreLookedFor) {
  EXPECT_FALSE(waves.MayHold(1));
  waves.Begin(Recording(1));
  EXPECT_TRUE(waves.MayHold(dss::PreparedWaves::kMostBytes));
  EXPECT_FALSE(waves.MayHold(dss::PreparedWaves::kMostBytes + 1));
  EXPECT_TRUE(waves.Take(Recording(1)));
  EXPECT_FALSE(waves.MayHold(1));
}

}  // namespace
}  // namespace tavlo::test
