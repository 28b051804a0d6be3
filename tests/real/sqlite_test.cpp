#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <thread>

#include "base/text.h"
#include "platform/sqlite/sqlite_settings.h"
#include "store/settings_fields.h"
#include "support/send_signal.h"

namespace tavlo::test {
namespace {

using platform::SqliteSettingsDatabases;
using store::OpenedDatabase;
using store::Record;
using store::Table;

struct SqliteTest : testing::Test {
  SqliteTest() {
    std::string name = (std::filesystem::temp_directory_path() / "tavlo-sqlite-XXXXXX").string();
    folder = mkdtemp(name.data());
    path = folder / "Lyrane_Tavlo_Deck.mdb";
  }
  ~SqliteTest() override { std::filesystem::remove_all(folder); }

  void CreateShipped() { ASSERT_EQ(databases.Create(path), ""); }

  std::string Bytes() const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void WriteBytes(const std::string& bytes) const {
    std::ofstream(path, std::ios::binary) << bytes;
  }

  /// Another program's hand in the file.
  void Tamper(const std::string& sql) const {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &other), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(other, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(other);
    sqlite3_close(other);
  }

  /// What another program reads there.
  std::string Asked(const std::string& sql) const {
    sqlite3* other = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &other), SQLITE_OK);
    std::string answer;
    const auto take = [](void* into, int, char** values, char**) {
      *static_cast<std::string*>(into) = values[0] ? values[0] : "";
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(other, sql.c_str(), take, &answer, nullptr), SQLITE_OK)
        << sqlite3_errmsg(other);
    sqlite3_close(other);
    return answer;
  }

  /// The file must be refused with a text that holds `words`, and must not have changed.
  void ExpectRefused(const std::string& words) {
    const std::string before = Bytes();
    const OpenedDatabase opened = databases.Open(path);
    EXPECT_FALSE(opened.database);
    EXPECT_NE(opened.failure.find(path.string()), std::string::npos) << opened.failure;
    EXPECT_NE(opened.failure.find(words), std::string::npos) << opened.failure;
    EXPECT_TRUE(Bytes() == before) << "the file has changed";
  }

  std::filesystem::path folder;
  std::filesystem::path path;
  store::ShippedDatabase shipped{.root = "/home/typist/Lyrane/TavloDeck", .revision = "1.2.3"};
  SqliteSettingsDatabases databases{shipped};
};

TEST_F(SqliteTest, NewDatabaseHoldsEveryFieldOfEveryRowAsShipped) {
  CreateShipped();
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  for (const store::TableShape& shape : store::kTables) {
    ASSERT_EQ(opened.database->RowCount(shape.table), shape.rows);
    for (int row = 0; row < shape.rows; ++row) {
      const Record record = opened.database->Read(shape.table, row);
      for (const store::Field& field : store::FieldsOf(shape.table)) {
        const auto found = record.find(std::string(field.name));
        ASSERT_NE(found, record.end()) << field.name;
        EXPECT_EQ(found->second, store::ShippedValue(field, row, shipped)) << field.name;
      }
    }
    EXPECT_TRUE(opened.database->Read(shape.table, shape.rows).empty());
    EXPECT_TRUE(opened.database->Read(shape.table, -1).empty());
  }
}

TEST_F(SqliteTest, SavedValuesAreThereAtTheNextOpening) {
  CreateShipped();
  {
    const OpenedDatabase opened = databases.Open(path);
    ASSERT_TRUE(opened.database->Write(Table::FtpSettings, 24,
                                       {{"FtpServerName", "Last"}, {"NoSuchField", "x"}}));
  }
  const OpenedDatabase again = databases.Open(path);
  EXPECT_EQ(again.database->Read(Table::FtpSettings, 24).at("FtpServerName"), "Last");
  EXPECT_EQ(again.database->Read(Table::FtpSettings, 23).at("FtpServerName"), "Ftp24");
}

TEST_F(SqliteTest, WriteOfARowThatDoesNotExistIsRefused) {
  CreateShipped();
  const OpenedDatabase opened = databases.Open(path);
  EXPECT_FALSE(opened.database->Write(Table::GeneralSettings, 1, {{"Speed", "90"}}));
  EXPECT_NE(opened.database->LastFailure().find("no row 2 in GeneralSettings"), std::string::npos);
}

