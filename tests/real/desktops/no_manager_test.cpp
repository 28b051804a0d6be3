#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <string>

#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/keys.h"
#include "support/place.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 1024;
constexpr int kRate = 8000;

/// The real program on a screen without a window manager: windows have no frame, nothing gives them
/// the keyboard, and what is minimized could not be called back.
struct WithoutAManager : testing::Test {
  void Run(store::Assignments settings, const std::function<void()>& script) {
    ASSERT_EQ(desktop.Fault(), "");
    ASSERT_TRUE(server.Start());
    settings.insert(settings.end(), {{"PlayerLeft", "1500"}, {"PlayerTop", "2250"}});
    home.MakeRoot(QuietSettings(settings));
    home.AddToQueue(document, WaveBytes(Chirp(60 * kRate, kRate)));
    DrivenProgram driven(home);
    program = &driven;
    EXPECT_EQ(driven.Run([&] {
      ASSERT_TRUE(driven.Begin());
      script();
      ChooseInFileMenu('e');
      EXPECT_EQ(driven.AnswerBox(),
                "Tavlo Deck - Exit: Are you sure you want to exit the Tavlo Deck?");
    }),
              0);
  }

  void ChooseInFileMenu(std::uint32_t letter) {
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    program->Keys({keys::kAlt, 'f'});
    ASSERT_TRUE(program->Until([] { return QApplication::activePopupWidget() != nullptr; }));
    program->Keys({letter});
  }
  std::string HasKeyboard() {
    return program->Ask([] {
      const QWidget* const widget = QApplication::focusWidget();
      return widget && widget->window()->isActiveWindow() ? widget->objectName().toStdString() : "";
    });
  }
  /// The main window as it stands on the screen; no size while it is not there.
  Place Seen() {
    const auto window = program->Ask([]() -> xcb_window_t {
      for (const QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == "frmMain" && widget->isVisible()) {
          return static_cast<xcb_window_t>(widget->windowHandle()->winId());
        }
      }
      return XCB_NONE;
    });
    if (window == XCB_NONE) return {};
    const SeenWindow seen = screen.Look(window);
    return {seen.x, seen.y, seen.width, seen.height};
  }
  void ExpectMiniPlayer() {
    const int height = program->Ask([&] { return program->Main().framePlayer.Height / 15; });
    EXPECT_TRUE(Until([&] {
      const Place seen = Seen();
      return seen.x == 100 && seen.y == 150 && seen.height > height && seen.height < height + 60;
    })) << Seen();
  }
  void Play() {
    program->ClickRow(program->RowOf(document));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
    program->Click("cmdPlay");
    ASSERT_TRUE(program->Until([&] { return !program->Main().frameFiles.Visible; }));
  }
  void Skip() {
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  }

  const Desktop desktop{std::to_string(kWidth) + "x" + std::to_string(kHeight),
                        WindowManager::None};
  SoundServer server;
  Home home;
  Screen screen;
  DrivenProgram* program = nullptr;
  const std::string document = DocumentName("Long", 1);
};

TEST_F(WithoutAManager, TheWholeWindowShowsThePlayerComesAndGoesAndTheKeyboardWorks) {
  Run({}, [&] {
    const Place full = Seen();
    EXPECT_GE(full.x, 0);
    EXPECT_GE(full.y, 0);
    EXPECT_LE(full.x + full.width, kWidth);
    EXPECT_LE(full.y + full.height, kHeight);
    EXPECT_TRUE(Until([&] { return HasKeyboard() == "txtFocus"; })) << HasKeyboard();
    Play();
    ExpectMiniPlayer();
    Skip();
    EXPECT_TRUE(Until([&] { return Seen() == full; })) << Seen();
    EXPECT_TRUE(Until([&] { return HasKeyboard() == "txtFocus"; })) << HasKeyboard();
    ChooseInFileMenu('a');
    EXPECT_TRUE(program->Until([] {
      const QWidget* const window = QApplication::activeWindow();
      return window && window->objectName() == "frmAbout";
    }));
    program->Keys({keys::kEscape});
    EXPECT_TRUE(program->Until([&] { return !program->Windows().about.frmAbout.Visible.Get(); }));
    EXPECT_TRUE(Until([&] { return HasKeyboard() == "txtFocus"; })) << HasKeyboard();
  });
}

TEST_F(WithoutAManager, NothingIsMinimizedThatCouldNotBeBroughtBack) {
  Run({{"MinimizeMiniPlayerFlag", "Y"}}, [&] {
    const Place full = Seen();
    Play();
    ExpectMiniPlayer();
    Skip();
    EXPECT_TRUE(Until([&] { return Seen() == full; })) << Seen();
    ChooseInFileMenu('m');
    EXPECT_TRUE(program->Until(
        [&] { return program->Main().frmMain.WindowShape == forms::Shape::Normal; }));
    EXPECT_EQ(Seen(), full);
    Play();
    ExpectMiniPlayer();
    Skip();
  });
}

}  // namespace
}  // namespace tavlo::test
