#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "platform/disk/posix_disk.h"
#include "store/folder_walk.h"
#include "support/ahead_bench.h"
#include "support/few_handles.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using playback::OpenResult;
using playback::SampleArray;
using playback::SampleCount;

/// Documents of this machine's disk, read ahead.
struct AheadFileTest : testing::Test, AheadBench {
  static constexpr int kRate = 8000;
  static constexpr int kSamples = 30 * kRate;

  std::string Wave(const std::string& name, int samples = kSamples) {
    WriteFile(folder / name, WaveBytes(Chirp(samples, kRate), kRate));
    return folder / name;
  }
  std::ptrdiff_t OpenHandles() const {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
  }

  ScratchFolder folder;
};

TEST_F(AheadFileTest, AThousandSeeksWhileItReadsGiveTheSoundOfTheirPlaces) {
  ASSERT_TRUE(Opens(file, Wave("a.wav")));
  const std::vector<std::int16_t> whole = Chirp(kSamples, kRate);
  std::mt19937 chance(7);
  for (int seek = 0; seek < 1000; ++seek) {
    auto place = static_cast<SampleCount>(chance() % (kSamples + 1));
    ASSERT_EQ(file.SeekSample(place), place);
    // Most seeks come while the one before is still being read.
    for (unsigned block = chance() % 4; block > 0; --block) {
      const SampleArray taken = block == 1 ? Take(4000) : file.ReadArray(4000);
      if (taken.late) continue;
      ASSERT_EQ(taken.sourceBegin, place);
      ASSERT_EQ(taken.Samples(), std::min<SampleCount>(4000, kSamples - place));
      for (const float value : taken.values) {
        ASSERT_EQ(value, static_cast<float>(whole[static_cast<std::size_t>(place++)]) / 32768.0F);
      }
      ASSERT_EQ(taken.last, place == kSamples && !taken.values.empty());
    }
  }
  EXPECT_EQ(file.Readers(), 1U);
}

TEST_F(AheadFileTest, SaysWhyAFileCannotBeOpened) {
  EXPECT_EQ(file.OpenFile(folder / "missing.wav"), OpenResult::OutOfReach);
  EXPECT_EQ(file.OpenStatus(), 0);
  WriteFile(folder / "text.wav", "no sound");
  EXPECT_EQ(file.OpenFile(folder / "text.wav"), OpenResult::Unplayable);
  const std::string wave = Wave("a.wav");
  const FewHandles none(0);
  EXPECT_EQ(file.OpenFile(wave), OpenResult::OutOfReach);
  EXPECT_LT(file.OpenStatus(), 0);
  EXPECT_EQ(file.TotalSamples(), 0);
}

TEST_F(AheadFileTest, PlaceWithoutAnAnswerIsOutOfReachAndLeavesNothingOpen) {
  ASSERT_TRUE(Opens(file, Wave("a.wav")));
  errands.PlacesAnswer = false;
  EXPECT_EQ(file.OpenFile(Wave("b.wav")), OpenResult::OutOfReach);
  EXPECT_EQ(file.OpenStatus(), 0);
  EXPECT_EQ(file.TotalSamples(), 0);
  EXPECT_TRUE(file.ReadArray(10).values.empty());
  EXPECT_FALSE(file.ReadFailed());
}

TEST_F(AheadFileTest, ClosedFileHasNoFiguresAndNoSound) {
  ASSERT_TRUE(Opens(file, Wave("a.wav")));
  ASSERT_EQ(Take(10).Samples(), 10);
  file.CloseFile();
  EXPECT_EQ(file.TotalSamples(), 0);
  EXPECT_EQ(file.LengthMilliseconds(), 0);
  const SampleArray block = file.ReadArray(10);
  EXPECT_TRUE(block.values.empty());
  EXPECT_FALSE(block.late);
  EXPECT_EQ(file.SeekSample(5), 0);
}

TEST_F(AheadFileTest, ClosedFileIsLetGo) {
  const std::string wave = Wave("a.wav");
  const std::ptrdiff_t before = OpenHandles();
  ASSERT_TRUE(Opens(file, wave));
  ASSERT_EQ(Take(4000).Samples(), 4000);
  EXPECT_EQ(OpenHandles(), before + 1);
  file.CloseFile();
  EXPECT_TRUE(Comes([&] { return OpenHandles() == before; }));
}

TEST_F(AheadFileTest, EachDocumentIsReadFromItsBeginning) {
  for (int document = 0; document < 50; ++document) {
    ASSERT_TRUE(Opens(file, Wave("a.wav", 1000 + document)));
    const SampleArray block = Take(100'000);
    EXPECT_EQ(block.Samples(), 1000 + document);
    EXPECT_EQ(block.sourceBegin, 0);
    EXPECT_TRUE(block.last);
    EXPECT_TRUE(Take(1).values.empty());
    EXPECT_FALSE(file.ReadFailed());
  }
}

TEST_F(AheadFileTest, DocumentThatAWalkHeldIsMeasuredAndReadLater) {
  Wave("a.wav", 5000);
  platform::PosixDisk disk;
  for (const char* measured : {"first", "before"}) {
    SCOPED_TRACE(measured);
    {
      const auto walk = disk.Walk(folder / "");
      ASSERT_TRUE(walk->Next());
      ASSERT_EQ(file.OpenHeldFile(walk->Open()), OpenResult::Opened);
    }
    EXPECT_EQ(file.Readers(), 0U) << "a scan needs none";
    EXPECT_EQ(file.TotalSamples(), 5000);
    EXPECT_EQ(errands.Asked, 1) << "what was measured before is not asked for";
    if (measured == std::string("before")) {
      EXPECT_EQ(file.SeekSample(1000), 1000);
      EXPECT_EQ(Take(10'000).Samples(), 4000);
    }
  }
  EXPECT_EQ(file.OpenHeldFile({.opened = store::DiskResult::ProcessInTrouble}),
            OpenResult::OutOfReach);
  EXPECT_LT(file.OpenStatus(), 0);
}

TEST_F(AheadFileTest, FileThatIsCutOffWhileItPlaysCannotBeReadOn) {
  ASSERT_TRUE(Opens(file, Wave("a.wav")));
  ASSERT_EQ(Take(4000).Samples(), 4000);
  std::filesystem::resize_file(folder / "a.wav", 2 * 20 * kRate);
  SampleArray block;
  SampleCount heard = 4000;
  do {
    block = Take(4000);
    heard += block.Samples();
  } while (block.Samples() == 4000);
  EXPECT_TRUE(file.ReadFailed());
  EXPECT_LT(heard, 20 * kRate);
  EXPECT_GT(heard, 19 * kRate);
}

TEST_F(AheadFileTest, TakesMoreAtOnceThanItReadsAhead) {
  ASSERT_TRUE(Opens(file, Wave("a.wav")));
  EXPECT_EQ(Take(20 * kRate).Samples(), 20 * kRate);
  EXPECT_EQ(Take(20 * kRate).Samples(), 10 * kRate);
}

}  // namespace
}  // namespace tavlo::test