TEST_F(SqliteTest, ValueThatIsTooLongIsRefusedAndNothingOfItsSaveIsWritten) {
  CreateShipped();
  const OpenedDatabase opened = databases.Open(path);
  EXPECT_FALSE(opened.database->Write(
      Table::GeneralSettings, 0,
      {{"Speed", "90"}, {"CustomDisplay", std::string(store::kLongestValue + 1, 'x')}}));
  EXPECT_EQ(opened.database->Read(Table::GeneralSettings, 0).at("Speed"), "100");
}

TEST_F(SqliteTest, RowsThatAreWrittenTogetherAreAllWrittenOrNone) {
  CreateShipped();
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  store::SettingsDatabase& database = *opened.database;
  const auto rows = [](int last) {
    return std::vector<store::RowAssignments>{{Table::GeneralSettings, 0, {{"Speed", "85"}}},
                                              {Table::ImportAuthors, 0, {{"Subject", "knee"}}},
                                              {Table::ImportAuthors, last, {{"Subject", "hip"}}}};
  };
  EXPECT_FALSE(database.WriteRows(rows(26)));
  EXPECT_NE(database.LastFailure().find("no row 27"), std::string::npos);
  EXPECT_EQ(database.Read(Table::GeneralSettings, 0).at("Speed"), "100");
  EXPECT_EQ(database.Read(Table::ImportAuthors, 0).at("Subject"), "None");
  EXPECT_TRUE(database.WriteRows(rows(25))) << database.LastFailure();
  EXPECT_EQ(database.Read(Table::GeneralSettings, 0).at("Speed"), "85");
  EXPECT_EQ(database.Read(Table::ImportAuthors, 25).at("Subject"), "hip");
}

TEST_F(SqliteTest, CreateRefusesAPlaceWhereSomethingStands) {
  WriteBytes("somebody's letter");
  EXPECT_NE(databases.Create(path), "");
  EXPECT_EQ(Bytes(), "somebody's letter");
}

TEST_F(SqliteTest, CreateThatFailsLeavesNothingBehind) {
  path = folder / "no such folder" / "Lyrane_Tavlo_Deck.mdb";
  EXPECT_NE(databases.Create(path), "");
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

/// Modes of all files of a folder, by name.
std::map<std::string, unsigned> ModesIn(const std::filesystem::path& folder) {
  std::map<std::string, unsigned> modes;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    modes[entry.path().filename()] = static_cast<unsigned>(entry.status().permissions());
  }
  return modes;
}

