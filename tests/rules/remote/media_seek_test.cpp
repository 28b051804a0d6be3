// Where somebody on the desktop's bus may put the position.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "support/hand.h"
#include "support/remote_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using remote::Microseconds;
using What = remote::MediaCommand::What;

constexpr Microseconds kOneSecond = 1'000'000;
constexpr auto kFurthest = std::numeric_limits<Microseconds>::max();
constexpr auto kFurthestBack = std::numeric_limits<Microseconds>::min();

struct MediaSeekTest : testing::Test, RemoteBench {
  void SetPosition(Microseconds time) {
    Ask({.what = What::SetPosition, .time = time, .track = bus.Look().track});
  }
  void SeekInEveryWay() {
    Ask({.what = What::Seek, .time = kOneSecond});
    SetPosition(7 * kOneSecond);
  }
};

TEST_F(MediaSeekTest, SeekGoesOnFromWhereTheEarIsAndStopsAtBothEnds) {
  struct Case {
    Microseconds by;
    double second;
  };
  for (const Case& c :
       {Case{kOneSecond, 5}, Case{-kOneSecond, 3}, Case{0, 4}, Case{-5 * kOneSecond, 0},
        Case{6 * kOneSecond, 10}, Case{7 * kOneSecond, 10}, Case{kFurthest, 10},
        Case{kFurthestBack, 0}, Case{kFurthestBack + 1, 0}, Case{1500, 4.0015}}) {
    RemoteBench bench;
    bench.WorkOn();
    bench.Ask({.what = What::Seek, .time = c.by});
    EXPECT_NEAR(bench.Second(), c.second, 0.001) << c.by;
    EXPECT_TRUE(bench.Still());
    EXPECT_EQ(bench.form.slPosition.Value, std::lround(c.second * 10)) << c.by;
  }
}

TEST_F(MediaSeekTest, SeekWhilePlayingGoesOnFromThere) {
  WorkOn();
  form.cmdPlay.Press(By::Hand);
  loop.Advance(500ms);
  SetPosition(7 * kOneSecond);
  EXPECT_TRUE(Plays());
  EXPECT_NEAR(Second(), 7, 0.1);
  loop.Advance(1s);
  EXPECT_NEAR(Second(), 8, 0.1);
}

TEST_F(MediaSeekTest, SeekPastTheEndOfWhatPlaysIsItsEnd) {
  WorkOn();
  form.cmdPlay.Press(By::Hand);
  Ask({.what = What::Seek, .time = kFurthest});
  loop.Advance(2s);
  EXPECT_TRUE(Still());
  EXPECT_DOUBLE_EQ(Second(), 10);
  EXPECT_TRUE(form.cmdComplete.Enabled) << "as behind a hand that puts the slider there";
  EXPECT_TRUE(form.cmdSkip.Enabled) << "it stays in work";
}

TEST_F(MediaSeekTest, SeekEndsAWind) {
  WorkOn();
  form.cmdForward.Press(By::Hand);
  ASSERT_TRUE(Winds());
  SetPosition(2 * kOneSecond);
  EXPECT_TRUE(Still());
  EXPECT_DOUBLE_EQ(Second(), 2);
  EXPECT_FALSE(form.DeckRuns);
}

TEST_F(MediaSeekTest, PositionOutsideTheDocumentIsIgnored) {
  WorkOn();
  for (const Microseconds time :
       {Microseconds{-1}, 10 * kOneSecond + 1, kFurthest, kFurthestBack}) {
    SetPosition(time);
    EXPECT_DOUBLE_EQ(Second(), 4) << time;
  }
  SetPosition(10 * kOneSecond);
  EXPECT_DOUBLE_EQ(Second(), 10);
  SetPosition(0);
  EXPECT_DOUBLE_EQ(Second(), 0);
}

TEST_F(MediaSeekTest, PositionForAnotherDocumentIsIgnored) {
  WorkOn();
  const auto track = bus.Look().track;
  for (const std::uint64_t other :
       {std::uint64_t{0}, track - 1, track + 1, std::numeric_limits<std::uint64_t>::max()}) {
    Ask({.what = What::SetPosition, .time = kOneSecond, .track = other});
    EXPECT_DOUBLE_EQ(Second(), 4) << other;
  }
}

TEST_F(MediaSeekTest, PositionForTheDocumentOfBeforeDoesNotMoveTheNextOne) {
  WorkOn();
  const auto track = bus.Look().track;
  form.cmdSkip.Press(By::Hand);
  // Nobody has looked since, so the next document has no number yet.
  ClickRow(1);
  form.cmdPlay.Press(By::Hand);
  form.cmdStop.Press(By::Hand);
  InWork().CurrentSamplePosition = 4 * 8000;
  Ask({.what = What::SetPosition, .time = kOneSecond, .track = track});
  EXPECT_DOUBLE_EQ(Second(), 4);
}

TEST_F(MediaSeekTest, NothingIsSoughtInAPreviewOrWithoutADocument) {
  StartUntilReady();
  Ask({.what = What::Seek, .time = kOneSecond});
  ClickRow(0);
  EXPECT_FALSE(bus.Look().canSeek);
  const double before = Second();
  Ask({.what = What::Seek, .time = 5 * kOneSecond});
  SetPosition(5 * kOneSecond);
  EXPECT_NEAR(Second(), before, 0.01);
}

TEST_F(MediaSeekTest, NothingIsSoughtWhereAHandCanNotReachTheSlider) {
  WorkOn();
  loop.Expect({.delay = 100ms, .meanwhile = [this] { SeekInEveryWay(); }});
  loop.Show({.title = "Tavlo Deck", .text = "A box"});
  EXPECT_DOUBLE_EQ(Second(), 4) << "under a message box";
  form.cmdEQ.Press(By::Hand);
  SeekInEveryWay();
  EXPECT_DOUBLE_EQ(Second(), 4) << "under the configuration";
  config.mnuClose.Press(By::Hand);
  {
    const window::ListTransition moving(Rooms().mainWindow.guards);
    SeekInEveryWay();
    EXPECT_DOUBLE_EQ(Second(), 4) << "while a document is moved";
  }
  SeekInEveryWay();
  EXPECT_DOUBLE_EQ(Second(), 7);
}

TEST_F(MediaSeekTest, SeekLeavesTheSliderToTheHandThatHoldsIt) {
  for (const auto slider :
       {&forms::MainForm::slPosition, &forms::MainForm::Slider1, &forms::MainForm::sldVol}) {
    RemoteBench bench;
    bench.WorkOn();
    (bench.form.*slider).Press();
    bench.Ask({.what = What::Seek, .time = kOneSecond});
    EXPECT_DOUBLE_EQ(bench.Second(), 4);
    (bench.form.*slider).Release();
  }
}

TEST_F(MediaSeekTest, SeekWorksBehindASliderThatWasLetGoWhileADocumentWasMoved) {
  WorkOn();
  form.slPosition.Press();
  {
    const window::ListTransition moving(Rooms().mainWindow.guards);
    form.slPosition.Release();
  }
  ASSERT_TRUE(Engine().SliderDragging);
  SetPosition(2 * kOneSecond);
  EXPECT_DOUBLE_EQ(Second(), 2);
  EXPECT_FALSE(Engine().SliderDragging);
}

}  // namespace
}  // namespace tavlo::test
