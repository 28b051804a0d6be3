#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "hostile/mutations.h"
#include "platform/sqlite/sqlite_settings.h"
#include "store/settings_fields.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using store::Table;

struct HostileDatabase : testing::Test {
  HostileDatabase() : path(folder / "Lyrane_Tavlo_Deck.mdb") {
    EXPECT_EQ(databases.Create(path), "");
    good = ReadFile(path);
  }

  void ExpectRefused(const std::string& words) {
    const store::OpenedDatabase opened = databases.Open(path);
    EXPECT_FALSE(opened.database);
    EXPECT_NE(opened.failure.find(path), std::string::npos) << opened.failure;
    EXPECT_NE(opened.failure.find(words), std::string::npos) << opened.failure;
  }

  const ScratchFolder folder;
  const std::string path;
  std::string good;
  platform::SqliteSettingsDatabases databases{{.root = folder.Path(), .revision = "1.2.3"}};
};

/// Reads all that a database may be asked for, and saves into it.
void UseUp(store::SettingsDatabase& database) {
  for (const store::TableShape& shape : store::kTables) {
    const int rows = database.RowCount(shape.table);
    for (int row = 0; row < std::min(rows, 30); ++row) {
      for (const auto& [name, value] : database.Read(shape.table, row)) {
        ASSERT_LE(value.size(), store::kLongestValue) << name;
        ASSERT_EQ(value.find('\0'), value.npos) << name;
      }
    }
  }
  const bool written = database.Write(Table::GeneralSettings, 0, {{"Speed", "117"}});
  if (!written) {
    EXPECT_NE(database.LastFailure(), "");
  } else {
    EXPECT_EQ(database.Read(Table::GeneralSettings, 0)["Speed"], "117");
  }
}

TEST_F(HostileDatabase, MutationIsRefusedWithAReasonOrServes) {
  Mutations mutations({{"settings.mdb", good}}, "SELECT load_extension('/nowhere');", 20'040'309);
  int served = 0;
  int refused = 0;
  for (int round = 0; round < 150; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    const std::string bytes = mutations.Next().bytes;
    WriteFile(path, bytes);
    {
      const store::OpenedDatabase old = databases.OpenOld(path);
      ASSERT_EQ(old.database == nullptr, !old.failure.empty());
      if (old.database) UseUp(*old.database);
    }
    ASSERT_TRUE(ReadFile(path) == bytes) << "looking changed the file";
    const store::OpenedDatabase opened = databases.Open(path);
    ASSERT_EQ(opened.database == nullptr, !opened.failure.empty());
    ++(opened.database ? served : refused);
    if (opened.database) {
      UseUp(*opened.database);
    } else {
      ASSERT_TRUE(ReadFile(path) == bytes) << "a refused file has changed";
    }
    if (HasFatalFailure()) return;
    fs::remove(path + "-journal");
  }
  EXPECT_GT(served, 0);
  EXPECT_GT(refused, 0);
}

TEST_F(HostileDatabase, WhatIsNoFileIsRefusedAtOnce) {
  fs::remove(path);
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  ExpectRefused("is no file");
  EXPECT_NE(databases.Create(path), "");
  fs::remove(path);
  fs::create_symlink("/dev/zero", path);
  ExpectRefused("is no file");
  EXPECT_NE(databases.Create(path), "");
  fs::remove(path);
  fs::create_symlink(folder / "nowhere", path);
  ExpectRefused("does not exist");
  EXPECT_NE(databases.Create(path), "");
  EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_F(HostileDatabase, FileThatIsFarLargerThanSettingsIsRefusedUnread) {
  const std::uintmax_t before = fs::file_size(path);
  fs::resize_file(path, std::uintmax_t{1} << 33);
  ExpectRefused("is far larger than settings are");
  EXPECT_FALSE(databases.OpenOld(path).database);
  fs::resize_file(path, before);
  EXPECT_TRUE(databases.Open(path).database);
}

TEST_F(HostileDatabase, WhatIsNoFileInTheJournalsPlaceIsNamedAndLeftAlone) {
  const std::string journal = path + "-journal";
  fs::remove(journal);
  ASSERT_EQ(::mkfifo(journal.c_str(), 0600), 0);
  ExpectRefused(journal + " is no file");
  EXPECT_FALSE(databases.OpenOld(path).database);
  fs::remove(journal);
  fs::create_directory(journal);
  ExpectRefused(journal + " is no file");
  fs::remove(journal);
  WriteFile(folder / "letter", "Dear colleague");
  fs::create_symlink(folder / "letter", journal);
  ExpectRefused(journal + " is no file");
  EXPECT_EQ(ReadFile(folder / "letter"), "Dear colleague");
  fs::remove(journal);
  EXPECT_TRUE(databases.Open(path).database);
}

/// Files of this process may not grow beyond a size while it lives: the disk is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t size) {
    before_ = ::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &limit_);
    rlimit low = limit_;
    low.rlim_cur = size;
    ::setrlimit(RLIMIT_FSIZE, &low);
  }
  ~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &limit_);
    ::signal(SIGXFSZ, before_);
  }
  FullDisk(const FullDisk&) = delete;

 private:
  rlimit limit_{};
  sighandler_t before_ = SIG_DFL;
};

TEST_F(HostileDatabase, SaveThatFindsNoRoomIsToldAndTheOldValueStays) {
  const store::OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  const store::Assignments fields{{"Speed", "117"}, {"SubjectHeading", std::string(60'000, 's')}};
  const std::string before = opened.database->Read(Table::GeneralSettings, 0)["Speed"];
  {
    const FullDisk full(fs::file_size(path));
    EXPECT_FALSE(opened.database->Write(Table::GeneralSettings, 0, fields));
    EXPECT_NE(opened.database->LastFailure().find(path), std::string::npos);
    EXPECT_EQ(opened.database->Read(Table::GeneralSettings, 0)["Speed"], before);
  }
  EXPECT_TRUE(opened.database->Write(Table::GeneralSettings, 0, fields));
  EXPECT_EQ(opened.database->Read(Table::GeneralSettings, 0)["Speed"], "117");
}

TEST_F(HostileDatabase, FirstStartOnAFullDiskLeavesNothingBehind) {
  fs::remove(path);
  const FullDisk full(8192);
  EXPECT_NE(databases.Create(path).find(path), std::string::npos);
  EXPECT_TRUE(fs::is_empty(folder.Path()));
}

}  // namespace
}  // namespace tavlo::test