/// Makes a database in a process that ends at the first byte beyond a size, of whatever file.
void CreateUntilKilled(SqliteSettingsDatabases& databases, const std::filesystem::path& path,
                       rlim_t size) {
  const pid_t doomed = ::fork();
  if (doomed == 0) {
    ::umask(0);
    const rlimit low{.rlim_cur = size, .rlim_max = size};
    ::setrlimit(RLIMIT_FSIZE, &low);
    const rlimit noCore{};
    ::setrlimit(RLIMIT_CORE, &noCore);
    ::_exit(databases.Create(path).empty() ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(doomed, &status, 0), doomed);
}

TEST_F(SqliteTest, DatabaseAndJournalAreTheOwnersAloneFromTheFirstByteOn) {
  std::set<std::string> seen;
  for (const rlim_t size : {0u, 1u, 512u, 1024u, 4096u, 8192u, 16'384u, 1'000'000u}) {
    SCOPED_TRACE(size);
    CreateUntilKilled(databases, path, size);
    for (const auto& [name, mode] : ModesIn(folder)) {
      EXPECT_EQ(mode, 0600u) << name;
      seen.insert(name);
      std::filesystem::remove(folder / name);
    }
  }
  EXPECT_EQ(seen,
            (std::set<std::string>{"Lyrane_Tavlo_Deck.mdb", "Lyrane_Tavlo_Deck.mdb-journal"}));
}

TEST_F(SqliteTest, WiderDatabaseAndJournalAreNarrowedWhenTheyAreOpened) {
  CreateShipped();
  const std::filesystem::path journal = path.string() + "-journal";
  std::ofstream(journal).close();
  for (const auto& file : {path, journal}) ASSERT_EQ(::chmod(file.c_str(), 0664), 0);
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  ASSERT_TRUE(opened.database->Write(Table::GeneralSettings, 0, {{"Speed", "117"}}));
  for (const auto& [name, mode] : ModesIn(folder)) EXPECT_EQ(mode, 0600u) << name;
}

TEST_F(SqliteTest, MissingDatabaseIsNamedAndNotMade) {
  const OpenedDatabase opened = databases.Open(path);
  EXPECT_FALSE(opened.database);
  EXPECT_NE(opened.failure.find(path.string() + " does not exist. Put a copy of it back"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SqliteTest, FolderInThePlaceOfTheDatabaseIsRefused) {
  std::filesystem::create_directory(path);
  EXPECT_NE(databases.Open(path).failure.find("is no file"), std::string::npos);
}

TEST_F(SqliteTest, FileThatIsNoDatabaseIsRefused) {
  WriteBytes(std::string(5000, 'x'));
  ExpectRefused("it is no database");
}

TEST_F(SqliteTest, EmptyFileIsRefused) {
  WriteBytes("");
  ExpectRefused("is damaged");
}

TEST_F(SqliteTest, TruncatedDatabaseIsRefused) {
  CreateShipped();
  const std::string whole = Bytes();
  for (std::size_t length = whole.size() - 1; length > 0; length /= 2) {
    WriteBytes(whole.substr(0, length));
    ExpectRefused("is damaged");
  }
}

TEST_F(SqliteTest, DatabaseWithGarbageInTheMiddleIsRefused) {
  CreateShipped();
  std::string bytes = Bytes();
  bytes.replace(bytes.size() / 2, 4096, std::string(4096, '\x5A'));
  WriteBytes(bytes);
  ExpectRefused("is damaged");
}

TEST_F(SqliteTest, MissingTableIsRefused) {
  CreateShipped();
  Tamper("DROP TABLE ImportAuthors");
  ExpectRefused("its table ImportAuthors is missing");
}

TEST_F(SqliteTest, ViewDoesNotPassForATable) {
  CreateShipped();
  Tamper(
      "DROP TABLE RevisionInfo;"
      "CREATE VIEW RevisionInfo AS WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x FROM n) "
      "SELECT x AS Revision FROM n");
  ExpectRefused("its table RevisionInfo is missing");
}

TEST_F(SqliteTest, MissingRowIsRefused) {
  CreateShipped();
  Tamper("DELETE FROM FtpSettings WHERE RowNumber = 7");
  ExpectRefused("rows of FtpSettings are missing");
}

TEST_F(SqliteTest, AccessFileThatNobodyReadsIsLeftAsItIs) {
  WriteBytes(std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4096, '\1'));
  ExpectRefused("is one of an older release and can not be read");
}

/// A process of its own, since the lock of a file belongs to a process. It opens the database,
/// tells so, and holds it until it is killed.
struct Holder {
  explicit Holder(const std::function<bool()>& hold) {
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    process = fork();
    if (process == 0) {
      const char told = hold() ? 'y' : 'n';
      if (write(ready[1], &told, 1) != 1) _exit(1);
      pause();
      _exit(0);
    }
    char told = 0;
    EXPECT_EQ(read(ready[0], &told, 1), 1);
    EXPECT_EQ(told, 'y');
    close(ready[0]);
    close(ready[1]);
  }
  ~Holder() {
    if (SendSignal(process, SIGKILL)) waitpid(process, nullptr, 0);
  }
  pid_t process = 0;
};

TEST_F(SqliteTest, DatabaseHeldByAnotherProgramIsRefusedAndOpensOnceItIsFree) {
  CreateShipped();
  {
    OpenedDatabase held;
    const Holder holder([&] {
      held = databases.Open(path);
      return held.database != nullptr;
    });
    ExpectRefused("is held by another program");
  }
  EXPECT_TRUE(databases.Open(path).database);
}

TEST_F(SqliteTest, OpenDatabaseIsHeldAgainstEveryOtherProgram) {
  CreateShipped();
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  const Holder other([&] { return databases.Open(path).database == nullptr; });
}

TEST_F(SqliteTest, DatabaseThatMayNotBeWrittenIsRefused) {
  CreateShipped();
  const std::string before = Bytes();
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  std::filesystem::permissions(folder, std::filesystem::perms::all);
  // Root may write whatever the permissions say, so another user does the opening.
  const bool wasRoot = geteuid() == 0;
  ASSERT_EQ(seteuid(wasRoot ? 65534 : geteuid()), 0);
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_EQ(seteuid(wasRoot ? 0 : geteuid()), 0);
  EXPECT_FALSE(opened.database);
  EXPECT_NE(opened.failure.find("can not be read and written"), std::string::npos);
  EXPECT_TRUE(Bytes() == before) << "the file has changed";
}

TEST_F(SqliteTest, OlderDatabaseGainsMissingColumnsAndTheBuildsRevisionAndKeepsTheRest) {
  ASSERT_EQ(SqliteSettingsDatabases({.root = "/r", .revision = "0.0.1"}).Create(path), "");
  Tamper(
      "UPDATE GeneralSettings SET CustomDisplay = 'mine';"
      "ALTER TABLE GeneralSettings DROP COLUMN Speed;"
      "ALTER TABLE FtpSettings DROP COLUMN FtpServerName;"
      "ALTER TABLE GeneralSettings ADD COLUMN OfAnotherBuild TEXT");
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  const Record general = opened.database->Read(Table::GeneralSettings, 0);
  EXPECT_EQ(general.at("Speed"), "100");
  EXPECT_EQ(general.at("CustomDisplay"), "mine");
  EXPECT_FALSE(general.contains("OfAnotherBuild"));
  EXPECT_EQ(opened.database->Read(Table::FtpSettings, 2).at("FtpServerName"), "Ftp3");
  EXPECT_EQ(opened.database->Read(Table::RevisionInfo, 0).at("Revision"), "1.2.3");
}

TEST_F(SqliteTest, ColumnsOfAnotherBuildKeepTheirValuesWhateverThisOneSaves) {
  CreateShipped();
  Tamper(
      "ALTER TABLE GeneralSettings ADD COLUMN PauseKey TEXT;"
      "UPDATE GeneralSettings SET PauseKey = 'CTRL+F9', PlayStopKey = 'HYPER+F4'");
  {
    const OpenedDatabase opened = databases.Open(path);
    ASSERT_TRUE(opened.database) << opened.failure;
    EXPECT_EQ(opened.database->Read(Table::GeneralSettings, 0).at("PlayStopKey"), "HYPER+F4");
    // All that this build knows is saved, as when the configuration closes.
    store::Assignments all;
    for (const store::Field& field : store::FieldsOf(Table::GeneralSettings)) {
      if (field.name != "PlayStopKey") all.emplace_back(field.name, "1");
    }
    ASSERT_TRUE(opened.database->Write(Table::GeneralSettings, 0, all));
  }
  EXPECT_EQ(Asked("SELECT PauseKey || ' ' || PlayStopKey || ' ' || Speed FROM GeneralSettings"),
            "CTRL+F9 HYPER+F4 1");
}

TEST_F(SqliteTest, DatabaseOfABuildWithoutKeysGainsThemEmptyAndKeepsWhatItHas) {
  CreateShipped();
  const char* const keys[] = {"PlayStopKey",    "PlayHeldKey", "RewindHeldKey", "ForwardHeldKey",
                              "ToBeginningKey", "ToEndKey",    "SlowerKey",     "FasterKey",
                              "NormalSpeedKey", "CompleteKey", "SaveKey",       "SkipKey"};
  Tamper("UPDATE GeneralSettings SET Speed = '87'");
  for (const char* key : keys)
    Tamper("ALTER TABLE GeneralSettings DROP COLUMN " + std::string(key));
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  const Record general = opened.database->Read(Table::GeneralSettings, 0);
  for (const char* key : keys) EXPECT_EQ(general.at(key), "");
  EXPECT_EQ(general.at("Speed"), "87");
}

TEST_F(SqliteTest, ValuesOfAnyTypeReadAsBoundedTexts) {
  CreateShipped();
  Tamper(
      "UPDATE GeneralSettings SET Speed = 90, Volume = NULL, PlayerTop = x'31323300343536',"
      "PlayerLeft = 1e2, CustomDisplay = replace(hex(zeroblob(100000)), '0', 'x')");
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  const Record general = opened.database->Read(Table::GeneralSettings, 0);
  EXPECT_EQ(general.at("Speed"), "90");
  EXPECT_EQ(general.at("Volume"), "");
  EXPECT_EQ(general.at("PlayerTop"), "123");
  EXPECT_EQ(base::NumberValue(general.at("PlayerLeft")), 100);
  EXPECT_EQ(general.at("CustomDisplay").size(), store::kLongestValue);
}

TEST_F(SqliteTest, GiganticValuesAreReplacedByTheShippedOnesAndTheRowCanBeWritten) {
  CreateShipped();
  Tamper(
      "UPDATE GeneralSettings SET Speed = '77', CustomDisplay = hex(zeroblob(20000000)),"
      "OEMLogo = hex(zeroblob(20000000))");
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  const Record general = opened.database->Read(Table::GeneralSettings, 0);
  EXPECT_EQ(general.at("CustomDisplay"), "Tavlo Deck        ...the steady hand!");
  EXPECT_EQ(general.at("OEMLogo"), "");
  EXPECT_EQ(general.at("Speed"), "77");
  EXPECT_TRUE(opened.database->Write(Table::GeneralSettings, 0, {{"Speed", "78"}}));
}

TEST_F(SqliteTest, TriggersOfTheFileDoNotRun) {
  CreateShipped();
  Tamper(
      "CREATE TRIGGER spoil AFTER UPDATE ON GeneralSettings BEGIN UPDATE FtpSettings SET "
      "FtpServerPassword = 'gone'; END");
  const OpenedDatabase opened = databases.Open(path);
  ASSERT_TRUE(opened.database) << opened.failure;
  ASSERT_TRUE(opened.database->Write(Table::GeneralSettings, 0, {{"Speed", "78"}}));
  EXPECT_EQ(opened.database->Read(Table::FtpSettings, 0).at("FtpServerPassword"), "");
}

TEST_F(SqliteTest, OldDatabaseIsReadAsItIsAndNeverWritten) {
  CreateShipped();
  Tamper("ALTER TABLE GeneralSettings DROP COLUMN Speed; DROP TABLE FtpSettings");
  const std::string before = Bytes();
  const OpenedDatabase old = databases.OpenOld(path);
  ASSERT_TRUE(old.database) << old.failure;
  EXPECT_FALSE(old.database->Read(Table::GeneralSettings, 0).contains("Speed"));
  EXPECT_EQ(old.database->Read(Table::GeneralSettings, 0).at("Volume"), "50000");
  EXPECT_EQ(old.database->RowCount(Table::FtpSettings), 0);
  EXPECT_TRUE(old.database->Read(Table::FtpSettings, 0).empty());
  EXPECT_FALSE(old.database->Write(Table::GeneralSettings, 0, {{"Volume", "1"}}));
  EXPECT_TRUE(Bytes() == before) << "the file has changed";
}

TEST_F(SqliteTest, OldDatabaseInAccessFormatIsHandedToItsReader) {
  WriteBytes(std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4096, '\1'));
  EXPECT_FALSE(databases.OpenOld(path).database);
  std::string handed;
  SqliteSettingsDatabases withReader(shipped, [&](const std::string& file) {
    handed = file;
    return OpenedDatabase{};
  });
  EXPECT_EQ(withReader.OpenOld(path).failure, "");
  EXPECT_EQ(handed, path.string());
}

/// Saves rows in which all values are the same number, one row after the other, without an end. The
/// first one is told.
[[noreturn]] void SaveWithoutEnd(store::SettingsDatabase& database, int tell) {
  for (int save = 1;; ++save) {
    store::Assignments fields;
    for (int band = 1; band <= 12; ++band) {
      fields.emplace_back("CustomEq" + std::to_string(band), std::to_string(save));
    }
    if (!database.Write(Table::GeneralSettings, 0, fields)) _exit(1);
    if (save == 1 && write(tell, "!", 1) != 1) _exit(1);
  }
}

TEST_F(SqliteTest, KillDuringSavesLeavesAWholeSave) {
  CreateShipped();
  std::string last = "0";
  constexpr int kRuns = 25;
  for (int run = 0; run < kRuns; ++run) {
    int told[2];
    ASSERT_EQ(pipe(told), 0);
    const pid_t saver = fork();
    if (saver == 0) {
      const OpenedDatabase opened = databases.Open(path);
      if (!opened.database) _exit(1);
      SaveWithoutEnd(*opened.database, told[1]);
    }
    close(told[1]);
    // Some are killed at the opening, the last one after a save at least.
    char word = 0;
    if (run == kRuns - 1) {
      ASSERT_EQ(read(told[0], &word, 1), 1);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20 + 3 * run));
    ASSERT_TRUE(SendSignal(saver, SIGKILL));
    int status = 0;
    ASSERT_EQ(waitpid(saver, &status, 0), saver);
    close(told[0]);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the saver ended by itself";
    const OpenedDatabase opened = databases.Open(path);
    ASSERT_TRUE(opened.database) << opened.failure;
    const Record row = opened.database->Read(Table::GeneralSettings, 0);
    for (int band = 2; band <= 12; ++band) {
      ASSERT_EQ(row.at("CustomEq" + std::to_string(band)), row.at("CustomEq1"));
    }
    last = row.at("CustomEq1");
  }
  EXPECT_NE(last, "0") << "no save was ever finished";
}

}  // namespace
}  // namespace tavlo::test
