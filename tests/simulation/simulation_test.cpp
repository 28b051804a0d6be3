#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "simulation/day.h"

namespace tavlo::simulation {
namespace {

constexpr int kStepsOfADay = 1000;
/// The first of so many days is lived twice.
constexpr int kDaysBetweenTwins = 7;

struct Options {
  std::uint64_t seed = 1;
  int steps = 20'000;
  std::string commit = "unknown";
  bool aloud = false;
};

std::string HowToRepeat(const Options& options, std::uint64_t seed, int steps) {
  return "commit " + options.commit + ": simulation_tests --seed " + std::to_string(seed) +
         " --steps " + std::to_string(steps);
}

std::string Report(const Day& day, const std::string& wrong) {
  return "\n" + day.Recorded().LastLines() + wrong + "\n" +
         Readable(day.Circumstances().Described()) + "\n";
}

/// Days one after the other, each from the seed after that of the day before.
class SimulationTest : public testing::Test {
 public:
  explicit SimulationTest(const Options& options) : options_(options) {}

 protected:
  template <typename Live>
  void ForEachDay(int daysApart, const Live& live) {
    for (int done = 0; done < options_.steps && !HasFailure(); done += kStepsOfADay * daysApart) {
      const std::uint64_t seed = options_.seed + static_cast<std::uint64_t>(done / kStepsOfADay);
      const int steps = std::min(kStepsOfADay, options_.steps - done);
      SCOPED_TRACE(HowToRepeat(options_, seed, steps));
      live(seed, steps);
    }
  }

  const Options& options_;
};

class LosesNothingAndFindsItsWayBackOnEveryDay : public SimulationTest {
  using SimulationTest::SimulationTest;
  void TestBody() override {
    ForEachDay(1, [this](std::uint64_t seed, int steps) {
      Day day(seed, options_.aloud);
      const std::string wrong = day.Run(steps);
      EXPECT_EQ(wrong, "") << Report(day, wrong);
    });
  }
};

class LivesTheSameDayTwice : public SimulationTest {
  using SimulationTest::SimulationTest;
  void TestBody() override {
    ForEachDay(kDaysBetweenTwins, [](std::uint64_t seed, int steps) {
      Day first(seed);
      Day second(seed);
      EXPECT_EQ(first.Run(steps), second.Run(steps));
      const auto& digests = first.Recorded().Digests();
      const auto& again = second.Recorded().Digests();
      const auto apart = std::mismatch(digests.begin(), digests.end(), again.begin(), again.end());
      EXPECT_TRUE(apart.first == digests.end() && apart.second == again.end())
          << "The days part at step " << apart.first - digests.begin() + 1;
    });
  }
};

template <typename Test>
void Register(const char* name, const Options& options) {
  testing::RegisterTest("Simulation", name, nullptr, nullptr, __FILE__, __LINE__,
                        [&options]() -> SimulationTest* { return new Test(options); });
}

bool TakeOptions(int count, char** words, Options& options) {
  for (int at = 1; at < count; ++at) {
    const std::string word = words[at];
    const char* const value = at + 1 < count ? words[at + 1] : nullptr;
    if (word == "--aloud") {
      options.aloud = true;
      continue;
    }
    if (!value) return false;
    if (word == "--seed") {
      options.seed = std::strtoull(value, nullptr, 0);
    } else if (word == "--steps") {
      options.steps = std::atoi(value);
    } else if (word == "--commit") {
      options.commit = value;
    } else {
      return false;
    }
    ++at;
  }
  return options.steps > 0;
}

}  // namespace
}  // namespace tavlo::simulation

int main(int count, char** words) {
  using namespace tavlo::simulation;
  testing::InitGoogleTest(&count, words);
  Options options;
  if (!TakeOptions(count, words, options)) {
    std::fprintf(stderr, "simulation_tests [--seed N] [--steps N] [--commit NAME] [--aloud]\n");
    return 2;
  }
  std::printf("%s\n", HowToRepeat(options, options.seed, options.steps).c_str());
  Register<LosesNothingAndFindsItsWayBackOnEveryDay>("LosesNothingAndFindsItsWayBackOnEveryDay",
                                                     options);
  Register<LivesTheSameDayTwice>("LivesTheSameDayTwice", options);
  return RUN_ALL_TESTS();
}
