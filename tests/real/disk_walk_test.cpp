#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/disk/file_handle.h"
#include "platform/disk/posix_disk.h"
#include "store/folder_walk.h"
#include "support/few_handles.h"
#include "support/other_program.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using platform::PosixDisk;
using store::DiskResult;
using store::Readiness;
using store::WalkEnd;

/// Handles that this process has open.
std::ptrdiff_t OpenHandles() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

struct DiskWalkTest : testing::Test {
  std::unique_ptr<store::FolderWalk> Walk() { return disk.Walk(folder.Path() + "/"); }
  /// A walk that stands at the only file of the folder.
  std::unique_ptr<store::FolderWalk> WalkToTheFile() {
    auto walk = Walk();
    EXPECT_TRUE(walk->Next());
    return walk;
  }

  TemporaryFolder folder;
  PosixDisk disk;
};

TEST_F(DiskWalkTest, StandsAtEachPlainFileOnceInTheOrderOfTheListing) {
  for (const char* name : {"b.wav", "a\xFF\n.wav", "c", ".hidden"}) folder.Write(name, "");
  ASSERT_EQ(::mkdir((folder / "folder").c_str(), 0755), 0);
  ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0644), 0);
  ASSERT_EQ(::symlink("b.wav", (folder / "link").c_str()), 0);
  const auto walk = Walk();
  ASSERT_TRUE(walk->Started());
  std::vector<std::string> names;
  while (walk->Next()) {
    names.push_back(walk->Name());
    EXPECT_EQ(walk->Open().path, folder / walk->Name());
    EXPECT_EQ(walk->TestReadiness(), Readiness::Free);
  }
  EXPECT_EQ(names, disk.ListPlainFiles(folder.Path()).names);
  EXPECT_EQ(names.size(), 3u);
  EXPECT_EQ(walk->End(), WalkEnd::Whole);
}

TEST_F(DiskWalkTest, FolderThatIsMissingIsOutOfReach) {
  const auto walk = disk.Walk(folder / "nothing/");
  EXPECT_FALSE(walk->Started());
  EXPECT_FALSE(walk->Next());
  EXPECT_EQ(walk->End(), WalkEnd::OutOfReach);
}

TEST_F(DiskWalkTest, HeldFileIsTheOneOfTheListing) {
  const std::string path = folder.Write("a.wav", "12345");
  const auto walk = WalkToTheFile();
  const store::HeldFile& held = walk->Open();
  EXPECT_EQ(held.opened, DiskResult::Done);
  EXPECT_EQ(held.facts, disk.Facts(path));
  char bytes[8];
  EXPECT_EQ(::pread(held.handle, bytes, sizeof bytes, 0), 5);
}

TEST_F(DiskWalkTest, OneFolderAndOneFileAreHeldAndNothingInTheEnd) {
  for (const char* name : {"a.wav", "b.wav", "c.wav"}) folder.Write(name, "A");
  const std::ptrdiff_t before = OpenHandles();
  {
    const auto walk = Walk();
    while (walk->Next()) {
      EXPECT_EQ(OpenHandles(), before + 1);
      EXPECT_EQ(walk->Open().opened, DiskResult::Done);
      EXPECT_EQ(walk->TestReadiness(), Readiness::Free);
      EXPECT_EQ(OpenHandles(), before + 2);
    }
  }
  EXPECT_EQ(OpenHandles(), before);
}

TEST_F(DiskWalkTest, LeaseIsGivenBackThoughTheFileIsStillHeld) {
  const std::string path = folder.Write("a.wav", "A");
  const auto walk = WalkToTheFile();
  EXPECT_EQ(walk->TestReadiness(), Readiness::Free);
  // A lease that is held refuses a writer who will not wait.
  const platform::FileHandle writer(path.c_str(), O_WRONLY | O_NONBLOCK);
  EXPECT_TRUE(writer);
  EXPECT_EQ(walk->TestReadiness(), Readiness::InUse);
}

TEST_F(DiskWalkTest, FileThatAnotherProgramWritesIsInUse) {
  const auto writer = OtherProgram::Holding(folder.Write("a.wav", "A"), O_WRONLY);
  EXPECT_EQ(WalkToTheFile()->TestReadiness(), Readiness::InUse);
}

