#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/sqlite/sqlite_settings.h"
#include "session/session_manager.h"
#include "session/working_program.h"
#include "support/desktop.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_recorder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr int kRate = 16'000;

std::string LongTone() {
  std::vector<std::int16_t> values;
  for (const float value : Tone(440, 60, kRate).samples) {
    values.push_back(static_cast<std::int16_t>(value * 32767));
  }
  return WaveBytes(values, kRate);
}

/// A typist in the middle of a document when the session ends.
struct SessionProgram : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(server.StartWithPrecedence());
    home.MakeRoot(QuietSettings());
    home.AddToQueue(name, LongTone());
  }
  static void Play(DrivenProgram& program) {
    ASSERT_TRUE(program.Begin());
    program.Do([&] { program.Main().listViewInQueue.RowClick(0); });
    program.Do([&] { program.Main().cmdPlay.Press(); });
    ASSERT_TRUE(program.Until(
        [&] { return program.Rooms().documentInWork.CurrentSamplePosition > 2.0 * kRate; }));
  }
  /// The position that the name of the only document carries, in seconds.
  double StoredSeconds() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(home.QueuePath())) {
      names.push_back(entry.path().filename());
    }
    EXPECT_EQ(names.size(), 1u);
    if (names.size() != 1) return -1;
    const std::string head = names.front().substr(0, names.front().rfind(' '));
    return std::stod(head.substr(head.rfind(' ') + 1)) / kRate;
  }
  std::string Setting(const std::string& field) const {
    platform::SqliteSettingsDatabases databases({.root = home.Root(), .revision = "0.1.0"});
    const store::OpenedDatabase opened = databases.Open(home.SettingsPath());
    EXPECT_TRUE(opened.database) << opened.failure;
    return opened.database ? opened.database->Read(store::Table::GeneralSettings, 0)[field] : "";
  }
  /// What was heard of the document, once the recording has all of it.
  double HeardSeconds() const {
    EXPECT_TRUE(recorder.Pass(0.6));
    const Sound sound = recorder.Since(0);
    double heard = AudibleSeconds(sound);
    // A machine that is busy makes gaps, in which nothing of the document is heard.
    for (const Extent& pause : Pauses(sound, 0.005)) {
      heard -= static_cast<double>(pause.end - pause.begin) / sound.rate;
    }
    return heard;
  }
  /// Half a second either way.
  void ExpectStoredWhereTheEarWas() const {
    const double heard = HeardSeconds();
    EXPECT_GT(heard, 1.5);
    EXPECT_NEAR(StoredSeconds(), heard, 0.5);
  }

  const std::string name = DocumentName("Tone", 1);
  SoundServer server;
  SoundRecorder recorder;
  Home home;
};

struct EndedBy : SessionProgram, testing::WithParamInterface<int> {};

TEST_P(EndedBy, StoresWhereTheEarWasAndEndsWell) {
  WorkingProgram program(home, [](DrivenProgram& driven) { Play(driven); });
  ASSERT_TRUE(recorder.Start());
  ASSERT_TRUE(program.Await());
  program.Send(GetParam());
  program.Send(GetParam());
  EXPECT_EQ(program.ExitStatus(), 0);
  ExpectStoredWhereTheEarWas();
}

