#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>

#include "stalls/share.h"
#include "support/screen_user.h"
#include "support/started_program.h"

namespace tavlo::test {
namespace {

/// A program whose root, or what holds it, stands on a share.
struct StalledStart : testing::TestWithParam<const char*>, ScreenUser {
  void SetUp() override {
    home.MakeRoot(QuietSettings());
    before = home.Everything();
    share.emplace(home, GetParam());
    if (!share->Mount().Fault().empty()) GTEST_SKIP() << share->Mount().Fault();
  }

  StartedProgram Start() { return {TAVLO_PROGRAM, home.Path()}; }
  void StartAndEndWell() {
    StartedProgram program = Start();
    PassSplash();
    Answer("Tavlo Deck - Sound Card");
    Exit();
    EXPECT_EQ(program.ExitStatus(), 0);
  }

  Home home;
  std::map<std::string, std::string> before;
  std::optional<Share> share;
};

TEST_P(StalledStart, EndsWithABoxAndChangesNothingAndTheNextOneIsAsEver) {
  share->Mount().Stop();
  {
    StartedProgram program = Start();
    Answer("Tavlo Deck");
    EXPECT_EQ(program.ExitStatus(), 1);
  }
  share->Mount().GoOn();
  EXPECT_EQ(home.Everything(), before);
  StartAndEndWell();
}

TEST_P(StalledStart, IsAsEverWhereTheShareAnswers) { StartAndEndWell(); }

INSTANTIATE_TEST_SUITE_P(Shares, StalledStart, testing::Values("/Lyrane/TavloDeck", "/Lyrane"));

}  // namespace
}  // namespace tavlo::test
