#include "platform/keys/key_events.h"

#include <gtest/gtest.h>

#include <optional>

namespace tavlo::test {
namespace {

using remote::AfarAction;
using remote::KeyEvent;

struct KeyEventsTest : testing::Test {
  void Press(AfarAction action) { events.Push({action, true}); }
  void Release(AfarAction action) { events.Push({action, false}); }

  platform::KeyEvents events;
};

TEST_F(KeyEventsTest, OldestComesFirstAndTheBellRings) {
  EXPECT_FALSE(events.News().Silence());
  Press(AfarAction::PlayHeld);
  Release(AfarAction::PlayHeld);
  EXPECT_TRUE(events.News().Silence());
  EXPECT_EQ(events.Next(), (KeyEvent{AfarAction::PlayHeld, true}));
  EXPECT_EQ(events.Next(), (KeyEvent{AfarAction::PlayHeld, false}));
  EXPECT_EQ(events.Next(), std::nullopt);
}

TEST_F(KeyEventsTest, PressesThatNobodyTakesAreBoundedAndNoReleaseOfATakenOneIsLost) {
  Press(AfarAction::PlayHeld);
  for (int press = 0; press < 1000; ++press) {
    Press(AfarAction::Faster);
    Release(AfarAction::Faster);
  }
  Release(AfarAction::PlayHeld);
  std::size_t presses = 0;
  int down = 0;
  while (const auto event = events.Next()) {
    presses += event->down ? 1 : 0;
    down += event->down ? 1 : -1;
  }
  EXPECT_EQ(presses, platform::KeyEvents::kMostPresses);
  EXPECT_EQ(down, 0);
  Press(AfarAction::Faster);
  EXPECT_EQ(events.Next(), (KeyEvent{AfarAction::Faster, true}));
}

TEST_F(KeyEventsTest, HeldKeyThatIsLetGoIsSeenOnceAheadOfTheRules) {
  Press(AfarAction::PlayHeld);
  EXPECT_FALSE(events.LetGo());
  events.Next();
  EXPECT_FALSE(events.LetGo()) << "it is still held";
  Release(AfarAction::PlayHeld);
  EXPECT_TRUE(events.LetGo());
  EXPECT_FALSE(events.LetGo());
  Press(AfarAction::RewindHeld);
  Release(AfarAction::RewindHeld);
  EXPECT_FALSE(events.LetGo()) << "the rules have not heard of that press";
  EXPECT_EQ(events.Next(), (KeyEvent{AfarAction::PlayHeld, false}));
  EXPECT_FALSE(events.LetGo());
}

TEST_F(KeyEventsTest, KeyThatIsLetGoWhileAnotherIsHeldIsNoSilence) {
  Press(AfarAction::PlayHeld);
  Press(AfarAction::RewindHeld);
  events.Next();
  events.Next();
  Release(AfarAction::RewindHeld);
  EXPECT_FALSE(events.LetGo());
  Release(AfarAction::PlayHeld);
  EXPECT_TRUE(events.LetGo());
}

TEST_F(KeyEventsTest, KeyThatIsOnlyPressedHoldsNothing) {
  Press(AfarAction::PlayStop);
  events.Next();
  Release(AfarAction::PlayStop);
  EXPECT_FALSE(events.LetGo());
}

TEST_F(KeyEventsTest, ForgottenEventsLeaveNothingHeld) {
  Press(AfarAction::PlayHeld);
  events.Next();
  Release(AfarAction::PlayHeld);
  events.Forget();
  EXPECT_EQ(events.Next(), std::nullopt);
  EXPECT_FALSE(events.LetGo());
  EXPECT_FALSE(events.News().Silence());
}

}  // namespace
}  // namespace tavlo::test
