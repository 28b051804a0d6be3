#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/listener.h"
#include "pedals/heard_news.h"
#include "pedals/pedal_pipe.h"
#include "platform/usb/plugin_usb_watcher.h"
#include "support/errands_at_hand.h"
#include "support/temporary_folder.h"
#include "support/unread_pipe.h"

namespace tavlo::test {
namespace {

using pedals::UsbPresence;
using platform::PluginUsbWatcher;

using Bytes = std::vector<std::uint8_t>;

struct PedalLibrary : testing::Test {
  ErrandsAtHand errands;
};

/// A watch over the pedals that a library knows.
struct Watch {
  PluginUsbWatcher watcher;
  pedals::MonitorHandle monitor = 0;

  Watch(ErrandsAtHand& errands, const std::string& library) : watcher(errands, library) {}

  bool Start() { return watcher.StartWatch(255, 12, 3, monitor); }
  bool Stop() { return watcher.StopWatch(monitor); }
  bool TellOnce(base::Listener& listener) { return watcher.TellOnce(monitor, listener); }
  /// What one read hands over.
  Bytes Read() {
    std::array<std::uint8_t, 100> buffer{};
    std::int32_t count = -1;
    EXPECT_TRUE(watcher.GetData(monitor, buffer, count));
    return {buffer.begin(), buffer.begin() + count};
  }
};

/// A stand-in for the library, in a folder of its own.
struct StandIn {
  const TemporaryFolder folder;
  const PedalPipe pipe;

  explicit StandIn(const char* kind) : pipe(Path(), kind) {}
  std::string Path() const { return folder / "PedalWatch.so"; }
};

/// A watch over the pedal of a stand-in.
struct StandInWatch : StandIn, Watch {
  explicit StandInWatch(ErrandsAtHand& errands, const char* kind = TAVLO_PEDAL_STAND_IN)
      : StandIn(kind), Watch(errands, Path()) {}
};

TEST_F(PedalLibrary, LibraryThatIsMissingStartsNoWatch) {
  const TemporaryFolder folder;
  PluginUsbWatcher watcher(errands, folder / "PedalWatch.so");
  pedals::MonitorHandle monitor = 7;
  EXPECT_FALSE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_EQ(monitor, 0);
  std::array<std::uint8_t, 100> buffer{};
  std::int32_t count = -1;
  EXPECT_FALSE(watcher.GetData(monitor, buffer, count));
  EXPECT_EQ(count, 0);
  EXPECT_FALSE(watcher.StopWatch(monitor));
  EXPECT_EQ(watcher.Presence(monitor), UsbPresence::NotWatched);
}

TEST_F(PedalLibrary, FileThatIsNoLibraryStartsNoWatch) {
  const TemporaryFolder folder;
  PluginUsbWatcher watcher(errands, folder.Write("PedalWatch.so", "no library"));
  pedals::MonitorHandle monitor = 0;
  EXPECT_FALSE(watcher.StartWatch(255, 12, 3, monitor));
}

TEST_F(PedalLibrary, WhatIsNoFileStartsNoWatchAndIsNotWaitedFor) {
  const TemporaryFolder folder;
  const UnreadPipe pipe(folder / "PedalWatch.so");
  std::filesystem::create_symlink("/dev/zero", folder / "endless.so");
  for (const std::string& path : {folder / "PedalWatch.so", folder / "endless.so", folder.Path()}) {
    PluginUsbWatcher watcher(errands, path);
    pedals::MonitorHandle monitor = 0;
    EXPECT_FALSE(watcher.StartWatch(255, 12, 3, monitor)) << path;
  }
  EXPECT_FALSE(pipe.HeldSomebody());
}

TEST_F(PedalLibrary, LibraryThatGivesNoAnswerStartsNoWatchAndMayStartOneWhenItHasAnswered) {
  PluginUsbWatcher watcher(errands, TAVLO_PEDAL_WATCH);
  pedals::MonitorHandle monitor = 7;
  errands.Stalls = true;
  EXPECT_FALSE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_EQ(monitor, 0);
  EXPECT_FALSE(watcher.StartWatch(255, 12, 3, monitor));
  errands.ComeBack();
  EXPECT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_TRUE(watcher.StopWatch(monitor));
}

/// Whether a mapping of that file is kept in memory.
bool IsHeldInMemory(const std::string& file) {
  std::ifstream maps("/proc/self/smaps");
  bool ofFile = false;
  for (std::string line; std::getline(maps, line);) {
    if (line.find('-') < line.find(' ')) ofFile = line.ends_with(file);
    if (ofFile && line.starts_with("Locked:") && line.find(" 0 kB") == line.npos) return true;
  }
  return false;
}

TEST_F(PedalLibrary, CodeOfALibraryIsReadWhenItIsLoadedAndNotWhenAPedalIsPressed) {
  constexpr rlim_t kEnough = 2 * 1024 * 1024;
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_MEMLOCK, &limit), 0);
  if (limit.rlim_cur < kEnough) GTEST_SKIP() << "this process may hold too little in memory";
  Watch pedal(errands, TAVLO_PEDAL_WATCH);
  ASSERT_TRUE(pedal.Start());
  EXPECT_TRUE(IsHeldInMemory(std::filesystem::canonical(TAVLO_PEDAL_WATCH)));
  EXPECT_TRUE(pedal.Stop());
}

