#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>
#include <thread>

#include "mini_player/word_processor.h"
#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/keys.h"
#include "support/place.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

/// The real program on a real window manager, with one long dictation and a short one.
struct MiniPlayer : testing::TestWithParam<WindowManager> {
  void SetUp() override {
    if (desktop.LacksManager() && GetParam() != WindowManager::Openbox) {
      GTEST_SKIP() << desktop.Fault();
    }
    ASSERT_EQ(desktop.Fault(), "");
    ASSERT_TRUE(server.Start());
  }

  void MakeHome(const store::Assignments& settings) {
    home.MakeRoot(QuietSettings(settings));
    home.AddToQueue(longOne, WaveBytes(Chirp(120 * kRate, kRate)));
    home.AddToQueue(shortOne, WaveBytes(Chirp(kRate, kRate)));
  }

  /// One run of the program, from its start to its end.
  void Run(const std::function<void()>& script) {
    program = std::make_unique<DrivenProgram>(home);
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      script();
      if (program->Ask([&] { return program->Main().cmdSkip.Enabled.Get(); })) Leave("cmdSkip");
      program->Exit();
    });
    EXPECT_EQ(status, 0);
    program.reset();
  }

  void Play(const std::string& name) {
    Rested();
    program->ClickRow(program->RowOf(name));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
    program->Click("cmdPlay");
    ASSERT_TRUE(program->Until([&] { return !program->Main().frameFiles.Visible; }));
  }
  void Leave(const char* key) {
    program->Click(key);
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  }
  void ChooseInFileMenu(std::uint32_t letter) {
    // While the window manager hands the keyboard from one window to another, a key may be lost.
    ASSERT_TRUE(Until([&] {
      program->Keys({keys::kAlt, 'f'});
      constexpr int kLooksForAMenu = 250;
      return Until(
          [&] { return program->Ask([] { return QApplication::activePopupWidget() != nullptr; }); },
          kLooksForAMenu);
    }));
    program->Keys({letter});
  }
  /// Opens the configuration and closes it again once `meanwhile` is done.
  void OpenConfiguration(const std::function<void()>& open,
                         const std::function<void()>& meanwhile) {
    open();
    forms::Window& window = program->Windows().configuration.frmConfiguration;
    ASSERT_TRUE(program->Until([&] { return window.Visible && !program->Main().frmMain.Visible; }));
    ASSERT_TRUE(Until([&] { return HasKeyboard("Tavlo Deck - Configuration"); }));
    meanwhile();
    program->Keys({keys::kAlt, 'c'});
    ASSERT_TRUE(program->Until([&] { return program->Main().frmMain.Visible && !window.Visible; }));
  }

  bool HasKeyboard(const std::string& title) {
    const auto active = screen.Numbers(screen.hands.Root(), "_NET_ACTIVE_WINDOW");
    const auto windows = screen.Windows();
    return std::any_of(windows.begin(), windows.end(), [&](const SeenWindow& seen) {
      return seen.title == title && !active.empty() && seen.id == active.front();
    });
  }
  bool DeckHas(const char* state) {
    const auto states = screen.Numbers(screen.Deck().id, "_NET_WM_STATE");
    return std::find(states.begin(), states.end(), screen.hands.Atom(state)) != states.end();
  }
  bool IsAbove(xcb_window_t upper, xcb_window_t lower) {
    const auto order = screen.Numbers(screen.hands.Root(), "_NET_CLIENT_LIST_STACKING");
    const auto above = std::find(order.begin(), order.end(), upper);
    return above != order.end() && std::find(order.begin(), above, lower) != above;
  }
  bool IsOneOf(std::initializer_list<WindowManager> managers) const {
    return std::find(managers.begin(), managers.end(), GetParam()) != managers.end();
  }
  bool Hidden() { return DeckHas("_NET_WM_STATE_HIDDEN"); }
  int MiniPlayerHeight() {
    return program->Ask([&] {
      const forms::MainForm& form = program->Main();
      return (form.frmMain.AboveContent + form.framePlayer.Height) / 15;
    });
  }

  void CenterByTheConfiguration() {
    const auto stored = [&] { return program->Main().txtPlayerTop.Value.Get(); };
    OpenConfiguration([&] { ChooseInFileMenu('c'); },
                      [&] {
                        const std::string before = program->Ask(stored);
                        program->Click("cmdCenterMiniPlayer");
                        EXPECT_TRUE(program->Until([&] { return stored() != before; }));
                      });
  }
  void TickAlwaysOnTop() {
    OpenConfiguration(
        [&] { ChooseInFileMenu('c'); },
        [&] {
          program->Click("chkAlwaysOnTop");
          EXPECT_TRUE(program->Until([&] { return program->Main().frmMain.TopMost.Get(); }));
        });
  }
  void ExpectAboutBoxBeforeTheDeck() {
    const auto box = [&] { return screen.Box("About Tavlo Deck").id; };
    ChooseInFileMenu('a');
    ASSERT_TRUE(Until([&] { return box() != XCB_NONE; }));
    EXPECT_TRUE(Until([&] { return IsAbove(box(), screen.Deck().id); }));
    ASSERT_TRUE(Until([&] { return HasKeyboard("About Tavlo Deck"); }));
    program->Keys({keys::kEscape});
    ASSERT_TRUE(Until([&] { return box() == XCB_NONE && HasKeyboard("Tavlo Deck"); }));
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
  Place Wanted() {
    return program->Ask([&] {
      const forms::Window& form = program->Main().frmMain;
      return Place{form.Left / 15, form.Top / 15, form.Width / 15, form.Height / 15};
    });
  }
  /// Where the deck comes to rest: it stands still there, and its form knows.
  Place Rested() {
    Place place;
    int still = 0;
    EXPECT_TRUE(Until([&] {
      std::this_thread::sleep_for(30ms);
      program->Settle();
      const Place now = Outer();
      still = now == place && now == Wanted() ? still + 1 : 0;
      place = now;
      return still == 5;
    })) << "on the screen "
        << place << ", wanted " << Wanted();
    return place;
  }
  /// Takes the title bar and drags the window. It lets go when the window has followed all the way,
  /// which a busy window manager does late.
  void Drag(int right, int down) {
    const Place from = Outer();
    const SeenWindow deck = screen.Deck();
    const int x = deck.x + deck.width / 2;
    const int y = deck.y - (deck.y - from.y) / 2 - 1;
    screen.hands.MoveTo(x, y);
    screen.hands.Press();
    // A busy window manager takes several moves for one, with which the drag only begins.
    constexpr int kLastStep = 2 * kGrip;
    const int near = right - kLastStep;
    int trembling = 0;
    EXPECT_TRUE(Until([&] {
      screen.hands.MoveTo(x + near + ++trembling % 2, y + down);
      const Place now = Outer();
      return std::abs(now.x - from.x - near) <= kGrip && std::abs(now.y - from.y - down) <= kGrip;
    })) << "dragged to "
        << Outer();
    // Once the window has done a last, longer step, no move before it is still to come.
    const int before = Outer().x;
    screen.hands.MoveTo(x + right, y + down);
    EXPECT_TRUE(Until([&] { return Outer().x >= before + kLastStep - 1; })) << Outer();
    screen.hands.Release();
  }

  /// Two of the window managers give the keyboard to whatever comes back.
  void ExpectKeyboardStaysWith(xcb_window_t window) {
    if (IsOneOf({WindowManager::Openbox, WindowManager::Xfwm4})) return;
    const auto active = screen.Numbers(screen.hands.Root(), "_NET_ACTIVE_WINDOW");
    ASSERT_FALSE(active.empty());
    EXPECT_EQ(active.front(), window);
  }
  /// Whether the screen has, where the deck stands, what the deck draws. What a second changes
  /// between two looks, and the mouse's own picture, are a small part of it.
  void ExpectPainted() {
    constexpr double kMostOther = 0.01;
    double other = 1;
    EXPECT_TRUE(Until([&] {
      const SeenWindow deck = screen.Deck();
      other = program->Ask([&] {
        QScreen& whole = *QGuiApplication::primaryScreen();
        return OtherPixels(Drawn(),
                           whole.grabWindow(0, deck.x, deck.y, deck.width, deck.height).toImage());
      });
      return other <= kMostOther;
    })) << other;
  }
  static QImage Drawn() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "frmMain") return window->grab().toImage();
    }
    return {};
  }
  /// The share of pixels in which two pictures are not the same.
  static double OtherPixels(const QImage& drawn, const QImage& seen) {
    if (drawn.isNull() || drawn.size() != seen.size()) return 1;
    int other = 0;
    for (int y = 0; y < seen.height(); ++y) {
      for (int x = 0; x < seen.width(); ++x) {
        if ((drawn.pixel(x, y) ^ seen.pixel(x, y)) & RGB_MASK) ++other;
      }
    }
    return static_cast<double>(other) / (seen.width() * seen.height());
  }

  static constexpr int kRate = 8000;
  /// Pixels that the pointer travels before the window manager takes it for a drag, and a few.
  static constexpr int kGrip = 12;
  const std::string longOne = DocumentName("Long", 1);
  const std::string shortOne = DocumentName("Short", 2);
  const Desktop desktop{"1280x1024", GetParam()};
  /// The rules are the same under each window manager; one of them shows that they hold for long.
  const int repeats = GetParam() == WindowManager::Openbox ? 10 : 2;
  SoundServer server;
  Home home;
  Screen screen;
  std::unique_ptr<DrivenProgram> program;
};

