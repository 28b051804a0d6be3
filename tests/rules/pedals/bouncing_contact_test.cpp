#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/pedal_bench.h"

namespace tavlo::test {
namespace {

using base::Duration;
using base::operator""ms;
using pedals::SerialLines;

constexpr SerialLines kUp{};
constexpr std::array kPedals{SerialLines{.CDHolding = true}, SerialLines{.DSRHolding = true},
                             SerialLines{.CTSHolding = true}};
constexpr unsigned kSeed = 3;

/// What a line does, from the first change on.
struct Change {
  Duration at;
  SerialLines lines;
};
using Changes = std::vector<Change>;

/// A contact that bounces for 1 to 20 ms whenever it closes or opens, under a foot.
struct Contact {
  explicit Contact(unsigned seed) : chance(seed) {}

  int Between(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(chance);
  }
  Duration Time(Duration least, Duration most) {
    return Duration{Between(static_cast<int>(least.count()), static_cast<int>(most.count()))};
  }
  SerialLines AnyPedal() { return kPedals[static_cast<std::size_t>(Between(0, 2))]; }

  /// Adds the change from one state to another, and whatever it bounces.
  void Move(Changes& changes, Duration at, const SerialLines& from, const SerialLines& to) {
    const Duration settled = at + Time(1ms, 20ms);
    changes.push_back({at, to});
    for (Duration next = at + Time(0ms, 4ms); next < settled; next += Time(0ms, 4ms)) {
      changes.push_back({next, changes.back().lines == to ? from : to});
    }
    changes.push_back({settled, to});
  }
  /// One press and release; each edge settles before the next one.
  void Press(Changes& changes, Duration at, const SerialLines& pedal, Duration held) {
    Move(changes, at, kUp, pedal);
    const Duration lifted = std::max(at + held, changes.back().at);
    Move(changes, lifted, pedal, kUp);
  }

  std::mt19937 chance;
};

/// A player with a document of forty hours at its noon, under a pedal on a serial port.
struct BounceBench : PedalBench {
  explicit BounceBench(bool told) {
    port.CanTell = told;
    port.TellsAtOnce = false;
    config.txtSkipBegEnd.Value = "Y";
    WorkInTheMiddleOfHours();
    ChooseSerial();
    loop.Advance(1000ms);
  }

  /// Lets the lines change as they do, each change being told of some time later, and all the time
  /// pass; returns what was done by then, and forgets it.
  std::vector<std::string> Run(const Changes& changes, const std::vector<Duration>& toldAfter,
                               Duration all) {
    const base::MonotonicTime begin = loop.Now();
    const int startsBefore = player.Starts;
    std::size_t told = 0;
    const auto tellUntil = [&](Duration moment) {
      for (; told < changes.size() && changes[told].at + toldAfter[told] <= moment; ++told) {
        AdvanceTo(begin + std::max(changes[told].at + toldAfter[told], loop.Now() - begin));
        port.Tell();
      }
    };
    for (const Change& change : changes) {
      tellUntil(change.at);
      AdvanceTo(begin + change.at);
      port.Hold(change.lines);
    }
    tellUntil(all);
    AdvanceTo(begin + all);
    EXPECT_TRUE(Still());
    std::vector<std::string> done = prompts;
    done.push_back(std::to_string(player.Starts - startsBefore) + " starts");
    prompts.clear();
    documentInWork.CurrentSamplePosition = kNoon * 8000;
    return done;
  }

 private:
  void AdvanceTo(base::MonotonicTime moment) {
    if (moment > loop.Now()) loop.Advance(moment - loop.Now());
  }
};

/// How late each change is told of, as a thread that the machine lets wait for its turn does.
std::vector<Duration> Lateness(Contact& contact, const Changes& changes) {
  std::vector<Duration> late;
  Duration last{0};
  for (const Change& change : changes) {
    last = std::max(last, change.at + contact.Time(0ms, 3ms));
    late.push_back(last - change.at);
  }
  return late;
}

TEST(BouncingContact, TenThousandPressesDoWhatTheyDoUnderAPoll) {
  Contact contact(kSeed);
  BounceBench polled(/*told=*/false);
  BounceBench told(/*told=*/true);
  int presses = 0;
  int doubles = 0;
  while (presses < 10'000) {
    Changes changes;
    const SerialLines pedal = contact.AnyPedal();
    const bool twice = contact.Between(0, 3) == 0;
    // Where a poll may see a press 70 ms late, these are as surely two presses or one double.
    contact.Press(changes, 0ms, pedal, contact.Time(100ms, twice ? 150ms : 600ms));
    if (twice) {
      contact.Press(changes, changes.back().at + contact.Time(80ms, 150ms), pedal,
                    contact.Time(80ms, 300ms));
    }
    presses += twice ? 2 : 1;
    doubles += twice && pedal != kPedals[1] ? 1 : 0;
    const Duration all = changes.back().at + contact.Time(600ms, 700ms);
    const std::vector<Duration> late = Lateness(contact, changes);
    const auto expected = polled.Run(changes, late, all);
    ASSERT_EQ(told.Run(changes, late, all), expected) << "after " << presses << " presses";
    const bool skipped =
        std::ranges::any_of(expected, [](const std::string& did) { return did.ends_with("End"); });
    ASSERT_EQ(skipped, twice && pedal != kPedals[1]) << "after " << presses << " presses";
  }
  EXPECT_GT(doubles, 1000);
}

TEST(BouncingContact, ShortTapIsSeenWhereverAnyPollWouldSeeItAndIsNeverADoublePress) {
  Contact contact(kSeed);
  std::vector<std::unique_ptr<BounceBench>> polled;
  for (int phase = 0; phase < 5; ++phase) {
    polled.push_back(std::make_unique<BounceBench>(/*told=*/false));
    // The ticks of each begin ten milliseconds behind those of the one before.
    polled.back()->loop.Advance(10ms * phase);
  }
  BounceBench told(/*told=*/true);
  int seenByAll = 0;
  for (int tap = 0; tap < 1000; ++tap) {
    Changes changes;
    const SerialLines pedal = kPedals[contact.Between(0, 1) == 0 ? 0U : 2U];
    contact.Press(changes, 0ms, pedal, contact.Time(1ms, 90ms));
    const std::vector<Duration> late = Lateness(contact, changes);
    // A whole number of polls, so that each keeps its place between them.
    const Duration all = 1000ms;
    std::size_t least = 2;
    for (const auto& bench : polled) least = std::min(least, bench->Run(changes, late, all).size());
    const std::vector<std::string> done = told.Run(changes, late, all);
    // One entry says how often the player was started, which is never here; each tone is another.
    ASSERT_LE(done.size(), 2u) << "tap " << tap;
    ASSERT_GE(done.size(), least) << "tap " << tap;
    ASSERT_TRUE(
        std::ranges::none_of(done, [](const std::string& did) { return did.ends_with("End"); }))
        << "tap " << tap;
    seenByAll += least == 2 ? 1 : 0;
  }
  EXPECT_GT(seenByAll, 200);
}

}  // namespace
}  // namespace tavlo::test
