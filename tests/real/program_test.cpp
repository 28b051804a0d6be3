#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "support/home.h"
#include "support/screen_user.h"
#include "support/started_program.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

/// The program, seen and used from outside: its windows, its exit status and its files.
struct ProgramTest : testing::Test, ScreenUser {
  StartedProgram Start() { return {TAVLO_PROGRAM, home.Path()}; }

  /// Starts the program, which must say why it cannot go on, end with 1 and change nothing.
  void ExpectRefusalThatChangesNothing() {
    const auto before = home.Everything();
    StartedProgram program = Start();
    Answer("Tavlo Deck");
    EXPECT_EQ(program.ExitStatus(), 1);
    EXPECT_EQ(home.Everything(), before);
  }

  Home home;
};

bool HasDotFiles(const Home& home) {
  for (const auto& [path, contents] : home.Everything()) {
    if (path.starts_with("/Lyrane") && path.find("/.") != path.npos) return true;
  }
  return false;
}

TEST_F(ProgramTest, StartsInAFreshHomeAndEndsByTheCloseButtonAndAgain) {
  for (int start = 1; start <= 2; ++start) {
    StartedProgram program = Start();
    PassSplash();
    Answer("Tavlo Deck - Sound Card");
    Exit();
    EXPECT_EQ(program.ExitStatus(), 0) << "start " << start;
    EXPECT_TRUE(fs::is_regular_file(home.SettingsPath()));
    for (const char* folder : {"/Prompts", "/Fascia", "/Files/InQueue", "/Files/Completed"}) {
      EXPECT_TRUE(fs::is_directory(home.Root() + folder)) << folder;
    }
    EXPECT_FALSE(HasDotFiles(home));
  }
}

TEST_F(ProgramTest, DoesNotReplaceSettingsThatAreMissing) {
  home.MakeRoot();
  fs::remove(home.SettingsPath());
  ExpectRefusalThatChangesNothing();
}

TEST_F(ProgramTest, LeavesSettingsThatAreNoDatabaseAlone) {
  home.MakeRoot();
  std::mt19937 dice(7);
  std::string bytes(5000, 0);
  for (char& byte : bytes) byte = static_cast<char>(dice());
  std::ofstream(home.SettingsPath(), std::ios::binary) << bytes;
  ExpectRefusalThatChangesNothing();
}

TEST_F(ProgramTest, LeavesSettingsThatAreCutOffAlone) {
  home.MakeRoot();
  fs::resize_file(home.SettingsPath(), fs::file_size(home.SettingsPath()) * 2 / 3);
  ExpectRefusalThatChangesNothing();
}

TEST_F(ProgramTest, LeavesSettingsThatAnotherProgramHoldsAlone) {
  home.MakeRoot();
  const auto before = home.Everything();
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(home.SettingsPath().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  StartedProgram program = Start();
  Answer("Tavlo Deck");
  EXPECT_EQ(program.ExitStatus(), 1);
  // Only now, since a look at the file from this process would give its lock away.
  EXPECT_EQ(sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(other);
  EXPECT_EQ(home.Everything(), before);
}

TEST_F(ProgramTest, SaysWhereItCannotMakeItsRoot) {
  std::ofstream(home.Path() + "/Lyrane") << "a note of the user's";
  ExpectRefusalThatChangesNothing();
}

TEST_F(ProgramTest, RefusesASecondCopyAndTheFirstGoesOn) {
  home.MakeRoot();
  StartedProgram first = Start();
  PassSplash();
  Answer("Tavlo Deck - Sound Card");
  StartedProgram second = Start();
  Answer("Tavlo Deck - Running");
  EXPECT_EQ(second.ExitStatus(), 1);
  EXPECT_TRUE(first.Running());
  Exit();
  EXPECT_EQ(first.ExitStatus(), 0);
}

}  // namespace
}  // namespace tavlo::test
