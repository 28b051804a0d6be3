// A seek is told on the bus; playing on is not.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/hand.h"
#include "support/remote_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using What = remote::MediaCommand::What;

/// A long document plays, and the bus has looked for a while.
struct JumpBench : RemoteBench {
  void PlayOn(double second = 3) {
    for (auto& [path, sound] : file.Sounds) sound.samples = 800'000;
    StartUntilReady();
    ClickRow(0);
    form.cmdPlay.Press(By::Hand);
    form.cmdStop.Press(By::Hand);
    config.sliderABS.Value = 0;
    InWork().CurrentSamplePosition = second * 8000;
    form.cmdPlay.Press(By::Hand);
    LookOften(1s);
    bus.JumpsTold = 0;
  }
  /// The bus looks after each pass.
  void LookOften(base::Duration length) {
    for (base::Duration passed{0}; passed < length; passed += 10ms) {
      loop.Advance(10ms);
      bus.Look();
    }
  }
  /// How many jumps are told of what happens and of some seconds behind it.
  int Jumps(const std::function<void()>& happens) {
    bus.JumpsTold = 0;
    happens();
    bus.Look();
    LookOften(3s);
    return bus.JumpsTold;
  }
};

struct MediaJumpTest : testing::Test, JumpBench {};

TEST_F(MediaJumpTest, PlayingOnIsNone) {
  PlayOn();
  EXPECT_EQ(Jumps([&] { LookOften(30s); }), 0);
}

TEST_F(MediaJumpTest, StandingIsNone) {
  PlayOn();
  EXPECT_EQ(Jumps([&] { form.cmdStop.Press(By::Hand); }), 0);
  EXPECT_EQ(Jumps([&] { loop.Advance(3600s); }), 0);
  EXPECT_EQ(Jumps([&] { form.cmdPlay.Press(By::Hand); }), 0) << "without auto-backspace";
}

TEST_F(MediaJumpTest, AutoBackspaceIsOne) {
  PlayOn();
  config.sliderABS.Value = 15;
  form.cmdStop.Press(By::Hand);
  bus.Look();
  loop.Advance(3600s);
  EXPECT_EQ(Jumps([&] { form.cmdPlay.Press(By::Hand); }), 1);
}

TEST_F(MediaJumpTest, SavedPositionIsOneAtTheFirstPlay) {
  Drop(Document().By("Aaron").Priority().Saved(40'000).Name());
  StartUntilReady();
  config.txtAutoPreview.Value = "0";
  ClickRow(0);
  ASSERT_EQ(InWork().SavedPosition, 40'000);
  bus.Look();
  loop.Advance(60s);
  EXPECT_EQ(Jumps([&] { form.cmdPlay.Press(By::Hand); }), 1);
  EXPECT_GT(bus.Position(), 5'000'000);
}

TEST_F(MediaJumpTest, SkipsAndSeeksAndTheSliderAreOneEach) {
  PlayOn(20);
  EXPECT_EQ(Jumps([&] { Ask({.what = What::Seek, .time = 5'000'000}); }), 1);
  EXPECT_EQ(Jumps([&] { Ask({.what = What::Seek, .time = -5'000'000}); }), 1);
  EXPECT_EQ(Jumps([&] { Drag(form.slPosition, 5); }), 1);
  EXPECT_EQ(Jumps([&] { form.cmdSkipBeg.Press(By::Hand); }), 1);
  EXPECT_EQ(Jumps([&] { form.cmdSkipEnd.Press(By::Hand); }), 1);
  EXPECT_EQ(Jumps([&] { Ask(What::Previous); }), 1);
  EXPECT_EQ(Jumps([&] { Ask({.what = What::Seek, .time = 100'000}); }), 0) << "too little";
}

TEST_F(MediaJumpTest, EachJumpOfAWindIsOne) {
  PlayOn(20);
  config.txtAccelerateWindIncrement.Value = "N";
  EXPECT_EQ(Jumps([&] { form.cmdForward.Press(By::Hand); }), 4) << "at 0, 1, 2 and 3 seconds";
}

TEST_F(MediaJumpTest, OtherSpeedIsNone) {
  for (const int from : {-50, 0, 50}) {
    for (const int to : {-50, 0, 50}) {
      JumpBench bench;
      bench.PlayOn();
      Drag(bench.form.Slider1, from);
      bench.LookOften(5s);
      EXPECT_EQ(bench.Jumps([&] { Drag(bench.form.Slider1, to); }), 0) << from << " " << to;
    }
  }
}

TEST_F(MediaJumpTest, LoopThatStallsWhileTheEarGoesOnIsNone) {
  PlayOn();
  EXPECT_EQ(Jumps([&] {
              // The sound goes on while the loop only breathes.
              loop.BreatheUntil([] { return false; }, loop.Now() + 5s);
            }),
            0);
}

TEST_F(MediaJumpTest, GapIsOneOnceTheSoundGoesOn) {
  PlayOn();
  file.Stall();
  LookOften(6s);
  EXPECT_EQ(bus.JumpsTold, 0) << "in the gap there is nothing to tell";
  EXPECT_EQ(Jumps([&] { file.GoOn(); }), 1);
}

TEST_F(MediaJumpTest, HandThatHoldsASliderMakesNone) {
  PlayOn();
  EXPECT_EQ(Jumps([&] {
              form.Slider1.Press();
              LookOften(3s);
              form.Slider1.Release();
            }),
            0);
}

TEST_F(MediaJumpTest, DocumentThatIsLeftIsOneBackToTheBeginning) {
  PlayOn(20);
  EXPECT_EQ(Jumps([&] { form.cmdSkip.Press(By::Hand); }), 1);
  EXPECT_EQ(bus.Position(), 0);
}

}  // namespace
}  // namespace tavlo::test