TEST_F(PedalLibrary, LinkToALibraryIsFollowed) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(TAVLO_PEDAL_WATCH, folder / "PedalWatch.so");
  Watch pedal(errands, folder / "PedalWatch.so");
  EXPECT_TRUE(pedal.Start());
  EXPECT_TRUE(pedal.Stop());
}

TEST_F(PedalLibrary, RealOneWatchesWithoutAPedalAndEndsAtOnce) {
  Watch pedal(errands, TAVLO_PEDAL_WATCH);
  ASSERT_TRUE(pedal.Start());
  EXPECT_NE(pedal.monitor, 0);
  EXPECT_EQ(pedal.Read(), Bytes{});
  EXPECT_NE(pedal.watcher.Presence(pedal.monitor), UsbPresence::NotWatched);
  EXPECT_TRUE(pedal.Stop());
  EXPECT_EQ(pedal.monitor, 0);
  EXPECT_FALSE(pedal.Stop());
}

TEST_F(PedalLibrary, RealOneRefusesFiguresThatPickNothing) {
  PluginUsbWatcher watcher(errands, TAVLO_PEDAL_WATCH);
  pedals::MonitorHandle monitor = 7;
  EXPECT_FALSE(watcher.StartWatch(-1, 12, 3, monitor));
  EXPECT_FALSE(watcher.StartWatch(255, 12, 0x10000, monitor));
  EXPECT_EQ(monitor, 0);
}

TEST_F(PedalLibrary, RealOneAnswersOnlyToItsHandles) {
  Watch pedal(errands, TAVLO_PEDAL_WATCH);
  ASSERT_TRUE(pedal.Start());
  pedals::MonitorHandle stranger = pedal.monitor + 1;
  std::array<std::uint8_t, 100> buffer{};
  std::int32_t count = -1;
  EXPECT_FALSE(pedal.watcher.GetData(stranger, buffer, count));
  EXPECT_EQ(pedal.watcher.Presence(stranger), UsbPresence::NotWatched);
  EXPECT_FALSE(pedal.watcher.StopWatch(stranger));
  EXPECT_TRUE(pedal.Stop());
}

TEST_F(PedalLibrary, StandInHandsOverOneReportFirstAndThirtyThreeAtMostLater) {
  StandInWatch pedal(errands);
  ASSERT_TRUE(pedal.Start());
  EXPECT_EQ(pedal.watcher.Presence(pedal.monitor), UsbPresence::Ready);
  EXPECT_EQ(pedal.Read(), Bytes{});
  ASSERT_TRUE(pedal.pipe.Report(Bytes(40, 2)));
  EXPECT_EQ(pedal.Read(), (Bytes{0, 2, 0}));
  EXPECT_EQ(pedal.Read().size(), 99u);
  EXPECT_EQ(pedal.Read().size(), 18u);
  EXPECT_TRUE(pedal.Stop());
}

