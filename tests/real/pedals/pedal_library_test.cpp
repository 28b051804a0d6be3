#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

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

/// What one read hands over.
Bytes Read(PluginUsbWatcher& watcher, pedals::MonitorHandle& monitor) {
  std::array<std::uint8_t, 100> buffer{};
  std::int32_t count = -1;
  EXPECT_TRUE(watcher.GetData(monitor, buffer, count));
  return {buffer.begin(), buffer.begin() + count};
}

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
  PluginUsbWatcher watcher(errands, TAVLO_PEDAL_WATCH);
  pedals::MonitorHandle monitor = 0;
  ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_TRUE(IsHeldInMemory(std::filesystem::canonical(TAVLO_PEDAL_WATCH)));
  EXPECT_TRUE(watcher.StopWatch(monitor));
}

TEST_F(PedalLibrary, LinkToALibraryIsFollowed) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(TAVLO_PEDAL_WATCH, folder / "PedalWatch.so");
  PluginUsbWatcher watcher(errands, folder / "PedalWatch.so");
  pedals::MonitorHandle monitor = 0;
  EXPECT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_TRUE(watcher.StopWatch(monitor));
}

TEST_F(PedalLibrary, RealOneWatchesWithoutAPedalAndEndsAtOnce) {
  PluginUsbWatcher watcher(errands, TAVLO_PEDAL_WATCH);
  pedals::MonitorHandle monitor = 0;
  ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_NE(monitor, 0);
  EXPECT_EQ(Read(watcher, monitor), Bytes{});
  EXPECT_NE(watcher.Presence(monitor), UsbPresence::NotWatched);
  EXPECT_TRUE(watcher.StopWatch(monitor));
  EXPECT_EQ(monitor, 0);
  EXPECT_FALSE(watcher.StopWatch(monitor));
}

TEST_F(PedalLibrary, RealOneRefusesFiguresThatPickNothing) {
  PluginUsbWatcher watcher(errands, TAVLO_PEDAL_WATCH);
  pedals::MonitorHandle monitor = 7;
  EXPECT_FALSE(watcher.StartWatch(-1, 12, 3, monitor));
  EXPECT_FALSE(watcher.StartWatch(255, 12, 0x10000, monitor));
  EXPECT_EQ(monitor, 0);
}

TEST_F(PedalLibrary, RealOneAnswersOnlyToItsHandles) {
  PluginUsbWatcher watcher(errands, TAVLO_PEDAL_WATCH);
  pedals::MonitorHandle monitor = 0;
  ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  pedals::MonitorHandle stranger = monitor + 1;
  std::array<std::uint8_t, 100> buffer{};
  std::int32_t count = -1;
  EXPECT_FALSE(watcher.GetData(stranger, buffer, count));
  EXPECT_EQ(watcher.Presence(stranger), UsbPresence::NotWatched);
  EXPECT_FALSE(watcher.StopWatch(stranger));
  EXPECT_TRUE(watcher.StopWatch(monitor));
}

TEST_F(PedalLibrary, StandInHandsOverOneReportFirstAndThirtyThreeAtMostLater) {
  const TemporaryFolder folder;
  const PedalPipe pipe(folder / "PedalWatch.so");
  PluginUsbWatcher watcher(errands, folder / "PedalWatch.so");
  pedals::MonitorHandle monitor = 0;
  ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_EQ(watcher.Presence(monitor), UsbPresence::Ready);
  EXPECT_EQ(Read(watcher, monitor), Bytes{});
  ASSERT_TRUE(pipe.Report(Bytes(40, 2)));
  EXPECT_EQ(Read(watcher, monitor), (Bytes{0, 2, 0}));
  EXPECT_EQ(Read(watcher, monitor).size(), 99u);
  EXPECT_EQ(Read(watcher, monitor).size(), 18u);
  EXPECT_TRUE(watcher.StopWatch(monitor));
}

TEST_F(PedalLibrary, StandInTellsOnceOfWhatWaitsAndOfWhatComes) {
  const TemporaryFolder folder;
  const PedalPipe pipe(folder / "PedalWatch.so");
  PluginUsbWatcher watcher(errands, folder / "PedalWatch.so");
  pedals::MonitorHandle monitor = 0;
  HeardNews news;
  ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  ASSERT_TRUE(watcher.TellOnce(monitor, news));
  news.Turn();
  EXPECT_EQ(news.Count, 0);
  ASSERT_TRUE(pipe.Report({2, 0}));
  EXPECT_TRUE(news.Until(1));
  news.Turn();
  EXPECT_EQ(news.Count, 1);
  // Reports still wait.
  ASSERT_TRUE(watcher.TellOnce(monitor, news));
  EXPECT_TRUE(news.Until(2));
  EXPECT_EQ(Read(watcher, monitor).size() + Read(watcher, monitor).size(), 6u);
  ASSERT_TRUE(watcher.TellOnce(monitor, news));
  news.Turn();
  EXPECT_EQ(news.Count, 2);
  EXPECT_TRUE(watcher.StopWatch(monitor));
  ASSERT_TRUE(pipe.Report({2}));
  news.Turn();
  EXPECT_EQ(news.Count, 2);
}

