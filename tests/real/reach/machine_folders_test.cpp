#include "platform/reach/machine_folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "reach/stalling_place.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

/// A folder to look through. What begins with a great letter in it may stall.
struct MachineFoldersTest : testing::Test, StallingPlaces {
  MachineFoldersTest() { places.Root = folder.Path() + "/"; }

  std::vector<std::string> In(const std::string& path) {
    std::vector<std::string> names = machine.FoldersIn(path).value_or(Names{"unreadable"});
    std::ranges::sort(names);
    return names;
  }

  using Names = std::vector<std::string>;
  TemporaryFolder folder;
  platform::MountedPlaces mounts;
  platform::MachineFolders machine{errands, mounts, "/home/typist"};
};

TEST_F(MachineFoldersTest, FoldersAndLinksToFoldersAreListed) {
  fs::create_directory(folder / "work");
  fs::create_directory(folder / ".hidden");
  folder.Write("file", "no folder");
  fs::create_directory_symlink(folder / "work", folder / "to work");
  fs::create_symlink(folder / "file", folder / "to file");
  fs::create_symlink(folder / "nothing", folder / "to nothing");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(In(folder.Path()), (Names{"to work", "work"}));
}

TEST_F(MachineFoldersTest, EmptyFolderHasNoneAndOneThatIsNotThereCannotBeRead) {
  EXPECT_EQ(In(folder.Path()), Names{});
  EXPECT_FALSE(machine.FoldersIn(folder / "nothing"));
  EXPECT_FALSE(machine.FoldersIn(folder.Write("file", "no folder")));
}

TEST_F(MachineFoldersTest, FolderThatMayNotBeReadCannot) {
  if (::geteuid() == 0) GTEST_SKIP() << "the superuser may read everything";
  fs::create_directory(folder / "closed");
  fs::permissions(folder / "closed", fs::perms::none);
  EXPECT_FALSE(machine.FoldersIn(folder / "closed"));
  fs::permissions(folder / "closed", fs::perms::owner_all);
}

TEST_F(MachineFoldersTest, LinkToWhereACallMayStallIsOfferedUnasked) {
  fs::create_symlink("/nowhere", folder / "Link");
  EXPECT_EQ(In(folder.Path()), Names{"Link"});
}

TEST_F(MachineFoldersTest, PlaceThatGivesNoAnswerCannotBeReadAndIsNotAskedAgain) {
  fs::create_directory(folder / "Share");
  const StuckCall call;
  EXPECT_FALSE(RunInVain(folder / "Share", call));
  EXPECT_FALSE(machine.FoldersIn(folder / "Share"));
  call.Answer();
  AwaitReach(folder / "Share");
  EXPECT_EQ(In(folder / "Share"), Names{});
}

TEST_F(MachineFoldersTest, ManyFoldersAreAllListed) {
  constexpr std::size_t kMany = 10'000;
  for (std::size_t i = 0; i < kMany; ++i) fs::create_directory(folder / std::to_string(i));
  EXPECT_EQ(In(folder.Path()).size(), kMany);
}

TEST_F(MachineFoldersTest, HomeComesFirstAndThenTheWholeMachine) {
  const auto starts = machine.StartingPlaces();
  ASSERT_GE(starts.size(), 2U);
  EXPECT_EQ(starts[0].name, "Home");
  EXPECT_EQ(starts[0].folder, "/home/typist");
  EXPECT_EQ(starts[1].name, "Computer");
  EXPECT_EQ(starts[1].folder, "/");
  platform::MachineFolders nobodys(errands, mounts, "");
  EXPECT_EQ(nobodys.StartingPlaces().at(0).folder, "/");
}

}  // namespace
}  // namespace tavlo::test
