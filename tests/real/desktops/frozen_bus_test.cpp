#include <gtest/gtest.h>
#include <stdlib.h>

#include <QAccessible>
#include <QApplication>
#include <chrono>
#include <functional>
#include <string>

#include "support/driven_program.h"
#include "support/real_bus.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

// Key symbols of the display's keyboard.
constexpr std::uint32_t kTab = 0xFF09;
constexpr std::uint32_t kEscape = 0xFF1B;
constexpr std::uint32_t kF4 = 0xFFC1;
constexpr std::uint32_t kF5 = 0xFFC2;
constexpr std::uint32_t kAlt = 0xFFE9;

/// Whoever waits for a bus waits 25 seconds for each answer. Nothing else takes a click so long.
constexpr auto kWaitForABus = 20s;

/// The program on a desktop whose session bus, with the services of screen readers on it, freezes
/// after the start.
struct FrozenBus : testing::Test {
  FrozenBus() {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.Address().c_str(), 1);
    ::unsetenv("AT_SPI_BUS_ADDRESS");
    home.MakeRoot({{"AutoPreview", "0"}});
    home.AddToQueue(DocumentName("Brown", 1), WaveBytes(Chirp(8000, 8000)));
    home.AddToQueue(DocumentName("Okafor", 2), WaveBytes(Chirp(8000, 8000)));
  }

  void Run(bool heard) {
    DrivenProgram program(home);
    const int status = program.Run([&] {
      ASSERT_TRUE(program.Begin());
      program.AnswerBox();
      ASSERT_TRUE(Until([&] { return program.IsReady(); }));
      EXPECT_EQ(program.Ask(&QAccessible::isActive), heard);
      bus.Freeze();
      UseEverything(program);
      program.Exit();
    });
    EXPECT_EQ(status, 0);
  }

  static void UseEverything(DrivenProgram& program) {
    Expect("row", [&] { program.ClickRow(1); });
    Expect("key", [&] { program.Keys({kTab}); });
    Expect("refresh", [&] {
      program.Keys({kF5});
      EXPECT_TRUE(Until([&] { return program.IsReady(); }));
    });
    Expect("menu", [&] { program.Keys({kAlt, 'f'}); });
    Expect("menu's end", [&] { program.Keys({kEscape}); });
    Expect("face", [&] { program.Do([&] { program.Main().imageFaciaA.Click(); }); });
    forms::ConfigurationForm& configuration = program.Windows().configuration;
    Expect("configuration", [&] {
      // The refresh may only begin behind the keys, and closes the menus for its time.
      EXPECT_TRUE(program.Until([&] {
        if (configuration.frmConfiguration.Visible) return true;
        program.Main().mnuConfiguration.Press(forms::By::Hand);
        return false;
      }));
    });
    const int pages = static_cast<int>(configuration.tabConfiguration.Rows().size());
    for (int page = 0; page < pages; ++page) {
      Expect("page", [&] { program.Do([&] { configuration.tabConfiguration.RowClick(page); }); });
    }
    Expect("key in the configuration", [&] { program.Keys({kTab}); });
    Expect("configuration's end", [&] {
      program.Do([&] { configuration.mnuClose.Press(forms::By::Hand); });
      EXPECT_TRUE(Until([&] { return program.IsReady(); }));
    });
    Expect("box", [&] {
      // The window manager may yet be taking the keyboard from the window that has gone, and a key
      // that comes then reaches nobody.
      EXPECT_TRUE(Until([&] {
        if (program.Box().empty()) program.Keys({kAlt, kF4});
        return !program.Box().empty();
      }));
      program.Keys({kEscape});
      EXPECT_TRUE(Until([&] { return program.Box().empty(); }));
    });
  }

  /// What a hand did is done, and the loop is free again, without a wait for the bus.
  static void Expect(const std::string& what, const std::function<void()>& act) {
    const auto begun = std::chrono::steady_clock::now();
    act();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begun;
    EXPECT_LT(taken, kWaitForABus) << what;
  }

  RealBus bus;
  Home home;
};

TEST_F(FrozenBus, HoldsNoClick) {
  ASSERT_NE(bus.Address(), "");
  Run(false);
}

TEST_F(FrozenBus, HoldsNoClickOfADeckThatAScreenReaderHears) {
  ASSERT_TRUE(bus.StartService("org.a11y.Bus", "/org/a11y/bus"));
  ::setenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1", 1);
  Run(true);
}

}  // namespace
}  // namespace tavlo::test
