#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using platform::FfmpegAudioFile;
using playback::SampleArray;

struct AudioFileTest : testing::Test {
  ScratchFolder folder;
  FfmpegAudioFile file;

  std::string Wave(const std::string& bytes) {
    const std::string path = folder / "test.wav";
    WriteFile(path, bytes);
    return path;
  }
  /// A wave of the chirp, encoded by FFmpeg's tool with these options.
  std::string Encoded(const std::string& name, const std::string& options, int rate = 16000,
                      int channels = 1, int seconds = 3) {
    WriteFile(folder / "source.wav",
              WaveBytes(Chirp(rate * seconds, rate, channels), rate, channels));
    const std::string path = folder / name;
    EXPECT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " " + options + " " + path)) << options;
    return path;
  }
};

TEST_F(AudioFileTest, SixteenBitSamplesAreTheirValueOver32768) {
  ASSERT_TRUE(Opens(file, Wave(WaveBytes({0, 1, -1, 32767, -32768, 16384}))));
  const std::vector<float> expected{0, 1 / 32768.0F, -1 / 32768.0F, 32767 / 32768.0F, -1, 0.5F};
  EXPECT_EQ(file.ReadArray(100).values, expected);
}

TEST_F(AudioFileTest, EightBitSamplesAreCentredAt128) {
  const std::string data{'\x80', '\x00', '\xFF', '\x81'};
  ASSERT_TRUE(Opens(file, Wave(RiffBytes(ChunkBytes("fmt ", FormatBytes(1, 1, 8000, 8)) +
                                         ChunkBytes("data", data)))));
  const std::vector<float> expected{0, -1, 127 / 128.0F, 1 / 128.0F};
  EXPECT_EQ(file.ReadArray(100).values, expected);
}

TEST_F(AudioFileTest, FloatsThatAreNoSampleBecomeSilenceOrFullScale) {
  std::string data;
  for (const std::uint32_t bits : {0x3F000000U, 0x7FC00000U, 0x7F800000U, 0xFF800000U, 0x40000000U})
    data += Number(bits, 4);
  ASSERT_TRUE(Opens(file, Wave(RiffBytes(ChunkBytes("fmt ", FormatBytes(3, 1, 8000, 32)) +
                                         ChunkBytes("data", data)))));
  const std::vector<float> expected{0.5F, 0, 1, -1, 1};
  EXPECT_EQ(file.ReadArray(100).values, expected);
}

