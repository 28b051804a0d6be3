#include <gtest/gtest.h>

#include <filesystem>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using platform::FfmpegAudioFile;
using playback::SampleArray;

struct MpegAudioTest : testing::Test {
  ScratchFolder folder;
  FfmpegAudioFile file;

  /// The chirp as mp3, made by FFmpeg's tool with these options.
  std::string Encoded(const std::string& options, int rate = 16'000, int channels = 1,
                      int seconds = 5) {
    WriteFile(folder / "source.wav",
              WaveBytes(Chirp(rate * seconds, rate, channels), rate, channels));
    const std::string path = folder / "test.mp3";
    EXPECT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " -f mp3 " + options + " " + path));
    return path;
  }

  /// Opens the file and holds its length against a full decode by FFmpeg's tool and by ourselves.
  void ExpectTrueLength(const std::string& path) {
    ASSERT_TRUE(Opens(file, path));
    const auto decoded = static_cast<double>(DecodedByFfmpeg(path).size()) / file.ChannelCount();
    const double mostOff = file.SampleRate() * 0.050;
    EXPECT_NEAR(static_cast<double>(file.TotalSamples()), decoded, mostOff);
    EXPECT_EQ(static_cast<std::int64_t>(ReadAll(file).size()) / file.ChannelCount(),
              file.TotalSamples());
  }
};

TEST_F(MpegAudioTest, LengthAndSoundAreThoseOfTheSourceWithoutTheEncodersPadding) {
  const std::string path = Encoded("-b:a 64k");
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.TotalSamples(), 80'000);
  EXPECT_EQ(file.LengthMilliseconds(), 5000);
  const std::vector<float> values = ReadAll(file);
  const std::vector<float> expected = DecodedByFfmpeg(path);
  EXPECT_EQ(values.size(), expected.size());
  EXPECT_LT(LargestDifference(values, expected), 0.00001);
}

