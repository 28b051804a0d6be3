#include <gtest/gtest.h>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using platform::FfmpegAudioFile;

/// Header of a 16-bit wave at 8000 Hz, one channel.
const std::string kFormat = ChunkBytes("fmt ", FormatBytes(1, 1, 8000, 16));

struct WaveHeaderTest : testing::Test {
  ScratchFolder folder;
  FfmpegAudioFile file;

  std::string Wave(const std::string& bytes) {
    const std::string path = folder / "test.wav";
    WriteFile(path, bytes);
    return path;
  }
  /// The samples of a wave made of these bytes; -1 when it does not open.
  playback::SampleCount SamplesOf(const std::string& bytes) {
    return Opens(file, Wave(bytes)) ? file.TotalSamples() : -1;
  }
};

/// Three samples: 1, 2 and 3.
const std::string kThree{1, 0, 2, 0, 3, 0};

TEST_F(WaveHeaderTest, HeaderWithoutAudioDataOpensWithNoSamples) {
  ASSERT_TRUE(Opens(file, Wave(RiffBytes(kFormat + ChunkBytes("data", "")))));
  EXPECT_EQ(file.TotalSamples(), 0);
  EXPECT_EQ(file.LengthMilliseconds(), 0);
  EXPECT_EQ(file.SampleRate(), 8000);
  EXPECT_TRUE(file.ReadArray(4000).values.empty());
  EXPECT_EQ(file.SeekSample(10), 0);
}

TEST_F(WaveHeaderTest, DataThatClaimsMoreThanTheFileHoldsIsWhatTheFileHolds) {
  for (const std::uint64_t claim : {std::uint64_t{0xFFFFFFFF}, std::uint64_t{1000}})
    EXPECT_EQ(SamplesOf(RiffBytes(kFormat) + "data" + Number(claim, 4) + kThree), 3) << claim;
}

TEST_F(WaveHeaderTest, DataThatClaimsNothingIsWhatTheFileHolds) {
  EXPECT_EQ(SamplesOf(RiffBytes(kFormat) + "data" + Number(0, 4) + kThree), 3);
}

TEST_F(WaveHeaderTest, EmptyDataBeforeAnotherChunkIsEmpty) {
  const std::string chunks = kFormat + ChunkBytes("data", "") + ChunkBytes("LIST", "some words");
  EXPECT_EQ(SamplesOf(RiffBytes(chunks)), 0);
}

TEST_F(WaveHeaderTest, FileCutInTheMiddleIsWhatIsLeft) {
  const std::string whole = WaveBytes(Chirp(8000, 8000));
  EXPECT_EQ(SamplesOf(whole.substr(0, 44 + 5001)), 2500);
  const std::vector<float> values = ReadAll(file);
  ASSERT_EQ(values.size(), 2500U);
  EXPECT_EQ(values[2499], static_cast<float>(Chirp(8000, 8000)[2499]) / 32768.0F);
}

TEST_F(WaveHeaderTest, SizeOfTheWholeIsNotBelieved) {
  std::string bytes = RiffBytes(kFormat + ChunkBytes("data", kThree));
  bytes.replace(4, 4, Number(3, 4));
  EXPECT_EQ(SamplesOf(bytes), 3);
}

TEST_F(WaveHeaderTest, ChunksMayComeInAnyOrder) {
  EXPECT_EQ(SamplesOf(RiffBytes(ChunkBytes("LIST", "x") + ChunkBytes("data", kThree) +
                                ChunkBytes("bext", "abc") + kFormat)),
            3);
  EXPECT_EQ(file.ReadArray(1).values, std::vector<float>{1 / 32768.0F});
}

