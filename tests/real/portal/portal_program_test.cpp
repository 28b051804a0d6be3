#include <gtest/gtest.h>
#include <stdlib.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/driven_program.h"
#include "support/mock_portal.h"
#include "support/real_bus.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

constexpr int kRate = 8000;
constexpr int kSeconds = 120;

/// The real program on a Wayland desktop, whose portal gives it keys. Its windows stand on an X
/// display, as they do there through XWayland.
struct PortalProgram : testing::Test {
  void SetUp() override {
    ASSERT_NE(bus.Address(), "");
    ASSERT_TRUE(server.Start());
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.Address().c_str(), 1);
    ::setenv("WAYLAND_DISPLAY", "no-such-display", 1);
  }
  void TearDown() override { ::unsetenv("WAYLAND_DISPLAY"); }

  void Run(const store::Assignments& settings, const std::function<void()>& script) {
    home.MakeRoot(QuietSettings(settings));
    home.AddToQueue(name, WaveBytes(Chirp(kRate * kSeconds, kRate)));
    program = std::make_unique<DrivenProgram>(home);
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      program->ClickRow(program->RowOf(name));
      ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
      script();
      if (program->Ask([&] { return program->Main().cmdSkip.Enabled.Get(); })) {
        program->Click("cmdSkip");
        ASSERT_TRUE(Until([&] { return program->IsReady(); }));
      }
      program->Exit();
    });
    EXPECT_EQ(status, 0);
    program.reset();
  }
  bool BecomesPlaying(bool plays) {
    return program->Until([&] { return program->Rooms().engine.IsPlaying == plays; });
  }
  std::string StateOfFirstKey() {
    return program->Ask(
        [&] { return program->Windows().configuration.keys.front().lblKeyState.Value.Get(); });
  }
  std::string WayInWords() {
    return program->Ask([&] { return program->Windows().configuration.lblKeysWay.Value.Get(); });
  }

  const std::string name = DocumentName("Brown", 1);
  const store::Assignments keys{{"PlayStopKey", "F4"}, {"PlayHeldKey", "F2"}};
  RealBus bus;
  SoundServer server;
  Home home;
  std::unique_ptr<DrivenProgram> program;
};

TEST_F(PortalProgram, PlaysAndStopsByKeysOfTheDesktop) {
  MockPortal portal(bus.Address(),
                    {.gives = [](const WishedShortcut& wish) { return "Super+" + wish.trigger; }});
  Run(keys, [&] {
    ASSERT_TRUE(Until([&] { return StateOfFirstKey() == "The desktop gave: Super+F4"; }));
    EXPECT_EQ(portal.Wished().size(), 2u);
    portal.Activate("play-stop");
    EXPECT_TRUE(BecomesPlaying(true));
    portal.Deactivate("play-stop");
    portal.Activate("play-stop");
    EXPECT_TRUE(BecomesPlaying(false));
    portal.Deactivate("play-stop");
    portal.Activate("play-held");
    EXPECT_TRUE(BecomesPlaying(true));
    portal.Deactivate("play-held");
    EXPECT_TRUE(BecomesPlaying(false));
  });
  EXPECT_EQ(portal.Count("CreateSession"), 1);
}

TEST_F(PortalProgram, StopsWhatAHeldKeyBeganWhenThePortalDies) {
  MockPortal portal(bus.Address());
  Run(keys, [&] {
    ASSERT_TRUE(Until([&] { return StateOfFirstKey() == "The desktop gave: F4"; }));
    portal.Activate("play-held");
    EXPECT_TRUE(BecomesPlaying(true));
    portal.Die();
    EXPECT_TRUE(BecomesPlaying(false));
    portal.ComeBack();
    ASSERT_TRUE(Until([&] { return portal.Count("BindShortcuts") == 2; }));
    ASSERT_TRUE(Until([&] { return StateOfFirstKey() == "The desktop gave: F4"; }));
    portal.Activate("play-held");
    EXPECT_TRUE(BecomesPlaying(true));
    portal.CloseSession();
    EXPECT_TRUE(BecomesPlaying(false));
  });
}

TEST_F(PortalProgram, PlaysByHandWhileThePortalHangs) {
  MockPortal portal(bus.Address());
  portal.Hang();
  Run(keys, [&] {
    EXPECT_EQ(StateOfFirstKey(), "The desktop is asked.");
    program->Click("cmdPlay");
    EXPECT_TRUE(BecomesPlaying(true));
    program->Click("cmdStop");
    EXPECT_TRUE(BecomesPlaying(false));
  });
}

TEST_F(PortalProgram, AsksNothingWithoutAKey) {
  MockPortal portal(bus.Address());
  Run({}, [&] {
    program->Click("cmdPlay");
    EXPECT_TRUE(BecomesPlaying(true));
    program->Click("cmdStop");
    EXPECT_TRUE(BecomesPlaying(false));
  });
  EXPECT_EQ(portal.Calls(), std::vector<std::string>());
}

TEST_F(PortalProgram, SaysSoWhereTheDesktopHasNoPortal) {
  Run(keys, [&] {
    EXPECT_TRUE(Until([&] {
      return WayInWords() == "This desktop lets no program have keys of other windows.";
    })) << WayInWords();
  });
}

TEST_F(PortalProgram, OpensTheDesktopsPageOfKeys) {
  MockPortal portal(bus.Address());
  Run(keys, [&] {
    const auto button = [&] {
      return program->Ask(
          [&] { return program->Windows().configuration.cmdDesktopKeys.Visible.Get(); });
    };
    ASSERT_TRUE(Until(button));
    program->Do([&] {
      program->Loop().Post([&] { program->Windows().configuration.cmdDesktopKeys.Press(); });
    });
    EXPECT_TRUE(Until([&] { return portal.Count("ConfigureShortcuts") == 1; }));
  });
}

}  // namespace
}  // namespace tavlo::test