TEST_F(AudioFileTest, PlainWaveSaysItsFormatAndExactLength) {
  ASSERT_TRUE(Opens(file, Wave(WaveBytes(Chirp(12'349, 11'025, 2), 11'025, 2))));
  EXPECT_EQ(file.OpenStatus(), 0);
  EXPECT_EQ(file.TotalSamples(), 12'349);
  EXPECT_EQ(file.LengthMilliseconds(), 1120);
  EXPECT_EQ(file.ChannelCount(), 2);
  EXPECT_EQ(file.SampleRate(), 11'025);
}

TEST_F(AudioFileTest, ClosedFileHasNoFigures) {
  ASSERT_TRUE(Opens(file, Wave(WaveBytes(Chirp(100, 8000)))));
  file.CloseFile();
  EXPECT_EQ(file.TotalSamples(), 0);
  EXPECT_EQ(file.LengthMilliseconds(), 0);
  EXPECT_TRUE(file.ReadArray(10).values.empty());
  EXPECT_EQ(file.SeekSample(5), 0);
}

TEST_F(AudioFileTest, EveryWaveCodingDecodesToTheSameBitsAsFfmpegsTool) {
  for (const char* codec : {"pcm_u8", "pcm_s16le", "pcm_s24le", "pcm_s32le", "pcm_f32le",
                            "pcm_f64le", "pcm_mulaw", "pcm_alaw", "adpcm_ima_wav", "adpcm_ms"}) {
    for (const int channels : {1, 2}) {
      SCOPED_TRACE(std::string(codec) + ", channels: " + std::to_string(channels));
      const std::string path =
          Encoded("coded.wav", std::string("-c:a ") + codec, 11'025, channels, 1);
      const std::vector<float> expected = DecodedByFfmpeg(path);
      ASSERT_TRUE(Opens(file, path));
      ASSERT_GE(file.TotalSamples(), 11'025);
      const std::vector<float> values = ReadAll(file, 1000);
      EXPECT_EQ(static_cast<std::int64_t>(values.size()), file.TotalSamples() * channels);
      ASSERT_GE(expected.size(), values.size());
      EXPECT_EQ(LargestDifference(values, expected), 0);
    }
  }
}

TEST_F(AudioFileTest, EveryCodeOfBothLawsDecodesAsFfmpegsToolDecodesIt) {
  std::string codes;
  for (int code = 0; code < 256; ++code) codes += static_cast<char>(code);
  for (const int tag : {6, 7}) {
    const std::string path = Wave(
        RiffBytes(ChunkBytes("fmt ", FormatBytes(tag, 1, 8000, 8)) + ChunkBytes("data", codes)));
    ASSERT_TRUE(Opens(file, path));
    EXPECT_EQ(ReadAll(file), DecodedByFfmpeg(path)) << tag;
  }
}

TEST_F(AudioFileTest, FactChunkCutsThePaddingOfTheLastAdpcmBlock) {
  const std::string path = Encoded("ima.wav", "-c:a adpcm_ima_wav", 8000, 1, 1);
  std::string bytes = ReadFile(path);
  const std::size_t fact = bytes.find("fact");
  ASSERT_NE(fact, std::string::npos);
  bytes.replace(fact + 8, 4, Number(8000, 4));
  WriteFile(path, bytes);
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.TotalSamples(), 8000);
  EXPECT_EQ(ReadAll(file).size(), 8000U);
}

TEST_F(AudioFileTest, SeekInAWaveIsExactToTheSample) {
  for (const char* codec : {"pcm_s16le", "pcm_s24le", "pcm_mulaw", "adpcm_ima_wav", "adpcm_ms"}) {
    SCOPED_TRACE(codec);
    ASSERT_TRUE(Opens(file, Encoded("seek.wav", std::string("-c:a ") + codec, 8000, 2, 2)));
    const std::vector<float> whole = ReadAll(file);
    for (const int target : {0, 1, 504, 505, 506, 4999, 12'345, 15'999}) {
      ASSERT_EQ(file.SeekSample(target), target);
      const SampleArray block = file.ReadArray(600);
      EXPECT_EQ(block.sourceBegin, target);
      const std::vector<float> rest(whole.begin() + target * 2, whole.end());
      ASSERT_FALSE(block.values.empty());
      EXPECT_EQ(LargestDifference(block.values, rest), 0) << target;
    }
  }
}

TEST_F(AudioFileTest, SeekOutsideTheFileIsCutToIt) {
  ASSERT_TRUE(Opens(file, Wave(WaveBytes(Chirp(1000, 8000)))));
  EXPECT_EQ(file.SeekSample(-5), 0);
  EXPECT_EQ(file.SeekSample(1001), 1000);
  EXPECT_TRUE(file.ReadArray(10).values.empty());
  EXPECT_EQ(file.SeekSample(999), 999);
  EXPECT_EQ(file.ReadArray(10).Samples(), 1);
}

TEST_F(AudioFileTest, BlocksTellTheRangeTheyPlay) {
  ASSERT_TRUE(Opens(file, Wave(WaveBytes(Chirp(1000, 8000, 2), 8000, 2))));
  EXPECT_EQ(file.ReadArray(300).sourceEnd, 300);
  const SampleArray second = file.ReadArray(300);
  EXPECT_EQ(second.sourceBegin, 300);
  EXPECT_EQ(second.sourceEnd, 600);
  EXPECT_EQ(second.channels, 2);
  EXPECT_EQ(second.Samples(), 300);
}

TEST_F(AudioFileTest, LastIsMarkedOnTheBlockThatReachesTheEnd) {
  for (const char* name : {"last.wav", "last.flac", "last.mp3"}) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(Opens(file, Encoded(name, "", 16'000, 1, 1)));
    const playback::SampleCount total = file.TotalSamples();
    EXPECT_FALSE(file.ReadArray(total - 1).last);
    EXPECT_TRUE(file.ReadArray(100).last);
    ASSERT_EQ(file.SeekSample(0), 0);
    const SampleArray whole = file.ReadArray(total);
    EXPECT_EQ(whole.Samples(), total);
    EXPECT_TRUE(whole.last) << "the count lands exactly on the end";
    EXPECT_TRUE(file.ReadArray(1).values.empty());
  }
}

TEST_F(AudioFileTest, CountOfNothingReadsNothing) {
  ASSERT_TRUE(Opens(file, Wave(WaveBytes(Chirp(1000, 8000)))));
  EXPECT_TRUE(file.ReadArray(0).values.empty());
  EXPECT_TRUE(file.ReadArray(-1).values.empty());
  EXPECT_EQ(file.ReadArray(10).sourceBegin, 0);
}

TEST_F(AudioFileTest, MoreThanTwoChannelsAreFoldedIntoTwoSoThatEachIsHeard) {
  for (int voice = 0; voice < 4; ++voice) {
    std::vector<std::int16_t> moment(4, 0);
    moment[static_cast<std::size_t>(voice)] = 32767;
    ASSERT_TRUE(Opens(file, Wave(WaveBytes(moment, 8000, 4))));
    EXPECT_EQ(file.ChannelCount(), 2);
    EXPECT_EQ(file.TotalSamples(), 1);
    const SampleArray block = file.ReadArray(10);
    ASSERT_EQ(block.values.size(), 2U);
    EXPECT_EQ(block.values[0] > 0.2F, voice != 1) << voice;
    EXPECT_EQ(block.values[1] > 0.2F, voice != 0) << voice;
  }
}

TEST_F(AudioFileTest, TenHoursOfWaveAreMeasuredAndReadWithoutBeingLoaded) {
  constexpr std::int64_t kSamples = std::int64_t{10} * 3600 * 16'000;
  const std::string path = Wave(RiffBytes(ChunkBytes("fmt ", FormatBytes(1, 1, 16'000, 16))) +
                                "data" + Number(kSamples * 2, 4));
  const auto header = static_cast<std::int64_t>(std::filesystem::file_size(path));
  std::filesystem::resize_file(path, static_cast<std::uintmax_t>(header + kSamples * 2));
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.LengthMilliseconds(), std::int64_t{10} * 3600 * 1000);
  EXPECT_EQ(file.SeekSample(kSamples - 100), kSamples - 100);
  const SampleArray block = file.ReadArray(8000);
  EXPECT_EQ(block.Samples(), 100);
  EXPECT_TRUE(block.last);
}

TEST_F(AudioFileTest, ListedContainersPlayAtTheirLength) {
  struct Kind {
    const char* name;
    const char* options;
  };
  for (const Kind& kind :
       {Kind{"a.flac", ""}, Kind{"a.ogg", "-c:a libvorbis"}, Kind{"a.opus", "-c:a libopus"},
        Kind{"a.m4a", "-c:a aac"}, Kind{"a.aac", "-c:a aac"}, Kind{"a.wma", "-c:a wmav2"},
        Kind{"a.avi", "-c:a libmp3lame"}, Kind{"b.avi", "-c:a pcm_s16le"}, Kind{"a.aiff", ""},
        Kind{"a.au", ""}, Kind{"a.caf", ""}, Kind{"a.w64", ""},
        Kind{"gsm.wav", "-c:a libgsm_ms -ar 8000"}, Kind{"mp3.wav", "-c:a libmp3lame"}}) {
    SCOPED_TRACE(kind.name);
    const std::string path = Encoded(kind.name, kind.options);
    const std::vector<float> expected = DecodedByFfmpeg(path);
    ASSERT_TRUE(Opens(file, path));
    const std::vector<float> values = ReadAll(file);
    const double rate = file.SampleRate();
    const auto count = static_cast<double>(values.size()) / file.ChannelCount();
    EXPECT_NEAR(static_cast<double>(file.TotalSamples()) / rate,
                static_cast<double>(expected.size()) / rate, 0.1);
    EXPECT_NEAR(count / rate, static_cast<double>(expected.size()) / rate, 0.05);
    EXPECT_LT(LargestDifference(values, expected), 0.001);
  }
}

TEST_F(AudioFileTest, VideoBesideTheSoundOfAnAviIsPassedOver) {
  const std::string path = Encoded(
      "picture.avi", "-f lavfi -i testsrc=duration=3:size=64x48 -map 0:a -map 1:v -c:a pcm_s16le");
  ASSERT_TRUE(Opens(file, path));
  EXPECT_NEAR(static_cast<double>(file.LengthMilliseconds()), 3000, 50);
  EXPECT_NEAR(static_cast<double>(ReadAll(file).size()), 48'000, 800);
}

TEST_F(AudioFileTest, SeekInAContainerSaysWhereItLanded) {
  for (const char* name : {"s.flac", "s.ogg", "s.m4a", "s.wma", "s.aiff"}) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(Opens(file, Encoded(name, "", 16'000, 1, 5)));
    const std::vector<float> whole = ReadAll(file);
    for (const int target : {0, 70'000, 16'001}) {
      const auto landed = static_cast<std::ptrdiff_t>(file.SeekSample(target));
      EXPECT_NEAR(static_cast<double>(landed), target, 4096);
      const SampleArray block = file.ReadArray(4000);
      EXPECT_EQ(block.sourceBegin, static_cast<double>(landed));
      ASSERT_GT(block.Samples(), 2000);
      // The first packet after a jump may still be settling; what follows must be in its place.
      const std::vector<float> settled(block.values.begin() + 2048, block.values.end());
      const std::vector<float> expected(whole.begin() + landed + 2048, whole.end());
      EXPECT_LT(LargestDifference(settled, expected), 0.01) << target;
    }
  }
}

TEST_F(AudioFileTest, FileThatChangedOrWentIsNotTakenForTheOneThatWasMeasured) {
  const std::string path = Wave(WaveBytes(Chirp(1000, 8000)));
  ASSERT_TRUE(Opens(file, path));
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.TotalSamples(), 1000);
  EXPECT_EQ(ReadAll(file).size(), 1000U);
  WriteFile(path, WaveBytes(Chirp(1500, 11'025), 11'025));
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.TotalSamples(), 1500);
  EXPECT_EQ(file.SampleRate(), 11'025);
  std::filesystem::remove(path);
  EXPECT_FALSE(Opens(file, path));
}

TEST_F(AudioFileTest, FileThatBecomesAnotherSoundBetweenOpeningAndReadingReadsAsExhausted) {
  const std::string path = Wave(WaveBytes(Chirp(1000, 8000)));
  ASSERT_TRUE(Opens(file, path));
  ASSERT_TRUE(Opens(file, path));
  std::filesystem::remove(path);
  WriteFile(path, WaveBytes(Chirp(1000, 8000, 2), 8000, 2));
  EXPECT_TRUE(file.ReadArray(100).values.empty());
}

}  // namespace
}  // namespace tavlo::test
