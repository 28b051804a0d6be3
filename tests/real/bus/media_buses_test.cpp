#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "bus/bus_caller.h"
#include "bus/offered_player.h"
#include "support/real_bus.h"
#include "support/silent_bus.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using std::chrono::milliseconds;

constexpr const char* kDeckName = "org.mpris.MediaPlayer2.tavlodeck";

BusCaller::Turn By(OfferedPlayer& deck) {
  return [&deck](const std::function<bool()>& condition) { return deck.Until(condition); };
}

std::string PathIn(const std::string& address) {
  const std::string behind = address.substr(address.find("path=") + 5);
  return behind.substr(0, behind.find(','));
}

TEST(MediaBuses, GiveASecondDeckANameOfItsOwn) {
  const RealBus bus;
  OfferedPlayer first(bus.Address());
  OfferedPlayer second(bus.Address());
  ASSERT_TRUE(first.Offer());
  ASSERT_TRUE(second.Offer());
  BusCaller caller(bus.Address(), second.loop, By(second));
  const std::string own = std::string(kDeckName) + ".instance" + std::to_string(::getpid());
  EXPECT_EQ(caller.Players(), Texts({kDeckName, own}));
  caller.player = own;
  EXPECT_EQ(caller.CallPlayer("Play"), "");
  EXPECT_EQ(second.source.taken.size(), 1U);
}

TEST(MediaBuses, ThatHaveBothNamesTakenGiveNone) {
  const RealBus bus;
  OfferedPlayer deck(bus.Address());
  BusCaller caller(bus.Address(), deck.loop, By(deck));
  ASSERT_TRUE(caller.TakeName(kDeckName));
  ASSERT_TRUE(caller.TakeName(std::string(kDeckName) + ".instance" + std::to_string(::getpid())));
  deck.service.Offer(deck.source, deck);
  ASSERT_TRUE(deck.Until([&] { return deck.connection.IsConnected(); }));
  EXPECT_EQ(caller.CallPlayer("Play"), "org.freedesktop.DBus.Error.UnknownObject")
      << "the caller has the name itself";
  EXPECT_FALSE(deck.service.IsLive());
  EXPECT_EQ(deck.news, 0);
}

TEST(MediaBuses, ThatDieAreLookedForUntilAnotherComes) {
  RealBus bus;
  OfferedPlayer deck(bus.Address());
  ASSERT_TRUE(deck.Offer());
  bus.Kill();
  ASSERT_TRUE(deck.Until([&] { return !deck.service.IsLive(); }));
  EXPECT_EQ(deck.news, 2);
  deck.source.state.rate = 1.5;
  deck.service.TellChanges();
  // It is tried in vain for some time.
  deck.loop.Wait(milliseconds(200));
  bus.Restart();
  ASSERT_TRUE(deck.Until([&] { return deck.service.IsLive(); }));
  EXPECT_EQ(deck.news, 3);
  BusCaller caller(bus.Address(), deck.loop, By(deck));
  EXPECT_EQ(caller.GetOfPlayer("Rate"), "d 1.5");
}

TEST(MediaBuses, ThatFreezeAreToldTheLatestStateOnceTheyThaw) {
  RealBus bus;
  OfferedPlayer deck(bus.Address());
  ASSERT_TRUE(deck.Offer());
  BusCaller caller(bus.Address(), deck.loop, By(deck));
  caller.Listen();
  bus.Freeze();
  std::uint64_t most = 0;
  for (int change = 1; change <= 20'000; ++change) {
    deck.source.state.rate = change;
    deck.source.jumped = true;
    deck.service.TellChanges();
    deck.connection.Speak([&](sd_bus& with) {
      std::uint64_t queued = 0;
      sd_bus_get_n_queued_write(&with, &queued);
      most = std::max(most, queued);
    });
  }
  EXPECT_GT(most, 0U) << "the socket took it all, and nothing was tried";
  EXPECT_LE(most, 70U);
  const int wakenings = deck.loop.Wakenings;
  deck.loop.Wait(milliseconds(300));
  EXPECT_LE(deck.loop.Wakenings - wakenings, 1) << "nothing is done before the bus goes on";
  bus.Thaw();
  EXPECT_TRUE(deck.Until([&] {
    return !caller.heard.empty() &&
           caller.heard[caller.heard.size() - 2].find("\"Rate\": d 20000") != std::string::npos;
  }));
  EXPECT_EQ(caller.GetOfPlayer("Rate"), "d 20000");
  EXPECT_TRUE(deck.service.IsLive());
}

TEST(MediaBuses, ThatNeverGreetAreGivenUpAndTriedAgain) {
  const TemporaryFolder folder;
  const std::string door = folder / "door";
  const RealBus bus;
  auto silent = std::make_unique<SilentBus>(folder / "silent", 0);
  std::filesystem::create_symlink(folder / "silent", door);
  OfferedPlayer deck("unix:path=" + door);
  deck.service.Offer(deck.source, deck);
  deck.loop.Wait(milliseconds(500));
  EXPECT_FALSE(deck.connection.IsConnected());
  silent.reset();
  std::filesystem::remove(door);
  std::filesystem::create_symlink(PathIn(bus.Address()), door);
  EXPECT_TRUE(deck.Until([&] { return deck.service.IsLive(); }));
}

TEST(MediaBuses, ThatAreNotThereAreTriedEverMoreSeldom) {
  const TemporaryFolder folder;
  OfferedPlayer deck("unix:path=" + (folder / "none"));
  deck.service.Offer(deck.source, deck);
  const int before = deck.loop.Wakenings;
  deck.loop.Wait(milliseconds(800));
  // After 10, 20 and 40 ms, and from then on each 80.
  EXPECT_LE(deck.loop.Wakenings - before, 14);
  EXPECT_GE(deck.loop.Wakenings - before, 2);
  EXPECT_EQ(deck.source.looks, 0) << "nobody is told anything";
}

TEST(MediaBuses, OfOtherKindsThanSocketsOfThisMachineAreNone) {
  for (const char* address :
       {"", "disabled:", "autolaunch:", "tcp:host=localhost,port=1", "unixexec:path=/bin/false"}) {
    OfferedPlayer deck(address);
    deck.service.Offer(deck.source, deck);
    const int before = deck.loop.Wakenings;
    deck.loop.Wait(milliseconds(50));
    EXPECT_LE(deck.loop.Wakenings - before, 1) << address;
  }
}

TEST(MediaBuses, AreFoundBehindAddressesThatLeadNowhere) {
  const RealBus bus;
  OfferedPlayer deck("tcp:host=localhost,port=1;unix:path=/nowhere,guid=12;" + bus.Address());
  EXPECT_TRUE(deck.Offer());
}

}  // namespace
}  // namespace tavlo::test