TEST_F(MpegAudioTest, LengthIsTrueAtEveryRateAndMode) {
  for (const char* options : {"-b:a 8k -ar 8000", "-q:a 9", "-q:a 2 -ar 44100",
                              "-b:a 320k -ar 48000", "-b:a 32k -ar 22050", "-write_xing 0 -q:a 5",
                              "-write_xing 0 -b:a 16k -ar 11025", "-c:a mp2 -f mp2 -b:a 64k"}) {
    for (const int channels : {1, 2}) {
      SCOPED_TRACE(std::string(options) + ", channels: " + std::to_string(channels));
      ExpectTrueLength(Encoded(options, 16'000, channels));
    }
  }
}

TEST_F(MpegAudioTest, FileThatWasCutIsAsLongAsWhatIsLeft) {
  const std::string path = Encoded("-q:a 4");
  const std::string whole = ReadFile(path);
  WriteFile(path, whole.substr(0, whole.size() / 2));
  ExpectTrueLength(path);
  EXPECT_LT(file.LengthMilliseconds(), 4000);
}

TEST_F(MpegAudioTest, TagsInFrontAndBehindAreNoSound) {
  const std::string path = Encoded("-b:a 64k -write_id3v2 0");
  const std::string sound = ReadFile(path);
  // A tag of 300,000 bytes, as with a picture, its size in groups of seven bits.
  const std::string tag =
      std::string("ID3\x03\0\0\0\x12\x27\x60", 10) + std::string(300'000, '\xFF');
  WriteFile(path, tag + sound + "TAG" + std::string(125, ' '));
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.TotalSamples(), 80'000);
  EXPECT_EQ(ReadAll(file).size(), 80'000U);
}

TEST_F(MpegAudioTest, ZerosAndScrapsInFrontArePassedOver) {
  const std::string path = Encoded("-b:a 64k -write_id3v2 0 -write_xing 0");
  const std::string sound = ReadFile(path);
  ASSERT_TRUE(Opens(file, path));
  const playback::SampleCount clean = file.TotalSamples();
  WriteFile(path, std::string(5000, '\0') + sound.substr(1000, 200) + sound);
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.TotalSamples(), clean);
}

TEST_F(MpegAudioTest, TwoFilesJoinedAreAsLongAsBoth) {
  const std::string path = Encoded("-b:a 64k");
  const std::string one = ReadFile(path);
  WriteFile(path, one + one);
  ASSERT_TRUE(Opens(file, path));
  EXPECT_NEAR(static_cast<double>(file.LengthMilliseconds()), 10'000, 200);
}

TEST_F(MpegAudioTest, DamageInTheMiddleCostsOnlyItsOwnFrames) {
  const std::string path = Encoded("-b:a 64k");
  std::string bytes = ReadFile(path);
  ASSERT_TRUE(Opens(file, path));
  const std::vector<float> sound = ReadAll(file);
  bytes.replace(bytes.size() / 2, 2000, std::string(2000, '\x55'));
  WriteFile(path, bytes);
  ASSERT_TRUE(Opens(file, path));
  const std::vector<float> damaged = ReadAll(file);
  EXPECT_GT(damaged.size(), 70'000U);
  const std::vector<float> beforeDamage(damaged.begin(), damaged.begin() + 30'000);
  EXPECT_EQ(LargestDifference(beforeDamage, sound), 0);
}

TEST_F(MpegAudioTest, FrameThatCannotBeDecodedIsSilenceOfItsLength) {
  const std::string path = Encoded("-b:a 64k -write_id3v2 0 -write_xing 0");
  std::string bytes = ReadFile(path);
  ASSERT_TRUE(Opens(file, path));
  const playback::SampleCount clean = file.TotalSamples();
  const std::size_t frame = bytes.find("\xFF\xF3", bytes.size() / 2);
  ASSERT_NE(frame, std::string::npos);
  bytes.replace(frame + 4, 60, std::string(60, '\xFF'));
  WriteFile(path, bytes);
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.TotalSamples(), clean);
  EXPECT_EQ(static_cast<playback::SampleCount>(ReadAll(file).size()), clean);
}

TEST_F(MpegAudioTest, SeekLandsWhereItSaysAndSoundsAsIfPlayedThrough) {
  for (const char* options : {"-b:a 16k", "-q:a 2 -ar 44100", "-write_xing 0 -b:a 64k"}) {
    SCOPED_TRACE(options);
    ASSERT_TRUE(Opens(file, Encoded(options, 16'000, 2)));
    const std::vector<float> whole = ReadAll(file);
    for (const int target : {0, 1, 40'000, 575, 79'000}) {
      ASSERT_EQ(file.SeekSample(target), target);
      const SampleArray block = file.ReadArray(1000);
      ASSERT_EQ(block.Samples(), 1000);
      const std::vector<float> expected(whole.begin() + target * 2, whole.end());
      EXPECT_LT(LargestDifference(block.values, expected), 0.00001) << target;
    }
    EXPECT_EQ(file.SeekSample(file.TotalSamples()), file.TotalSamples());
    EXPECT_TRUE(file.ReadArray(1).values.empty());
  }
}

TEST_F(MpegAudioTest, TenHoursAreCountedAndSoughtInAMoment) {
  const std::string path = Encoded("-write_id3v2 0 -write_xing 0 -b:a 8k -ar 8000", 8000, 1, 60);
  const std::string minute = ReadFile(path);
  ASSERT_TRUE(Opens(file, path));
  const playback::SampleCount once = file.TotalSamples();
  std::string hours;
  for (int i = 0; i < 600; ++i) hours += minute;
  WriteFile(path, hours);
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.TotalSamples(), once * 600);
  const playback::SampleCount late = once * 599 + 1234;
  EXPECT_EQ(file.SeekSample(late), late);
  EXPECT_EQ(file.ReadArray(4000).Samples(), 4000);
}

}  // namespace
}  // namespace tavlo::test
