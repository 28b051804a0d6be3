#include "watch_thread.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <thread>

#include "pedals/fake_hid_port.h"

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
  const auto givenUp = std::chrono::steady_clock::now() + 10s;
  while (reports < 1000 && std::chrono::steady_clock::now() < givenUp) {
    std::array<std::uint8_t, 100> buffer{};
    reports += static_cast<int>(watch.Reports().Take(buffer) / 3);
    std::this_thread::sleep_for(1ms);
  }
  EXPECT_EQ(reports, 1000);
  EXPECT_EQ(watch.State(), Presence::Ready);
}

TEST(WatchThread, EndsAtOnceThoughItWaitsForAPedal) {
  const auto begun = std::chrono::steady_clock::now();
  for (int round = 0; round < 5; ++round) {
    const WatchThread watch(kPicked, std::make_unique<FakeHidPort>());
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(watch.State(), Presence::NoPedal);
  }
  // Five of its looks are five seconds apart; none of them was waited for.
  EXPECT_LT(std::chrono::steady_clock::now() - begun, 3s);
}

}  // namespace
}  // namespace tavlo::test
