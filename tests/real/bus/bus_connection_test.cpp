#include "platform/bus/bus_connection.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>

#include "bus/offered_player.h"
#include "support/real_bus.h"

namespace tavlo::test {
namespace {

using platform::BusConnection;

/// Counts what it is told and what is called on its connection.
struct CountingUser : platform::BusUser {
  explicit CountingUser(BusConnection& on) : connection(on) {}
  ~CountingUser() { connection.Detach(*this); }

  void Connected(sd_bus& bus) override {
    ++connected;
    own = OwnNameOn(bus);
    sd_bus_slot* slot = nullptr;
    sd_bus_add_filter(&bus, &slot, Count, this);
    filter.reset(slot);
  }
  void Lost() override {
    ++lost;
    filter.reset();
  }
  static std::string OwnNameOn(sd_bus& bus) {
    const char* name = nullptr;
    return sd_bus_get_unique_name(&bus, &name) >= 0 ? name : "";
  }
  static int Count(sd_bus_message*, void* self, sd_bus_error*) {
    ++static_cast<CountingUser*>(self)->messages;
    return 0;
  }

  BusConnection& connection;
  platform::BusSlot filter;
  std::string own;
  int connected = 0;
  int lost = 0;
  int messages = 0;
};

struct BusConnectionTest : testing::Test {
  bool Until(const std::function<bool()>& condition) {
    return loop.WaitUntil(condition, kPatience);
  }

  RealBus bus;
  PlainLoop loop;
  BusConnection connection{loop, loop, bus.Address(), kShortPatience};
};

/// Calls somebody on the bus as fast as it can, and reads none of the answers.
class Flood {
 public:
  Flood(const std::string& address, std::string victim, int calls)
      : thread_([this, address, victim = std::move(victim), calls] {
          sd_bus* bus = nullptr;
          sd_bus_new(&bus);
          sd_bus_set_address(bus, address.c_str());
          sd_bus_set_bus_client(bus, 1);
          sd_bus_start(bus);
          for (int call = 0; call < calls; ++call) {
            sd_bus_call_method_async(bus, nullptr, victim.c_str(), "/", "org.freedesktop.DBus.Peer",
                                     "Ping", nullptr, nullptr, "");
            if (call % 64 == 0) sd_bus_flush(bus);
          }
          sd_bus_flush(bus);
          sent = true;
          while (!over) std::this_thread::yield();
          sd_bus_close_unref(bus);
        }) {}
  ~Flood() {
    over = true;
    thread_.join();
  }
  std::atomic<bool> sent = false;
  std::atomic<bool> over = false;

 private:
  std::thread thread_;
};

TEST_F(BusConnectionTest, IsMadeForTheFirstUserAndClosedWithTheLast) {
  EXPECT_FALSE(connection.IsConnected());
  CountingUser first(connection);
  CountingUser second(connection);
  connection.Attach(first);
  ASSERT_TRUE(Until([&] { return first.connected == 1; }));
  connection.Attach(second);
  EXPECT_EQ(second.connected, 1) << "whoever comes later is told at once";
  EXPECT_EQ(second.own, first.own);
  first.filter.reset();
  connection.Detach(first);
  EXPECT_TRUE(connection.IsConnected());
  second.filter.reset();
  connection.Detach(second);
  EXPECT_FALSE(connection.IsConnected());
  EXPECT_EQ(first.lost + second.lost, 0);
}

TEST_F(BusConnectionTest, TellsEveryUserOnceThatTheBusIsGoneAndOnceThatOneIsThere) {
  CountingUser first(connection);
  CountingUser second(connection);
  connection.Attach(first);
  connection.Attach(second);
  ASSERT_TRUE(Until([&] { return second.connected == 1; }));
  bus.Kill();
  ASSERT_TRUE(Until([&] { return second.lost == 1; }));
  bus.Restart();
  ASSERT_TRUE(Until([&] { return second.connected == 2; }));
  EXPECT_EQ(first.connected, 2);
  EXPECT_EQ(first.lost, 1);
}

TEST_F(BusConnectionTest, ForgetsAUserThatLeavesWhileTheBusIsAway) {
  CountingUser user(connection);
  connection.Attach(user);
  ASSERT_TRUE(Until([&] { return user.connected == 1; }));
  bus.Kill();
  ASSERT_TRUE(Until([&] { return user.lost == 1; }));
  connection.Detach(user);
  const int before = loop.Wakenings;
  loop.Wait(std::chrono::milliseconds(200));
  EXPECT_LE(loop.Wakenings - before, 1) << "nobody looks for a bus";
}

TEST_F(BusConnectionTest, TakesAFewMessagesAtATimeHoweverManyCome) {
  constexpr int kCalls = 20'000;
  constexpr int kMostAtATime = 16;
  CountingUser user(connection);
  connection.Attach(user);
  ASSERT_TRUE(Until([&] { return user.connected == 1; }));
  int ticks = 0;
  base::Timer tick(loop, "tick", std::chrono::milliseconds(1));
  tick.OnTick = [&] { ++ticks; };
  tick.Start();
  const Flood flood(bus.Address(), user.own, kCalls);
  int taken = user.messages;
  int most = 0;
  int passes = 0;
  ASSERT_TRUE(Until([&] {
    most = std::max(most, user.messages - std::exchange(taken, user.messages));
    ++passes;
    return user.messages >= kCalls;
  }));
  EXPECT_LE(most, kMostAtATime);
  EXPECT_GE(passes, kCalls / kMostAtATime);
  EXPECT_GT(ticks, 0) << "others have their turn";
}

TEST_F(BusConnectionTest, TakesNothingInABreath) {
  CountingUser user(connection);
  connection.Attach(user);
  ASSERT_TRUE(Until([&] { return user.connected == 1; }));
  const int before = user.messages;
  const Flood flood(bus.Address(), user.own, 10);
  loop.BreatheUntil([&] { return flood.sent.load(); }, loop.Now() + std::chrono::milliseconds(300));
  EXPECT_EQ(user.messages, before);
  EXPECT_TRUE(Until([&] { return user.messages >= before + 10; }));
}

TEST_F(BusConnectionTest, GivesUpACallThatHasNoAnswerInTime) {
  CountingUser user(connection);
  CountingUser mute(connection);
  connection.Attach(user);
  ASSERT_TRUE(Until([&] { return user.connected == 1; }));
  bus.Freeze();
  std::string error;
  connection.Speak([&](sd_bus& with) {
    sd_bus_message* call = nullptr;
    sd_bus_message_new_method_call(&with, &call, "org.freedesktop.DBus", "/",
                                   "org.freedesktop.DBus.Peer", "Ping");
    sd_bus_call_async(
        &with, nullptr, call,
        [](sd_bus_message* answer, void* kept, sd_bus_error*) {
          *static_cast<std::string*>(kept) = sd_bus_message_get_error(answer)->name;
          return 1;
        },
        &error, 100'000);
    sd_bus_message_unref(call);
  });
  ASSERT_TRUE(Until([&] { return !error.empty(); }));
  EXPECT_EQ(error, "org.freedesktop.DBus.Error.NoReply");
}

}  // namespace
}  // namespace tavlo::test
