#include "store/database_upgrade.h"

#include <gtest/gtest.h>

#include <string>

#include "store/settings_fields.h"
#include "support/simulated_database.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using base::Reply;
using store::Table;

constexpr const char* kOld = "/root/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.mdb";
constexpr const char* kAside = "/root/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.md1";
constexpr const char* kMarker = "/root/PlaceOldDatabaseHere/UpgradeFinished.txt";

/// One start after the other over a root; an old database may stand in its folder.
struct DatabaseUpgradeTest : testing::Test {
  DatabaseUpgradeTest() {
    disk.WithFolder("/root/PlaceOldDatabaseHere");
    loop.SetWallClock({.year = 2004, .month = 3, .day = 9, .hour = 14, .minute = 5, .second = 12});
  }

  store::Record& OldSettings() { return old.at(Table::GeneralSettings).at(0); }
  store::Record& OldAuthor(std::size_t row) { return old.at(Table::ImportAuthors).at(row); }
  void PlaceOld() { oldDatabases.Place(kOld, old); }

  void Start() {
    loop.Shown.clear();
    said = store::DatabaseUpgrade(loop, disk, folders, databases, settings).UpgradeDatabase();
  }
  void StartAndAnswer(Reply reply) {
    loop.Expect({.reply = reply});
    Start();
  }
  /// An old database with these settings is taken over.
  void TakeOver() {
    PlaceOld();
    StartAndAnswer(Reply::Yes);
  }
  std::string Value(std::string_view field) const { return database.Value(field); }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  SimulatedDatabases databases{disk, {.root = "/root", .revision = "1.2.3"}};
  SimulatedDatabases oldDatabases{disk, {.root = "/old", .revision = "0.9"}};
  SettingsTables old = oldDatabases.Shipped();
  SimulatedDatabase database;
  store::SettingsStore settings{database};
  store::WorkFolders folders{disk, "/root"};
  /// What the last start had for the quiet line.
  std::string said;
};

TEST_F(DatabaseUpgradeTest, StartWithoutAnOldDatabaseDoesNothing) {
  Start();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(database.Saves.empty());
  EXPECT_TRUE(disk.Changes().empty());
}

TEST_F(DatabaseUpgradeTest, AsksOnceWhetherToTakeTheOldSettingsOver) {
  PlaceOld();
  StartAndAnswer(Reply::No);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].text,
            "Do you wish to import all data from the old database into the new one?");
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Upgrade");
  EXPECT_EQ(loop.Shown[0].buttons, base::Buttons::YesNo);
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Question);
}

