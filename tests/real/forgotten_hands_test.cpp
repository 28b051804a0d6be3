#include <gtest/gtest.h>

#include <string>

#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

/// A rule waits for a folder, and what hands do meanwhile is kept.
struct ForgottenHands : testing::Test {
  ForgottenHands() {
    shown.ShowMain();
    shown.FillQueue();
    shown.typist.Rest();
    shown.main.listViewInQueue.OnRowClick = [this] { ran += "row "; };
    shown.main.cmdForward.OnPress = [this] { ran += "forward "; };
    shown.main.cmdRewind.OnPress = [this] { ran += "rewind "; };
  }

  ShownWindows shown;
  std::string ran;
};

TEST_F(ForgottenHands, WhatWasDoneBehindAForgottenClickIsForgottenToo) {
  shown.ClickInABreath(shown.typist.Middle("cmdForward"));
  shown.ClickInABreath(shown.QueueRow(2));
  shown.ClickInABreath(shown.typist.Middle("cmdRewind"));
  EXPECT_EQ(ran, "");
  shown.main.listViewInQueue.Remove(0);
  shown.typist.Rest();
  EXPECT_EQ(ran, "forward ");
}

TEST_F(ForgottenHands, WhatWasDoneBehindAClickThatCountsIsDone) {
  shown.ClickInABreath(shown.QueueRow(2));
  shown.ClickInABreath(shown.typist.Middle("cmdRewind"));
  EXPECT_EQ(ran, "");
  shown.typist.Rest();
  EXPECT_EQ(ran, "row rewind ");
}

}  // namespace
}  // namespace tavlo::test