INSTANTIATE_TEST_SUITE_P(Signals, EndedBy, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(SessionProgram, BoxDoesNotKeepItFromEnding) {
  WorkingProgram program(home, [](DrivenProgram& driven) {
    Play(driven);
    driven.Do([&] {
      QMetaObject::invokeMethod(
          qApp, [&] { driven.Main().frmMain.CloseRequest(); }, Qt::QueuedConnection);
    });
    EXPECT_TRUE(Until([&] { return !driven.Box().empty(); }));
  });
  ASSERT_TRUE(recorder.Start());
  ASSERT_TRUE(program.Await());
  program.Send(SIGTERM);
  EXPECT_EQ(program.ExitStatus(), 0);
  ExpectStoredWhereTheEarWas();
}

TEST_F(SessionProgram, LogoutStoresAndEndsAndTheFirstQuestionOfTheManagerDoesNot) {
  SessionManager manager;
  WorkingProgram program(home, [](DrivenProgram& driven) { Play(driven); });
  ASSERT_TRUE(recorder.Start());
  EXPECT_TRUE(manager.Welcome());
  ASSERT_TRUE(program.Await());
  manager.BeginLogout();
  EXPECT_EQ(program.ExitStatus(), 0);
  ExpectStoredWhereTheEarWas();
}

TEST_F(SessionProgram, NextSessionStartsItWithoutOptionsWhichWouldBeFilesToIt) {
  SessionManager manager;
  WorkingProgram program(home, [](DrivenProgram& driven) { ASSERT_TRUE(driven.Begin()); });
  EXPECT_TRUE(manager.Welcome());
  EXPECT_EQ(manager.RestartCommand(), std::vector<std::string>{fs::read_symlink("/proc/self/exe")});
  ASSERT_TRUE(program.Await());
  program.Send(SIGTERM);
  EXPECT_EQ(program.ExitStatus(), 0);
}

TEST_F(SessionProgram, OpenConfigurationIsSaved) {
  WorkingProgram program(home, [](DrivenProgram& driven) {
    ASSERT_TRUE(driven.Begin());
    driven.Do([&] {
      driven.Main().mnuConfiguration.Press();
      driven.Windows().configuration.txtSubjectHeading.Value = "Case";
    });
  });
  ASSERT_TRUE(program.Await());
  program.Send(SIGTERM);
  EXPECT_EQ(program.ExitStatus(), 0);
  EXPECT_EQ(Setting("SubjectHeading"), "Case");
}

TEST_F(SessionProgram, EndsDuringTheSplash) {
  WorkingProgram program(home, [](DrivenProgram& driven) {
    EXPECT_TRUE(driven.Until([&] { return driven.Windows().splash.frmInitSplash.Visible.Get(); }));
  });
  ASSERT_TRUE(program.Await());
  program.Send(SIGTERM);
  EXPECT_EQ(program.ExitStatus(), 0);
  EXPECT_EQ(StoredSeconds(), 0);
}

/// Puts variables back as they were.
class KeptVariables {
 public:
  ~KeptVariables() {
    for (const auto& [name, value] : before_) {
      value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
    }
  }

 private:
  static std::optional<std::string> Value(const char* name) {
    const char* const value = ::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
  }
  const std::map<const char*, std::optional<std::string>> before_{
      {"DISPLAY", Value("DISPLAY")},
      {"WAYLAND_DISPLAY", Value("WAYLAND_DISPLAY")},
      {"XDG_RUNTIME_DIR", Value("XDG_RUNTIME_DIR")},
      {"QT_QPA_PLATFORM", Value("QT_QPA_PLATFORM")}};
};

TEST_F(SessionProgram, ScreenThatGoesAwayUnderXTakesNoWorkWithIt) {
  const KeptVariables variables;
  Desktop desktop;
  ASSERT_EQ(desktop.Fault(), "");
  WorkingProgram program(home, [](DrivenProgram& driven) { Play(driven); });
  ASSERT_TRUE(recorder.Start());
  ASSERT_TRUE(program.Await());
  desktop.KillScreen();
  EXPECT_EQ(program.ExitStatus(), 0);
  ExpectStoredWhereTheEarWas();
}

TEST_F(SessionProgram, ScreenThatGoesAwayUnderWaylandTakesNoWorkWithIt) {
  const KeptVariables variables;
  const TemporaryFolder folder;
  ChildProcess compositor;
  ::setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
  ASSERT_TRUE(compositor.Start({"weston", "--backend=headless-backend.so", "--socket=desk",
                                "--no-config", "--idle-time=0", "--width=1280", "--height=1024",
                                "--log=" + folder.Path() + "/log"}));
  ASSERT_TRUE(Until([&] { return fs::exists(folder / "desk"); }));
  ::setenv("WAYLAND_DISPLAY", "desk", 1);
  ::setenv("QT_QPA_PLATFORM", "wayland", 1);
  WorkingProgram program(home, [](DrivenProgram& driven) {
    Play(driven);
    EXPECT_EQ(driven.Ask([] { return QGuiApplication::platformName(); }), "wayland");
  });
  ASSERT_TRUE(recorder.Start());
  ASSERT_TRUE(program.Await());
  compositor.Kill();
  EXPECT_EQ(program.ExitStatus(), 0);
  ExpectStoredWhereTheEarWas();
}

}  // namespace
}  // namespace tavlo::test
