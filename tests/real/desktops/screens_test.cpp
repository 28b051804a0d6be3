#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <ostream>
#include <string>
#include <thread>

#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/place.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

constexpr int kScreenWidth = 1280;
constexpr int kScreenHeight = 1024;

bool StandsOn(int screen, const Place& place) {
  return place.x >= screen * kScreenWidth && place.x + place.width <= (screen + 1) * kScreenWidth &&
         place.y >= 0 && place.y + place.height <= kScreenHeight;
}

/// The real program on two screens side by side.
struct TwoScreens : testing::Test {
  void SetUp() override {
    ASSERT_EQ(desktop.Fault(), "");
    ASSERT_TRUE(Arrange("--setmonitor left 1280/340x1024/270+0+0 screen"));
    ASSERT_TRUE(Arrange("--setmonitor right 1280/340x1024/270+1280+0 none"));
    ::unsetenv("QT_SCREEN_SCALE_FACTORS");
  }

  static bool Arrange(const std::string& change) {
    return std::system(("xrandr " + change).c_str()) == 0;
  }

  void Run(const std::function<void(DrivenProgram&)>& script) {
    DrivenProgram driven(home);
    program = &driven;
    EXPECT_EQ(driven.Run([&] {
      ASSERT_TRUE(driven.Begin());
      EXPECT_EQ(driven.AnswerBox().substr(0, 23), "Tavlo Deck - Sound Card");
      ASSERT_TRUE(Until([&] { return driven.IsReady(); }));
      script(driven);
      driven.Exit();
    }),
              0);
  }

  void EnterMiniPlayer() {
    program->Do([this] { program->Rooms().mainWindow.EnterMiniPlayer(); });
  }
  void LeaveMiniPlayer() {
    program->Do([this] {
      program->Rooms().mainWindow.SavePlayerPosition();
      program->Rooms().mainWindow.LeaveMiniPlayer();
    });
  }
  /// The window as a typist's hand moves it, in logical pixels.
  void MoveTo(int left, int top) {
    program->Do([&] {
      program->Main().frmMain.Left = left * 15;
      program->Main().frmMain.Top = top * 15;
    });
  }

  Place Outer() {
    const SeenWindow deck = screen.Deck();
    const auto frame = screen.Numbers(deck.id, "_NET_FRAME_EXTENTS");
    if (frame.size() != 4) return {};
    const auto left = static_cast<int>(frame[0]);
    const auto top = static_cast<int>(frame[2]);
    return {deck.x - left, deck.y - top, deck.width + left + static_cast<int>(frame[1]),
            deck.height + top + static_cast<int>(frame[3])};
  }
  /// Where the window stands once it has stood still for longer than it takes to settle.
  Place Rested() {
    Place place;
    int still = 0;
    EXPECT_TRUE(Until([&] {
      std::this_thread::sleep_for(30ms);
      program->Settle();
      const Place now = Outer();
      still = now == place ? still + 1 : 0;
      place = now;
      return still == 10;
    })) << place;
    return place;
  }

  const Desktop desktop{"2560x1024"};
  Home home;
  Screen screen;
  DrivenProgram* program = nullptr;
};

TEST_F(TwoScreens, ShowTheMiniPlayerWhereItsStoredPlaceIsOutsideOfBoth) {
  home.MakeRoot({{"PlayerLeft", "999999"}, {"PlayerTop", "999999"}});
  Run([&](DrivenProgram&) {
    EnterMiniPlayer();
    const Place player = Rested();
    EXPECT_TRUE(StandsOn(0, player)) << player;
    LeaveMiniPlayer();
    const Place full = Rested();
    EXPECT_TRUE(StandsOn(0, full)) << full;
    EXPECT_GT(full.height, player.height);
  });
}

TEST_F(TwoScreens, TakeTheFullWindowInTheMiddleOfTheOneWhereTheMiniPlayerStood) {
  home.MakeRoot({{"PlayerLeft", "21000"}, {"PlayerTop", "1500"}});
  Run([&](DrivenProgram&) {
    EnterMiniPlayer();
    const Place player = Rested();
    EXPECT_EQ(player.x, 1400);
    EXPECT_EQ(player.y, 100);
    LeaveMiniPlayer();
    const Place full = Rested();
    EXPECT_NEAR(full.x * 2 + full.width, 2 * kScreenWidth + kScreenWidth, 2);
    EXPECT_NEAR(full.y * 2 + full.height, kScreenHeight, 2);
    EnterMiniPlayer();
    EXPECT_EQ(Rested(), player);
    LeaveMiniPlayer();
  });
}

TEST_F(TwoScreens, GiveTheWindowToTheOtherWhenItsOwnGoes) {
  home.MakeRoot({{"PlayerLeft", "21000"}, {"PlayerTop", "1500"}});
  Run([&](DrivenProgram&) {
    EnterMiniPlayer();
    ASSERT_TRUE(StandsOn(1, Rested()));
    ASSERT_TRUE(Arrange("--delmonitor right"));
    EXPECT_TRUE(Until([&] { return StandsOn(0, Outer()); })) << Outer();
    const Place player = Rested();
    EXPECT_TRUE(StandsOn(0, player)) << player;
    LeaveMiniPlayer();
    const Place full = Rested();
    EXPECT_TRUE(StandsOn(0, full)) << full;
  });
}

TEST_F(TwoScreens, KeepTheMiniPlayersPlaceToThePixelWhereTheirScalesDiffer) {
  ::setenv("QT_SCREEN_SCALE_FACTORS", "left=1;right=1.25", 1);
  home.MakeRoot({{"PlayerLeft", "19500"}, {"PlayerTop", "1500"}});
  Run([&](DrivenProgram&) {
    EnterMiniPlayer();
    const Place right = Rested();
    EXPECT_TRUE(StandsOn(1, right)) << right;
    LeaveMiniPlayer();
    EXPECT_TRUE(StandsOn(1, Rested())) << Outer();
    EnterMiniPlayer();
    EXPECT_EQ(Rested(), right);
    MoveTo(40, 60);
    const Place left = Rested();
    EXPECT_TRUE(StandsOn(0, left)) << left;
    LeaveMiniPlayer();
    Rested();
    EnterMiniPlayer();
    EXPECT_EQ(Rested(), left);
    LeaveMiniPlayer();
    Rested();
  });
  ::unsetenv("QT_SCREEN_SCALE_FACTORS");
}

}  // namespace
}  // namespace tavlo::test
