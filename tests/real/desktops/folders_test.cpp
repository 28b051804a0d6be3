#include "platform/desktop/folders.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace tavlo::platform::desktop {
namespace {

/// Runs with a HOME of its own and puts the old one back.
struct Folders : testing::Test {
  ~Folders() override { ::setenv("HOME", before.c_str(), 1); }

  static std::string RootWithHome(const std::string& home) {
    ::setenv("HOME", home.c_str(), 1);
    return InstallRoot();
  }

  const std::string before = std::getenv("HOME") ? std::getenv("HOME") : "";
};

TEST_F(Folders, PutTheRootBelowTheHomeToTheByte) {
  EXPECT_EQ(RootWithHome("/home/brown"), "/home/brown/Lyrane/TavloDeck");
  EXPECT_EQ(RootWithHome("/home/a 'b' \"c\" \xC3\xA9 \xFF"),
            "/home/a 'b' \"c\" \xC3\xA9 \xFF/Lyrane/TavloDeck");
  EXPECT_EQ(RootWithHome("/home/brown//"), "/home/brown/Lyrane/TavloDeck");
  EXPECT_EQ(RootWithHome("/"), "/Lyrane/TavloDeck");
}

TEST_F(Folders, TakeTheHomeThatTheSystemKnowsWhereHomeNamesNone) {
  const passwd* const user = ::getpwuid(::getuid());
  if (!user) GTEST_SKIP() << "the system does not know this user";
  const std::string known = std::string(user->pw_dir) + "/Lyrane/TavloDeck";
  EXPECT_EQ(RootWithHome(""), known);
  ::unsetenv("HOME");
  EXPECT_EQ(InstallRoot(), known);
}

TEST_F(Folders, FindWhatIsInstalledBesideTheProgram) {
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  EXPECT_EQ(ShareFolder(), program.parent_path().string() + "/../share/tavlodeck");
}

}  // namespace
}  // namespace tavlo::platform::desktop