TEST_F(PedalLibrary, StandInTellsOnceOfWhatWaitsAndOfWhatComes) {
  StandInWatch pedal(errands);
  HeardNews news;
  ASSERT_TRUE(pedal.Start());
  ASSERT_TRUE(pedal.TellOnce(news));
  news.Turn();
  EXPECT_EQ(news.Count, 0);
  ASSERT_TRUE(pedal.pipe.Report({2, 0}));
  EXPECT_TRUE(news.Until(1));
  news.Turn();
  EXPECT_EQ(news.Count, 1);
  // Reports still wait.
  ASSERT_TRUE(pedal.TellOnce(news));
  EXPECT_TRUE(news.Until(2));
  EXPECT_EQ(pedal.Read().size() + pedal.Read().size(), 6u);
  ASSERT_TRUE(pedal.TellOnce(news));
  news.Turn();
  EXPECT_EQ(news.Count, 2);
  EXPECT_TRUE(pedal.Stop());
  ASSERT_TRUE(pedal.pipe.Report({2}));
  news.Turn();
  EXPECT_EQ(news.Count, 2);
}

TEST_F(PedalLibrary, LibraryThatHandsOutNothingToWaitOnIsRead) {
  StandInWatch pedal(errands, TAVLO_POLLED_STAND_IN);
  HeardNews news;
  ASSERT_TRUE(pedal.Start());
  EXPECT_FALSE(pedal.TellOnce(news));
  ASSERT_TRUE(pedal.pipe.Report({2}));
  news.Turn();
  EXPECT_EQ(news.Count, 0);
  EXPECT_EQ(pedal.Read(), (Bytes{0, 2, 0}));
  EXPECT_TRUE(pedal.Stop());
}

TEST_F(PedalLibrary, FootThatLetsGoIsSeenAheadOfTheRulesWhichReadAllOfItInOrder) {
  for (const char* library : {TAVLO_PEDAL_STAND_IN, TAVLO_POLLED_STAND_IN}) {
    StandInWatch pedal(errands, library);
    EXPECT_FALSE(pedal.watcher.LetGo());
    ASSERT_TRUE(pedal.Start());
    EXPECT_FALSE(pedal.watcher.LetGo());
    ASSERT_TRUE(pedal.pipe.Report({2}));
    EXPECT_EQ(pedal.Read(), (Bytes{0, 2, 0}));
    ASSERT_TRUE(pedal.pipe.Report({6, 2}));
    EXPECT_FALSE(pedal.watcher.LetGo()) << "one pedal is still down";
    ASSERT_TRUE(pedal.pipe.Report({0, 4}));
    EXPECT_TRUE(pedal.watcher.LetGo()) << "it was let go, though another one is down by now";
    EXPECT_FALSE(pedal.watcher.LetGo());
    ASSERT_TRUE(pedal.pipe.Report({0}));
    EXPECT_EQ(pedal.Read(), (Bytes{0, 6, 0, 0, 2, 0}));
    EXPECT_EQ(pedal.Read(), (Bytes{0, 0, 0, 0, 4, 0}));
    EXPECT_EQ(pedal.Read(), (Bytes{0, 0, 0}));
    EXPECT_FALSE(pedal.watcher.LetGo()) << "the rules have read it";
    EXPECT_TRUE(pedal.Stop());
    EXPECT_FALSE(pedal.watcher.LetGo());
  }
}

TEST_F(PedalLibrary, ReportThatWasTakenAheadIsStillTold) {
  StandInWatch pedal(errands);
  HeardNews news;
  ASSERT_TRUE(pedal.Start());
  ASSERT_TRUE(pedal.TellOnce(news));
  ASSERT_TRUE(pedal.pipe.Report({2}));
  EXPECT_FALSE(pedal.watcher.LetGo());
  EXPECT_EQ(news.Count, 1);
  EXPECT_FALSE(pedal.TellOnce(news)) << "what waits must be read first";
  EXPECT_EQ(pedal.Read(), (Bytes{0, 2, 0}));
  EXPECT_TRUE(pedal.TellOnce(news));
  EXPECT_TRUE(pedal.Stop());
}

TEST_F(PedalLibrary, RealOneTellsForAsLongAsItsWatchRuns) {
  Watch pedal(errands, TAVLO_PEDAL_WATCH);
  HeardNews news;
  EXPECT_FALSE(pedal.TellOnce(news));
  ASSERT_TRUE(pedal.Start());
  EXPECT_TRUE(pedal.TellOnce(news));
  EXPECT_TRUE(pedal.Stop());
  EXPECT_FALSE(pedal.TellOnce(news));
}

}  // namespace
}  // namespace tavlo::test