TEST_F(DiskWalkTest, WhatIsNoPlainFileAnyMoreIsUnusableAndNeverBlocks) {
  const std::vector<std::string> names{"fifo", "link", "folder", "vanished"};
  for (const std::string& name : names) folder.Write(name, "A");
  folder.Write(".target", "A");
  const auto walk = Walk();
  for (const std::string& name : names) ASSERT_TRUE(fs::remove(folder / name));
  ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0644), 0);
  ASSERT_EQ(::symlink(".target", (folder / "link").c_str()), 0);
  ASSERT_EQ(::mkdir((folder / "folder").c_str(), 0755), 0);
  std::size_t seen = 0;
  for (; walk->Next(); ++seen) {
    EXPECT_EQ(walk->TestReadiness(), Readiness::Unusable) << walk->Name();
    EXPECT_NE(walk->Open().opened, DiskResult::Done) << walk->Name();
    EXPECT_LT(walk->Open().handle, 0) << walk->Name();
    EXPECT_NE(walk->SetAttributesNormal(), DiskResult::Done) << walk->Name();
  }
  EXPECT_EQ(seen, names.size());
}

TEST_F(DiskWalkTest, FileThatVanishesOnceItIsHeldIsStillTheOneThatWasListed) {
  const std::string path = folder.Write("a.wav", "12345");
  const auto walk = WalkToTheFile();
  ASSERT_EQ(walk->Open().opened, DiskResult::Done);
  fs::remove(path);
  folder.Write("a.wav", "another");
  EXPECT_EQ(walk->Open().facts.size, 5u);
}

TEST_F(DiskWalkTest, FolderThatIsRenamedOnTheWayIsWalkedToItsEnd) {
  fs::create_directory(folder / "before");
  for (const char* name : {"before/a.wav", "before/b.wav"}) folder.Write(name, "A");
  const auto walk = disk.Walk(folder / "before/");
  ASSERT_TRUE(walk->Next());
  fs::rename(folder / "before", folder / "behind");
  EXPECT_EQ(walk->TestReadiness(), Readiness::Free);
  ASSERT_TRUE(walk->Next());
  EXPECT_EQ(walk->TestReadiness(), Readiness::Free);
}

TEST_F(DiskWalkTest, ReadOnlyFileIsMadeWritable) {
  const std::string path = folder.Write("a.wav", "A");
  ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
  const auto walk = WalkToTheFile();
  EXPECT_EQ(walk->TestReadiness(), Readiness::FreeReadOnly);
  EXPECT_EQ(walk->SetAttributesNormal(), DiskResult::Done);
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0644));
}

TEST_F(DiskWalkTest, FileThatMayNotBeReadIsUnusable) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
  ASSERT_EQ(::chmod(folder.Write("a.wav", "A").c_str(), 0), 0);
  const auto walk = WalkToTheFile();
  EXPECT_EQ(walk->TestReadiness(), Readiness::Unusable);
  EXPECT_EQ(walk->Open().opened, DiskResult::NoAccess);
}

TEST_F(DiskWalkTest, ProcessWithoutHandlesIsToldApartAtTheFolderAndAtAFile) {
  folder.Write("a.wav", "A");
  {
    const FewHandles none(0);
    const auto walk = Walk();
    EXPECT_FALSE(walk->Started());
    EXPECT_EQ(walk->End(), WalkEnd::ProcessInTrouble);
  }
  {
    const FewHandles one(1);
    const auto walk = WalkToTheFile();
    EXPECT_EQ(walk->TestReadiness(), Readiness::ProcessInTrouble);
    EXPECT_EQ(walk->Open().opened, DiskResult::ProcessInTrouble);
  }
  EXPECT_EQ(WalkToTheFile()->TestReadiness(), Readiness::Free);
}

TEST_F(DiskWalkTest, FreshFileWhereLeasesAreNotBelievedIsInUseUntilItStoodStill) {
  std::int64_t now = platform::WriterWatch::SystemClock();
  PosixDisk doubting([&now] { return now; },
                     [](std::int64_t) { return platform::WriterWatch::Trust::InRefusals; });
  folder.Write("a.wav", "A");
  const auto readiness = [&] {
    const auto walk = doubting.Walk(folder.Path() + "/");
    EXPECT_TRUE(walk->Next());
    return walk->TestReadiness();
  };
  EXPECT_EQ(readiness(), Readiness::InUse);
  now += 2 * platform::WriterWatch::kStandStill;
  EXPECT_EQ(readiness(), Readiness::Free);
}

}  // namespace
}  // namespace tavlo::test
