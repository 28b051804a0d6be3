#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <set>
#include <string>
#include <thread>

#include "support/driven_program.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

// Key symbols of the display's keyboard.
constexpr std::uint32_t kTab = 0xFF09;
constexpr std::uint32_t kShift = 0xFFE1;
constexpr std::uint32_t kAlt = 0xFFE9;
constexpr std::uint32_t kEscape = 0xFF1B;
constexpr std::uint32_t kReturn = 0xFF0D;
constexpr std::uint32_t kDown = 0xFF54;
constexpr std::uint32_t kRight = 0xFF53;
constexpr std::uint32_t kPageUp = 0xFF55;
constexpr std::uint32_t kMenu = 0xFF67;

class WithoutAMouse : public testing::Test {
 protected:
  WithoutAMouse() {
    home.MakeRoot({{"AutoPreview", "0"}});
    home.AddToQueue(DocumentName("Brown", 1), WaveBytes(Chirp(8000, 8000)));
    home.AddToQueue(DocumentName("Okafor", 2), WaveBytes(Chirp(16000, 8000)));
  }

  void Run(const std::function<void()>& script) {
    DrivenProgram driven(home);
    program = &driven;
    const int status = driven.Run([&] {
      ASSERT_TRUE(driven.Begin());
      driven.AnswerBox();
      ASSERT_TRUE(Until([&] { return driven.IsReady(); }));
      script();
      driven.Exit();
    });
    EXPECT_EQ(status, 0);
  }

  std::string Focus() {
    return program->Ask([]() -> std::string {
      const QWidget* const widget = QApplication::focusWidget();
      return widget ? widget->objectName().toStdString() : "";
    });
  }
  /// Presses Tab, which must take the keyboard elsewhere.
  std::string Tab(std::initializer_list<std::uint32_t> keys = {kTab}) {
    const std::string before = Focus();
    program->Keys(keys);
    EXPECT_TRUE(Until([&] { return Focus() != before; }, 3s)) << "Tab stays on " << before;
    return Focus();
  }
  bool TabTo(const std::string& control) {
    for (int press = 0; press < 40; ++press) {
      if (Tab() == control) return true;
    }
    return false;
  }
  /// Every enabled control of the active window that the keyboard is meant for.
  std::set<std::string> Enabled() {
    return program->Ask([] {
      std::set<std::string> names;
      for (const QWidget* const widget : QApplication::activeWindow()->findChildren<QWidget*>()) {
        const bool meant = (widget->focusPolicy() & Qt::TabFocus) != 0;
        if (meant && widget->isVisible() && widget->isEnabled() &&
            !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_")) {
          names.insert(widget->objectName().toStdString());
        }
      }
      return names;
    });
  }
  void ExpectTabReachesEverything() {
    std::set<std::string> left = Enabled();
    EXPECT_GT(left.size(), 2u);
    for (int press = 0; press < 40 && !left.empty(); ++press) left.erase(Tab());
    for (const std::string& name : left) ADD_FAILURE() << "Tab does not reach " << name;
  }

  Home home;
  DrivenProgram* program = nullptr;
};

TEST_F(WithoutAMouse, TabReachesEveryControlOfTheDeckAndOfTheConfiguration) {
  Run([&] {
    ExpectTabReachesEverything();
    program->Keys({kAlt, 'f'});
    program->Keys({'c'});
    ASSERT_TRUE(program->Until([&] {
      return program->Windows().configuration.frmConfiguration.Visible &&
             QApplication::activeWindow() &&
             QApplication::activeWindow()->objectName() == "frmConfiguration";
    }));
    ExpectTabReachesEverything();
    program->Keys({kEscape});
    EXPECT_TRUE(program->Until(
        [&] { return !program->Windows().configuration.frmConfiguration.Visible.Get(); }));
  });
}

TEST_F(WithoutAMouse, TabGoesOnFromTheControlThatGaveTheKeyboardAway) {
  Run([&] {
    program->Do([&] { program->Main().cmdNormalSpeed.Enabled = true; });
    ASSERT_TRUE(TabTo("cmdNormalSpeed"));
    program->Keys({' '});
    EXPECT_TRUE(Until([&] { return Focus() == "txtFocus"; }, 3s));
    EXPECT_EQ(Tab(), "sldVol");

    ASSERT_TRUE(TabTo("cmdNormalSpeed"));
    program->Keys({' '});
    EXPECT_TRUE(Until([&] { return Focus() == "txtFocus"; }, 3s));
    EXPECT_EQ(Tab({kShift, kTab}), "cmdNormalSpeed");
  });
}

TEST_F(WithoutAMouse, ArrowsSelectInTheListAndTheMenuKeySortsIt) {
  Run([&] {
    ASSERT_TRUE(TabTo("listViewInQueue"));
    const auto chosen = [&](const std::string& author) {
      return program->Until([&] { return program->Main().StatusBar1.Panels.Get()[2] == author; });
    };
    program->Keys({kDown});
    EXPECT_TRUE(chosen("Brown"));
    program->Keys({kDown});
    EXPECT_TRUE(chosen("Okafor"));
    EXPECT_EQ(Focus(), "listViewInQueue");
    EXPECT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));

    program->Keys({kMenu});
    EXPECT_TRUE(program->Until([] { return QApplication::activePopupWidget() != nullptr; }));
    for (int entry = 0; entry < 3; ++entry) program->Keys({kDown});
    program->Keys({kReturn});
    EXPECT_TRUE(program->Until([&] { return program->Main().listViewInQueue.SortColumn() == 2; }));
  });
}

TEST_F(WithoutAMouse, ASliderTakesStepAfterStep) {
  Run([&] {
    ASSERT_TRUE(TabTo("sldVol"));
    const int before = program->Ask([&] { return program->Main().sldVol.Value.Get(); });
    program->Keys({kRight});
    program->Keys({kRight});
    EXPECT_TRUE(program->Until([&] { return program->Main().sldVol.Value == before + 2; }));
    program->Keys({kPageUp});
    EXPECT_TRUE(program->Until([&] { return program->Main().sldVol.Value > before + 2; }));

    program->Keys({kAlt, 'f'});
    program->Keys({'c'});
    ASSERT_TRUE(program->Until([&] {
      return QApplication::activeWindow() &&
             QApplication::activeWindow()->objectName() == "frmConfiguration";
    }));
    forms::Range& slider = program->Windows().configuration.sliderWindIncrement;
    const int first = program->Ask([&] { return slider.Value.Get(); });
    ASSERT_TRUE(TabTo("sliderWindIncrement"));
    program->Keys({kRight});
    program->Keys({kRight});
    EXPECT_TRUE(program->Until([&] { return slider.Value == first + 2; }));
    EXPECT_EQ(Focus(), "sliderWindIncrement");
    program->Keys({kEscape});
    EXPECT_TRUE(program->Until(
        [&] { return !program->Windows().configuration.frmConfiguration.Visible.Get(); }));
  });
}

}  // namespace
}  // namespace tavlo::test