TEST_F(DatabaseUpgradeTest, NoSetsTheOldDatabaseAsideWithoutAMarkerAndIsNotAskedAgain) {
  PlaceOld();
  const std::string bytes = disk.Contents(kOld);
  StartAndAnswer(Reply::No);
  EXPECT_FALSE(disk.Has(kOld));
  EXPECT_EQ(disk.Contents(kAside), bytes);
  EXPECT_FALSE(disk.Has(kMarker));
  EXPECT_TRUE(database.Saves.empty());
  Start();
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(DatabaseUpgradeTest, YesCopiesWritesTheMarkerAndSaysSoAndTheOldFileStays) {
  OldSettings()["Speed"] = "125";
  TakeOver();
  EXPECT_EQ(Value("Speed"), "125");
  EXPECT_TRUE(disk.Has(kOld));
  EXPECT_FALSE(disk.Has(kAside));
  EXPECT_EQ(disk.Contents(kMarker), "Tavlo Deck upgrade finished: 2004-03-09 14:05:12\n");
  ASSERT_EQ(loop.Shown.size(), 2u);
  EXPECT_EQ(loop.Shown[1].text, "Tavlo Deck upgrade is complete.");
  EXPECT_EQ(loop.Shown[1].title, "Tavlo Deck - Upgrade");
  EXPECT_EQ(loop.Shown[1].icon, base::Icon::Information);
  EXPECT_EQ(loop.Shown[1].buttons, base::Buttons::Ok);
  EXPECT_EQ(said, "");
}

TEST_F(DatabaseUpgradeTest, NextStartAfterYesSetsTheOldFileAsideAndTakesTheMarkerAway) {
  TakeOver();
  const std::size_t saves = database.Saves.size();
  Start();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(disk.Has(kOld));
  EXPECT_TRUE(disk.Has(kAside));
  EXPECT_FALSE(disk.Has(kMarker));
  EXPECT_EQ(database.Saves.size(), saves);
  Start();
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(DatabaseUpgradeTest, FileSetAsideEarlierIsOverwritten) {
  PlaceOld();
  disk.WithFile(kAside, "of an earlier upgrade");
  const std::string bytes = disk.Contents(kOld);
  StartAndAnswer(Reply::No);
  EXPECT_EQ(disk.Contents(kAside), bytes);
}

TEST_F(DatabaseUpgradeTest, ReadOnlyFilesAreSetAsideToo) {
  TakeOver();
  disk.SetReadOnly(kOld);
  disk.SetReadOnly(kMarker);
  Start();
  EXPECT_TRUE(disk.Has(kAside));
  EXPECT_FALSE(disk.Has(kOld) || disk.Has(kMarker));
}

TEST_F(DatabaseUpgradeTest, MarkerWithoutAnOldDatabaseStaysAndAsksNothing) {
  disk.WithFile(kMarker, "Tavlo Deck upgrade finished: 2004-03-09 14:05:12\n");
  disk.WithFile(kAside, "of an earlier upgrade");
  Start();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(disk.Has(kMarker));
  EXPECT_EQ(disk.Contents(kAside), "of an earlier upgrade");
}

TEST_F(DatabaseUpgradeTest, OldDatabaseThatCanNotBeSetAsideStaysWithItsMarker) {
  TakeOver();
  disk.LockFolder("/root/PlaceOldDatabaseHere");
  Start();
  EXPECT_TRUE(disk.Has(kOld));
  EXPECT_TRUE(disk.Has(kMarker));
  disk.UnlockFolder("/root/PlaceOldDatabaseHere");
  Start();
  EXPECT_FALSE(disk.Has(kOld) || disk.Has(kMarker));
}

TEST_F(DatabaseUpgradeTest, OldDatabaseThatCanNotBeSetAsideAfterNoIsAskedAboutAgain) {
  PlaceOld();
  disk.LockFolder("/root/PlaceOldDatabaseHere");
  StartAndAnswer(Reply::No);
  EXPECT_TRUE(disk.Has(kOld));
  EXPECT_FALSE(disk.Has(kAside));
  StartAndAnswer(Reply::No);
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(DatabaseUpgradeTest, EveryFieldThatIsTakenOverIs) {
  for (auto& [field, value] : OldSettings()) value = "7";
  TakeOver();
  for (const store::Field& field : store::FieldsOf(Table::GeneralSettings)) {
    const bool isLeftOut = field.name == "EqualizerChoice" || field.name == "EqualizerEnableFlag" ||
                           field.name == "FtpServerSelection";
    const std::string kept = store::ShippedValue(field, 0, {.root = "/root", .revision = ""});
    EXPECT_EQ(Value(field.name), isLeftOut ? kept : "7") << field.name;
  }
}

TEST_F(DatabaseUpgradeTest, FieldsThatAnEarlyReleaseLacksAreSetToWhatIsShipped) {
  const store::Record shipped = database.Read(Table::GeneralSettings, 0);
  for (const char* field :
       {"FaciaImagePointer", "Ew2QueuePath", "Speed", "Volume", "PromptVolume",
        "USBorSerialFootPedal", "CustomEq1", "CustomEq12", "CustomDisplay", "ShowCustomDisplay",
        "MixerSelection", "WorkWaitingAlertMode", "AutoImportMode", "AutoRefreshMode",
        "NewDictationAlertInterval", "AutoQueueRefreshInterval"}) {
    OldSettings().erase(field);
    database.With(field, "changed since");
  }
  TakeOver();
  EXPECT_EQ(Value("FaciaImagePointer"), "1");
  EXPECT_EQ(Value("Ew2QueuePath"), "/root/Files/eW2Queue");
  EXPECT_EQ(Value("Speed"), "100");
  EXPECT_EQ(Value("Volume"), "50000");
  EXPECT_EQ(Value("PromptVolume"), "20000");
  EXPECT_EQ(Value("USBorSerialFootPedal"), "U");
  EXPECT_EQ(Value("CustomEq1"), "0");
  EXPECT_EQ(Value("CustomEq12"), "0");
  EXPECT_EQ(Value("CustomDisplay"), "Tavlo Deck        ...the steady hand!");
  EXPECT_EQ(Value("ShowCustomDisplay"), "Y");
  EXPECT_EQ(Value("MixerSelection"), "0");
  EXPECT_EQ(Value("WorkWaitingAlertMode"), "0");
  EXPECT_EQ(Value("AutoImportMode"), "N");
  EXPECT_EQ(Value("AutoRefreshMode"), "0");
  EXPECT_EQ(Value("NewDictationAlertInterval"), "30");
  EXPECT_EQ(Value("AutoQueueRefreshInterval"), "120");
}

TEST_F(DatabaseUpgradeTest, OldDatabaseWithoutASpeedKeepsAHundredPercentAndGoesOnWithTheVolume) {
  OldSettings().erase("Speed");
  OldSettings()["Volume"] = "41000";
  TakeOver();
  EXPECT_EQ(Value("Speed"), "100");
  EXPECT_EQ(Value("Volume"), "41000");
}

TEST_F(DatabaseUpgradeTest, OtherFieldsThatItLacksStayAsTheyAre) {
  OldSettings().erase("SubjectHeading");
  OldSettings().erase("OEMLogo");
  database.With("SubjectHeading", "Patient").With("OEMLogo", "Corvid");
  TakeOver();
  EXPECT_EQ(Value("SubjectHeading"), "Patient");
  EXPECT_EQ(Value("OEMLogo"), "Corvid");
}

TEST_F(DatabaseUpgradeTest, EmptyFieldIsTakenOverAsTheEmptyText) {
  OldSettings()["CustomDisplay"] = "";
  TakeOver();
  EXPECT_EQ(Value("CustomDisplay"), "");
}

TEST_F(DatabaseUpgradeTest, AllSettingsAndAuthorsAreTakenOverInOneTransaction) {
  TakeOver();
  EXPECT_EQ(database.Transactions, 1);
  ASSERT_EQ(database.Saves.size(), 27u) << "the settings, and 26 authors";
  EXPECT_EQ(database.Saves[0].table, Table::GeneralSettings);
  EXPECT_EQ(database.Saves[0].fields.front().first, "AutoBackspace");
  EXPECT_EQ(database.Saves[0].fields.back().first, "BusSaysNothingFlag");
}

TEST_F(DatabaseUpgradeTest, PathsBelowTheOldRootBecomeOursAndOthersStayAsTheyAre) {
  OldSettings()["Ew2QueuePath"] = "C:\\Lyrane\\TavloDeck\\Files\\eW2Queue";
  OldSettings()["Ds2QueuePath"] = "D:\\Dictation\\dS2";
  OldSettings()["Eu2QueuePath"] = "\\\\server\\share\\eU2";
  TakeOver();
  EXPECT_EQ(Value("Ew2QueuePath"), "/root/Files/eW2Queue");
  EXPECT_EQ(Value("Ds2QueuePath"), "D:\\Dictation\\dS2");
  EXPECT_EQ(Value("Eu2QueuePath"), "\\\\server\\share\\eU2");
}

TEST_F(DatabaseUpgradeTest, ImportFolderOfAnOlderReleaseBecomesTheOneOfToday) {
  OldSettings()["WavQueuePath"] = "c:\\Lyrane\\TavloDeck\\Files\\wavImport";
  TakeOver();
  EXPECT_EQ(Value("WavQueuePath"), "/root/Files/ImportQueue");
}

TEST_F(DatabaseUpgradeTest, LettersAndASeparatorMakeNoOtherFolderOfIt) {
  OldSettings()["WavQueuePath"] = "C:\\LYRANE\\TavloDeck\\files\\WavImport\\";
  TakeOver();
  EXPECT_EQ(Value("WavQueuePath"), "/root/Files/ImportQueue");
}

TEST_F(DatabaseUpgradeTest, AnyOtherImportFolderIsKept) {
  OldSettings()["WavQueuePath"] = "E:\\Sound\\wavImport";
  TakeOver();
  EXPECT_EQ(Value("WavQueuePath"), "E:\\Sound\\wavImport");
}

TEST_F(DatabaseUpgradeTest, AuthorsAreTakenOverRowByRow) {
  OldAuthor(0)["AuthorLastName"] = "Brown";
  OldAuthor(25)["Secretary"] = "Mills";
  OldAuthor(25)["NumericSorter"] = "99";
  TakeOver();
  EXPECT_EQ(database.Value(Table::ImportAuthors, 0, "AuthorLastName"), "Brown");
  EXPECT_EQ(database.Value(Table::ImportAuthors, 25, "Secretary"), "Mills");
  EXPECT_EQ(database.Value(Table::ImportAuthors, 25, "NumericSorter"), "26");
}

TEST_F(DatabaseUpgradeTest, MoreAuthorsThanThereAreRowsAreLeftOutWithoutAWord) {
  old.at(Table::ImportAuthors).resize(30);
  OldAuthor(25)["AuthorLastName"] = "Last";
  OldAuthor(26)["AuthorLastName"] = "Beyond";
  TakeOver();
  EXPECT_EQ(database.RowCount(Table::ImportAuthors), 26);
  EXPECT_EQ(database.Value(Table::ImportAuthors, 25, "AuthorLastName"), "Last");
  EXPECT_EQ(loop.Shown.back().text, "Tavlo Deck upgrade is complete.");
}

TEST_F(DatabaseUpgradeTest, FewerAuthorsLeaveTheRowsBehindThemAsTheyAre) {
  old.at(Table::ImportAuthors).resize(2);
  OldAuthor(1)["AuthorLastName"] = "Brown";
  TakeOver();
  EXPECT_EQ(database.Value(Table::ImportAuthors, 1, "AuthorLastName"), "Brown");
  EXPECT_EQ(database.Value(Table::ImportAuthors, 2, "AuthorLastName"), "Author3");
}

TEST_F(DatabaseUpgradeTest, ServersAreNotTakenOver) {
  old.at(Table::FtpSettings).at(0)["FtpServerName"] = "Clinic";
  TakeOver();
  EXPECT_EQ(database.Value(Table::FtpSettings, 0, "FtpServerName"), "Ftp1");
}

TEST_F(DatabaseUpgradeTest, OldDatabaseThatCanNotBeReadChangesNothingAndEndsAsAnyOther) {
  disk.WithFile(kOld, "not a database");
  StartAndAnswer(Reply::Yes);
  EXPECT_TRUE(database.Saves.empty());
  EXPECT_TRUE(disk.Has(kMarker));
  EXPECT_EQ(loop.Shown.back().text, "Tavlo Deck upgrade is complete.");
  Start();
  EXPECT_EQ(disk.Contents(kAside), "not a database");
  EXPECT_FALSE(disk.Has(kOld) || disk.Has(kMarker));
}

TEST_F(DatabaseUpgradeTest, OldDatabaseThatCanNotBeReadIsNamedInTheQuietLine) {
  disk.WithFile(kOld, "not a database");
  StartAndAnswer(Reply::Yes);
  EXPECT_EQ(said,
            std::string("Nothing of the old settings was taken over. The settings database ") +
                kOld + " is damaged.");
  Start();
  EXPECT_EQ(said, "");
}

TEST_F(DatabaseUpgradeTest, OldDatabaseWithoutSettingsAndAuthorsIsNamedInTheQuietLine) {
  old.erase(Table::GeneralSettings);
  old.erase(Table::ImportAuthors);
  TakeOver();
  EXPECT_TRUE(database.Saves.empty());
  EXPECT_EQ(said, std::string("Nothing of the old settings was taken over. There are none in ") +
                      kOld + ".");
}

TEST_F(DatabaseUpgradeTest, OldDatabaseOfWhichSomeCanBeReadIsNotNamed) {
  old.erase(Table::GeneralSettings);
  TakeOver();
  EXPECT_EQ(said, "");
}

TEST_F(DatabaseUpgradeTest, OldDatabaseWithoutSettingsLeavesThemAsTheyAre) {
  old.erase(Table::GeneralSettings);
  database.With("Speed", "80");
  OldAuthor(0)["AuthorLastName"] = "Brown";
  TakeOver();
  EXPECT_EQ(Value("Speed"), "80");
  EXPECT_EQ(database.Value(Table::ImportAuthors, 0, "AuthorLastName"), "Brown");
}

TEST_F(DatabaseUpgradeTest, SaveThatIsRefusedLeavesWholeSettings) {
  const store::Record before = database.Read(Table::GeneralSettings, 0);
  database.RefuseWrites("The disk is full.");
  OldSettings()["Speed"] = "125";
  TakeOver();
  EXPECT_EQ(database.Read(Table::GeneralSettings, 0), before);
  EXPECT_EQ(loop.Shown.back().text, "Tavlo Deck upgrade is complete.");
  EXPECT_EQ(said, "Nothing of the old settings was taken over. The disk is full.");
}

TEST_F(DatabaseUpgradeTest, FolderOfTheOldNameIsNoDatabase) {
  disk.WithFolder(kOld);
  Start();
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(DatabaseUpgradeTest, CrashAtAnyMomentLosesNoDatabaseAndTheNextStartGoesOn) {
  for (int nth = 1; nth <= 8; ++nth) {
    SCOPED_TRACE("crash at operation " + std::to_string(nth));
    for (const char* path : {kOld, kAside, kMarker}) disk.Remove(path);
    TakeOver();
    disk.CrashAtOperation(nth);
    Start();
    disk.Heal();
    EXPECT_TRUE(disk.Has(kOld) || disk.Has(kAside));
    Start();
    EXPECT_FALSE(disk.Has(kOld));
    EXPECT_TRUE(disk.Has(kAside));
  }
}

}  // namespace
}  // namespace tavlo::test
