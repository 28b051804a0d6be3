#include <gtest/gtest.h>

#include "conversion/converter_library.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

struct MuLawHeader : testing::Test {
  ConversionCode Convert(const std::string& bytes) {
    folder.Write("d.eU2", bytes);
    return library.AddHdr(folder / "d.eU2", folder / "d.wav");
  }

  const ConverterLibrary library{"MuLawHeader"};
  const TemporaryFolder folder;
};

std::string Telephone(std::size_t samples) {
  std::string bytes;
  for (std::size_t i = 0; i < samples; ++i) bytes += static_cast<char>(i * 7);
  return bytes;
}

TEST_F(MuLawHeader, GoesInFrontOfBytesThatStay) {
  const std::string bytes = Telephone(8000);
  ASSERT_EQ(Convert(bytes), ConversionCode::Done);
  const std::string form = FormatBytes(7, 1, 8000, 8) + Number(0, 2);
  EXPECT_EQ(folder.Read("d.wav"),
            RiffBytes(ChunkBytes("fmt ", form) + ChunkBytes("fact", Number(8000, 4)) +
                      ChunkBytes("data", bytes)));
  EXPECT_EQ(folder.Read("d.eU2"), bytes);
  EXPECT_EQ(NamesIn(folder.Path()).size(), 2U);
}

TEST_F(MuLawHeader, MakesAWaveThatPlaysASecondForEightThousandBytes) {
  ASSERT_EQ(Convert(Telephone(12000)), ConversionCode::Done);
  platform::FfmpegAudioFile file;
  ASSERT_TRUE(Opens(file, folder / "d.wav"));
  EXPECT_EQ(file.SampleRate(), 8000);
  EXPECT_EQ(file.TotalSamples(), 12000);
}

TEST_F(MuLawHeader, OddNumberOfBytesIsFilledUpBehindTheSound) {
  ASSERT_EQ(Convert(Telephone(3)), ConversionCode::Done);
  const std::string wave = folder.Read("d.wav");
  EXPECT_EQ(wave.substr(wave.size() - 8), Number(3, 4) + Telephone(3) + '\0');
}

TEST_F(MuLawHeader, SourceLongerThanWhatIsReadAtOnceArrivesWhole) {
  const std::string bytes = Telephone(1'000'003);
  ASSERT_EQ(Convert(bytes), ConversionCode::Done);
  EXPECT_EQ(folder.Read("d.wav").substr(58), bytes + '\0');
}

TEST_F(MuLawHeader, SourceWithoutAByteGivesAWaveWithoutSound) {
  ASSERT_EQ(Convert(""), ConversionCode::Done);
  EXPECT_EQ(folder.Read("d.wav").size(), 58U);
}

TEST_F(MuLawHeader, WaveIsTakenAsItIsAndTellsSo) {
  for (const std::string mark : {"RIFF", "RIFX", "RF64"}) {
    const std::string wave = mark + Number(36, 4) + "WAVE" + Telephone(100'001);
    EXPECT_EQ(Convert(wave), ConversionCode::HadHeader);
    EXPECT_EQ(folder.Read("d.wav"), wave);
  }
}

TEST_F(MuLawHeader, BeginningOfAWaveHeaderIsNone) {
  for (const std::string bytes : {"RIFF", "RIFF1234WAV", "RIFF1234AVI ", "riff1234WAVE"}) {
    EXPECT_EQ(Convert(bytes), ConversionCode::Done) << bytes;
    EXPECT_EQ(folder.Read("d.wav").substr(58, bytes.size()), bytes);
  }
}

TEST_F(MuLawHeader, SourceThatNoWaveCanHoldIsRefusedBeforeItIsRead) {
  folder.Write("d.eU2", "");
  std::filesystem::resize_file(folder / "d.eU2", 0xFFFF'FFFF);
  EXPECT_EQ(library.AddHdr(folder / "d.eU2", folder / "d.wav"), ConversionCode::TooLong);
  EXPECT_EQ(NamesIn(folder.Path()).size(), 1U);
}

TEST_F(MuLawHeader, WhatStandsAtTheDestinationIsReplacedByAWholeWaveAlone) {
  folder.Write("d.wav", "before");
  EXPECT_EQ(library.AddHdr(folder / "none", folder / "d.wav"), ConversionCode::NotFound);
  EXPECT_EQ(folder.Read("d.wav"), "before");
  EXPECT_EQ(Convert(Telephone(10)), ConversionCode::Done);
  EXPECT_EQ(folder.Read("d.wav").size(), 68U);
}

TEST_F(MuLawHeader, SourceIsNeverItsOwnDestination) {
  folder.Write("d.eU2", "sound");
  const auto convert = [&](const std::string& to) { return library.AddHdr(folder / "d.eU2", to); };
  EXPECT_EQ(convert(folder / "d.eU2"), ConversionCode::SameFile);
  EXPECT_EQ(convert(folder / "./d.eU2"), ConversionCode::SameFile);
  EXPECT_EQ(folder.Read("d.eU2"), "sound");
}

TEST_F(MuLawHeader, CallWithoutPathsIsRefused) {
  const auto addHdr = library.Call<std::uint8_t>("AddHdr");
  const auto bad = static_cast<std::uint8_t>(ConversionCode::BadCall);
  EXPECT_EQ(addHdr(nullptr, "/tmp/x"), bad);
  EXPECT_EQ(addHdr("/tmp/x", nullptr), bad);
}

}  // namespace
}  // namespace tavlo::test
