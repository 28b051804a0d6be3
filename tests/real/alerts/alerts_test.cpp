#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QWidget>
#include <QWindow>
#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "alerts/letter.h"
#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

constexpr int kRate = 8000;
constexpr const char* kTitle = "Something is new";

/// The real program, which comes to the top by itself and says something while somebody types.
struct Alerts : testing::TestWithParam<WindowManager> {
  void SetUp() override {
    if (desktop.LacksManager() && GetParam() != WindowManager::Openbox) {
      GTEST_SKIP() << desktop.Fault();
    }
    ASSERT_EQ(desktop.Fault(), "");
    ASSERT_TRUE(server.Start());
    home.MakeRoot(QuietSettings({{"AlwaysOnTopFlag", "N"},
                                 {"MinimizeMiniPlayerFlag", "N"},
                                 {"PlayerLeft", "1500"},
                                 {"PlayerTop", "2250"}}));
    home.AddToQueue(document, WaveBytes(Chirp(120 * kRate, kRate)));
  }

  void Run(const std::function<void()>& script) {
    program = std::make_unique<DrivenProgram>(home);
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      script();
      CallBack();
      Leave();
    });
    EXPECT_EQ(status, 0);
    program.reset();
  }

  void Leave() {
    if (HasManager()) return program->Exit();
    program->Do([this] { program->Loop().Post([this] { Form().CloseRequest(); }); });
    program->AnswerBox();
  }
  forms::Window& Form() { return program->Main().frmMain; }
  bool HasManager() const { return GetParam() != WindowManager::None; }

  /// What a rule does that has news.
  void RaiseAlert() {
    program->Do([this] {
      Form().TopMost = true;
      program->Loop().Post([this] {
        program->Loop().Show({.title = kTitle, .text = "Have a look at it."});
        Form().TopMost = false;
        ++answers;
      });
    });
    ASSERT_TRUE(Until([this] { return IsInFront(BoxWindow()); }));
  }
  /// What a rule says that has no news. It is not in front where the deck is minimized.
  void Say(const char* title) {
    program->Do([this, title] {
      program->Loop().Post([this, title] {
        program->Loop().Show({.title = title, .text = "Something went wrong."});
        ++answers;
      });
    });
    ASSERT_TRUE(Until([&] { return TitleOfBox() == title; }));
  }
  /// The same where the deck has the keyboard, which the box takes.
  void SayToWhoIsThere(const char* title) {
    Say(title);
    ASSERT_TRUE(program->Until([] {
      const QWidget* const box = QApplication::activeModalWidget();
      return box && box == QApplication::activeWindow();
    }));
  }
  std::string TitleOfBox() {
    return program->Ask([]() -> std::string {
      const QMessageBox* const box = DrivenProgram::OpenBox();
      return box ? box->windowTitle().toStdString() : "";
    });
  }
  xcb_window_t BoxWindow() {
    return program->Ask([]() -> xcb_window_t {
      const QMessageBox* const box = DrivenProgram::OpenBox();
      return box && box->isVisible() ? static_cast<xcb_window_t>(box->windowHandle()->winId())
                                     : XCB_NONE;
    });
  }
  xcb_window_t DeckWindow() {
    return program->Ask([]() -> xcb_window_t {
      for (const QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == "frmMain" && widget->windowHandle()) {
          return static_cast<xcb_window_t>(widget->windowHandle()->winId());
        }
      }
      return XCB_NONE;
    });
  }
  /// Nothing covers a point near the upper left corner of the window.
  bool IsInFront(xcb_window_t window) {
    constexpr int kInside = 4;
    return window != XCB_NONE &&
           IsSeenAt(screen.hands.PlaceOf(window) + QPoint(kInside, kInside), window);
  }
  bool IsSeenAt(const QPoint& place, xcb_window_t window) {
    xcb_connection_t* const display = screen.hands.Connection();
    for (xcb_window_t at = screen.hands.Root(); at != window;) {
      const std::unique_ptr<xcb_translate_coordinates_reply_t, void (*)(void*)> reply(
          xcb_translate_coordinates_reply(
              display,
              xcb_translate_coordinates(display, screen.hands.Root(), at,
                                        static_cast<std::int16_t>(place.x()),
                                        static_cast<std::int16_t>(place.y())),
              nullptr),
          std::free);
      if (!reply || reply->child == XCB_NONE) return false;
      at = reply->child;
    }
    return true;
  }
  void ClickOk() {
    const int before = answers;
    QPoint last(-1, -1);
    QPoint place;
    ASSERT_TRUE(Until([&] {
      program->Settle();
      place = program->Ask([&] {
        QPoint middle;
        for (const auto* const button :
             DrivenProgram::OpenBox()->findChildren<QAbstractButton*>()) {
          middle = button->mapTo(button->window(), button->rect().center());
        }
        return middle;
      });
      place += screen.hands.PlaceOf(BoxWindow());
      return std::exchange(last, place) == place;
    }));
    screen.hands.ClickAt(place.x(), place.y());
    ASSERT_TRUE(Until([&] { return answers > before; }));
  }
  /// Looks for the open box as somebody does who has left it for another window.
  void BringBoxForward() {
    if (HasManager()) {
      screen.hands.BringForward(BoxWindow());
    } else {
      const std::uint32_t above = XCB_STACK_MODE_ABOVE;
      xcb_configure_window(screen.hands.Connection(), BoxWindow(), XCB_CONFIG_WINDOW_STACK_MODE,
                           &above);
      xcb_flush(screen.hands.Connection());
    }
    ASSERT_TRUE(Until([this] { return IsInFront(BoxWindow()); }));
  }

  /// All that is typed stays in the letter, also what would answer a box.
  void TypeOn(Letter& letter) {
    for (const std::uint32_t key : {std::uint32_t{'a'}, keys::kReturn, std::uint32_t{' '},
                                    keys::kEscape, std::uint32_t{'b'}}) {
      letter.Type(key);
      program->Settle();
    }
  }
  void ComeForward(Letter& letter) {
    // What a manager still does for a window that has just come would take the keyboard back.
    program->Settle();
    ASSERT_TRUE(letter.ComeForward());
    ASSERT_TRUE(program->Until([this] { return !Form().HasKeyboard; }));
    program->Settle();
  }
  void ExpectAlertThatLeavesTheKeyboardTo(Letter& letter) {
    ComeForward(letter);
    const int before = answers;
    RaiseAlert();
    TypeOn(letter);
    EXPECT_EQ(answers, before);
    EXPECT_TRUE(IsInFront(BoxWindow()));
    EXPECT_FALSE(program->Ask([this] { return Form().HasKeyboard; }));
    ClickOk();
    EXPECT_TRUE(Until([&] { return letter.HasKeyboard(); }));
    program->Settle();
    TypeOn(letter);
    // Which of the two xfwm4 shows in front is left to it.
    const bool stacks = HasManager() && GetParam() != WindowManager::Xfwm4;
    if (stacks && program->Ask([this] { return InSight(); })) {
      const QPoint deck = screen.hands.PlaceOf(DeckWindow()) + QPoint(20, 20);
      EXPECT_TRUE(Until([&] { return IsSeenAt(deck, letter.Id()); }));
    }
  }
  bool InSight() { return Form().WindowShape != forms::Shape::Minimized; }
  /// Gives the deck the keyboard, as the task bar does.
  void CallBack() {
    if (!HasManager()) {
      const xcb_window_t deck = DeckWindow();
      xcb_set_input_focus(screen.hands.Connection(), XCB_INPUT_FOCUS_PARENT, deck,
                          XCB_CURRENT_TIME);
      xcb_flush(screen.hands.Connection());
    } else {
      screen.hands.BringForward(screen.Deck().id);
      // Some managers give the keyboard first and tell of it a moment later.
      ASSERT_TRUE(Until([this] {
        const auto active = screen.Numbers(screen.hands.Root(), "_NET_ACTIVE_WINDOW");
        return !active.empty() && (active.front() == DeckWindow() || active.front() == BoxWindow());
      }));
    }
    ASSERT_TRUE(program->Until([this] { return Form().HasKeyboard; }));
  }

  const std::string document = DocumentName("Long", 1);
  const Desktop desktop{"1280x1024", GetParam()};
  SoundServer server;
  Home home;
  Screen screen;
  std::unique_ptr<DrivenProgram> program;
  std::atomic<int> answers = 0;  ///< How many boxes have been answered.
};

