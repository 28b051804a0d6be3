#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "platform/access/access_database.h"
#include "platform/disk/posix_disk.h"
#include "platform/sqlite/sqlite_settings.h"
#include "store/database_upgrade.h"
#include "store/settings_fields.h"
#include "store/settings_store.h"
#include "support/simulated_loop.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

/// A database that has all fields that ours has.
inline constexpr const char* kComplete = TAVLO_ACCESS_DATA "old_full.mdb";
/// One of an early release: many fields are missing, and there are more authors than ours holds.
inline constexpr const char* kEarly = TAVLO_ACCESS_DATA "old_early_release.mdb";

inline std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A root with settings as shipped, into which the settings of an older release are taken.
struct AccessBench {
  using Databases = platform::SqliteSettingsDatabases;

  AccessBench() {
    std::filesystem::create_directories(folder / "root/PlaceOldDatabaseHere");
    EXPECT_EQ(databases.Create(Settings()), "");
  }

  std::string Root() const { return folder / "root"; }
  std::string Settings() const { return Root() + "/Lyrane_Tavlo_Deck.mdb"; }
  std::string Old() const { return Root() + "/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.mdb"; }
  void PlaceOld(std::string_view bytes) const { std::ofstream(Old(), std::ios::binary) << bytes; }

  static store::OpenedDatabase OpenAccess(const std::string& path) {
    return platform::OpenAccessDatabase(path, TAVLO_ACCESS_READER);
  }

  /// A start of the deck at which the question is answered Yes. Gives the settings as they are
  /// afterwards.
  std::unique_ptr<store::SettingsDatabase> Upgrade() {
    {
      const store::OpenedDatabase opened = databases.Open(Settings());
      if (!opened.database) {
        ADD_FAILURE() << opened.failure;
        return {};
      }
      store::SettingsStore settings(*opened.database);
      loop.Expect({.reply = base::Reply::Yes});
      said = store::DatabaseUpgrade(loop, disk, folders, databases, settings).UpgradeDatabase();
    }
    store::OpenedDatabase upgraded = databases.Open(Settings());
    EXPECT_TRUE(upgraded.database) << upgraded.failure;
    return std::move(upgraded.database);
  }

  /// Every row and every field is there.
  static void ExpectWhole(store::SettingsDatabase& settings) {
    for (const store::TableShape& shape : store::kTables) {
      ASSERT_EQ(settings.RowCount(shape.table), shape.rows) << shape.name;
      for (int row = 0; row < shape.rows; ++row) {
        ASSERT_EQ(settings.Read(shape.table, row).size(), store::FieldsOf(shape.table).size())
            << shape.name << " " << row;
      }
    }
  }

  TemporaryFolder folder;
  SimulatedLoop loop;
  platform::PosixDisk disk;
  store::WorkFolders folders{disk, Root()};
  Databases databases{{.root = Root(), .revision = "1.2.3"}, OpenAccess};
  /// What the last upgrade had for the quiet line.
  std::string said;
};

}  // namespace tavlo::test