TEST_F(PedalLibrary, LibraryThatHandsOutNothingToWaitOnIsRead) {
  const TemporaryFolder folder;
  const PedalPipe pipe(folder / "PedalWatch.so", TAVLO_POLLED_STAND_IN);
  PluginUsbWatcher watcher(errands, folder / "PedalWatch.so");
  pedals::MonitorHandle monitor = 0;
  HeardNews news;
  ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_FALSE(watcher.TellOnce(monitor, news));
  ASSERT_TRUE(pipe.Report({2}));
  news.Turn();
  EXPECT_EQ(news.Count, 0);
  EXPECT_EQ(Read(watcher, monitor), (Bytes{0, 2, 0}));
  EXPECT_TRUE(watcher.StopWatch(monitor));
}

TEST_F(PedalLibrary, FootThatLetsGoIsSeenAheadOfTheRulesWhichReadAllOfItInOrder) {
  for (const char* library : {TAVLO_PEDAL_STAND_IN, TAVLO_POLLED_STAND_IN}) {
    const TemporaryFolder folder;
    const PedalPipe pipe(folder / "PedalWatch.so", library);
    PluginUsbWatcher watcher(errands, folder / "PedalWatch.so");
    pedals::MonitorHandle monitor = 0;
    EXPECT_FALSE(watcher.LetGo());
    ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
    EXPECT_FALSE(watcher.LetGo());
    ASSERT_TRUE(pipe.Report({2}));
    EXPECT_EQ(Read(watcher, monitor), (Bytes{0, 2, 0}));
    ASSERT_TRUE(pipe.Report({6, 2}));
    EXPECT_FALSE(watcher.LetGo()) << "one pedal is still down";
    ASSERT_TRUE(pipe.Report({0, 4}));
    EXPECT_TRUE(watcher.LetGo()) << "it was let go, though another one is down by now";
    EXPECT_FALSE(watcher.LetGo());
    ASSERT_TRUE(pipe.Report({0}));
    EXPECT_EQ(Read(watcher, monitor), (Bytes{0, 6, 0, 0, 2, 0}));
    EXPECT_EQ(Read(watcher, monitor), (Bytes{0, 0, 0, 0, 4, 0}));
    EXPECT_EQ(Read(watcher, monitor), (Bytes{0, 0, 0}));
    EXPECT_FALSE(watcher.LetGo()) << "the rules have read it";
    EXPECT_TRUE(watcher.StopWatch(monitor));
    EXPECT_FALSE(watcher.LetGo());
  }
}

TEST_F(PedalLibrary, ReportThatWasTakenAheadIsStillTold) {
  const TemporaryFolder folder;
  const PedalPipe pipe(folder / "PedalWatch.so");
  PluginUsbWatcher watcher(errands, folder / "PedalWatch.so");
  pedals::MonitorHandle monitor = 0;
  HeardNews news;
  ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  ASSERT_TRUE(watcher.TellOnce(monitor, news));
  ASSERT_TRUE(pipe.Report({2}));
  EXPECT_FALSE(watcher.LetGo());
  EXPECT_EQ(news.Count, 1);
  EXPECT_FALSE(watcher.TellOnce(monitor, news)) << "what waits must be read first";
  EXPECT_EQ(Read(watcher, monitor), (Bytes{0, 2, 0}));
  EXPECT_TRUE(watcher.TellOnce(monitor, news));
  EXPECT_TRUE(watcher.StopWatch(monitor));
}

TEST_F(PedalLibrary, RealOneTellsForAsLongAsItsWatchRuns) {
  PluginUsbWatcher watcher(errands, TAVLO_PEDAL_WATCH);
  pedals::MonitorHandle monitor = 0;
  HeardNews news;
  EXPECT_FALSE(watcher.TellOnce(monitor, news));
  ASSERT_TRUE(watcher.StartWatch(255, 12, 3, monitor));
  EXPECT_TRUE(watcher.TellOnce(monitor, news));
  EXPECT_TRUE(watcher.StopWatch(monitor));
  EXPECT_FALSE(watcher.TellOnce(monitor, news));
}

}  // namespace
}  // namespace tavlo::test
