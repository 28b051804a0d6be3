#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "keys/keys_bench.h"
#include "platform/keys/xkb_protocol.h"
#include "support/other_program.h"

namespace tavlo::test {
namespace {

using remote::AfarAction;
using remote::KeyState;

// Where a key stands on the keyboard, by the letter that it makes in America.
constexpr std::uint8_t kPlaceOfQ = 24;
constexpr std::uint8_t kPlaceOfA = 38;
constexpr std::uint8_t kPlaceOfY = 29;
constexpr std::uint8_t kPlaceOfZ = 52;
constexpr std::uint8_t kPlaceOfSemicolon = 47;
constexpr std::uint8_t kPlaceOfControl = 37;

/// A keyboard whose layout changes.
struct KeyboardLayouts : KeysBench {
  static void SetLayouts(const std::string& names) { ASSERT_EQ(RunShell("setxkbmap " + names), 0); }
  /// The layout in use, of several.
  void Use(std::uint8_t layout) {
    xcb_connection_t* const display = other->Connection();
    std::free(xcb_xkb_use_extension_reply(display, xcb_xkb_use_extension(display, 1, 0), nullptr));
    xcb_xkb_latch_lock_state(display, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, layout, 0, 0, 0);
    std::free(xcb_get_input_focus_reply(display, xcb_get_input_focus(display), nullptr));
  }
  /// Presses the place again and again until the deck hears of it, since it follows a layout a
  /// moment after it has changed.
  bool IsHeardWithControl(std::uint8_t place) {
    return Until([&] {
      PressWithControl(place);
      return !heard->Heard.empty();
    });
  }
  void PressWithControl(std::uint8_t place) {
    hands->HoldPlace(kPlaceOfControl);
    hands->HoldPlace(place);
    hands->LetGoOfPlace(place);
    hands->LetGoOfPlace(kPlaceOfControl);
  }
  /// Everything the deck has heard of has been taken.
  void Forget() {
    OtherTook();
    Until([&] { return heard->Heard.empty() || heard->Heard.ends_with("-save"); });
    heard->Heard.clear();
  }
};

TEST_F(KeyboardLayouts, KeyIsWhereTheLayoutHasIt) {
  Wish({{AfarAction::Save, "CTRL+y"}});
  EXPECT_TRUE(IsHeardWithControl(kPlaceOfY));
  Forget();
  SetLayouts("de");
  EXPECT_TRUE(IsHeardWithControl(kPlaceOfZ));
  Forget();
  PressWithControl(kPlaceOfY);
  OtherTook();
  EXPECT_EQ(heard->Heard, "") << "it makes another letter now";
  SetLayouts("us");
  EXPECT_TRUE(IsHeardWithControl(kPlaceOfY));
}

TEST_F(KeyboardLayouts, KeyThatOnlyOneLayoutHasComesAndGoesWithIt) {
  Wish({{AfarAction::Save, "CTRL+odiaeresis"}});
  EXPECT_EQ(States(), std::vector{KeyState::NotOnKeyboard});
  SetLayouts("de");
  EXPECT_TRUE(Until([&] { return States() == std::vector{KeyState::Held}; }));
  EXPECT_TRUE(IsHeardWithControl(kPlaceOfSemicolon));
  SetLayouts("us");
  EXPECT_TRUE(Until([&] { return States() == std::vector{KeyState::NotOnKeyboard}; }));
}

TEST_F(KeyboardLayouts, SecondLayoutInUseMovesTheKey) {
  SetLayouts("us,fr");
  Wish({{AfarAction::Save, "CTRL+a"}});
  EXPECT_TRUE(IsHeardWithControl(kPlaceOfA));
  Forget();
  Use(1);
  EXPECT_TRUE(IsHeardWithControl(kPlaceOfQ));
  Forget();
  PressWithControl(kPlaceOfA);
  OtherTook();
  EXPECT_EQ(heard->Heard, "");
}

TEST_F(KeyboardLayouts, LetterThatTheLayoutInUseHasNotIsTakenFromTheOtherOne) {
  SetLayouts("us,ru");
  Wish({{AfarAction::Save, "CTRL+a"}, {AfarAction::PlayStop, "F4"}});
  Use(1);
  Type({keys::kF4});
  EXPECT_EQ(Heard("+play-stop -play-stop"), "+play-stop -play-stop");
  EXPECT_TRUE(IsHeardWithControl(kPlaceOfA));
  Forget();
  for (const std::uint32_t lock : {kCaps, kNum, kCaps, kNum}) {
    Type({lock});
    EXPECT_TRUE(IsHeardWithControl(kPlaceOfA));
    Forget();
  }
}

TEST_F(KeyboardLayouts, HeldKeyThatMovesCountsAsReleasedAndOneThatStaysDoesNot) {
  RepeatQuickly();
  Wish({{AfarAction::PlayHeld, "F4"}, {AfarAction::RewindHeld, "CTRL+y"}});
  hands->HoldPlace(kPlaceOfControl);
  hands->HoldPlace(kPlaceOfY);
  EXPECT_EQ(Heard("+rewind-held"), "+rewind-held");
  hands->LetGoOfPlace(kPlaceOfControl);
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  SetLayouts("de");
  EXPECT_EQ(Heard("-rewind-held"), "-rewind-held");
  hands->LetGoOfPlace(kPlaceOfY);
  LetItRepeat();
  EXPECT_EQ(heard->Heard, "");
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("-play-held"), "-play-held");
  EXPECT_EQ(OtherTook(), "+Control_L -Control_L");
}

TEST_F(KeyboardLayouts, KeyboardThatSaysThatItIsNewAndIsTheSameLeavesAHeldKeyAlone) {
  Wish({{AfarAction::PlayHeld, "F4"}});
  Hold(keys::kF4);
  EXPECT_EQ(Heard("+play-held"), "+play-held");
  for (int change = 0; change < 5; ++change) SetLayouts("us");
  Type({'a'});
  ASSERT_TRUE(Until([&] { return other->Took().ends_with("-a"); }));
  EXPECT_EQ(heard->Heard, "");
  LetGo(keys::kF4);
  EXPECT_EQ(Heard("-play-held"), "-play-held");
}

}  // namespace
}  // namespace tavlo::test
