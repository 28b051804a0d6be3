#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "platform/qt/qt_loop.h"
#include "platform/wake/bell.h"
#include "support/keys.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

using base::Timer;
using base::operator""ms;
using base::operator""s;
using platform::Bell;

/// No busy machine takes so long for what a breath waits for.
constexpr base::Duration kLimit = 60s;
/// A loop that does not sleep asks thousands of times in a breath of `kShort`.
constexpr base::Duration kShort = 200ms;
constexpr int kFewAskings = 60;

/// A breath that lasts until something comes: a file call on another thread answers.
struct LongBreath : testing::Test {
  bool Until(const std::function<bool()>& done) {
    return shown.loop.BreatheUntil(done, shown.loop.Now() + kLimit);
  }
  /// Waits in vain and returns how often it was asked whether to go on.
  int AskedInVain() {
    int asked = 0;
    const auto never = [&] {
      ++asked;
      return false;
    };
    EXPECT_FALSE(shown.loop.BreatheUntil(never, shown.loop.Now() + kShort));
    return asked;
  }
  void ShowPlaying() {
    shown.PlayDocument();
    shown.ShowMain();
  }

  ShownWindows shown;
};

TEST_F(LongBreath, SleepsUntilWhatMayWakeItComes) {
  const Bell bell;
  bool came = false;
  const auto wait = shown.loop.WaitInBreathsToo(bell.Descriptor(), "bell", [&] {
    bell.Silence();
    came = true;
  });
  Timer feed(shown.loop, "feed", 40ms, base::TimerKind::Feed);
  feed.OnTick = [&] { bell.Ring(); };
  feed.Start();
  EXPECT_TRUE(Until([&] { return came; }));
}

TEST_F(LongBreath, EndsAtItsLimitAndSleepsMeanwhile) { EXPECT_LT(AskedInVain(), kFewAskings); }

TEST_F(LongBreath, IsNotKeptAwakeByADescriptorWhoseCallItRefuses) {
  const Bell bell;
  int taken = 0;
  const auto wait = shown.loop.WaitFor(bell.Descriptor(), "bell", [&] {
    bell.Silence();
    ++taken;
  });
  bell.Ring();
  EXPECT_LT(AskedInVain(), kFewAskings);
  EXPECT_EQ(taken, 0);
  EXPECT_TRUE(shown.typist.Until([&] { return taken == 1; })) << "it is taken once the breath ends";
}

TEST_F(LongBreath, IsNotKeptAwakeByARuleTimerThatIsDue) {
  int ticks = 0;
  Timer rule(shown.loop, "rule", 1s);
  rule.OnTick = [&] {
    rule.Stop();
    ++ticks;
  };
  Timer feed(shown.loop, "feed", 20ms, base::TimerKind::Feed);
  feed.OnTick = [&] {
    feed.Stop();
    rule.StartDue();
  };
  feed.Start();
  EXPECT_LT(AskedInVain(), kFewAskings);
  EXPECT_EQ(ticks, 0);
  EXPECT_TRUE(shown.typist.Until([&] { return ticks == 1; }));
}

TEST_F(LongBreath, KeepsWhatHandsDoAndRunsItInOrderWhenItIsOver) {
  ShowPlaying();
  std::string ran;
  shown.main.cmdRewind.OnPress = [&] { ran += "rewind "; };
  shown.main.cmdForward.OnPress = [&] { ran += "forward "; };
  shown.loop.Post([&] { ran += "post "; });
  shown.ClickInABreath(shown.typist.Middle("cmdForward"));
  shown.ClickInABreath(shown.typist.Middle("cmdRewind"));
  EXPECT_EQ(ran, "");
  EXPECT_TRUE(shown.typist.Until([&] { return ran.ends_with("rewind "); }));
  EXPECT_EQ(ran, "post forward rewind ");
}

TEST_F(LongBreath, PressOnStopIsSilenceAtOnceAndARuleLater) {
  ShowPlaying();
  int stops = 0;
  shown.main.cmdStop.OnPress = [&] { ++stops; };
  const QPoint stop = shown.typist.Middle("cmdStop");
  shown.typist.ClickUnseen(stop);
  EXPECT_TRUE(Until([&] { return shown.hush.silences == 1; }));
  EXPECT_EQ(stops, 0);
  EXPECT_TRUE(shown.typist.Until([&] { return stops == 1; }));
  shown.typist.ClickAt(stop);
  EXPECT_TRUE(shown.typist.Until([&] { return stops == 2; }));
  EXPECT_EQ(shown.hush.silences, 1) << "a rule that runs at once needs no help";
}

TEST_F(LongBreath, KeyOfStopIsSilenceAtOnce) {
  ShowPlaying();
  shown.typist.KeysUnseen({keys::kAlt, 's'});
  EXPECT_TRUE(Until([&] { return shown.hush.silences == 1; }));
}

TEST_F(LongBreath, PressOnAnotherKeyIsNoSilence) {
  ShowPlaying();
  int presses = 0;
  shown.main.cmdRewind.OnPress = [&] { ++presses; };
  shown.ClickInABreath(shown.typist.Middle("cmdRewind"));
  EXPECT_TRUE(shown.typist.Until([&] { return presses == 1; }));
  EXPECT_EQ(shown.hush.silences, 0);
}

TEST_F(LongBreath, HandsThatItKeptWaitForTheBoxThatFollowsIt) {
  ShowPlaying();
  bool pressed = false;
  bool pressedUnderABox = false;
  shown.main.cmdRewind.OnPress = [&] {
    pressed = true;
    pressedUnderABox = shown.loop.MessageBoxOpen();
  };
  shown.ClickInABreath(shown.typist.Middle("cmdRewind"));
  Timer timer(shown.loop, "t", 300ms);
  timer.OnTick = [&] {
    EXPECT_FALSE(pressed);
    shown.typist.KeysUnseen({keys::kReturn});
  };
  timer.Start();
  shown.loop.Show({.title = "Tavlo Deck", .text = "!"});
  timer.Stop();
  EXPECT_TRUE(shown.typist.Until([&] { return pressed; }));
  EXPECT_FALSE(pressedUnderABox);
}

TEST_F(LongBreath, ClickOnARowIsForgottenWhenTheListHasOtherRowsByThen) {
  shown.ShowMain();
  shown.FillQueue();
  shown.typist.Rest();
  std::string chosen;
  shown.main.listViewInQueue.OnRowClick = [&] {
    chosen += std::to_string(shown.main.listViewInQueue.ListIndex.Get()) + " ";
  };
  shown.ClickInABreath(shown.QueueRow(2));
  shown.main.listViewInQueue.Remove(0);
  shown.typist.Rest();
  EXPECT_EQ(chosen, "");
  shown.ClickInABreath(shown.QueueRow(2));
  shown.typist.Rest();
  EXPECT_EQ(chosen, "2 ");
}

}  // namespace
}  // namespace tavlo::test
