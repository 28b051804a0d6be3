#include "shell/splash.h"

#include <gtest/gtest.h>

#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::Pointer;

struct SplashTest : testing::Test {
  SimulatedLoop loop;
  forms::SplashForm form{loop};
  int done = 0;
  shell::Splash splash{loop, form, [this] { ++done; }};
};

TEST_F(SplashTest, BarClimbsToItsEndAndWraps) {
  splash.Show("1.0");
  splash.tmrStartupDelay.Stop();
  loop.Advance(5000ms);
  EXPECT_EQ(form.ProgressBar1.Value, 10);
  loop.Advance(500ms);
  EXPECT_EQ(form.ProgressBar1.Value, 0);
}

TEST_F(SplashTest, PointerThatMovesOverItStaysTheHourglass) {
  splash.Show("1.0");
  form.frmInitSplash.MousePointer = Pointer::Arrow;
  form.frmInitSplash.PointerMove();
  EXPECT_EQ(form.frmInitSplash.MousePointer, Pointer::Hourglass);
}

TEST_F(SplashTest, ClickAndDelayTogetherOpenTheMainWindowOnce) {
  splash.Show("1.0");
  loop.Advance(4900ms);
  form.picIcon.Click();
  form.picIcon.Click();
  loop.Advance(10s);
  EXPECT_EQ(done, 1);
  EXPECT_EQ(form.frmInitSplash.MousePointer, Pointer::Arrow);
}

}  // namespace
}  // namespace tavlo::test
