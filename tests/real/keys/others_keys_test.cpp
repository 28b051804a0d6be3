#include <gtest/gtest.h>

#include <string>

#include "keys/keys_bench.h"

namespace tavlo::test {
namespace {

using remote::AfarAction;
using remote::KeyState;

constexpr std::uint8_t kPlaceOfF4 = 70;
constexpr std::uint8_t kPlaceOfF5 = 71;

/// Other programs that want keys, too, and a display that may go.
struct KeysOfOthers : KeysBench {};

TEST_F(KeysOfOthers, KeyOfAnotherProgramIsNotOursUntilThatGivesItBack) {
  ASSERT_TRUE(other->Grab(kPlaceOfF4, 0));
  Wish({{AfarAction::PlayStop, "F4"}, {AfarAction::Save, "F5"}});
  EXPECT_EQ(States(), (std::vector{KeyState::OthersHold, KeyState::Held}));
  Type({keys::kF4});
  EXPECT_EQ(OtherTook(), "+[F4] -[F4]");
  other->GiveBack(kPlaceOfF4, 0);
  EXPECT_EQ(States().front(), KeyState::OthersHold) << "nobody has tried again";
  keys->TryAgain();
  EXPECT_TRUE(Until([&] { return States().front() == KeyState::Held; }));
  Type({keys::kF4});
  EXPECT_EQ(Heard("+play-stop -play-stop"), "+play-stop -play-stop");
}

TEST_F(KeysOfOthers, KeyThatIsTakenUnderOneStateOfTheLocksIsLeftAlone) {
  ASSERT_TRUE(other->Grab(kPlaceOfF4, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2));
  Wish({{AfarAction::PlayStop, "F4"}});
  EXPECT_EQ(States(), std::vector{KeyState::OthersHold});
  Type({keys::kF4});
  EXPECT_EQ(OtherTook(), "+F4 -F4");
  EXPECT_TRUE(other->Grab(kPlaceOfF4, 0)) << "what was free was given back";
}

TEST_F(KeysOfOthers, AnotherProgramIsRefusedAKeyOfOurs) {
  Wish({{AfarAction::PlayStop, "F4"}});
  EXPECT_FALSE(other->Grab(kPlaceOfF4, 0));
  EXPECT_FALSE(other->Grab(kPlaceOfF4, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2));
  EXPECT_TRUE(other->Grab(kPlaceOfF4, XCB_MOD_MASK_SHIFT));
  EXPECT_TRUE(other->Grab(kPlaceOfF5, 0));
}

TEST_F(KeysOfOthers, NameThatNoKeyHasIsNotOnTheKeyboard) {
  Wish({{AfarAction::PlayStop, "F35"},
        {AfarAction::Save, "NoSuchKey"},
        {AfarAction::Skip, "HYPER+F4"}});
  EXPECT_EQ(States(), std::vector(3, KeyState::NotOnKeyboard));
}

TEST_F(KeysOfOthers, OfTwoWishesForOneKeyTheFirstHasIt) {
  Wish({{AfarAction::Save, "F4"}, {AfarAction::Skip, "F4"}});
  EXPECT_EQ(States(), (std::vector{KeyState::Held, KeyState::OthersHold}));
  Type({keys::kF4});
  EXPECT_EQ(Heard("+save -save"), "+save -save");
}

TEST_F(KeysOfOthers, LockedScreenHasAllKeys) {
  Wish({{AfarAction::PlayStop, "F4"}});
  ASSERT_TRUE(other->Lock());
  Type({keys::kF4});
  EXPECT_EQ(OtherTook(), "+F4 -F4");
  EXPECT_EQ(heard->Heard, "");
  other->Unlock();
  Type({keys::kF4});
  EXPECT_EQ(Heard("+play-stop -play-stop"), "+play-stop -play-stop");
  EXPECT_EQ(OtherTook(), "");
}

TEST_F(KeysOfOthers, HeldKeyThatIsLetGoOnALockedScreenIsReleased) {
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  EXPECT_FALSE(other->Lock()) << "the keyboard is ours while nothing else was typed";
  Type({'a'});
  ASSERT_TRUE(Until([&] { return other->Took() == "+a -a"; }));
  ASSERT_TRUE(other->Lock());
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("-play-held"), "-play-held");
}

TEST_F(KeysOfOthers, ClickLeavesTheKeyboardToMenusWhileAKeyIsHeld) {
  RepeatQuickly();
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  EXPECT_FALSE(other->Lock());
  hands->Press();
  // A repeat has the keyboard for a moment, too.
  ASSERT_TRUE(Until([&] { return other->Lock(); }));
  hands->Release();
  other->Unlock();
  other->Took();
  other->Forget();
  // Nothing of the held key reaches others before the keyboard is the deck's again.
  Hold(keys::kShift);
  LetItRepeat();
  LetGo(keys::kShift);
  LetItRepeat();
  EXPECT_EQ(other->Took(), "+Shift_L -Shift_L");
  EXPECT_TRUE(Until([&] {
    const bool locked = other->Lock();
    if (locked) other->Unlock();
    return !locked;
  }));
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("-play-held"), "-play-held");
  Type({keys::kShift, keys::kF4});
  EXPECT_EQ(OtherTook().substr(sizeof "+Shift_L -Shift_L"), "+Shift_L +F4 -F4 -Shift_L")
      << "with other modifiers it is everybody's again";
}

TEST_F(KeysOfOthers, WheelLeavesNothing) {
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  hands->TurnWheel();
  LetItRepeat();
  EXPECT_FALSE(other->Lock());
  LetGo(keys::kF4);
}

TEST_F(KeysOfOthers, ShortcutOfTheDesktopNeverLandsInAText) {
  constexpr std::uint8_t kPlaceOfTab = 23;
  ASSERT_TRUE(other->Grab(kPlaceOfTab, XCB_MOD_MASK_1));
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  Hold(keys::kAlt);
  ASSERT_TRUE(Until([&] { return other->Took() == "+Alt_L"; }));
  Type({keys::kTab});
  Type({keys::kTab});
  LetGo(keys::kAlt);
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("-play-held"), "-play-held");
  // The first one was pressed while the keyboard was the deck's, and nobody can have it.
  EXPECT_EQ(OtherTook(), "+Alt_L -Tab +[Tab] -[Tab] -Alt_L -F4");
}

TEST_F(KeysOfOthers, DisplayThatGoesReleasesWhatIsHeldAndRefusesAll) {
  Wish({{AfarAction::PlayHeld, "F4"}, {AfarAction::Save, "F5"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  desktop->KillScreen();
  EXPECT_EQ(Heard("-play-held"), "-play-held");
  EXPECT_TRUE(Until([&] { return States() == std::vector(2, KeyState::Refused); }));
  EXPECT_EQ(keys->Way(), remote::KeyWay::Grabs);
  keys->TryAgain();
  Wish({{AfarAction::Save, "F5"}});
  EXPECT_TRUE(Until([&] { return States() == std::vector{KeyState::Refused}; }));
}

}  // namespace
}  // namespace tavlo::test