TEST_F(WaveHeaderTest, LongChunkBeforeTheDataIsSteppedOver) {
  EXPECT_EQ(SamplesOf(RiffBytes(kFormat + ChunkBytes("bext", std::string(100'001, 'b')) +
                                ChunkBytes("data", kThree))),
            3);
  EXPECT_EQ(ReadAll(file).size(), 3U);
}

TEST_F(WaveHeaderTest, OddChunkThatItsWriterDidNotPadIsSteppedOver) {
  EXPECT_EQ(
      SamplesOf(RiffBytes("LIST" + Number(3, 4) + "abc" + kFormat + ChunkBytes("data", kThree))),
      3);
}

TEST_F(WaveHeaderTest, WordsBehindTheDataAreNotPlayed) {
  EXPECT_EQ(SamplesOf(RiffBytes(kFormat + ChunkBytes("data", kThree) +
                                ChunkBytes("LIST", "artist and title"))),
            3);
  EXPECT_EQ(ReadAll(file).size(), 3U);
}

TEST_F(WaveHeaderTest, ExtensibleFormatIsReadByItsSubFormat) {
  const std::string guidTail{0x00, 0x00,   0x10, 0x00, '\x80', 0x00,
                             0x00, '\xAA', 0x00, 0x38, '\x9B', 0x71};
  const std::string format = FormatBytes(0xFFFE, 2, 48'000, 24) + Number(22, 2) + Number(24, 2) +
                             Number(3, 4) + Number(1, 4) + guidTail;
  const std::string data{0, 0, 0x40, 0, 0, '\x80'};
  ASSERT_EQ(SamplesOf(RiffBytes(ChunkBytes("fmt ", format) + ChunkBytes("data", data))), 1);
  EXPECT_EQ(file.ReadArray(1).values, (std::vector<float>{0.5F, -1}));
}

TEST_F(WaveHeaderTest, LengthOfAFileOverFourGigabytesStandsInItsOwnChunk) {
  const std::string sizes = Number(0, 8) + Number(4, 8) + Number(2, 8) + Number(0, 4);
  std::string bytes =
      RiffBytes(ChunkBytes("ds64", sizes) + kFormat) + "data" + Number(0xFFFFFFFF, 4) + kThree;
  bytes.replace(0, 4, "RF64");
  EXPECT_EQ(SamplesOf(bytes), 2);
}

TEST_F(WaveHeaderTest, ImpossibleFiguresAreRefused) {
  const auto withFormat = [](int channels, int rate, int bits) {
    return RiffBytes(ChunkBytes("fmt ", FormatBytes(1, channels, rate, bits)) +
                     ChunkBytes("data", std::string(4096, 1)));
  };
  EXPECT_EQ(SamplesOf(withFormat(1, 8000, 16)), 2048);
  EXPECT_EQ(SamplesOf(withFormat(0, 8000, 16)), -1);
  EXPECT_EQ(SamplesOf(withFormat(9, 8000, 16)), -1);
  EXPECT_EQ(SamplesOf(withFormat(1, 0, 16)), -1);
  EXPECT_EQ(SamplesOf(withFormat(1, 999, 16)), -1);
  EXPECT_EQ(SamplesOf(withFormat(1, 384'001, 16)), -1);
  EXPECT_EQ(SamplesOf(withFormat(1, -1, 16)), -1);
  EXPECT_EQ(SamplesOf(withFormat(1, 8000, 0)), -1);
}

TEST_F(WaveHeaderTest, AdpcmBlockTooSmallForItsStateIsRefused) {
  std::string format = FormatBytes(0x11, 1, 8000, 4);
  format.replace(12, 2, Number(4, 2));
  EXPECT_EQ(SamplesOf(RiffBytes(ChunkBytes("fmt ", format) + ChunkBytes("data", kThree))), -1);
  format.replace(12, 2, Number(0, 2));
  EXPECT_EQ(SamplesOf(RiffBytes(ChunkBytes("fmt ", format) + ChunkBytes("data", kThree))), -1);
}

TEST_F(WaveHeaderTest, HeaderCutAnywhereIsRefused) {
  const std::string whole = RiffBytes(kFormat + ChunkBytes("data", kThree));
  constexpr std::size_t kHeader = 44;
  for (std::size_t length = 0; length < kHeader; ++length)
    EXPECT_EQ(SamplesOf(whole.substr(0, length)), -1) << length;
  EXPECT_EQ(SamplesOf(whole.substr(0, kHeader)), 0);
}

TEST_F(WaveHeaderTest, FileOfNothingButChunksIsRefusedSoon) {
  std::string chunks;
  for (int i = 0; i < 100'000; ++i) chunks += "junk" + Number(0, 4);
  EXPECT_EQ(SamplesOf(RiffBytes(chunks)), -1);
}

}  // namespace
}  // namespace tavlo::test