TEST_P(MiniPlayer, ComesBackToThePixelItWasDraggedToAtEveryPlayAndAfterARestart) {
  MakeHome({});
  Place dragged;
  Run([&] {
    const Place full = Rested();
    Play(longOne);
    const Place first = Rested();
    Drag(150, 90);
    dragged = Rested();
    ExpectPainted();
    EXPECT_NEAR(dragged.x, first.x + 150, kGrip);
    EXPECT_NEAR(dragged.y, first.y + 90, kGrip);
    EXPECT_EQ(dragged.height, first.height);
    Leave("cmdSkip");
    const Place centred = Rested();
    EXPECT_EQ(centred.width, full.width);
    EXPECT_EQ(centred.height, full.height);
    for (int turn = 0; turn < repeats; ++turn) {
      Play(longOne);
      ASSERT_EQ(Rested(), dragged) << "entry " << turn;
      Leave("cmdSkip");
      ASSERT_EQ(Rested(), centred) << "leaving " << turn;
    }
  });
  Run([&] {
    Play(longOne);
    EXPECT_EQ(Rested(), dragged);
    Drag(-dragged.x - 60, 0);
    EXPECT_LT(Rested().x, 0);
    Leave("cmdSkip");
    Play(longOne);
    EXPECT_EQ(Rested(), dragged) << "a place off the screen is not remembered";
    Leave("cmdSkip");

    CenterByTheConfiguration();
    Play(longOne);
    const Place centred = Rested();
    EXPECT_NEAR(centred.x * 2 + centred.width, 1280, 2);
    EXPECT_NEAR(centred.y * 2 + centred.height, 1024, 2);
    Leave("cmdSkip");
  });
}

