#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "conversion/dss_bench.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using dss::Mode;

struct Library {
  const char* name;
  int rate;
};
constexpr Library kLibraries[] = {{"8", 8000},   {"11", 11025}, {"12", 12000},
                                  {"16", 16000}, {"22", 22050}, {"44", 44100}};

std::vector<std::string> FramesOf(Mode mode, int count, unsigned seed) {
  if (mode == Mode::StandardPlay) return StandardPlayFrames(count, seed);
  std::vector<std::string> frames = LongPlay(count * 30 / 1000 + 1);
  frames.resize(static_cast<std::size_t>(count));
  return frames;
}

struct DssInEachMode : testing::TestWithParam<Mode> {};

TEST_P(DssInEachMode, WaveIsWhatTheDecoderGives) {
  const auto frames = FramesOf(GetParam(), 200, 1);
  DssWriter writer(GetParam());
  writer.Append(frames);
  const DssBench bench(writer.File(4));
  ASSERT_EQ(bench.Convert(GetParam()), ConversionCode::Done);
  EXPECT_EQ(bench.Samples(), DecodedFrames(GetParam(), frames));
  EXPECT_TRUE(bench.HasNothingElse(true));
}

TEST_P(DssInEachMode, PausedRecordingIsCleanBehindThePauses) {
  DssWriter writer(GetParam());
  std::vector<std::string> all;
  for (const int count : {1, 12, 13, 30, 2, 57, 100}) {
    const auto frames = FramesOf(GetParam(), count, static_cast<unsigned>(count));
    writer.Append(frames);
    writer.Pause();
    all = Joined(all, frames);
  }
  const DssBench bench(writer.File(5));
  ASSERT_EQ(bench.Convert(GetParam()), ConversionCode::Done);
  EXPECT_EQ(bench.Samples(), DecodedFrames(GetParam(), all));
}

TEST_P(DssInEachMode, EditedRecordingLosesOnlyTheFramesThatAreCutInTwo) {
  const auto frames = FramesOf(GetParam(), 120, 3);
  DssWriter writer(GetParam());
  writer.Append(frames);
  std::string file = writer.File(0);
  // The third of the blocks goes: what begins in the second and in the third lacks its end.
  file.erase((2 + 2) * dss::kBlockBytes, dss::kBlockBytes);
  const std::size_t size = frames.front().size();
  const std::size_t payload = dss::kBlockBytes - dss::kBlockHeaderBytes;
  const std::size_t lastBefore = 2 * payload / size;
  const std::size_t firstBehind = (3 * payload + size - 1) / size;
  const auto at = [&](std::size_t i) { return frames.begin() + static_cast<std::ptrdiff_t>(i); };
  std::vector<std::string> kept(frames.begin(), at(lastBefore));
  kept.insert(kept.end(), at(firstBehind), frames.end());

  const DssBench bench(file);
  ASSERT_EQ(bench.Convert(GetParam()), ConversionCode::Done);
  EXPECT_EQ(bench.Samples(), DecodedFrames(GetParam(), kept));
}

TEST_P(DssInEachMode, RecordingWithoutSoundGivesAWaveWithoutSound) {
  const DssBench bench(DssWriter::Header(GetParam(), 0));
  ASSERT_EQ(bench.Convert(GetParam()), ConversionCode::Done);
  EXPECT_EQ(bench.folder.Read("d.wav").size(), 44U);
}

TEST_P(DssInEachMode, HeaderOfThreeBlocksIsSkippedWhole) {
  const auto frames = FramesOf(GetParam(), 50, 4);
  DssWriter writer(GetParam());
  writer.Append(frames);
  std::string file = writer.File(1);
  file = DssWriter::Header(GetParam(), 1, 3) + file.substr(2 * dss::kBlockBytes);
  const DssBench bench(file);
  ASSERT_EQ(bench.Convert(GetParam()), ConversionCode::Done);
  EXPECT_EQ(bench.Samples(), DecodedFrames(GetParam(), frames));
}

INSTANTIATE_TEST_SUITE_P(Modes, DssInEachMode, testing::Values(Mode::StandardPlay, Mode::LongPlay),
                         ModeName);

TEST(Dss, FramesOfStandardPlayBeginInsideWordsToo) {
  DssWriter writer(Mode::StandardPlay);
  writer.Append(StandardPlayFrames(60, 5));
  const std::string file = writer.File(1);
  int swapped = 0;
  for (std::size_t at = 2 * dss::kBlockBytes; at < file.size(); at += dss::kBlockBytes) {
    if ((file[at] & 0x80) != 0) ++swapped;
  }
  EXPECT_GT(swapped, 0);
}

