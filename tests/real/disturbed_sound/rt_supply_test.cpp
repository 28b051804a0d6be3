#include "platform/sound/rt_supply.h"

#include <gtest/gtest.h>

namespace tavlo::test {
namespace {

TEST(RtSupply, StartAndASteadyFlowAreNoDrought) {
  platform::RtSupply supply;
  supply.Restart();
  supply.RtAsked(360);
  for (int i = 0; i < 100; ++i) supply.RtAsked(120);
  supply.RtAsked(359);
  EXPECT_FALSE(supply.TakeRanDry());
}

TEST(RtSupply, AskingForTheWholeBufferAgainMeansThatItRanDryAndIsToldOnce) {
  platform::RtSupply supply;
  supply.Restart();
  supply.RtAsked(360);
  supply.RtAsked(120);
  supply.RtAsked(360);
  supply.RtAsked(120);
  EXPECT_TRUE(supply.TakeRanDry());
  EXPECT_FALSE(supply.TakeRanDry());
}

TEST(RtSupply, NextDeviceBeginsAnew) {
  platform::RtSupply supply;
  supply.Restart();
  supply.RtAsked(360);
  supply.RtAsked(360);
  supply.Restart();
  EXPECT_FALSE(supply.TakeRanDry());
  supply.RtAsked(720);
  supply.RtAsked(360);
  EXPECT_FALSE(supply.TakeRanDry());
}

}  // namespace
}  // namespace tavlo::test
