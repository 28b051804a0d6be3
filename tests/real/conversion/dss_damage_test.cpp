#include <gtest/gtest.h>

#include <algorithm>

#include "conversion/dss_bench.h"

namespace tavlo::test {
namespace {

using dss::Mode;

constexpr int kSecondsOfAPart = 2;

std::string Recording(Mode mode, int parts) {
  DssWriter writer(mode);
  for (int part = 0; part < parts; ++part) {
    writer.Append(mode == Mode::LongPlay ? LongPlay(kSecondsOfAPart) : StandardPlayFrames(84, 9));
    writer.Pause();
  }
  return writer.File(kSecondsOfAPart * parts);
}

std::vector<std::int16_t> SamplesOfGood(Mode mode, const std::string& file) {
  const DssBench bench(file);
  EXPECT_EQ(bench.Convert(mode), ConversionCode::Done);
  return bench.Samples();
}

struct DssDamage : testing::TestWithParam<Mode> {
  const std::string good = Recording(GetParam(), 3);
  const std::vector<std::int16_t> sound = SamplesOfGood(GetParam(), good);
};

/// What has no meaning here may be anything; what has one is either told or does no harm.
TEST_P(DssDamage, OfAnyByteOfTheHeaderIsToldOrHarmless) {
  // Thousands of conversions need no more than one part.
  const std::string shorter = Recording(GetParam(), 1);
  const std::vector<std::int16_t> itsSound = SamplesOfGood(GetParam(), shorter);
  for (std::size_t offset = 0; offset < 2 * dss::kBlockBytes; ++offset) {
    for (const int flip : {0x01, 0x80, 0xFF}) {
      std::string file = shorter;
      file[offset] = static_cast<char>(file[offset] ^ flip);
      const DssBench bench(file);
      const ConversionCode code = bench.Convert(GetParam());
      ASSERT_TRUE(bench.HasNothingElse(code == ConversionCode::Done)) << offset;
      if (code != ConversionCode::Done) continue;
      ASSERT_EQ(bench.Samples(), itsSound) << offset;
    }
  }
}

/// The wave may lack what can not be put together any more; it is never longer than its blocks.
TEST_P(DssDamage, OfAnyByteOfABlocksHeaderIsToldOrCostsThatBlock) {
  for (std::size_t offset = 2 * dss::kBlockBytes; offset < good.size();
       offset += dss::kBlockBytes) {
    for (std::size_t i = 0; i < dss::kBlockHeaderBytes; ++i) {
      for (const int flip : {0x01, 0x02, 0x80, 0xFF}) {
        std::string file = good;
        file[offset + i] = static_cast<char>(file[offset + i] ^ flip);
        const DssBench bench(file);
        const ConversionCode code = bench.Convert(GetParam());
        ASSERT_TRUE(bench.HasNothingElse(code == ConversionCode::Done)) << offset << " " << i;
        if (code != ConversionCode::Done) continue;
        const std::size_t ofABlock = 22 * 264;
        ASSERT_NEAR(static_cast<double>(bench.Samples().size()), static_cast<double>(sound.size()),
                    ofABlock)
            << offset << " " << i;
      }
    }
  }
}

TEST_P(DssDamage, OfTheSoundAloneKeepsItsLength) {
  std::string file = good;
  for (std::size_t offset = 2 * dss::kBlockBytes; offset < good.size();
       offset += dss::kBlockBytes) {
    // The first byte of a frame of long play tells its size.
    if (GetParam() == Mode::StandardPlay)
      file[offset + 200] = static_cast<char>(~file[offset + 200]);
  }
  const DssBench bench(file);
  ASSERT_EQ(bench.Convert(GetParam()), ConversionCode::Done);
  EXPECT_EQ(bench.Samples().size(), sound.size());
}

/// Only what is missing of the last second may pass, since the header tells whole seconds.
TEST_P(DssDamage, FileThatEndsAnywhereIsNoWholeDictation) {
  const auto rate = static_cast<std::size_t>(dss::NativeRate(GetParam()));
  for (std::size_t size = 0; size < good.size(); size += dss::kBlockBytes / 2) {
    for (const std::size_t more : {0, 1, 5, 6, 7}) {
      const DssBench bench(good.substr(0, size + more));
      const ConversionCode code = bench.Convert(GetParam());
      ASSERT_TRUE(bench.HasNothingElse(code == ConversionCode::Done)) << size;
      if (code != ConversionCode::Done) continue;
      ASSERT_GE(bench.Samples().size() + 2 * rate, sound.size()) << size;
      ASSERT_TRUE(std::equal(sound.begin(), sound.begin() + 4 * static_cast<int>(rate),
                             bench.Samples().begin()));
    }
  }
}

/// A copy may give a file its whole size before it gives it its bytes.
TEST_P(DssDamage, BlocksThatAreNotWrittenYetAreNoSound) {
  for (const char empty : {'\0', '\xFF'}) {
    std::string file = good.substr(0, 5 * dss::kBlockBytes);
    file.resize(good.size(), empty);
    const DssBench bench(file);
    EXPECT_NE(bench.Convert(GetParam()), ConversionCode::Done);
    EXPECT_FALSE(bench.HasWave());
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, DssDamage, testing::Values(Mode::StandardPlay, Mode::LongPlay),
                         ModeName);

}  // namespace
}  // namespace tavlo::test
