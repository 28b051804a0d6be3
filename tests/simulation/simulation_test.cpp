#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "simulation/day.h"

namespace tavlo::simulation {
namespace {

constexpr int kStepsOfADay = 1000;
/// Every so manieth day is lived twice.
constexpr int kDaysBetweenTwins = 7;

struct Options {
  std::uint64_t seed = 1;
  int steps = 20'000;
  std::string commit = "unknown";
  bool aloud = false;
};

/// Set once from the command line, before the tests run.
Options& Given() {
  static Options options;
  return options;
}

std::string HowToRepeat(std::uint64_t seed, int steps) {
  return "commit " + Given().commit + ": simulation_tests --seed " + std::to_string(seed) +
         " --steps " + std::to_string(steps);
}

std::string Report(std::uint64_t seed, int steps, const Day& day, const std::string& wrong) {
  return wrong + "\n" + day.Recorded().LastLines() + wrong + "\n" +
         Readable(day.Circumstances().Described()) + "\n" + HowToRepeat(seed, steps);
}

TEST(Simulation, LosesNothingAndFindsItsWayBackOnEveryDay) {
  for (int done = 0; done < Given().steps; done += kStepsOfADay) {
    const std::uint64_t seed = Given().seed + static_cast<std::uint64_t>(done / kStepsOfADay);
    const int steps = std::min(kStepsOfADay, Given().steps - done);
    Day day(seed, Given().aloud);
    const std::string wrong = day.Run(steps);
    ASSERT_EQ(wrong, "") << Report(seed, steps, day, wrong);
  }
}

TEST(Simulation, LivesTheSameDayTwice) {
  for (int done = 0; done < Given().steps; done += kStepsOfADay * kDaysBetweenTwins) {
    const std::uint64_t seed = Given().seed + static_cast<std::uint64_t>(done / kStepsOfADay);
    const int steps = std::min(kStepsOfADay, Given().steps - done);
    Day first(seed);
    Day second(seed);
    EXPECT_EQ(first.Run(steps), second.Run(steps));
    const auto& digests = first.Recorded().Digests();
    const auto& again = second.Recorded().Digests();
    const auto apart = std::mismatch(digests.begin(), digests.end(), again.begin(), again.end());
    EXPECT_TRUE(apart.first == digests.end() && apart.second == again.end())
        << "The days part at step " << apart.first - digests.begin() + 1 << "\n"
        << HowToRepeat(seed, steps);
  }
}

bool TakeOptions(int count, char** words) {
  for (int at = 1; at < count; ++at) {
    const std::string word = words[at];
    const char* const value = at + 1 < count ? words[at + 1] : nullptr;
    if (word == "--aloud") {
      Given().aloud = true;
      continue;
    }
    if (!value) return false;
    if (word == "--seed") {
      Given().seed = std::strtoull(value, nullptr, 0);
    } else if (word == "--steps") {
      Given().steps = std::atoi(value);
    } else if (word == "--commit") {
      Given().commit = value;
    } else {
      return false;
    }
    ++at;
  }
  return Given().steps > 0;
}

}  // namespace
}  // namespace tavlo::simulation

int main(int count, char** words) {
  testing::InitGoogleTest(&count, words);
  if (!tavlo::simulation::TakeOptions(count, words)) {
    std::fprintf(stderr, "simulation_tests [--seed N] [--steps N] [--commit NAME] [--aloud]\n");
    return 2;
  }
  const auto& given = tavlo::simulation::Given();
  std::printf("%s\n", tavlo::simulation::HowToRepeat(given.seed, given.steps).c_str());
  return RUN_ALL_TESTS();
}
