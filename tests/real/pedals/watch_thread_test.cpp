#include "watch_thread.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <thread>

#include "pedals/fake_hid_port.h"
#include "support/quick.h"

namespace tavlo::test {
namespace {

using pedal_watch::Picked;
using pedal_watch::Presence;
using pedal_watch::WatchThread;
using namespace std::chrono_literals;

constexpr Picked kPicked{.product = 255, .usagePage = 12, .usage = 3};

TEST(WatchThread, ReadsReportsFasterThanAnybodyAsks) {
  auto port = std::make_unique<FakeHidPort>();
  port->Plug(0x05F3, 0x00FF);
  for (int press = 0; press < 500; ++press) {
    port->Report({2, 0});
    port->Report({0, 0});
  }
  WatchThread watch(kPicked, std::move(port));
  int reports = 0;
  for (int look = 0; look < 60'000 && reports < 1000; ++look) {
    std::array<std::uint8_t, 100> buffer{};
    reports += static_cast<int>(watch.TakeReports(buffer) / 3);
    std::this_thread::sleep_for(1ms);
  }
  EXPECT_EQ(reports, 1000);
  EXPECT_EQ(watch.State(), Presence::Ready);
}

TEST(WatchThread, EndsAtOnceThoughItWaitsForAPedal) {
  // Nothing that could come is waited for.
  EXPECT_TRUE(IsQuick(500ms, [] {
    const WatchThread watch(kPicked, std::make_unique<FakeHidPort>());
    std::this_thread::sleep_for(20ms);
    for (int look = 0; look < 60'000 && watch.State() != Presence::NoPedal; ++look) {
      std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(watch.State(), Presence::NoPedal);
  }));
}

TEST(WatchThread, EndsAtOnceThoughItWaitsForAReport) {
  EXPECT_TRUE(IsQuick(500ms, [] {
    auto port = std::make_unique<FakeHidPort>();
    port->Plug(0x05F3, 0x00FF);
    port->ReadWaits = true;
    const WatchThread watch(kPicked, std::move(port));
    for (int look = 0; look < 60'000 && watch.State() != Presence::Ready; ++look) {
      std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(watch.State(), Presence::Ready);
    std::this_thread::sleep_for(20ms);
  }));
}

}  // namespace
}  // namespace tavlo::test
