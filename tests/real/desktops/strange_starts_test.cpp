#include <grp.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/sqlite/sqlite_settings.h"
#include "support/home.h"
#include "support/screen_user.h"
#include "support/started_program.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

/// The program, started where something is missing that other desktops have.
struct StrangeStart : testing::Test, ScreenUser {
  /// Starts the program in a home that need not be the one of this test.
  StartedProgram Start(const std::string& homePath) {
    around.errorsPath = folder.Path() + "/errors";
    return {TAVLO_PROGRAM, homePath, around};
  }

  std::string Errors() const {
    std::ifstream in(folder.Path() + "/errors");
    return {std::istreambuf_iterator<char>(in), {}};
  }

  void ExpectRefusalIn(const std::string& homePath) {
    StartedProgram program = Start(homePath);
    Answer("Tavlo Deck");
    EXPECT_EQ(program.ExitStatus(), 1);
  }

  void ExpectEndWithoutScreen(const std::string& named) {
    StartedProgram program = Start(home.Path());
    EXPECT_EQ(program.ExitStatus(), 1);
    EXPECT_NE(Errors().find("There is no screen for the windows of Tavlo Deck. " + named),
              std::string::npos)
        << Errors();
    EXPECT_TRUE(home.Everything().empty());
  }

  /// From here on the program runs as a user who may not do what an administrator may. False where
  /// the test is no administrator itself and so needs no such thing.
  void BecomeNobody() {
    if (::getuid() != 0) return;
    fs::permissions(folder.Path(), fs::perms::all);
    around.prepare = [] {
      return ::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0;
    };
  }

  void AllowWriting(fs::perm_options change) const {
    for (const auto& [path, contents] : home.Everything()) {
      fs::permissions(home.Path() + path, fs::perms::owner_write, change);
    }
  }

  Surroundings around;
  TemporaryFolder folder;
  Home home;
};

TEST_F(StrangeStart, EndsWithWordsWhereNoScreenIsNamed) {
  around.environment = {
      {"DISPLAY", {}}, {"WAYLAND_DISPLAY", {}}, {"XDG_RUNTIME_DIR", {}}, {"QT_QPA_PLATFORM", {}}};
  ExpectEndWithoutScreen("Neither DISPLAY nor WAYLAND_DISPLAY names one.");
}

TEST_F(StrangeStart, EndsWithWordsWhereNoServerAnswers) {
  around.environment = {{"DISPLAY", ":4077"},
                        {"WAYLAND_DISPLAY", "nobody"},
                        {"XDG_RUNTIME_DIR", folder.Path()},
                        {"QT_QPA_PLATFORM", {}}};
  ExpectEndWithoutScreen("It was looked for at DISPLAY=:4077, WAYLAND_DISPLAY=nobody.");
}

TEST_F(StrangeStart, EndsWithWordsWhereTheToolkitLacksItsPart) {
  around.environment = {{"QT_QPA_PLATFORM", "nonesuch"}, {"DISPLAY", {}}};
  ExpectEndWithoutScreen("It was looked for at QT_QPA_PLATFORM=nonesuch.");
}

TEST_F(StrangeStart, SaysThatItCannotWorkInAHomeThatIsMissing) {
  ExpectRefusalIn(home.Path() + "/gone");
  EXPECT_TRUE(home.Everything().empty());
}

TEST_F(StrangeStart, SaysThatItCannotWorkInAHomeThatIsReadOnly) {
  BecomeNobody();
  fs::permissions(home.Path(), fs::perms::owner_read | fs::perms::owner_exec |
                                   fs::perms::others_read | fs::perms::others_exec);
  ExpectRefusalIn(home.Path());
  EXPECT_TRUE(home.Everything().empty());
  fs::permissions(home.Path(), fs::perms::owner_all);
}

TEST_F(StrangeStart, LeavesNothingBehindWhereTheDiskIsFullAtTheFirstStart) {
  if (::mount("tmpfs", home.Path().c_str(), "tmpfs", 0, "size=256k") != 0) {
    GTEST_SKIP() << "no disk can be mounted here: " << std::strerror(errno);
  }
  ExpectRefusalIn(home.Path());
  for (const auto& [path, contents] : home.Everything()) EXPECT_EQ(path, "/Lyrane") << contents;
  EXPECT_EQ(::umount(home.Path().c_str()), 0);
}

TEST_F(StrangeStart, SaysThatItCannotWorkWhereItsOwnFolderHasBecomeReadOnly) {
  home.MakeRoot();
  BecomeNobody();
  const auto before = home.Everything();
  AllowWriting(fs::perm_options::remove);
  ExpectRefusalIn(home.Path());
  EXPECT_EQ(home.Everything(), before);
  AllowWriting(fs::perm_options::add);
}

TEST_F(StrangeStart, WorksAndKeepsItsFilesWhereTheDiskHasBecomeFull) {
  if (::mount("tmpfs", home.Path().c_str(), "tmpfs", 0, "size=8m") != 0) {
    GTEST_SKIP() << "no disk can be mounted here: " << std::strerror(errno);
  }
  home.MakeRoot();
  const std::string name = DocumentName("Brown");
  home.AddToQueue(name, "no sound");
  std::ofstream(home.Path() + "/filler") << std::string(16 << 20, 'f');
  {
    StartedProgram program = Start(home.Path());
    PassSplash();
    Answer("Tavlo Deck - Sound Card");
    Exit();
    EXPECT_EQ(program.ExitStatus(), 0);
  }
  EXPECT_EQ(home.Everything()["/Lyrane/TavloDeck/Files/InQueue/" + name], "no sound");
  EXPECT_EQ(platform::SqliteSettingsDatabases({.root = home.Root(), .revision = "0.1.0"})
                .Open(home.SettingsPath())
                .failure,
            "");
  EXPECT_EQ(::umount(home.Path().c_str()), 0);
}

}  // namespace
}  // namespace tavlo::test
