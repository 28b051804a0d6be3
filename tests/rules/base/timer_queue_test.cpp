#include "base/timer_queue.h"

#include <gtest/gtest.h>

#include <string>

#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using base::Timer;
using base::TimerKind;
using base::operator""ms;

struct TimerQueueTest : testing::Test {
  SimulatedLoop loop;
  std::string ran;
};

TEST_F(TimerQueueTest, TickComesAtItsIntervalAndNotBefore) {
  Timer timer(loop, "t", 100ms);
  timer.OnTick = [&] { ran += "t"; };
  timer.Start();
  loop.Advance(99ms);
  EXPECT_EQ(ran, "");
  loop.Advance(1ms);
  EXPECT_EQ(ran, "t");
}

TEST_F(TimerQueueTest, TimersDueTogetherRunInTheOrderTheyWereStarted) {
  Timer second(loop, "second", 50ms);
  Timer first(loop, "first", 50ms);
  second.OnTick = [&] { ran += "2"; };
  first.OnTick = [&] { ran += "1"; };
  first.Start();
  second.Start();
  loop.Advance(50ms);
  EXPECT_EQ(ran, "12");
}

TEST_F(TimerQueueTest, OversleepingSeveralTicksRunsOne) {
  Timer timer(loop, "t", 100ms);
  timer.OnTick = [&] { ran += "t"; };
  timer.Start();
  loop.Oversleep(1000ms);
  EXPECT_EQ(ran, "t");
  loop.Advance(99ms);
  EXPECT_EQ(ran, "t");
  loop.Advance(1ms);
  EXPECT_EQ(ran, "tt");
}

TEST_F(TimerQueueTest, TickThatStopsItsTimerIsTheLast) {
  Timer timer(loop, "t", 10ms);
  timer.OnTick = [&] {
    timer.Stop();
    ran += "t";
  };
  timer.Start();
  loop.Advance(100ms);
  EXPECT_EQ(ran, "t");
  EXPECT_FALSE(timer.Enabled());
}

TEST_F(TimerQueueTest, NewIntervalOfARunningTimerCountsFromNow) {
  Timer timer(loop, "t", 1000ms);
  timer.OnTick = [&] { ran += "t"; };
  timer.Start();
  loop.Advance(900ms);
  timer.SetInterval(200ms);
  loop.Advance(199ms);
  EXPECT_EQ(ran, "");
  loop.Advance(1ms);
  EXPECT_EQ(ran, "t");
}

TEST_F(TimerQueueTest, TimerThatIsStartedDueTicksInTheNextPassAndThenAnIntervalApart) {
  Timer timer(loop, "t", 100ms);
  timer.OnTick = [&] { ran += "t"; };
  timer.Start();
  loop.Busy(30ms);
  timer.StartDue();
  EXPECT_EQ(ran, "");
  loop.Yield();
  EXPECT_EQ(ran, "t");
  loop.Advance(99ms);
  EXPECT_EQ(ran, "t");
  loop.Advance(1ms);
  EXPECT_EQ(ran, "tt");
}

TEST_F(TimerQueueTest, TimerThatIsStartedDueWaitsForABreathToEnd) {
  Timer timer(loop, "t", 100ms);
  timer.OnTick = [&] { ran += "t"; };
  timer.StartDue();
  loop.Breathe();
  EXPECT_EQ(ran, "");
  loop.Yield();
  EXPECT_EQ(ran, "t");
}

TEST_F(TimerQueueTest, IntervalOfZeroNeverTicks) {
  Timer timer(loop, "t", 0ms);
  timer.OnTick = [&] { ran += "t"; };
  timer.Start();
  loop.Advance(1000ms);
  EXPECT_EQ(ran, "");
  timer.SetInterval(5ms);
  loop.Advance(5ms);
  EXPECT_EQ(ran, "t");
}

TEST_F(TimerQueueTest, TimerThatIsDestroyedNoLongerTicks) {
  {
    Timer timer(loop, "t", 10ms);
    timer.OnTick = [&] { ran += "t"; };
    timer.Start();
  }
  loop.Advance(100ms);
  EXPECT_EQ(ran, "");
}

TEST_F(TimerQueueTest, BreathingRunsFeedTimersOnly) {
  Timer rule(loop, "rule", 10ms);
  Timer feed(loop, "feed", 10ms, TimerKind::Feed);
  rule.OnTick = [&] { ran += "r"; };
  feed.OnTick = [&] { ran += "f"; };
  rule.Start();
  feed.Start();
  loop.Busy(10ms);
  loop.Breathe();
  EXPECT_EQ(ran, "f");
  loop.Yield();
  EXPECT_EQ(ran, "fr");
}

}  // namespace
}  // namespace tavlo::test
