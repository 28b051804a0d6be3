#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/disk/posix_disk.h"
#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "store/folder_walk.h"
#include "support/few_handles.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using playback::OpenResult;
using store::DiskResult;

/// A document that is measured by the handle of the walk that stands at it.
struct HeldFileTest : testing::Test {
  /// Puts a sound of so many samples where the document stands.
  void Lay(int samples, int rate = 8000) {
    WriteFile(folder / "test.wav", WaveBytes(Chirp(samples, rate), rate));
  }
  std::unique_ptr<store::FolderWalk> WalkToTheFile() {
    auto walk = disk.Walk(folder / "");
    EXPECT_TRUE(walk->Next());
    return walk;
  }
  OpenResult Measure() {
    const auto walk = WalkToTheFile();
    return file.OpenHeldFile(walk->Open());
  }

  ScratchFolder folder;
  platform::PosixDisk disk;
  platform::FfmpegAudioFile file;
};

TEST_F(HeldFileTest, HandleStaysTheWalks) {
  Lay(1000);
  const auto walk = WalkToTheFile();
  ASSERT_EQ(file.OpenHeldFile(walk->Open()), OpenResult::Opened);
  EXPECT_EQ(file.TotalSamples(), 1000);
  file.CloseFile();
  char mark[4];
  EXPECT_EQ(::pread(walk->Open().handle, mark, sizeof mark, 0), 4);
}

TEST_F(HeldFileTest, WhatWasMeasuredIsNotReadAgainUntilItChanges) {
  Lay(1000);
  ASSERT_EQ(Measure(), OpenResult::Opened);
  {
    const auto walk = WalkToTheFile();
    store::HeldFile unreadable = walk->Open();
    unreadable.handle = -1;
    EXPECT_EQ(file.OpenHeldFile(unreadable), OpenResult::Opened);
    EXPECT_EQ(file.TotalSamples(), 1000);
  }
  Lay(1500);
  ASSERT_EQ(Measure(), OpenResult::Opened);
  EXPECT_EQ(file.TotalSamples(), 1500);
}

TEST_F(HeldFileTest, DocumentThatAWalkMeasuredIsOpenedByItsPathWithoutAnotherLook) {
  Lay(1000);
  ASSERT_EQ(Measure(), OpenResult::Opened);
  const FewHandles none(0);
  EXPECT_EQ(file.OpenFile(folder / "test.wav"), OpenResult::Opened);
  EXPECT_EQ(file.TotalSamples(), 1000);
}

TEST_F(HeldFileTest, NoSoundIsUnplayable) {
  WriteFile(folder / "test.wav", "no sound at all");
  EXPECT_EQ(Measure(), OpenResult::Unplayable);
  EXPECT_EQ(file.OpenStatus(), 0);
}

TEST_F(HeldFileTest, FileThatWentBeforeItWasOpenedIsOutOfReach) {
  Lay(1000);
  const auto walk = WalkToTheFile();
  std::filesystem::remove(folder / "test.wav");
  EXPECT_EQ(file.OpenHeldFile(walk->Open()), OpenResult::OutOfReach);
  EXPECT_EQ(file.OpenStatus(), 0);
}

TEST_F(HeldFileTest, ProcessWithoutHandlesIsTroubleOfTheProcessAndPasses) {
  Lay(1000);
  {
    const FewHandles one(1);
    const auto walk = WalkToTheFile();
    EXPECT_EQ(file.OpenHeldFile(walk->Open()), OpenResult::OutOfReach);
    EXPECT_LT(file.OpenStatus(), 0);
  }
  EXPECT_EQ(Measure(), OpenResult::Opened);
  EXPECT_EQ(file.OpenStatus(), 0);
}

TEST_F(HeldFileTest, AnotherSoundInItsPlaceReadsAsExhausted) {
  Lay(1000);
  ASSERT_EQ(Measure(), OpenResult::Opened);
  std::filesystem::remove(folder / "test.wav");
  Lay(1000, 11'025);
  EXPECT_TRUE(file.ReadArray(100).values.empty());
  EXPECT_TRUE(file.ReadFailed());
}

}  // namespace
}  // namespace tavlo::test
