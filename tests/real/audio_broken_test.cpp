#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <random>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "support/sound_files.h"

namespace {

/// Bytes from this one on come back as errors, as from a disk with a bad place or a share that has
/// gone.
std::int64_t firstBadByte = std::numeric_limits<std::int64_t>::max();

}  // namespace

/// Stands in front of the library's own.
extern "C" ssize_t pread(int handle, void* target, std::size_t size, off_t offset) {
  if (offset >= firstBadByte) {
    errno = EIO;
    return -1;
  }
  const auto good = static_cast<std::size_t>(firstBadByte - offset);
  return ::syscall(SYS_pread64, handle, target, std::min(size, good), offset);
}

namespace tavlo::test {
namespace {

using platform::FfmpegAudioFile;
using playback::OpenResult;
using playback::SampleArray;
using playback::SampleCount;

constexpr int kRate = 16'000;
constexpr SampleCount kSamples = SampleCount{30} * kRate;

/// Noise, which no coding makes small: what is read ahead must be little against the whole.
std::vector<std::int16_t> Noise() {
  std::minstd_rand random(1);
  std::uniform_int_distribution<int> value(-8000, 8000);
  std::vector<std::int16_t> values(kSamples);
  std::ranges::generate(values, [&] { return static_cast<std::int16_t>(value(random)); });
  return values;
}

/// A kind of file, encoded by FFmpeg's tool with these options; without any it is plain bytes.
struct Kind {
  const char* name;
  const char* options;
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

struct BrokenSound : testing::TestWithParam<Kind> {
  ~BrokenSound() override { MakeWhole(); }

  /// A sound of half a minute, in a file of its own.
  std::string Lay() {
    const Kind kind = GetParam();
    const std::string path = folder / kind.name;
    const std::vector<std::int16_t> values = Noise();
    if (path.ends_with(".vox")) {
      WriteFile(path, std::string(kSamples / 2, '\x18'));
    } else if (*kind.options == '\0') {
      WriteFile(path, WaveBytes(values, kRate));
    } else {
      WriteFile(folder / "source.wav", WaveBytes(values, kRate));
      EXPECT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " " + kind.options + " " + path));
    }
    return path;
  }
  static std::int64_t SizeOf(const std::string& path) {
    return static_cast<std::int64_t>(std::filesystem::file_size(path));
  }
  static void BreakFrom(std::int64_t byte) { firstBadByte = byte; }
  static void MakeWhole() { BreakFrom(std::numeric_limits<std::int64_t>::max()); }

  /// Reads to where nothing more comes and returns how far that is.
  SampleCount ReadOn() {
    for (;;) {
      const SampleArray block = file.ReadArray(kRate / 2);
      const auto end = static_cast<SampleCount>(block.sourceEnd);
      if (block.values.empty()) return end;
    }
  }
  /// That the file ends early, and says so.
  void ExpectCutOff() {
    EXPECT_LT(ReadOn(), file.TotalSamples() - kRate / 2);
    EXPECT_TRUE(file.ReadFailed());
  }

  ScratchFolder folder;
  FfmpegAudioFile file;
};

TEST_P(BrokenSound, WholeSoundEndsWithoutAFailure) {
  ASSERT_TRUE(Opens(file, Lay()));
  EXPECT_NEAR(static_cast<double>(ReadOn()), static_cast<double>(file.TotalSamples()), kRate / 8);
  EXPECT_FALSE(file.ReadFailed());
}

TEST_P(BrokenSound, FileThatIsCutOffWhileItPlaysIsAFailureAndNoEnd) {
  const std::string path = Lay();
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.ReadArray(kRate).Samples(), kRate);
  EXPECT_FALSE(file.ReadFailed());
  std::filesystem::resize_file(path, static_cast<std::uintmax_t>(SizeOf(path) / 2));
  ExpectCutOff();
}

TEST_P(BrokenSound, DiskThatFailsWhileItPlaysIsAFailureAndNoEnd) {
  const std::string path = Lay();
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.ReadArray(kRate).Samples(), kRate);
  BreakFrom(SizeOf(path) / 2);
  ExpectCutOff();
  MakeWhole();
  EXPECT_LE(file.SeekSample(kRate), kRate);
  EXPECT_NEAR(static_cast<double>(ReadOn()), static_cast<double>(file.TotalSamples()), kRate / 8);
  EXPECT_FALSE(file.ReadFailed());
}

