#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "platform/ffmpeg/sound_meter.h"
#include "platform/reach/mounted_places.h"
#include "platform/reach/patient_disk.h"
#include "support/counted_hush.h"
#include "support/patience.h"
#include "support/plain_loop.h"
#include "support/stalling_mount.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using base::operator""ms;
using store::DiskResult;
using store::Entry;

/// The real disk over a real mount whose server gives no answer while a test has it stopped.
struct StalledMount : testing::Test {
  void SetUp() override {
    if (!mount.Fault().empty()) GTEST_SKIP() << mount.Fault();
  }
  /// Puts a file into the folder behind the mount and returns its path on the mount.
  std::string Put(const std::string& name, const std::string& contents) {
    std::ofstream(mount.Behind() + "/" + name, std::ios::binary) << contents;
    return mount.Path() + "/" + name;
  }
  bool StandsBehind(const std::string& name) const {
    return fs::exists(mount.Behind() + "/" + name);
  }
  static std::string Made(const std::string& folder) {
    fs::create_directory(folder);
    return folder;
  }
  static std::ptrdiff_t Threads() {
    return std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator());
  }
  /// Waits until the mount owes no answer any more.
  bool ComesBack() {
    return Comes([this] { return !disk.OutOfReach(mount.Path()); });
  }

  const TemporaryFolder place;
  StallingMount mount{Made(place / "folder"), Made(place / "mount")};
  PlainLoop loop;
  CountedHush hush;
  platform::FootGate feet{hush};
  platform::MountedPlaces places;
  platform::PlaceErrands errands{loop, loop, places, feet};
  platform::SoundMeters meters;
  platform::PatientDisk disk{errands, meters, [] {}};
};

TEST_F(StalledMount, MayStallAndTheFolderBehindItMayNot) {
  EXPECT_TRUE(places.PlaceOf(mount.Path() + "/a.wav").mayStall);
  EXPECT_FALSE(places.PlaceOf(mount.Behind() + "/a.wav").mayStall);
  fs::create_directory_symlink(mount.Path(), mount.Behind() + "/link");
  EXPECT_TRUE(places.PlaceOf(mount.Behind() + "/link/a.wav").mayStall);
  fs::remove(mount.Behind() + "/link");
}

TEST_F(StalledMount, IsOutOfReachWhileItsServerIsStoppedAndInReachOnceThatGoesOn) {
  const std::string path = Put("a.wav", "12345");
  EXPECT_EQ(disk.Look(path), Entry::PlainFile);
  int feeds = 0;
  base::Timer feed(loop, "feed", 50ms, base::TimerKind::Feed);
  feed.OnTick = [&] { ++feeds; };
  feed.Start();
  mount.Stop();
  EXPECT_EQ(disk.Look(path), Entry::OutOfReach);
  EXPECT_GT(feeds, 0) << "the player is fed as long as the loop waits";
  EXPECT_TRUE(disk.OutOfReach(path));
  EXPECT_EQ(disk.Look(mount.Behind()), Entry::Folder);
  for (int refresh = 0; refresh < 100; ++refresh) {
    EXPECT_FALSE(disk.Walk(mount.Path() + "/")->Started());
  }
  EXPECT_EQ(errands.LeftBehind(), 1);
  EXPECT_EQ(errands.Waiting(), 0U);
  mount.GoOn();
  ASSERT_TRUE(ComesBack());
  EXPECT_EQ(disk.Look(path), Entry::PlainFile);
}

TEST_F(StalledMount, RenameThatGaveNoAnswerMayHappenLaterAndHappensOnce) {
  const std::string path = Put("a.wav", "12345");
  mount.Stop();
  EXPECT_EQ(disk.Rename(path, mount.Path() + "/b.wav"), DiskResult::OutOfReach);
  EXPECT_TRUE(StandsBehind("a.wav"));
  mount.GoOn();
  ASSERT_TRUE(ComesBack());
  EXPECT_EQ(disk.ListPlainFiles(mount.Path()).names, std::vector<std::string>{"b.wav"});
  EXPECT_EQ(disk.Facts(mount.Path() + "/b.wav")->size, 5u);
}

TEST_F(StalledMount, CallThatIsStuckFailsWhenTheServerIsKilled) {
  const std::string path = Put("a.wav", "12345");
  mount.Stop();
  EXPECT_EQ(disk.Delete(path), DiskResult::OutOfReach);
  mount.Kill();
  ASSERT_TRUE(ComesBack());
  EXPECT_NE(disk.Delete(path), DiskResult::Done);
  EXPECT_TRUE(StandsBehind("a.wav"));
}

TEST_F(StalledMount, CopyAcrossIsWholeBothWays) {
  const std::string bytes(1'000'000, 'x');
  const std::string path = Put("a.wav", bytes);
  const TemporaryFolder here;
  EXPECT_EQ(disk.Copy(path, here / "a.wav"), DiskResult::Done);
  EXPECT_EQ(here.Read("a.wav"), bytes);
  EXPECT_EQ(disk.Copy(here / "a.wav", mount.Path() + "/b.wav"), DiskResult::Done);
  EXPECT_EQ(fs::file_size(mount.Behind() + "/b.wav"), bytes.size());
}

TEST_F(StalledMount, EndOfTheErrandsWaitsForNoServer) {
  const std::string path = Put("a.wav", "12345");
  const std::ptrdiff_t threads = Threads();
  mount.Stop();
  {
    platform::PlaceErrands inner(loop, loop, places, feet);
    platform::PatientDisk innerDisk(inner, meters, [] {});
    EXPECT_EQ(innerDisk.Look(path), Entry::OutOfReach);
  }
  EXPECT_EQ(Threads(), threads + 1) << "the call is still stuck";
  mount.GoOn();
  EXPECT_TRUE(Comes([threads] { return Threads() == threads; }));
}

TEST_F(StalledMount, CountsWhatTheWatchedThreadAsksAndNothingOfOthers) {
  const std::string path = Put("a.wav", "12345");
  std::ifstream open(path);
  const std::vector<std::function<void()>> calls{
      [&] { EXPECT_TRUE(fs::exists(path)); },
      [&] { EXPECT_EQ(::access(path.c_str(), R_OK), 0); },
      [&] { EXPECT_NE(fs::directory_iterator(mount.Path()), fs::directory_iterator()); },
      [&] { EXPECT_EQ(open.get(), '1'); },
  };
  mount.Watch(::getpid());
  int asked = 0;
  for (const auto& call : calls) {
    call();
    EXPECT_GT(mount.AskedByTheWatched(), asked);
    asked = mount.AskedByTheWatched();
  }
  std::thread([&] { EXPECT_TRUE(fs::exists(path)); }).join();
  EXPECT_EQ(disk.Look(path), Entry::PlainFile);
  EXPECT_EQ(mount.AskedByTheWatched(), asked);
}

}  // namespace
}  // namespace tavlo::test
