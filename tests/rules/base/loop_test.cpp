#include "base/loop.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using base::Reply;
using base::Timer;
using base::operator""ms;

TEST(Loop, PostedCallsRunInOrderOnTheNextPass) {
  SimulatedLoop loop;
  std::string ran;
  loop.Post([&] {
    ran += "1";
    loop.Post([&] { ran += "3"; });
  });
  loop.Post([&] { ran += "2"; });
  EXPECT_EQ(ran, "");
  loop.Yield();
  EXPECT_EQ(ran, "12");
  loop.Yield();
  EXPECT_EQ(ran, "123");
}

TEST(Loop, PassUnderABoxRunsTheCallsThatWaitBehindTheOneThatOpenedIt) {
  SimulatedLoop loop;
  std::string ran;
  loop.Expect({.delay = 10ms, .meanwhile = [&] {
                 loop.Yield();
                 EXPECT_EQ(ran, "2");
               }});
  loop.Post([&] { loop.Show({.text = "1"}); });
  loop.Post([&] { ran += "2"; });
  loop.Yield();
  EXPECT_EQ(ran, "2");
}

TEST(Loop, WaitLetsTimersTickInsideIt) {
  SimulatedLoop loop;
  int ticks = 0;
  Timer timer(loop, "t", 100ms);
  timer.OnTick = [&] { ++ticks; };
  timer.Start();
  loop.Wait(350ms);
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(loop.Now().sinceStart, 350ms);
}

TEST(Loop, WaitOfNoLengthIsOnePass) {
  SimulatedLoop loop;
  bool ran = false;
  loop.Post([&] { ran = true; });
  loop.Wait(0ms);
  EXPECT_TRUE(ran);
}

TEST(Loop, TimersGoOnUnderAMessageBox) {
  SimulatedLoop loop;
  int ticks = 0;
  Timer timer(loop, "t", 100ms);
  timer.OnTick = [&] {
    ++ticks;
    EXPECT_TRUE(loop.MessageBoxOpen());
  };
  timer.Start();
  loop.Expect({.reply = Reply::Yes, .delay = 250ms});
  EXPECT_EQ(loop.Show({.title = "T", .text = "?", .buttons = base::Buttons::YesNo}), Reply::Yes);
  EXPECT_EQ(ticks, 2);
  EXPECT_FALSE(loop.MessageBoxOpen());
}

TEST(Loop, LastBoxToCloseActivatesTheOwnerAgain) {
  SimulatedLoop loop;
  int activated = 0;
  loop.OnLastBoxClosed = [&] { ++activated; };
  loop.Expect({.meanwhile = [&] {
    loop.Show({.text = "inner"});
    EXPECT_EQ(activated, 0);
  }});
  loop.Show({.text = "outer"});
  EXPECT_EQ(activated, 1);
}

TEST(Loop, FailureThatNoRuleCatchesIsShownByTheNameOfTheEvent) {
  SimulatedLoop loop;
  loop.RunEvent("cmdPlay", [] { throw std::runtime_error("the disk is full"); });
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck");
  EXPECT_EQ(loop.Shown[0].text, "cmdPlay could not finish: the disk is full");
}

TEST(Loop, FailureInATickLeavesTheOtherTimersRunning) {
  SimulatedLoop loop;
  int ticks = 0;
  Timer broken(loop, "broken", 10ms);
  Timer sound(loop, "sound", 10ms);
  broken.OnTick = [&] {
    broken.Stop();
    throw std::runtime_error("no");
  };
  sound.OnTick = [&] { ++ticks; };
  broken.Start();
  sound.Start();
  loop.Advance(20ms);
  EXPECT_EQ(ticks, 2);
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST(SimulatedLoop, BreathUntilSomethingIsDoneLetsFeedsThroughAndNoRule) {
  SimulatedLoop loop;
  int fed = 0;
  Timer feed(loop, "feed", 100ms, base::TimerKind::Feed);
  Timer rule(loop, "rule", 100ms);
  feed.OnTick = [&] { ++fed; };
  rule.OnTick = [] { ADD_FAILURE() << "a rule ran in a breath"; };
  feed.Start();
  rule.Start();
  loop.Post([] { ADD_FAILURE() << "a post ran in a breath"; });
  EXPECT_TRUE(loop.BreatheUntil([&] { return fed == 3; }, loop.Now() + 1000ms));
  EXPECT_EQ(loop.Now().sinceStart, 300ms);
  EXPECT_EQ(loop.BreathedFor, 300ms);
  rule.Stop();
}

TEST(SimulatedLoop, BreathUntilSomethingIsDoneEndsAtItsLimitAndNotBefore) {
  SimulatedLoop loop;
  const base::MonotonicTime limit = loop.Now() + 1000ms;
  EXPECT_FALSE(loop.BreatheUntil([&] { return loop.Now() > limit; }, limit));
  EXPECT_EQ(loop.Now(), limit);
  EXPECT_TRUE(loop.BreatheUntil([] { return true; }, limit)) << "what is done needs no time";
}

TEST(SimulatedLoop, WallClockGoesWithTheLoopsTime) {
  SimulatedLoop loop;
  loop.SetWallClock({.year = 2004, .month = 2, .day = 28, .hour = 23, .minute = 59, .second = 59});
  loop.Advance(1500ms);
  const base::CalendarTime expected{.year = 2004, .month = 2, .day = 29, .millisecond = 500};
  EXPECT_EQ(loop.WallClock(), expected);
}

}  // namespace
}  // namespace tavlo::test
