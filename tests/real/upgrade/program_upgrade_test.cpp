#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>

#include "access/access_file.h"
#include "support/keys.h"
#include "upgrade/upgrading_user.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

/// A database whose folders are there.
const std::string& Complete() {
  static const std::string bytes = AccessFileBytes(
      {}, {{.name = "GeneralSettings",
            .columns = {{"Speed", AccessType::Int}, {"WavQueuePath"}, {"CustomDisplay"}},
            .rows = {{85.0, std::string("c:\\Lyrane\\TavloDeck\\Files\\wavImport"),
                      std::string("Skrivstuga två")}}}});
  return bytes;
}

struct ProgramUpgrade : testing::Test, UpgradingUser {};

TEST_F(ProgramUpgrade, ThreeStartsTakeOldSettingsOverThoughEachIsKilled) {
  PlaceOld(Complete());
  {
    StartedProgram program = Start();
    PassSplash();
    AwaitQuestion();
    program.Kill();
  }
  EXPECT_EQ(Stored("Speed"), "100") << "nothing was answered";
  EXPECT_TRUE(ReadBytes(Old()) == Complete());
  {
    StartedProgram program = Start();
    PassSplash();
    SayYes();
    program.Kill();
  }
  EXPECT_EQ(Stored("Speed"), "85");
  EXPECT_EQ(Stored("WavQueuePath"), home.Root() + "/Files/ImportQueue");
  EXPECT_EQ(Stored("CustomDisplay"), "Skrivstuga två");
  EXPECT_TRUE(ReadBytes(Old()) == Complete());
  ExpectWholeSettings();
  {
    StartedProgram program = Start();
    PassSplash();
    EXPECT_TRUE(Until([this] { return !fs::exists(Marker()); }));
    EXPECT_FALSE(IsAsked());
    program.Kill();
  }
  EXPECT_TRUE(ReadBytes(Aside()) == Complete());
  EXPECT_FALSE(fs::exists(Old()));
  StartUnasked();
  EXPECT_EQ(Stored("Speed"), "85");
}

TEST_F(ProgramUpgrade, NoSetsTheOldSettingsAsideAtOnceAndTheNextStartDoesNotAsk) {
  PlaceOld(Complete());
  {
    StartedProgram program = Start();
    PassSplash();
    AwaitQuestion();
    EXPECT_TRUE(Until([this] {
      screen.hands.KeyInto(screen.Box("Tavlo Deck - Upgrade").id, keys::kEscape);
      return !IsAsked();
    }));
    GoOn();
  }
  EXPECT_FALSE(fs::exists(Old()) || fs::exists(Marker()));
  EXPECT_TRUE(ReadBytes(Aside()) == Complete());
  EXPECT_EQ(Stored("Speed"), "100");
  StartUnasked();
}

/// A file that somebody took for old settings.
struct Unreadable {
  const char* name;
  void (*place)(const std::string& path);

  friend void PrintTo(const Unreadable& file, std::ostream* out) { *out << file.name; }
};

struct ProgramUpgradeFromUnreadableFile : testing::TestWithParam<Unreadable>, UpgradingUser {};

INSTANTIATE_TEST_SUITE_P(
    Of, ProgramUpgradeFromUnreadableFile,
    testing::Values(Unreadable{"NoBytes", [](const std::string& path) { WriteBytes(path, ""); }},
                    Unreadable{"TwoGigabytes",
                               [](const std::string& path) {
                                 WriteBytes(path, Complete());
                                 fs::resize_file(path, std::uintmax_t{2} << 30);
                               }},
                    Unreadable{"HalfOfIt",
                               [](const std::string& path) {
                                 WriteBytes(path, Complete().substr(0, Complete().size() / 2));
                               }},
                    Unreadable{"PagesHiddenByAnUnknownKey",
                               [](const std::string& path) {
                                 std::string bytes = Complete();
                                 for (std::size_t at = 4096; at < bytes.size(); ++at)
                                   bytes[at] ^= 0x5a;
                                 WriteBytes(path, bytes);
                               }}),
    [](const auto& tested) { return tested.param.name; });

TEST_P(ProgramUpgradeFromUnreadableFile, GoesOnWithWholeSettings) {
  PlaceOld("");
  GetParam().place(Old());
  {
    StartedProgram program = Start();
    PassSplash();
    SayYes();
    GoOn();
    EXPECT_TRUE(program.Running());
  }
  ExpectWholeSettings();
}

TEST_F(ProgramUpgrade, FolderInThePlaceOfOldSettingsIsNotAskedAbout) {
  home.MakeRoot();
  fs::create_directories(Old());
  StartUnasked();
  EXPECT_TRUE(fs::is_directory(Old()));
  ExpectWholeSettings();
}

}  // namespace
}  // namespace tavlo::test