TEST_P(BrokenSound, SeekIntoWhatCannotBeReadLandsNowhereBehindItsTarget) {
  const std::string path = Lay();
  ASSERT_TRUE(Opens(file, path));
  EXPECT_EQ(file.ReadArray(kRate).Samples(), kRate);
  for (const std::int64_t bad : {SizeOf(path) / 2, std::int64_t{0}}) {
    BreakFrom(bad);
    const SampleCount target = file.TotalSamples() * 3 / 4;
    EXPECT_LE(file.SeekSample(target), target) << bad;
    ExpectCutOff();
  }
}

TEST_P(BrokenSound, FileThatWasCutOffBeforePlaysToItsEnd) {
  const std::string path = Lay();
  std::filesystem::resize_file(path, static_cast<std::uintmax_t>(SizeOf(path) / 2));
  if (!Opens(file, path)) GTEST_SKIP() << "the tables of this kind stand at its end";
  EXPECT_NEAR(static_cast<double>(file.TotalSamples()), kSamples / 2.0, kSamples / 8.0);
  EXPECT_NEAR(static_cast<double>(ReadOn()), static_cast<double>(file.TotalSamples()), kRate / 4);
  EXPECT_FALSE(file.ReadFailed());
}

TEST_P(BrokenSound, FileThatIsCutOffBetweenMeasuringAndReadingIsAFailureAndNoEnd) {
  const std::string path = Lay();
  ASSERT_TRUE(Opens(file, path));
  ASSERT_TRUE(Opens(file, path));
  std::filesystem::resize_file(path, static_cast<std::uintmax_t>(SizeOf(path) / 2));
  ExpectCutOff();
}

TEST_P(BrokenSound, FileThatGoesBetweenMeasuringAndReadingIsAFailureAndNoEnd) {
  const std::string path = Lay();
  ASSERT_TRUE(Opens(file, path));
  ASSERT_TRUE(Opens(file, path));
  std::filesystem::remove(path);
  EXPECT_EQ(file.SeekSample(3 * kRate), 3 * kRate);
  EXPECT_TRUE(file.ReadArray(kRate).values.empty());
  EXPECT_TRUE(file.ReadFailed());
}

TEST_P(BrokenSound, WhatCannotBeReadWhileItIsMeasuredIsNotTakenForTheWhole) {
  const std::string path = Lay();
  BreakFrom(SizeOf(path) / 2);
  const OpenResult result = file.OpenFile(path);
  EXPECT_NE(result, OpenResult::Unplayable);
  if (result == OpenResult::Opened) {
    ReadOn();
    EXPECT_TRUE(file.ReadFailed());
  }
  MakeWhole();
  ASSERT_TRUE(Opens(file, path));
  EXPECT_NEAR(static_cast<double>(file.TotalSamples()), kSamples, kRate / 4);
}

TEST_P(BrokenSound, FileOfWhichNothingCanBeReadIsOutOfReach) {
  const std::string path = Lay();
  BreakFrom(0);
  const OpenResult result = file.OpenFile(path);
  EXPECT_EQ(file.OpenStatus(), 0);
  if (path.ends_with(".vox")) {
    // This kind is measured by its size alone.
    EXPECT_EQ(result, OpenResult::Opened);
    EXPECT_EQ(ReadOn(), 0);
    EXPECT_TRUE(file.ReadFailed());
  } else {
    EXPECT_EQ(result, OpenResult::OutOfReach);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, BrokenSound,
    testing::Values(Kind{"plain.wav", ""}, Kind{"adpcm.wav", "-c:a adpcm_ima_wav"},
                    Kind{"constant.mp3", "-c:a libmp3lame -b:a 32k"},
                    Kind{"untold.mp3", "-c:a libmp3lame -write_xing 0"}, Kind{"plain.vox", ""},
                    Kind{"a.flac", "-c:a flac"}, Kind{"a.ogg", "-c:a libvorbis -q 10"},
                    Kind{"a.m4a", "-c:a aac"}, Kind{"front.m4a", "-c:a aac -movflags +faststart"},
                    Kind{"a.wma", "-c:a wmav2"}),
    [](const auto& kind) {
      std::string name = kind.param.name;
      std::ranges::replace(name, '.', '_');
      return name;
    });

}  // namespace
}  // namespace tavlo::test
