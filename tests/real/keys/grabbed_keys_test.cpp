#include <gtest/gtest.h>

#include <string>

#include "keys/keys_bench.h"

namespace tavlo::test {
namespace {

using remote::AfarAction;
using remote::KeyState;
using remote::KeyWay;

struct GrabbedKeys : KeysBench {};

TEST_F(GrabbedKeys, KeyIsHeardWhileAnotherWindowHasTheKeyboardWhichGetsNothingOfIt) {
  EXPECT_EQ(keys->Way(), KeyWay::Grabs);
  Wish({{AfarAction::PlayStop, "F4"}});
  EXPECT_EQ(States(), std::vector{KeyState::Held});
  Type({'a'});
  Type({keys::kF4});
  Type({'b'});
  EXPECT_EQ(OtherTook(), "+a -a +b -b");
  EXPECT_EQ(Heard("+play-stop -play-stop"), "+play-stop -play-stop");
}

TEST_F(GrabbedKeys, KeyWithOtherModifiersIsNotOurs) {
  Wish({{AfarAction::PlayStop, "CTRL+F4"}});
  Type({keys::kF4});
  Type({keys::kControl, keys::kShift, keys::kF4});
  Type({keys::kAlt, keys::kF4});
  EXPECT_EQ(OtherTook(),
            "+F4 -F4 +Control_L +Shift_L +F4 -F4 -Shift_L -Control_L +Alt_L +F4 -F4 -Alt_L");
  Type({keys::kControl, keys::kF4});
  EXPECT_EQ(OtherTook(), "+Control_L -Control_L");
  EXPECT_EQ(Heard("+play-stop -play-stop"), "+play-stop -play-stop");
}

TEST_F(GrabbedKeys, HeldKeyIsOnePressHoweverOftenItRepeats) {
  RepeatQuickly();
  Hold(keys::kF5);
  ASSERT_TRUE(Until([&] { return other->Took().size() > 10 * sizeof "+F5 -F5"; }))
      << "this keyboard does not repeat keys";
  LetGo(keys::kF5);
  OtherTook();
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  LetItRepeat();
  EXPECT_EQ(other->Took(), "");
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("-play-held"), "-play-held");
  EXPECT_EQ(OtherTook(), "");
}

TEST_F(GrabbedKeys, WhatIsTypedWhileAKeyIsHeldReachesTheOtherWindowOnceAndInOrder) {
  RepeatQuickly();
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold('q');
  Hold(keys::kF4);
  LetGo('q');
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  LetItRepeat();
  Type({'a'});
  Type({keys::kShift, 'b'});
  Type({'c'});
  Hold('d');
  LetGo(keys::kF4);
  LetGo('d');
  EXPECT_EQ(Heard("-play-held"), "-play-held");
  // The release of a key that was held while others were typed can not be kept from them.
  EXPECT_EQ(OtherTook(), "+q -q +a -a +Shift_L +b -b -Shift_L +c -c +d -F4 -d");
}

TEST_F(GrabbedKeys, ModifierThatIsPressedMeanwhileLetsNoRepeatThrough) {
  RepeatQuickly();
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  LetItRepeat();
  Hold(keys::kShift);
  LetItRepeat();
  LetGo(keys::kShift);
  LetItRepeat();
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("+play-held -play-held"), "+play-held -play-held");
  EXPECT_EQ(OtherTook(), "+Shift_L -Shift_L");
}

TEST_F(GrabbedKeys, ModifierMayBeLetGoBeforeItsKey) {
  RepeatQuickly();
  Wish({{AfarAction::RewindHeld, "CTRL+SHIFT+F7"}});
  Hold(keys::kControl);
  Hold(keys::kShift);
  Hold(FunctionKey(7));
  EXPECT_EQ(Heard("+rewind-held"), "+rewind-held");
  LetGo(keys::kControl);
  LetItRepeat();
  LetGo(keys::kShift);
  LetItRepeat();
  EXPECT_EQ(heard->Heard, "") << "the key itself is still held";
  LetGo(FunctionKey(7));
  EXPECT_EQ(Heard("-rewind-held"), "-rewind-held");
  EXPECT_EQ(OtherTook(), "+Control_L +Shift_L -Control_L -Shift_L");
}

TEST_F(GrabbedKeys, ChordThatIsHitFasterThanItIsFollowedIsLetGo) {
  Wish({{AfarAction::RewindHeld, "CTRL+F7"}});
  for (int hit = 0; hit < 200; ++hit) {
    Hold(keys::kControl);
    Hold(FunctionKey(7));
    LetGo(keys::kControl);
    LetGo(FunctionKey(7));
  }
  OtherTook();
  EXPECT_TRUE(Until([&] { return heard->Heard.ends_with("-rewind-held"); }));
  EXPECT_TRUE(other->Lock()) << "the keyboard is everybody's again";
}

