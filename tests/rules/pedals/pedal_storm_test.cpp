#include <gtest/gtest.h>

#include <cstdint>
#include <random>

#include "support/pedal_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using pedals::Pedal;
using playback::Wind;

constexpr unsigned kSeeds = 2;
constexpr int kPresses = 1000;

/// A foot that presses, bounces and releases without reason.
struct Foot {
  explicit Foot(unsigned seed) : chance(seed) {}

  std::uint8_t AnyBits() { return static_cast<std::uint8_t>(Up(7)); }
  base::Duration AnyPause() {
    constexpr base::Duration kPauses[] = {0ms, 1ms, 5ms, 20ms, 49ms, 50ms, 51ms, 120ms, 700ms};
    return kPauses[Up(8)];
  }
  int Up(int most) { return std::uniform_int_distribution<int>(0, most)(chance); }

  std::mt19937 chance;
};

struct StormBench : PedalBench {
  StormBench() {
    config.txtSkipBegEnd.Value = "N";
    WorkInTheMiddleOfHours();
  }

  /// What the last report says is what the player does.
  void ExpectTheStateOf(std::uint8_t bits) {
    const bool plays = (bits & 6) == 2;
    const Wind wind = (bits & 4) != 0   ? Wind::Forward
                      : (bits & 2) != 0 ? Wind::None
                      : (bits & 1) != 0 ? Wind::Rewind
                                        : Wind::None;
    EXPECT_EQ(engine.IsPlaying, plays);
    EXPECT_EQ(player.IsRunning(), plays);
    EXPECT_EQ(transport.WindDirection, wind);
    EXPECT_EQ(Winds(), wind != Wind::None);
    EXPECT_EQ(form.DeckRuns.Get(), plays || wind != Wind::None);
  }
};

TEST(PedalStorm, UsbReportsLeaveThePlayerAsTheLastOneSays) {
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE(seed);
    StormBench bench;
    Foot foot(seed);
    bench.usb.StartWatch();
    std::uint8_t bits = 0;
    for (int press = 0; press < kPresses; ++press) {
      bits = foot.AnyBits();
      bench.watcher.Report(bits);
      if (foot.Up(3) == 0) bench.watcher.Press({0, bits});
      bench.loop.Advance(foot.AnyPause());
    }
    while (bench.watcher.HasReports()) bench.loop.Advance(50ms);
    bench.ExpectTheStateOf(bits);
    bench.watcher.Report(0);
    bench.loop.Advance(50ms);
    bench.ExpectTheStateOf(0);
    const double rests = bench.Second();
    bench.loop.Advance(5000ms);
    EXPECT_EQ(bench.Second(), rests);
  }
}

TEST(PedalStorm, SerialLinesLeaveThePlayerAsTheyAreHeld) {
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE(seed);
    StormBench bench;
    Foot foot(seed);
    bench.ChooseSerial();
    std::uint8_t bits = 0;
    for (int press = 0; press < kPresses; ++press) {
      bits = foot.AnyBits();
      bench.port.Hold({.CDHolding = (bits & 1) != 0,
                       .DSRHolding = (bits & 2) != 0,
                       .CTSHolding = (bits & 4) != 0});
      bench.loop.Advance(foot.AnyPause());
    }
    bench.loop.Advance(50ms);
    bench.ExpectTheStateOf(bits);
    bench.port.Hold({});
    bench.loop.Advance(50ms);
    bench.ExpectTheStateOf(0);
  }
}

TEST(PedalStorm, ReleaseIsSilenceThoughDoublePressesAndEndsCutIn) {
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE(seed);
    PedalBench bench;
    Foot foot(seed);
    bench.WorkAt(5);
    bench.usb.StartWatch();
    for (int press = 0; press < kPresses; ++press) {
      bench.watcher.Report(foot.AnyBits());
      if (foot.Up(20) == 0) {
        bench.watcher.Unplug();
      }
      bench.loop.Advance(foot.AnyPause());
    }
    bench.watcher.Report(0);
    while (bench.watcher.HasReports()) bench.loop.Advance(50ms);
    EXPECT_TRUE(bench.Still());
    EXPECT_FALSE(bench.form.DeckRuns.Get());
    EXPECT_GE(bench.Second(), 0);
    EXPECT_LE(bench.Second(), 10);
  }
}

}  // namespace
}  // namespace tavlo::test