TEST_P(Alerts, ShowInFrontOfALetterAndTakeNoKeyFromIt) {
  Run([&] {
    Letter letter(screen, GetParam());
    ExpectAlertThatLeavesTheKeyboardTo(letter);
    // And once more, with the deck on top and in the shape of the player.
    CallBack();
    program->ClickRow(program->RowOf(document));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
    program->Click("cmdPlay");
    ASSERT_TRUE(program->Until([&] { return !program->Main().frameFiles.Visible; }));
    ExpectAlertThatLeavesTheKeyboardTo(letter);
    CallBack();
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  });
}

TEST_P(Alerts, OfAMinimizedDeckShowAndLeaveItMinimized) {
  if (!HasManager()) GTEST_SKIP() << "nothing is minimized without a window manager";
  Run([&] {
    Letter letter(screen, GetParam());
    ComeForward(letter);
    program->Do([this] { Form().WindowShape = forms::Shape::Minimized; });
    const auto hidden = [this] {
      return screen.HasState(screen.Deck().id, "_NET_WM_STATE_HIDDEN");
    };
    ASSERT_TRUE(Until(hidden));
    ExpectAlertThatLeavesTheKeyboardTo(letter);
    EXPECT_TRUE(hidden());
    EXPECT_EQ(program->Ask([this] { return Form().WindowShape.Get(); }), forms::Shape::Minimized);
  });
}

