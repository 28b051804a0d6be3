#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/disk/file_handle.h"
#include "platform/disk/posix_disk.h"
#include "store/file_moves.h"
#include "store/work_folders.h"
#include "support/other_program.h"
#include "support/patience.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::PosixDisk;
using Trust = platform::WriterWatch::Trust;
using store::DiskResult;
using store::Entry;
using store::Readiness;

constexpr std::int64_t kSecond = 1'000'000'000;

struct DiskTest : testing::Test {
  std::vector<std::string> Names(const std::string& path) {
    auto names = disk.ListPlainFiles(path).names;
    std::sort(names.begin(), names.end());
    return names;
  }

  TemporaryFolder folder;
  PosixDisk disk;
};

TEST_F(DiskTest, ListingGivesPlainFilesOnly) {
  folder.Write("b.wav", "");
  folder.Write("a\xFF\n.wav", "");
  folder.Write(".hidden", "");
  ASSERT_EQ(::mkdir((folder / "folder").c_str(), 0755), 0);
  ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0644), 0);
  ASSERT_EQ(::symlink("b.wav", (folder / "link").c_str()), 0);
  EXPECT_EQ(Names(folder.Path()), (std::vector<std::string>{"a\xFF\n.wav", "b.wav"}));
  EXPECT_EQ(Names(folder.Path() + "/"), Names(folder.Path()));
  EXPECT_TRUE(disk.ListPlainFiles(folder.Path()).finished);
}

TEST_F(DiskTest, ListingOfAMissingFolderDoesNotStart) {
  EXPECT_FALSE(disk.ListPlainFiles(folder / "nothing").started);
  EXPECT_FALSE(disk.ListPlainFiles(folder.Write("file", "")).started);
}

TEST_F(DiskTest, EmptyFolderIsTheCurrentOne) {
  const auto before = std::filesystem::current_path();
  folder.Write("a.eE2", "A");
  std::filesystem::current_path(folder.Path());
  EXPECT_EQ(Names(""), std::vector<std::string>{"a.eE2"});
  EXPECT_EQ(disk.TestReadiness("a.eE2"), Readiness::Free);
  EXPECT_EQ(disk.FlushFolder(""), DiskResult::Done);
  std::filesystem::current_path(before);
}

TEST_F(DiskTest, MarkOfAFolderStaysUntilItsNamesChange) {
  using Mark = std::optional<store::FolderMark>;
  folder.Write("a.wav", "");
  EXPECT_EQ(disk.MarkOf(folder.Path()), Mark()) << "a change may still bear the same time";
  Mark first;
  ASSERT_TRUE(Comes([&] { return (first = disk.MarkOf(folder.Path())).has_value(); }));
  EXPECT_EQ(disk.MarkOf(folder.Path() + "/"), first);
  std::filesystem::rename(folder / "a.wav", folder / "b.wav");
  EXPECT_EQ(disk.MarkOf(folder.Path()), Mark());
  // Who copies a whole folder gives it the time that the other had.
  const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(9);
  std::filesystem::last_write_time(folder.Path(), longAgo);
  Mark second;
  ASSERT_TRUE(Comes([&] { return (second = disk.MarkOf(folder.Path())).has_value(); }));
  EXPECT_NE(second, first);
}

TEST_F(DiskTest, WhatIsNoFolderHasNoMark) {
  EXPECT_FALSE(disk.MarkOf(folder / "nothing"));
  EXPECT_FALSE(disk.MarkOf("/proc/self/exe"));
}

