#include "platform/keys/held_keys.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace tavlo::test {
namespace {

using platform::HeldKeys;
using platform::KeyBits;
using platform::KeyChord;
using remote::AfarAction;
using std::chrono::milliseconds;
using enum HeldKeys::Answer;

constexpr std::uint16_t kShift = 1;
constexpr std::uint16_t kControl = 4;
constexpr std::uint8_t kPlay = 70;
constexpr std::uint8_t kRewind = 71;
constexpr std::uint8_t kLetter = 38;
constexpr std::uint8_t kShiftKey = 50;

/// Two keys of the deck on a keyboard whose letters repeat and whose modifiers do not.
struct HeldKeysTest : testing::Test {
  void SetUp() override {
    repeating.set(kPlay).set(kRewind).set(kLetter);
    keys.Become({{{kPlay, 0}, AfarAction::PlayHeld}, {{kRewind, 0}, AfarAction::RewindHeld}}, {},
                repeating);
  }

  static KeyBits Down(std::initializer_list<std::uint8_t> down) {
    KeyBits bits;
    for (const std::uint8_t key : down) bits.set(key);
    return bits;
  }
  std::string Told() { return std::exchange(told, {}); }

  std::string told;
  KeyBits repeating;
  HeldKeys keys{[this](remote::KeyEvent event) {
    told += event.down ? '+' : '-';
    told += remote::kAfarActions[remote::IndexOf(event.action)].id;
    told += ' ';
  }};
  HeldKeys::Moment now{std::chrono::hours(1)};
};

TEST_F(HeldKeysTest, PressAndReleaseAreOurs) {
  EXPECT_EQ(keys.Press({kPlay, 0}), Keep);
  EXPECT_EQ(Told(), "+play-held ");
  EXPECT_EQ(keys.Release(kPlay, now), GiveBack);
  keys.Settle(now + HeldKeys::kRepeatsWithin);
  EXPECT_EQ(Told(), "-play-held ");
  EXPECT_FALSE(keys.Any());
}

TEST_F(HeldKeysTest, ReleaseIsToldWhenNoPressFollowsInAMoment) {
  keys.Press({kPlay, 0});
  keys.Release(kPlay, now);
  Told();
  EXPECT_EQ(keys.NextSettling(), now + HeldKeys::kRepeatsWithin);
  keys.Settle(now + HeldKeys::kRepeatsWithin - milliseconds(1));
  EXPECT_EQ(Told(), "");
  keys.Settle(now + HeldKeys::kRepeatsWithin);
  EXPECT_EQ(Told(), "-play-held ");
  EXPECT_EQ(keys.NextSettling(), std::nullopt);
}

TEST_F(HeldKeysTest, KeyboardThatRepeatsByLettingGoHoldsAllTheSame) {
  keys.Press({kPlay, 0});
  for (int repeat = 0; repeat < 20; ++repeat) {
    EXPECT_EQ(keys.Release(kPlay, now), GiveBack);
    EXPECT_EQ(keys.Press({kPlay, 0}), Keep);
    keys.Settle(now += milliseconds(40));
  }
  EXPECT_EQ(Told(), "+play-held ");
  EXPECT_TRUE(keys.Any());
}

TEST_F(HeldKeysTest, PressOfAnotherKeyComesBehindTheReleaseOfTheOneBefore) {
  keys.Press({kRewind, 0});
  keys.Press({kPlay, 0});
  keys.Release(kRewind, now);
  keys.Release(kPlay, now + milliseconds(1));
  keys.Become({{{kLetter, kControl}, AfarAction::Save},
               {{kPlay, 0}, AfarAction::PlayHeld},
               {{kRewind, 0}, AfarAction::RewindHeld}},
              {}, repeating);
  keys.Press({kLetter, kControl});
  EXPECT_EQ(Told(), "+rewind-held +play-held -rewind-held -play-held +save ");
}

TEST_F(HeldKeysTest, ChordIsHeldUntilItsKeyIsUpWhateverBecomesOfItsModifiers) {
  keys.Become({{{kPlay, kControl}, AfarAction::PlayHeld}}, {}, repeating);
  EXPECT_EQ(keys.Press({kPlay, kControl}), Keep);
  EXPECT_EQ(keys.Release(kShiftKey, now), LetThroughAndStay);
  EXPECT_EQ(keys.Press({kPlay, 0}), Keep) << "a repeat";
  EXPECT_EQ(Told(), "+play-held ");
  EXPECT_EQ(keys.Release(kPlay, now), GiveBack);
}

TEST_F(HeldKeysTest, OtherKeysGoToTheirWindow) {
  EXPECT_EQ(keys.Press({kPlay, kShift}), LetThrough);
  keys.Press({kPlay, 0});
  EXPECT_EQ(keys.Press({kShiftKey, 0}), LetThroughAndStay) << "after it the held key repeats still";
  EXPECT_EQ(keys.Release(kShiftKey, now), LetThroughAndStay);
  EXPECT_EQ(keys.Press({kLetter, 0}), LetThrough) << "after it the held key is silent";
  EXPECT_EQ(keys.Press({kRewind, kShift}), LetThrough);
  EXPECT_EQ(Told(), "+play-held ");
}

TEST_F(HeldKeysTest, OneOfTwoKeysIsLetGo) {
  keys.Press({kPlay, 0});
  keys.Press({kRewind, 0});
  EXPECT_EQ(keys.Release(kPlay, now), Keep);
  EXPECT_EQ(keys.Release(kRewind, now), GiveBack);
}

TEST_F(HeldKeysTest, LookAtTheKeyboardFindsWhatIsUp) {
  keys.Press({kPlay, 0});
  keys.Press({kRewind, 0});
  Told();
  keys.Look(Down({kPlay, kRewind, kLetter}));
  EXPECT_EQ(Told(), "");
  keys.Look(Down({kRewind}));
  EXPECT_EQ(Told(), "-play-held ");
  keys.Look(Down({}));
  EXPECT_EQ(Told(), "-rewind-held ");
  EXPECT_FALSE(keys.Any());
}

TEST_F(HeldKeysTest, HeldKeyThatMeansSomethingElseNowIsReleasedAndNoPressUntilItWasUp) {
  keys.Press({kPlay, 0});
  keys.Press({kRewind, 0});
  Told();
  keys.Become({{{kPlay, 0}, AfarAction::Save}, {{kRewind, kShift}, AfarAction::RewindHeld}},
              Down({kPlay, kRewind}), repeating);
  EXPECT_EQ(Told(), "-play-held ") << "the other one is the same key with other modifiers";
  EXPECT_EQ(keys.Press({kPlay, 0}), Keep) << "a repeat";
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(keys.Release(kPlay, now), Keep);
  EXPECT_EQ(keys.Press({kPlay, 0}), Keep);
  EXPECT_EQ(Told(), "+save ");
}

TEST_F(HeldKeysTest, KeyThatIsDownWhenItBecomesOursIsNoPressUntilItWasUp) {
  keys.Become({{{kLetter, kControl}, AfarAction::Save}}, Down({kLetter, kPlay}), repeating);
  EXPECT_TRUE(keys.Any());
  EXPECT_EQ(keys.Press({kLetter, kControl}), Keep);
  EXPECT_EQ(Told(), "");
  keys.Look(Down({kPlay}));
  EXPECT_FALSE(keys.Any());
  keys.Press({kLetter, kControl});
  EXPECT_EQ(Told(), "+save ");
}

TEST_F(HeldKeysTest, ForgettingReleasesAll) {
  keys.Press({kPlay, 0});
  keys.Press({kRewind, 0});
  keys.Release(kRewind, now);
  Told();
  keys.Forget();
  EXPECT_EQ(Told(), "-play-held -rewind-held ");
  EXPECT_FALSE(keys.Any());
}

}  // namespace
}  // namespace tavlo::test