TEST_P(MiniPlayer, StaysOnTopWhenToldThroughTenHidesAndShows) {
  MakeHome({{"AlwaysOnTopFlag", "N"}});
  Run([&] {
    {
      WordProcessor word(screen);
      ASSERT_TRUE(word.ComeForward());
      EXPECT_TRUE(Until([&] { return IsAbove(word.Id(), screen.Deck().id); })) << "not told yet";
      screen.hands.BringForward(screen.Deck().id);
      ASSERT_TRUE(Until([&] { return HasKeyboard("Tavlo Deck"); }));
    }
    TickAlwaysOnTop();
    EXPECT_TRUE(Until([&] { return DeckHas("_NET_WM_STATE_ABOVE"); }));
    ExpectAboutBoxBeforeTheDeck();
    Play(longOne);
    const Place place = Rested();
    WordProcessor word(screen);
    for (int turn = 0; turn < repeats; ++turn) {
      ASSERT_TRUE(word.ComeForward());
      ASSERT_TRUE(DeckHas("_NET_WM_STATE_ABOVE")) << "turn " << turn;
      ASSERT_TRUE(IsAbove(screen.Deck().id, word.Id())) << "turn " << turn;
      OpenConfiguration([&] { program->Click("cmdEQ"); }, [] {});
      ASSERT_EQ(Rested(), place) << "turn " << turn;
    }
    ASSERT_TRUE(word.ComeForward());
    EXPECT_TRUE(IsAbove(screen.Deck().id, word.Id()));
    Leave("cmdSkip");
    EXPECT_TRUE(DeckHas("_NET_WM_STATE_ABOVE"));
  });
}

