#include <gtest/gtest.h>

#include <QApplication>
#include <csignal>
#include <optional>

#include "platform/disk/instance_lock.h"
#include "platform/sqlite/sqlite_settings.h"
#include "session/working_program.h"
#include "stalls/share.h"
#include "support/screen_user.h"
#include "support/started_program.h"

namespace tavlo::test {
namespace {

/// How a server gives no answer.
enum class Silence { Stopped, Holding };

/// A program that has left a call behind on a share that gives no answer.
struct StalledEnd : testing::TestWithParam<Silence>, ScreenUser {
  void SetUp() override {
    home.MakeRoot(QuietSettings());
    share.emplace(home, "/Lyrane/TavloDeck/Files/InQueue");
    if (!share->Mount().Fault().empty()) GTEST_SKIP() << share->Mount().Fault();
  }

  void StallTheShare() {
    if (GetParam() == Silence::Stopped) return share->Mount().Stop();
    share->Mount().Hold();
  }
  /// Refreshes the list in vain, and answers the box that says so.
  void LeaveACallBehind(DrivenProgram& program) {
    ASSERT_TRUE(program.Begin());
    ASSERT_TRUE(Until([&] { return program.IsReady() || !program.Box().empty(); }));
    if (!program.Box().empty()) program.AnswerBox();
    ASSERT_TRUE(Until([&] { return program.IsReady(); }));
    StallTheShare();
    program.Do([&] {
      QMetaObject::invokeMethod(
          qApp, [&] { program.Main().cmdUpdateFileList.Press(forms::By::Hand); },
          Qt::QueuedConnection);
    });
    ASSERT_TRUE(Until([&] { return program.Box().starts_with("Tavlo Deck - Network Fault"); }));
    program.AnswerBox();
  }
  /// All that the next start needs is to be had, though the process may not have ended.
  void ExpectNothingHeld() {
    EXPECT_TRUE(Until([&] { return screen.Deck().id == XCB_NONE; }));
    EXPECT_TRUE(Until([&] { return !platform::InstanceLock(home.Root()).AnotherCopyRuns(); }));
    const store::OpenedDatabase settings =
        platform::SqliteSettingsDatabases({.root = home.Root(), .revision = "0.1.0"})
            .Open(home.SettingsPath());
    EXPECT_TRUE(settings.database) << settings.failure;
  }

  /// Starts the program, whose first refresh is in vain, and leaves it by its close button.
  void StartAndExit() {
    PassSplash();
    Answer("Tavlo Deck - Sound Card");
    Answer("Tavlo Deck - Network Fault");
    Exit();
    ExpectNothingHeld();
  }

  Home home;
  std::optional<Share> share;
};

TEST_P(StalledEnd, OfTheSessionLeavesNothingThatTheNextStartNeeds) {
  WorkingProgram program(home, [&](DrivenProgram& driven) { LeaveACallBehind(driven); });
  ASSERT_TRUE(program.Await());
  program.Send(SIGTERM);
  ExpectNothingHeld();
  share->Mount().GoOn();
  EXPECT_EQ(program.ExitStatus(), 0);
}

TEST_P(StalledEnd, OfTheProgramLetsTheNextOneStart) {
  StartedProgram first(TAVLO_PROGRAM, home.Path());
  ASSERT_TRUE(Until([&] { return screen.Splash().id != XCB_NONE; }));
  StallTheShare();
  StartAndExit();
  StartedProgram second(TAVLO_PROGRAM, home.Path());
  StartAndExit();
  share->Mount().GoOn();
  EXPECT_EQ(first.ExitStatus(), 0);
  EXPECT_EQ(second.ExitStatus(), 0);
}

INSTANTIATE_TEST_SUITE_P(Servers, StalledEnd, testing::Values(Silence::Stopped, Silence::Holding));

}  // namespace
}  // namespace tavlo::test