TEST_F(DiskTest, FileThatAnotherProgramHoldsForWritingIsInUseUntilItLetsGo) {
  const auto path = folder.Write("a.wav", "A");
  {
    const auto writer = OtherProgram::Holding(path, O_WRONLY);
    EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
  }
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(DiskTest, FileThatAnotherProgramReadsIsFree) {
  const auto path = folder.Write("a.wav", "A");
  const auto reader = OtherProgram::Holding(path, O_RDONLY);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(DiskTest, FileThatOurOwnProcessWritesIsInUse) {
  const auto path = folder.Write("a.wav", "A");
  const platform::FileHandle writer(path.c_str(), O_WRONLY);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
}

TEST_F(DiskTest, TestLeavesWritersThatComeLaterAlone) {
  const auto path = folder.Write("a.wav", "A");
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
  const platform::FileHandle writer(path.c_str(), O_WRONLY | O_NONBLOCK);
  EXPECT_TRUE(writer);
}

TEST_F(DiskTest, WriterThatComesDuringATestMakesNoFileUnusable) {
  const auto path = folder.Write("a.wav", "A");
  std::atomic<bool> finished = false;
  std::thread writer([&] {
    while (!finished) platform::FileHandle(path.c_str(), O_WRONLY);
  });
  int unusable = 0;
  for (int i = 0; i < 3000; ++i) unusable += disk.TestReadiness(path) == Readiness::Unusable;
  finished = true;
  writer.join();
  EXPECT_EQ(unusable, 0);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(DiskTest, SignalOfABrokenLeaseIsHarmlessToUsAndAsEverToOurChildren) {
  ::raise(SIGIO);
  const int status = RunShell("kill -IO $$");
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGIO);
}

TEST_F(DiskTest, WhatIsNoPlainFileIsUnusableAndNeverBlocks) {
  ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0644), 0);
  ASSERT_EQ(::symlink("nowhere", (folder / "dangling").c_str()), 0);
  folder.Write("a.wav", "A");
  ASSERT_EQ(::symlink("a.wav", (folder / "link").c_str()), 0);
  for (const char* name : {"fifo", "dangling", "link", "vanished", "."}) {
    EXPECT_EQ(disk.TestReadiness(folder / name), Readiness::Unusable) << name;
    EXPECT_FALSE(disk.Facts(folder / name).has_value()) << name;
    EXPECT_NE(disk.SetAttributesNormal(folder / name), DiskResult::Done) << name;
    EXPECT_NE(disk.Copy(folder / name, folder / "copy"), DiskResult::Done) << name;
  }
  EXPECT_EQ(disk.TestReadiness("/dev/null"), Readiness::Unusable);
}

TEST_F(DiskTest, ReadOnlyFileIsToldApartAndMadeWritable) {
  const auto path = folder.Write("a.wav", "A");
  ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::FreeReadOnly);
  EXPECT_EQ(disk.SetAttributesNormal(path), DiskResult::Done);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0644));
}