TEST_P(MiniPlayer, MinimizesWhenToldAndComesBackWhenCalledAndAtTheEndsOfADocument) {
  MakeHome({{"MinimizeMiniPlayerFlag", "Y"}, {"PlayerLeft", "1500"}, {"PlayerTop", "2250"}});
  Run([&] {
    const Place full = Rested();
    const Place player = {100, 150, full.width, MiniPlayerHeight()};
    Play(longOne);
    ASSERT_TRUE(Until([&] { return Hidden(); }));
    screen.hands.BringForward(screen.Deck().id);
    EXPECT_TRUE(Until([&] { return !Hidden() && Outer() == player; })) << "called: " << Outer();
    EXPECT_EQ(Rested(), player);
    Leave("cmdSkip");
    EXPECT_EQ(Rested(), full);

    Play(longOne);
    ASSERT_TRUE(Until([&] { return Hidden(); }));
    // What a pedal does: it needs no window.
    program->Do([&] { program->Main().cmdSkipEnd.Press(); });
    EXPECT_TRUE(Until([&] { return !Hidden() && Outer() == player; })) << "skipped: " << Outer();
    EXPECT_EQ(Rested(), player);
    Leave("cmdSkip");
    EXPECT_EQ(Rested(), full);

    Play(shortOne);
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdComplete.Enabled.Get(); }));
    ASSERT_TRUE(Until([&] { return !Hidden(); })) << "the sound has reached the end";
    EXPECT_EQ(Rested().height, player.height);
    ExpectPainted();
    Leave("cmdComplete");
    EXPECT_EQ(Rested(), full);
  });
}

TEST_P(MiniPlayer, ComesBackInFrontOfTheWordProcessorAndLeavesTheKeyboardToIt) {
  MakeHome({{"MinimizeMiniPlayerFlag", "Y"}, {"AlwaysOnTopFlag", "N"}});
  Run([&] {
    const auto toTheEnd = [&] { program->Do([&] { program->Main().cmdSkipEnd.Press(); }); };
    Play(longOne);
    ASSERT_TRUE(Until([&] { return Hidden(); }));
    {
      const WordProcessor word(screen);
      ASSERT_TRUE(word.ComeForward());
      toTheEnd();
      EXPECT_TRUE(Until([&] { return !Hidden() && IsAbove(screen.Deck().id, word.Id()); }));
      Rested();
      ExpectPainted();
      ExpectKeyboardStaysWith(word.Id());
    }
    screen.hands.BringForward(screen.Deck().id);
    // One return without the keyboard is no reason not to have it in the next window.
    OpenConfiguration([&] { program->Click("cmdEQ"); }, [] {});
    EXPECT_TRUE(Until([&] { return HasKeyboard("Tavlo Deck"); }));
    Leave("cmdSkip");
  });
}

TEST_P(MiniPlayer, IsStillOnTopWhenItComesBack) {
  MakeHome({{"MinimizeMiniPlayerFlag", "Y"}, {"AlwaysOnTopFlag", "Y"}});
  Run([&] {
    EXPECT_TRUE(Until([&] { return DeckHas("_NET_WM_STATE_ABOVE"); }));
    for (int turn = 0; turn < 2; ++turn) {
      Play(longOne);
      ASSERT_TRUE(Until([&] { return Hidden(); })) << "turn " << turn;
      {
        const WordProcessor word(screen);
        ASSERT_TRUE(word.ComeForward());
        program->Do([&] { program->Main().cmdSkipEnd.Press(); });
        ASSERT_TRUE(Until([&] { return !Hidden(); })) << "turn " << turn;
        Rested();
        EXPECT_TRUE(Until([&] { return DeckHas("_NET_WM_STATE_ABOVE"); })) << "turn " << turn;
        ASSERT_TRUE(word.ComeForward());
        EXPECT_TRUE(IsAbove(screen.Deck().id, word.Id())) << "turn " << turn;
      }
      Leave("cmdSkip");
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Under, MiniPlayer,
                         testing::Values(WindowManager::Openbox, WindowManager::Mutter,
                                         WindowManager::Kwin, WindowManager::Metacity,
                                         WindowManager::Xfwm4),
                         [](const testing::TestParamInfo<WindowManager>& manager) {
                           return NameOf(manager.param);
                         });

}  // namespace
}  // namespace tavlo::test
