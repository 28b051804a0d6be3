#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "access/access_file.h"
#include "platform/sqlite/sqlite_settings.h"
#include "store/settings_fields.h"
#include "support/sound_files.h"
#include "upgrade/upgrading_user.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

/// The folder of a deck, copied from elsewhere to where this one would make its own.
struct CopiedRoot : testing::Test, UpgradingUser {
  std::string Below(const std::string& name) const { return home.Root() + "/" + name; }

  /// A dictation that waits, and one in a drop folder, long finished.
  void PlaceDictations() const {
    const std::string sound = WaveBytes(Chirp(8000, 8000));
    for (const std::string& path :
         {Below("Files/InQueue/" + DocumentName("Brown")), Below("Files/eW2Queue/drop.eW2")}) {
      WriteBytes(path, sound);
      fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    }
  }
  /// Settings that an earlier build kept in another home, beside this one, on another machine.
  void MakeEarlierSettings(const std::string& path) const {
    const fs::path elsewhere = fs::path(home.Path()).parent_path() / "nobody-of-this-machine";
    platform::SqliteSettingsDatabases earlier(
        {.root = elsewhere / "Lyrane/TavloDeck", .revision = "0.0.1"});
    ASSERT_EQ(earlier.Create(path), "");
    sqlite3* settings = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &settings), SQLITE_OK);
    const std::string changes =
        "UPDATE GeneralSettings SET SubjectHeading = 'Patient', AudioPromptsFlag = 'N', "
        "Ds2QueuePath = '" +
        share.Path() +
        "'; ALTER TABLE GeneralSettings DROP COLUMN Speed; "
        "ALTER TABLE ImportAuthors DROP COLUMN Secretary";
    EXPECT_EQ(sqlite3_exec(settings, changes.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(settings);
  }
  void ExpectEarlierSettings() const {
    EXPECT_EQ(Stored("SubjectHeading"), "Patient");
    EXPECT_EQ(Stored("Speed"), "100");
    EXPECT_EQ(Stored("Ew2QueuePath"), Below("Files/eW2Queue"));
    EXPECT_EQ(Stored("WavQueuePath"), Below("Files/ImportQueue"));
    EXPECT_EQ(Stored("Ds2QueuePath"), share.Path());
  }
  /// Starts the deck and kills it once the drop folder has been swept.
  void StartAndSweep() {
    {
      StartedProgram program = Start();
      PassSplash();
      Answer("Tavlo Deck - Sound Card");
      EXPECT_TRUE(Until([this] { return fs::exists(Below("Files/InQueue/drop.wav")); }));
      EXPECT_FALSE(fs::exists(Below("Files/eW2Queue/drop.eW2")));
      EXPECT_TRUE(fs::exists(Below("Files/InQueue/" + DocumentName("Brown"))));
    }
    ExpectWholeSettings();
  }

  /// A folder of dictations that stands in nobody's home.
  TemporaryFolder share;
};

/// A table of an older release in which each field of ours holds this, but for those that are
/// named.
AccessTable OldTable(store::Table table, const store::Record& values) {
  AccessTable old{.name = std::string(store::ShapeOf(table).name), .columns = {}, .rows = {{}}};
  for (const auto& [field, value] : values) {
    old.columns.push_back({field});
    old.rows[0].emplace_back(value);
  }
  return old;
}

TEST_F(CopiedRoot, OfAnOlderReleaseWorksAtItsFirstStartWithAllItsSettingsAndDictations) {
  const std::string files = "C:\\Lyrane\\TavloDeck\\Files\\";
  const std::string old = AccessFileBytes(
      {.layout = Jet::Three},
      {OldTable(store::Table::GeneralSettings, {{"Ew2QueuePath", files + "eW2Queue"},
                                                {"Ds2QueuePath", files + "dS2Queue"},
                                                {"WavQueuePath", files + "ImportQueue"},
                                                {"SubjectHeading", "Patiënt"},
                                                {"AudioPromptsFlag", "N"},
                                                {"EqualizerEnableFlag", "Y"}}),
       OldTable(store::Table::FtpSettings, {{"FtpServerName", "Clinic"}}),
       OldTable(store::Table::ImportAuthors, {{"AuthorLastName", "Okafor"}})});
  WriteBytes(home.SettingsPath(), old);
  PlaceDictations();
  WriteBytes(Below("PedalWatch.so"), "MZ a library for another system");
  StartAndSweep();
  EXPECT_TRUE(ReadBytes(Below("Lyrane_Tavlo_Deck.md1")) == old);
  EXPECT_EQ(Stored("SubjectHeading"), "Patiënt");
  EXPECT_EQ(Stored("EqualizerEnableFlag"), "Y");
  platform::SqliteSettingsDatabases databases({.root = home.Root(), .revision = "0.1.0"});
  const store::OpenedDatabase opened = databases.OpenOld(home.SettingsPath());
  ASSERT_TRUE(opened.database) << opened.failure;
  EXPECT_EQ(opened.database->Read(store::Table::FtpSettings, 0).at("FtpServerName"), "Clinic");
  EXPECT_EQ(opened.database->Read(store::Table::ImportAuthors, 0).at("AuthorLastName"), "Okafor");
  EXPECT_TRUE(fs::is_symlink(Below("PedalWatch.so")));
  EXPECT_EQ(ReadBytes(Below("PedalWatch.so.foreign")), "MZ a library for another system");
  EXPECT_FALSE(fs::is_empty(Below("Prompts")));
}

TEST_F(CopiedRoot, OfAnEarlierBuildAndAnotherHomeWorksAtItsFirstStart) {
  fs::create_directories(home.Root());
  MakeEarlierSettings(home.SettingsPath());
  PlaceDictations();
  fs::create_symlink("/nowhere/PedalWatch.so", Below("PedalWatch.so"));
  StartAndSweep();
  ExpectEarlierSettings();
  EXPECT_EQ(Stored("AudioPromptsFlag"), "N");
  EXPECT_TRUE(fs::exists(Below("PedalWatch.so"))) << "the link leads to a library again";
}

TEST_F(CopiedRoot, SettingsOfItThatArePutWhereOldOnesBelongAreTakenOverAfterTheQuestion) {
  home.MakeRoot();
  fs::create_directories(fs::path(Old()).parent_path());
  MakeEarlierSettings(Old());
  const std::string bytes = ReadBytes(Old());
  {
    StartedProgram program = Start();
    PassSplash();
    SayYes();
    GoOn();
  }
  EXPECT_TRUE(ReadBytes(Old()) == bytes);
  ExpectEarlierSettings();
  ExpectWholeSettings();
}

}  // namespace
}  // namespace tavlo::test