TEST_F(DiskTest, ProcessWithoutHandlesIsNotTakenForATroubleOfTheFile) {
  const auto path = folder.Write("a.wav", "sound");
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  rlimit none = before;
  none.rlim_cur = 0;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const store::Listing walk = disk.ListPlainFiles(folder.Path());
  const Readiness readiness = disk.TestReadiness(path);
  const DiskResult copied = disk.Copy(path, folder / "b.wav");
  const DiskResult flushed = disk.FlushFolder(folder.Path());
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_FALSE(walk.started);
  EXPECT_TRUE(walk.processInTrouble);
  EXPECT_EQ(readiness, Readiness::ProcessInTrouble);
  EXPECT_EQ(copied, DiskResult::ProcessInTrouble);
  EXPECT_EQ(flushed, DiskResult::ProcessInTrouble);
  EXPECT_FALSE(disk.ListPlainFiles(folder / "nothing").processInTrouble);
  EXPECT_EQ(Names(folder.Path()), std::vector<std::string>{"a.wav"});
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(DiskTest, FactsAreSizeAndStampInNanoseconds) {
  const auto path = folder.Write("a.wav", "12345");
  const timespec times[2] = {{.tv_sec = 1000, .tv_nsec = 1}, {.tv_sec = 1000, .tv_nsec = 7}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  const store::FileFacts expected{.size = 5, .stamp = 1000 * kSecond + 7};
  EXPECT_EQ(disk.Facts(path), expected);
}

TEST_F(DiskTest, LookFollowsLinks) {
  folder.Write("a.wav", "A");
  ASSERT_EQ(disk.MakeLink(folder / "a.wav", folder / "link"), DiskResult::Done);
  ASSERT_EQ(disk.MakeLink(folder.Path(), folder / "folder"), DiskResult::Done);
  ASSERT_EQ(disk.MakeLink(folder / "nowhere", folder / "dangling"), DiskResult::Done);
  EXPECT_EQ(disk.Look(folder / "a.wav"), Entry::PlainFile);
  EXPECT_EQ(disk.Look(folder / "link"), Entry::PlainFile);
  EXPECT_EQ(disk.Look(folder / "folder"), Entry::Folder);
  EXPECT_EQ(disk.Look(folder / "dangling"), Entry::Other);
  EXPECT_EQ(disk.Look(folder / "nothing"), Entry::Nothing);
  EXPECT_EQ(disk.Look("/dev/null"), Entry::Other);
}

TEST_F(DiskTest, CopyKeepsContentsAndStamp) {
  const std::string contents(700'000, 'x');
  const auto path = folder.Write("a.wav", contents);
  const timespec times[2] = {{.tv_sec = 1000, .tv_nsec = 0}, {.tv_sec = 1000, .tv_nsec = 7}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  EXPECT_EQ(disk.Copy(path, folder / "b.wav"), DiskResult::Done);
  EXPECT_EQ(folder.Read("b.wav"), contents);
  EXPECT_EQ(disk.Facts(folder / "b.wav"), disk.Facts(path));
}

TEST_F(DiskTest, CopyOfALongRecordingBreathesAllTheWay) {
  const std::string path = folder.Write("a.wav", std::string(9'000'000, 's'));
  std::vector<std::uint64_t> sizes;
  PosixDisk breathing(platform::WriterWatch::SystemClock, platform::WriterWatch::TrustInLeasesOf,
                      [&] { sizes.push_back(disk.Facts(folder / "b.wav")->size); });
  EXPECT_EQ(breathing.Copy(path, folder / "b.wav"), DiskResult::Done);
  ASSERT_FALSE(sizes.empty());
  EXPECT_EQ(sizes.back(), 9'000'000u);
  // From breath to breath little is written, also on a slow disk.
  std::uint64_t before = 0;
  for (const std::uint64_t size : sizes) {
    EXPECT_LE(size - before, 500'000u);
    before = size;
  }
}

TEST_F(DiskTest, CopyThatCannotBeWrittenFails) {
  const auto path = folder.Write("a.wav", std::string(10'000, 'x'));
  rlimit before;
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{.rlim_cur = 4096, .rlim_max = before.rlim_max};
  const auto handler = ::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &small);
  const DiskResult result = disk.Copy(path, folder / "b.wav");
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, handler);
  EXPECT_EQ(result, DiskResult::Failed);
  EXPECT_EQ(disk.Facts(path)->size, 10'000u);
}

TEST_F(DiskTest, NothingIsOverwritten) {
  const auto a = folder.Write("a.wav", "A");
  const auto b = folder.Write("b.wav", "B");
  EXPECT_EQ(disk.Rename(a, b), DiskResult::AlreadyThere);
  EXPECT_EQ(disk.Copy(a, b), DiskResult::AlreadyThere);
  EXPECT_EQ(disk.MakeLink(a, b), DiskResult::AlreadyThere);
  EXPECT_EQ(disk.MakeFolder(b), DiskResult::AlreadyThere);
  EXPECT_EQ(folder.Read("b.wav"), "B");
}

TEST_F(DiskTest, WhatIsMissingIsNotFound) {
  const auto a = folder.Write("a.wav", "A");
  EXPECT_EQ(disk.Rename(folder / "x", folder / "y"), DiskResult::NotFound);
  EXPECT_EQ(disk.Rename(a, folder / "nothing/a"), DiskResult::NotFound);
  EXPECT_EQ(disk.Copy(a, folder / "nothing/a"), DiskResult::NotFound);
  EXPECT_EQ(disk.MakeFolder(folder / "nothing/folder"), DiskResult::NotFound);
  EXPECT_EQ(disk.Delete(folder / "x"), DiskResult::NotFound);
  EXPECT_EQ(disk.RemoveFolder(folder / "x"), DiskResult::NotFound);
  EXPECT_EQ(disk.FlushFolder(folder / "x"), DiskResult::NotFound);
}

TEST_F(DiskTest, NamesOfAnyBytesAndOf255AreHandled) {
  const std::string name = "\xFF\n " + std::string(248, 'n') + ".wav";
  ASSERT_EQ(name.size(), 255u);
  folder.Write(name, "A");
  EXPECT_EQ(disk.Copy(folder / name, folder / "b.wav"), DiskResult::Done);
  EXPECT_EQ(disk.Delete(folder / name), DiskResult::Done);
  EXPECT_EQ(disk.Rename(folder / "b.wav", folder / name), DiskResult::Done);
  EXPECT_EQ(Names(folder.Path()), std::vector{name});
  EXPECT_EQ(disk.Rename(folder / name, folder / (name + "x")), DiskResult::Failed);
}

TEST_F(DiskTest, AppendAddsToAFileAndMakesItWhenItIsMissing) {
  EXPECT_EQ(disk.Append(folder / "log.txt", "1\n"), DiskResult::Done);
  EXPECT_EQ(disk.Append(folder / "log.txt", "2\n"), DiskResult::Done);
  EXPECT_EQ(folder.Read("log.txt"), "1\n2\n");
  ASSERT_EQ(disk.MakeLink(folder / "log.txt", folder / "link"), DiskResult::Done);
  EXPECT_EQ(disk.Append(folder / "link", "3\n"), DiskResult::Failed);
  ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0644), 0);
  EXPECT_EQ(disk.Append(folder / "fifo", "3\n"), DiskResult::Failed);
}

TEST_F(DiskTest, RemovedFolderTakesItsLinksAndNotWhereTheyLead) {
  folder.Write("kept.wav", "A");
  ASSERT_EQ(disk.MakeFolder(folder / "half"), DiskResult::Done);
  ASSERT_EQ(disk.MakeFolder(folder / "half/inner"), DiskResult::Done);
  folder.Write("half/inner/x", "");
  ASSERT_EQ(disk.MakeLink(folder.Path(), folder / "half/link"), DiskResult::Done);
  ASSERT_EQ(disk.MakeLink(folder / "half", folder / "link"), DiskResult::Done);
  EXPECT_EQ(disk.RemoveFolder(folder / "link"), DiskResult::Failed);
  EXPECT_EQ(disk.RemoveFolder(folder / "half"), DiskResult::Done);
  EXPECT_EQ(Names(folder.Path()), std::vector<std::string>{"kept.wav"});
  EXPECT_EQ(disk.Look(folder / "half"), Entry::Nothing);
}

TEST_F(DiskTest, WhatTakesLongBreathesAtEachPiece) {
  int breaths = 0;
  PosixDisk breathing(platform::WriterWatch::SystemClock, platform::WriterWatch::TrustInLeasesOf,
                      [&] { ++breaths; });
  const auto breathsOf = [&](const auto& call) {
    breaths = 0;
    call();
    return breaths;
  };
  for (const char* name : {"a", "b", "c"}) folder.Write(name, "");
  EXPECT_GE(breathsOf([&] { breathing.ListPlainFiles(folder.Path()); }), 3);
  EXPECT_GE(breathsOf([&] { breathing.Walk(folder.Path() + "/"); }), 3);
  const std::string path = folder.Write("long", std::string(1024 * 1024, 'x'));
  EXPECT_EQ(breathsOf([&] { EXPECT_EQ(breathing.Copy(path, folder / "copy"), DiskResult::Done); }),
            4);
  std::filesystem::create_directories(folder / "half/inner");
  for (const char* name : {"half/x", "half/inner/y"}) folder.Write(name, "");
  EXPECT_EQ(
      breathsOf([&] { EXPECT_EQ(breathing.RemoveFolder(folder / "half"), DiskResult::Done); }), 4);
}

TEST_F(DiskTest, FolderThatCanNotBeEmptiedStays) {
  // Not even root removes what the kernel lists of itself.
  EXPECT_NE(disk.RemoveFolder("/proc/self/task"), DiskResult::Done);
  EXPECT_EQ(disk.Look("/proc/self/task"), Entry::Folder);
}

TEST_F(DiskTest, MoveToAnotherFileSystemArrivesWholeAndRescuesWhatStoodThere) {
  const TemporaryFolder memory("/dev/shm");
  struct stat here;
  struct stat there;
  ASSERT_EQ(::stat(folder.Path().c_str(), &here), 0);
  ASSERT_EQ(::stat(memory.Path().c_str(), &there), 0);
  if (here.st_dev == there.st_dev) GTEST_SKIP() << "/dev/shm is no file system of its own here.";
  const store::WorkFolders folders(disk, folder.Path());
  store::FileMoves moves(disk, folders);
  const auto source = folder.Write("a.wav", "new");
  memory.Write("a.wav", "old");
  EXPECT_EQ(disk.Rename(source, memory / "b.wav"), DiskResult::OtherFileSystem);
  EXPECT_EQ(moves.Move(source, memory / "a.wav").result, DiskResult::Done);
  EXPECT_EQ(memory.Read("a.wav"), "new");
  EXPECT_EQ(memory.Read(".Rescued a.wav"), "old");
  EXPECT_EQ(disk.Look(source), Entry::Nothing);
}

/// A disk whose leases are not believed, with a clock that the test moves.
struct StandStillTest : testing::Test {
  StandStillTest() { StampNow(); }

  /// Gives the file a stamp of this very moment on the test's clock.
  void StampNow() const { StampAt(now); }
  void StampAt(std::int64_t moment) const {
    const timespec stamp{.tv_sec = moment / kSecond, .tv_nsec = moment % kSecond};
    const timespec times[2] = {stamp, stamp};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }

  std::int64_t now = 1'000'000 * kSecond;
  TemporaryFolder folder;
  std::string path = folder.Write("a.wav", "A");
  PosixDisk disk{[this] { return now; }, [](std::int64_t) { return Trust::InRefusals; }};
};

TEST_F(StandStillTest, FreshFileIsInUseUntilItsStampIsTwoSecondsOld) {
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
  now += 2 * kSecond - 1;
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
  now += 1;
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(StandStillTest, OldFileIsFreeAtTheFirstLook) {
  StampAt(now - 2 * kSecond);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(StandStillTest, FileThatGrowsBetweenTwoLooksIsInUseAgain) {
  StampAt(now + 3600 * kSecond);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
  now += 2 * kSecond;
  folder.Write("a.wav", "A and more");
  StampAt(now + 3600 * kSecond);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
}

TEST_F(StandStillTest, StampFromAServerWhoseClockIsAheadStandsStillAfterTwoSeconds) {
  StampAt(now + 3600 * kSecond);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
  now += 2 * kSecond - 1;
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
  now += 1;
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(StandStillTest, ClockThatIsSetBackStartsTheTwoSecondsAnew) {
  StampAt(now + 3600 * kSecond);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
  now -= 10 * kSecond;
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
  now += 2 * kSecond;
  EXPECT_EQ(disk.TestReadiness(path), Readiness::Free);
}

TEST_F(StandStillTest, OldFileThatSomebodyHoldsForWritingIsInUseAllTheSame) {
  StampAt(now - 10 * kSecond);
  const auto writer = OtherProgram::Holding(path, O_WRONLY);
  EXPECT_EQ(disk.TestReadiness(path), Readiness::InUse);
}

TEST_F(StandStillTest, SomebodyElsesFileGoesByStandingStillThoughLeasesAreBelieved) {
  if (::geteuid() != 0) GTEST_SKIP() << "Only root can become somebody else.";
  PosixDisk believing([this] { return now; });
  ASSERT_EQ(::seteuid(65534), 0);
  const Readiness fresh = believing.TestReadiness(path);
  now += 2 * kSecond;
  const Readiness later = believing.TestReadiness(path);
  ASSERT_EQ(::seteuid(0), 0);
  EXPECT_EQ(fresh, Readiness::InUse);
  EXPECT_EQ(later, Readiness::Free);
}

TEST_F(StandStillTest, ServerThatRefusesEachLeaseGoesByStandingStill) {
  PosixDisk ofAServer([this] { return now; }, [](std::int64_t) { return Trust::None; });
  const auto refused = OtherProgram::Holding(path, O_WRONLY);
  EXPECT_EQ(ofAServer.TestReadiness(path), Readiness::InUse);
  now += 2 * kSecond;
  EXPECT_EQ(ofAServer.TestReadiness(path), Readiness::Free);
}

TEST(LeaseTrust, NetworkAndUserSpaceFileSystemsAreNotBelieved) {
  constexpr std::int64_t kNfs = 0x6969;
  constexpr std::int64_t kCifs = 0xFF534D42;
  constexpr std::int64_t kFuse = 0x65735546;
  constexpr std::int64_t kPlan9 = 0x01021997;
  constexpr std::int64_t kExt4 = 0xEF53;
  const auto trust = [](std::int64_t kind) { return platform::WriterWatch::TrustInLeasesOf(kind); };
  EXPECT_EQ(trust(kNfs), Trust::None);
  EXPECT_EQ(trust(kCifs), Trust::None);
  EXPECT_EQ(trust(kFuse), Trust::InRefusals);
  EXPECT_EQ(trust(kPlan9), Trust::InRefusals);
  EXPECT_EQ(trust(kExt4), Trust::Whole);
}

}  // namespace
}  // namespace tavlo::test