TEST_F(GrabbedKeys, TwoKeysMayBeHeldAtOnce) {
  RepeatQuickly();
  Wish({{AfarAction::PlayHeld, "F4"}, {AfarAction::RewindHeld, "F5"}});
  for (const auto& [first, second] :
       {std::pair(keys::kF4, keys::kF5), std::pair(keys::kF5, keys::kF4)}) {
    Hold(keys::kF4);
    LetItRepeat();
    Hold(keys::kF5);
    LetItRepeat();
    EXPECT_EQ(Heard("+play-held +rewind-held"), "+play-held +rewind-held");
    LetGo(first);
    LetItRepeat();
    LetGo(second);
    const std::string expected =
        first == keys::kF4 ? "-play-held -rewind-held" : "-rewind-held -play-held";
    EXPECT_EQ(Heard(expected), expected);
    EXPECT_EQ(OtherTook(), "");
  }
}

TEST_F(GrabbedKeys, OtherWindowSeesOneGrabForAPressAndNoneWhileItIsTypedIn) {
  RepeatQuickly();
  Wish({{AfarAction::PlayHeld, "F4"}});
  const int before = other->GrabsSeen();
  Hold(keys::kF4);
  LetItRepeat();
  Type({'a'});
  ASSERT_TRUE(Until([&] { return other->Took() == "+a -a"; }));
  const int once = other->GrabsSeen();
  EXPECT_GT(once, before);
  EXPECT_LE(once, before + 4);
  for (int letter = 0; letter < 20; ++letter) Type({'b'});
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("+play-held -play-held"), "+play-held -play-held");
  OtherTook();
  EXPECT_EQ(other->GrabsSeen(), once);
}

TEST_F(GrabbedKeys, KeysWorkUnderEveryStateOfTheLocks) {
  Wish({{AfarAction::PlayStop, "F4"}, {AfarAction::Save, "CTRL+ALT+s"}});
  for (const std::uint32_t lock : {kCaps, kNum, kCaps, kNum}) {
    Type({lock});
    OtherTook();
    Type({keys::kF4});
    EXPECT_EQ(Heard("+play-stop -play-stop"), "+play-stop -play-stop");
    Type({keys::kControl, keys::kAlt, 's'});
    EXPECT_EQ(Heard("+save -save"), "+save -save");
    EXPECT_EQ(OtherTook(), "+Control_L +Alt_L -Alt_L -Control_L");
  }
}

TEST_F(GrabbedKeys, KeyThatIsDownWhenItIsWishedForIsNoPressUntilItWasUp) {
  RepeatQuickly();
  Hold(keys::kF4);
  Wish({{AfarAction::PlayHeld, "F4"}});
  LetItRepeat();
  other->Took();
  other->Forget();
  LetItRepeat();
  EXPECT_EQ(other->Took(), "") << "it is nobody else's any more";
  LetGo(keys::kF4);
  OtherTook();
  EXPECT_EQ(heard->Heard, "");
  Type({keys::kF4});
  EXPECT_EQ(Heard("+play-held -play-held"), "+play-held -play-held");
}

TEST_F(GrabbedKeys, KeyThatIsTakenAwayWhileItIsHeldCountsAsReleased) {
  RepeatQuickly();
  Wish({{AfarAction::PlayHeld, "F4"}, {AfarAction::RewindHeld, "F5"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  Wish({{AfarAction::RewindHeld, "F5"}});
  EXPECT_EQ(Heard("-play-held"), "-play-held");
  LetItRepeat();
  LetGo(keys::kF4);
  EXPECT_EQ(OtherTook(), "");
  Type({keys::kF4});
  Type({keys::kF5});
  EXPECT_EQ(OtherTook(), "+F4 -F4");
  EXPECT_EQ(Heard("+rewind-held -rewind-held"), "+rewind-held -rewind-held");
}

TEST_F(GrabbedKeys, HeldKeyStaysHeldWhenAnotherOneIsWishedForAsWell) {
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  Wish({{AfarAction::Save, "F6"}, {AfarAction::PlayHeld, "F4"}});
  Type({FunctionKey(6)});
  EXPECT_EQ(Heard("+save -save"), "+save -save");
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("-play-held"), "-play-held");
}

}  // namespace
}  // namespace tavlo::test
