#include "upgrade/upgrading_user.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/sqlite/sqlite_settings.h"
#include "store/settings_fields.h"
#include "support/keys.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUpgrade = "Tavlo Deck - Upgrade";
constexpr const char* kSoundCard = "Tavlo Deck - Sound Card";

store::OpenedDatabase OpenSettings(const Home& home) {
  platform::SqliteSettingsDatabases databases({.root = home.Root(), .revision = "0.1.0"});
  return databases.OpenOld(home.SettingsPath());
}

}  // namespace

std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

void UpgradingUser::PlaceOld(const std::string& bytes) const {
  home.MakeRoot();
  WriteBytes(Old(), bytes);
}

void UpgradingUser::AwaitQuestion() {
  EXPECT_TRUE(Until([this] { return IsAsked(); }));
}

void UpgradingUser::SayYes() {
  EXPECT_TRUE(Until([this] {
    screen.hands.KeyInto(screen.Box(kUpgrade).id, keys::kReturn);
    return fs::exists(Marker());
  }));
}

void UpgradingUser::GoOn() {
  EXPECT_TRUE(Until([this] {
    screen.hands.KeyInto(screen.Box(kUpgrade).id, keys::kReturn);
    return screen.Box(kSoundCard).id != XCB_NONE;
  }));
}

void UpgradingUser::StartUnasked() {
  StartedProgram program = Start();
  PassSplash();
  bool wasAsked = false;
  EXPECT_TRUE(Until([&] {
    wasAsked = wasAsked || IsAsked();
    return wasAsked || screen.Box(kSoundCard).id != XCB_NONE;
  }));
  EXPECT_FALSE(wasAsked);
}

std::string UpgradingUser::Stored(const std::string& field) const {
  const store::OpenedDatabase opened = OpenSettings(home);
  return opened.database ? opened.database->Read(store::Table::GeneralSettings, 0).at(field)
                         : opened.failure;
}

void UpgradingUser::ExpectWholeSettings() const {
  const store::OpenedDatabase opened = OpenSettings(home);
  ASSERT_TRUE(opened.database) << opened.failure;
  for (const store::TableShape& shape : store::kTables) {
    ASSERT_EQ(opened.database->RowCount(shape.table), shape.rows) << shape.name;
    for (int row = 0; row < shape.rows; ++row) {
      EXPECT_EQ(opened.database->Read(shape.table, row).size(),
                store::FieldsOf(shape.table).size());
    }
  }
}

}  // namespace tavlo::test
