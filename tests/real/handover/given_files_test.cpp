#include "platform/desktop/given_files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using Files = std::vector<std::string>;

Files Given(const std::vector<const char*>& arguments) {
  std::vector<const char*> all{"tavlodeck"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  const int count = static_cast<int>(all.size());
  all.push_back(nullptr);
  return platform::desktop::GivenFiles(count, all.data());
}

/// A start from some folder.
struct GivenFilesTest : testing::Test {
  static void StartIn(const std::string& where) { fs::current_path(where); }
  ~GivenFilesTest() override { fs::current_path(before); }

  const fs::path before = fs::current_path();
  TemporaryFolder folder;
};

TEST_F(GivenFilesTest, AreNoneOfAStartWithoutArguments) {
  EXPECT_EQ(Given({}), Files{});
  EXPECT_EQ(platform::desktop::GivenFiles(0, nullptr), Files{});
}

TEST_F(GivenFilesTest, KeepTheirFullPathsByteForByte) {
  EXPECT_EQ(Given({"/a b.wav", "/x\n\xFF", "/a/../b"}), (Files{"/a b.wav", "/x\n\xFF", "/a/../b"}));
}

TEST_F(GivenFilesTest, AreMeantFromTheFolderOfTheStart) {
  StartIn(folder.Path());
  EXPECT_EQ(Given({"a.wav", "./b", "../c"}),
            (Files{folder / "a.wav", folder / "./b", folder / "../c"}));
  StartIn("/");
  EXPECT_EQ(Given({"a.wav"}), Files{"/a.wav"});
}

TEST_F(GivenFilesTest, MayLookLikeOptionsAndAddresses) {
  StartIn(folder.Path());
  EXPECT_EQ(Given({"-platform", "--help", "--", "-", "file:///a"}),
            (Files{folder / "-platform", folder / "--help", folder / "--", folder / "-",
                   folder / "file:///a"}));
}

TEST_F(GivenFilesTest, AreNotWhatIsEmpty) { EXPECT_EQ(Given({"", "/a", ""}), Files{"/a"}); }

TEST_F(GivenFilesTest, OfAFolderThatIsGoneAreNoFullPaths) {
  const std::string gone = folder / "gone";
  fs::create_directory(gone);
  StartIn(gone);
  fs::remove(gone);
  EXPECT_EQ(Given({"a.wav", "/b"}), (Files{"a.wav", "/b"}));
}

}  // namespace
}  // namespace tavlo::test