TEST_P(Alerts, HaveTheKeyboardWhereTheDeckHasIt) {
  Run([&] {
    Letter letter(screen, GetParam());
    ComeForward(letter);
    CallBack();
    RaiseAlert();
    EXPECT_TRUE(program->Until(
        [] { return QApplication::activeWindow() == QApplication::activeModalWidget(); }));
    EXPECT_TRUE(program->Ask([this] { return Form().HasKeyboard; }));
    program->Keys({keys::kReturn});
    EXPECT_TRUE(Until([&] { return answers == 1; }));
    EXPECT_TRUE(program->Until([this] { return Form().HasKeyboard; }));
    forms::ConfigurationForm& configuration = program->Windows().configuration;
    program->Do([&] { program->Main().mnuConfiguration.Press(); });
    EXPECT_TRUE(program->Until([&] {
      const QWidget* const window = QApplication::activeWindow();
      return window && window->objectName() == "frmConfiguration";
    }));
    EXPECT_TRUE(program->Ask([this] { return Form().HasKeyboard; }));
    program->Do([&] { configuration.mnuClose.Press(); });
    ASSERT_TRUE(program->Until([this] { return Form().Visible.Get(); }));
  });
}

TEST_P(Alerts, GiveTheKeyboardBackToTheWindowThatHadItLast) {
  if (!HasManager()) GTEST_SKIP() << "nobody tells whose the keyboard is";
  Run([&] {
    Letter letter(screen, GetParam());
    Letter mail(screen, GetParam(), 40);
    ComeForward(letter);
    RaiseAlert();
    ComeForward(mail);
    mail.Type('c');
    ClickOk();
    EXPECT_TRUE(Until([&] { return mail.HasKeyboard(); }));
    program->Settle();
    TypeOn(mail);
  });
}

TEST_P(Alerts, OverAnOpenBoxAreAnsweredFirstAndThenThatOne) {
  Run([&] {
    Letter letter(screen, GetParam());
    ComeForward(letter);
    CallBack();
    SayToWhoIsThere("below");
    ComeForward(letter);
    for (const char* const title : {"over it", "over both"}) {
      Say(title);
      EXPECT_TRUE(Until([this] { return IsInFront(BoxWindow()); }));
      TypeOn(letter);
    }
    EXPECT_EQ(answers, 0);
    for (const char* const next : {"over it", "below", ""}) {
      BringBoxForward();
      ClickOk();
      EXPECT_EQ(TitleOfBox(), next);
    }
    EXPECT_EQ(answers, 3);
  });
}

TEST_P(Alerts, WhoComesBackToThemHasTheKeyboardInTheForemost) {
  Run([&] {
    Letter letter(screen, GetParam());
    ComeForward(letter);
    Say("below");
    TypeOn(letter);
    CallBack();
    SayToWhoIsThere("over it");
    EXPECT_TRUE(Until([this] { return IsInFront(BoxWindow()); }));
    program->Keys({keys::kReturn});
    EXPECT_TRUE(Until([&] { return answers == 1; }));
    EXPECT_EQ(TitleOfBox(), "below");
    program->Keys({keys::kReturn});
    EXPECT_TRUE(Until([&] { return answers == 2; }));
  });
}

TEST_P(Alerts, OverABoxThatIsHiddenWithTheDeckAreAnsweredWhenItIsBack) {
  if (!HasManager()) GTEST_SKIP() << "nothing is minimized without a window manager";
  Run([&] {
    Letter letter(screen, GetParam());
    ComeForward(letter);
    CallBack();
    SayToWhoIsThere("below");
    program->Do([this] { Form().WindowShape = forms::Shape::Minimized; });
    ASSERT_TRUE(
        Until([this] { return screen.HasState(screen.Deck().id, "_NET_WM_STATE_HIDDEN"); }));
    ComeForward(letter);
    Say("over it");
    TypeOn(letter);
    EXPECT_EQ(answers, 0);
    screen.hands.BringForward(screen.Deck().id);
    for (const char* const next : {"below", ""}) {
      BringBoxForward();
      ClickOk();
      EXPECT_EQ(TitleOfBox(), next);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Under, Alerts,
                         testing::Values(WindowManager::Openbox, WindowManager::Mutter,
                                         WindowManager::Kwin, WindowManager::Metacity,
                                         WindowManager::Xfwm4, WindowManager::None),
                         [](const testing::TestParamInfo<WindowManager>& manager) {
                           return NameOf(manager.param);
                         });

}  // namespace
}  // namespace tavlo::test