TEST(Dss, FramesOfLongPlayMayBeOfAnyOfTheirSizes) {
  auto frames = LongPlay(2);
  // Silence that was not sent, a frame of comfort noise, and a frame of the lower rate.
  frames.insert(frames.begin() + 10, 7, std::string(1, '\x03'));
  frames.insert(frames.begin() + 30, std::string("\x02\x11\x22\x33", 4));
  frames.insert(frames.begin() + 40, '\x01' + std::string(19, '\x42'));
  DssWriter writer(Mode::LongPlay);
  writer.Append(frames);
  const DssBench bench(writer.File(2));
  ASSERT_EQ(bench.Convert(Mode::LongPlay), ConversionCode::Done);
  EXPECT_EQ(bench.Samples(), DecodedFrames(Mode::LongPlay, frames));
}

TEST(Dss, RecordingThatChangesItsModeIsDecodedInBoth) {
  const auto slow = LongPlay(3);
  const auto fast = StandardPlayFrames(125, 6);
  DssWriter writer(Mode::LongPlay);
  writer.Append(slow);
  writer.ChangeMode(Mode::StandardPlay);
  writer.Append(fast);
  const DssBench bench(writer.File(6));
  ASSERT_EQ(bench.ConvertAt(8000), ConversionCode::Done);
  const auto samples = bench.Samples();
  const auto decoded = DecodedFrames(Mode::LongPlay, slow);
  EXPECT_EQ(samples.size(), decoded.size() + 24000);
  EXPECT_TRUE(std::equal(decoded.begin(), decoded.end(), samples.begin()));
}

std::string LibraryName(const testing::TestParamInfo<Library>& library) {
  return library.param.name;
}

struct DssLibraries : testing::TestWithParam<Library> {};

TEST_P(DssLibraries, MakeAPlainWaveOfTheirRate) {
  DssWriter writer(Mode::LongPlay);
  writer.Append(LongPlay(2));
  const DssBench bench(writer.File(2));
  const ConverterLibrary library(std::string("DssCodec/DssCodec") + GetParam().name);
  ASSERT_EQ(library.WriteFile(bench.folder / "d.dss", bench.folder / "d.wav"),
            ConversionCode::Done);
  const std::string wave = bench.folder.Read("d.wav");
  const std::string sound = wave.substr(44);
  EXPECT_EQ(wave, RiffBytes(ChunkBytes("fmt ", FormatBytes(1, 1, GetParam().rate, 16)) +
                            ChunkBytes("data", sound)));
}

/// Standard play is 24 ms a frame, so a minute is 2500 of them. Taken for 11025 Hz it would come
/// out a seventh of a second short.
TEST_P(DssLibraries, KeepAMinuteAMinute) {
  DssWriter writer(Mode::StandardPlay);
  writer.Append(StandardPlayFrames(2500, 7));
  const DssBench bench(writer.File(60));
  const ConverterLibrary library(std::string("DssCodec/DssCodec") + GetParam().name);
  ASSERT_EQ(library.WriteFile(bench.folder / "d.dss", bench.folder / "d.wav"),
            ConversionCode::Done);
  EXPECT_EQ(bench.Samples().size(), static_cast<std::size_t>(GetParam().rate) * 60);
}

TEST_P(DssLibraries, KeepThePitchOfATone) {
  std::vector<std::int16_t> tone;
  for (int i = 0; i < 24000; ++i) {
    tone.push_back(static_cast<std::int16_t>(9000 * std::sin(2 * M_PI * 400 * i / 8000)));
  }
  DssWriter writer(Mode::LongPlay);
  writer.Append(LongPlayFrames(tone));
  const DssBench bench(writer.File(3));
  const ConverterLibrary library(std::string("DssCodec/DssCodec") + GetParam().name);
  ASSERT_EQ(library.WriteFile(bench.folder / "d.dss", bench.folder / "d.wav"),
            ConversionCode::Done);
  const auto samples = bench.Samples();
  const auto rate = static_cast<std::size_t>(GetParam().rate);
  int rises = 0;
  for (std::size_t i = rate; i < 2 * rate; ++i) rises += samples[i - 1] < 0 && samples[i] >= 0;
  EXPECT_NEAR(rises, 400, 8);
}

INSTANTIATE_TEST_SUITE_P(Rates, DssLibraries, testing::ValuesIn(kLibraries), LibraryName);

TEST(Dss, ResampledPieceByPieceItIsTheSameAsAtOnce) {
  const auto frames = StandardPlayFrames(400, 8);
  DssWriter writer(Mode::StandardPlay);
  writer.Append(frames);
  const DssBench bench(writer.File(9));
  ASSERT_EQ(bench.ConvertAt(11025), ConversionCode::Done);

  std::vector<std::int16_t> atOnce;
  dss::RateConverter converter(11000, 11025);
  ASSERT_EQ(converter.Open(), ConversionCode::Done);
  ASSERT_EQ(converter.Convert(DecodedFrames(Mode::StandardPlay, frames), atOnce),
            ConversionCode::Done);
  ASSERT_EQ(converter.End(atOnce), ConversionCode::Done);
  EXPECT_EQ(bench.Samples(), atOnce);
}

}  // namespace
}  // namespace tavlo::test
