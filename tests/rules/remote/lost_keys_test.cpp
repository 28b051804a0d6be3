// A key that is held, or comes, while the desktop, the page, the loop or the program itself
// changes: it is let go sooner or later, and none is heard twice.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/hand.h"
#include "support/remote_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using remote::AfarAction;

struct LostKeysTest : testing::Test, RemoteBench {};

TEST_F(LostKeysTest, WhateverTakesAHeldKeyAwayIsItsRelease) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  keys.ChangeDesktop();
  Settle();
  EXPECT_TRUE(Still());
  Down(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays()) << "it is the deck's again";
  keys.OfOthers = {KeyFor(AfarAction::PlayHeld)};
  keys.ChangeDesktop();
  Settle();
  EXPECT_TRUE(Still());
  EXPECT_FALSE(Down(AfarAction::PlayHeld));
}

TEST_F(LostKeysTest, KeyThatIsClearedWhileItIsHeldIsLetGo) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  form.cmdEQ.Press(By::Hand);
  ASSERT_TRUE(Plays());
  config.tabConfiguration.RowClick(5);
  config.keys[remote::IndexOf(AfarAction::PlayHeld)].txtKey.Change("");
  EXPECT_TRUE(Still());
  EXPECT_FALSE(config.keys[remote::IndexOf(AfarAction::PlayHeld)].Down);
}

TEST_F(LostKeysTest, LastKeyThatIsClearedWhileItIsHeldIsLetGoAndCountsAnew) {
  PlaceSettings({{"PlayHeldKey", "F2"}, {"AutoQueueDocumentFlag", "N"}});
  WorkOn();
  forms::KeyRow& row = config.keys[remote::IndexOf(AfarAction::PlayHeld)];
  Down(AfarAction::PlayHeld);
  form.cmdEQ.Press(By::Hand);
  config.tabConfiguration.RowClick(5);
  row.txtKey.Change("");
  EXPECT_TRUE(Still());
  EXPECT_FALSE(row.Down);
  row.txtKey.Change("F3");
  config.mnuClose.Press(By::Hand);
  Down(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays());
}

TEST_F(LostKeysTest, KeyThatIsChangedWhileItIsHeldIsLetGo) {
  WorkOn();
  Down(AfarAction::ForwardHeld);
  form.cmdEQ.Press(By::Hand);
  config.tabConfiguration.RowClick(5);
  config.keys[remote::IndexOf(AfarAction::ForwardHeld)].txtKey.Change("CTRL+F4");
  EXPECT_TRUE(Still());
}

TEST_F(LostKeysTest, ChangeOfAnotherKeyLeavesTheHeldOneDown) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  form.cmdEQ.Press(By::Hand);
  config.tabConfiguration.RowClick(5);
  config.keys[remote::IndexOf(AfarAction::Skip)].txtKey.Change("");
  Settle();
  EXPECT_TRUE(Plays());
  Up(AfarAction::PlayHeld);
  EXPECT_TRUE(Still());
}

TEST_F(LostKeysTest, ExitLetsGoOfAllKeysAndHearsOfNoneFromThenOn) {
  StartUntilReady();
  ClickRow(0);
  loop.Expect({.reply = base::Reply::Yes});
  base::Timer later(loop, "later", 500ms);
  later.OnTick = [&] {
    later.Stop();
    EXPECT_FALSE(keys.AnyWish());
    EXPECT_FALSE(bus.Offered());
    EXPECT_FALSE(Down(AfarAction::PlayHeld));
  };
  later.Start();
  form.mnuExit.Press(By::Hand);
  EXPECT_EQ(ended, 0);
  EXPECT_TRUE(Still());
}

TEST_F(LostKeysTest, EndOfTheSessionLetsGoOfAllKeys) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  deck.EndSession();
  EXPECT_EQ(ended, 0);
  EXPECT_TRUE(Still());
  EXPECT_FALSE(keys.AnyWish());
  EXPECT_FALSE(bus.Offered());
}

TEST_F(LostKeysTest, SessionThatEndsInTheWaitOfAKeyHearsOfNoKeyThatCameBehindIt) {
  WorkOn();
  form.cmdSkipEnd.Press(By::Hand);
  base::Timer later(loop, "later", 200ms);
  later.OnTick = [&] {
    later.Stop();
    deck.EndSessionNow();
  };
  later.Start();
  keys.Down(AfarAction::Complete);
  keys.Down(AfarAction::PlayHeld);
  Settle();
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(disk.NamesIn(Completed()).size(), 2u);
  EXPECT_TRUE(Still());
}

TEST_F(LostKeysTest, KeysThatComeInAWaitAreAllHeardInTheirOrder) {
  WorkOn();
  base::Timer later(loop, "later", 100ms);
  later.OnTick = [&] {
    later.Stop();
    keys.Down(AfarAction::PlayHeld);
    keys.Down(AfarAction::Faster);
    keys.Up(AfarAction::PlayHeld);
  };
  later.Start();
  form.cmdSave.Press(By::Hand);
  Settle();
  EXPECT_FALSE(config.keys[remote::IndexOf(AfarAction::PlayHeld)].Down);
  EXPECT_TRUE(config.keys[remote::IndexOf(AfarAction::Faster)].Down);
  ClickRow(1);
  loop.Advance(20s);
  Down(AfarAction::PlayHeld);
  EXPECT_TRUE(Plays()) << "its press is one again";
}

TEST_F(LostKeysTest, KeysThatComeWhileTheLoopOnlyBreathesAreHeardBehindThat) {
  WorkOn();
  keys.Down(AfarAction::PlayHeld);
  loop.Breathe();
  EXPECT_TRUE(Still()) << "a breath lets no key through";
  keys.Up(AfarAction::PlayHeld);
  keys.Down(AfarAction::ForwardHeld);
  loop.Breathe();
  Settle();
  EXPECT_TRUE(Winds());
  EXPECT_NE(promptControl.Sounded.back().find("ForwardTone"), std::string::npos);
}

TEST_F(LostKeysTest, EventThatFailsLosesNoneOfThoseBehindIt) {
  WorkOn();
  Down(AfarAction::PlayHeld);
  forms::KeyRow& skip = config.keys[remote::IndexOf(AfarAction::Skip)];
  form.cmdSkip.OnPress = [] { throw std::runtime_error("no room"); };
  keys.Down(AfarAction::Skip);
  keys.Up(AfarAction::PlayHeld);
  Settle();
  EXPECT_TRUE(skip.Down);
  EXPECT_TRUE(Still());
}

}  // namespace
}  // namespace tavlo::test
