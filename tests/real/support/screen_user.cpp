#include "support/screen_user.h"

#include <gtest/gtest.h>

#include "support/keys.h"

namespace tavlo::test {

void ScreenUser::Answer(const std::string& title) {
  ASSERT_TRUE(Until([&] { return screen.Box(title).id != XCB_NONE; })) << title;
  EXPECT_TRUE(Until([&] {
    screen.hands.BringForward(screen.Box(title).id);
    screen.hands.Keys({keys::kReturn});
    return screen.Box(title).id == XCB_NONE;
  })) << title;
}

void ScreenUser::PassSplash() {
  EXPECT_TRUE(Until([&] {
    const SeenWindow splash = screen.Splash();
    if (splash.id != XCB_NONE) screen.hands.KeyInto(splash.id, keys::kEscape);
    return screen.Deck().id != XCB_NONE;
  }));
  EXPECT_TRUE(screen.HadSplash());
}

void ScreenUser::Exit() {
  constexpr int kFewLooks = 15;
  ASSERT_TRUE(Until([&] {
    screen.hands.PressClose(screen.Deck().id);
    return Until([&] { return screen.Box("Tavlo Deck - Exit").id != XCB_NONE; }, kFewLooks);
  }));
  Answer("Tavlo Deck - Exit");
}

}  // namespace tavlo::test
