#include "platform/sqlite/patient_settings.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/errands_at_hand.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::PatientSettingsDatabases;
using platform::SqliteSettingsDatabases;
using store::Table;

struct PatientSettingsTest : testing::Test {
  PatientSettingsTest() { EXPECT_EQ(databases.Create(path), ""); }

  void Open() {
    store::OpenedDatabase opened = databases.Open(path);
    ASSERT_TRUE(opened.database) << opened.failure;
    database = std::move(opened.database);
  }
  bool Save(const std::string& speed) {
    return database->Write(Table::GeneralSettings, 0, {{"Speed", speed}});
  }
  std::string Speed() const { return database->Read(Table::GeneralSettings, 0).at("Speed"); }
  /// What somebody else finds in the file; the reason when nobody else can open it.
  std::string Found(const std::string& field = "Speed") const {
    const store::OpenedDatabase opened = SqliteSettingsDatabases(shipped).Open(path);
    return opened.database ? opened.database->Read(Table::GeneralSettings, 0).at(field)
                           : opened.failure;
  }
  std::string Sentence(const std::string& rest) const {
    return "The settings database " + path + " " + rest;
  }

  const store::ShippedDatabase shipped{.root = "/root", .revision = "1.2.3"};
  TemporaryFolder folder;
  const std::string path = folder / "settings.mdb";
  ErrandsAtHand errands;
  PatientSettingsDatabases databases{errands, shipped};
  std::unique_ptr<store::SettingsDatabase> database;
};

TEST_F(PatientSettingsTest, RowsAreLookedAtWithoutTheDisk) {
  Open();
  const int asked = errands.Asked;
  EXPECT_EQ(database->RowCount(Table::FtpSettings), 25);
  EXPECT_EQ(database->Read(Table::FtpSettings, 3).at("FtpServerName"), "Ftp4");
  EXPECT_EQ(database->Read(Table::RevisionInfo, 0).at("Revision"), "1.2.3");
  EXPECT_TRUE(database->Read(Table::FtpSettings, 25).empty());
  EXPECT_TRUE(database->Read(Table::FtpSettings, -1).empty());
  EXPECT_EQ(errands.Asked, asked);
}

TEST_F(PatientSettingsTest, SaveIsReadAtOnceAndStandsInTheFile) {
  Open();
  EXPECT_TRUE(Save("90"));
  EXPECT_EQ(Speed(), "90");
  database.reset();
  EXPECT_EQ(Found(), "90");
}

TEST_F(PatientSettingsTest, SavedValuesAreReadAsTheFileHasThem) {
  Open();
  const std::string cut("behind the cut\0nothing", 22);
  EXPECT_TRUE(database->Write(Table::GeneralSettings, 0,
                              {{"SubjectHeading", cut}, {"NoSuchField", "1"}, {"Speed", "+7,5"}}));
  const store::Record kept = database->Read(Table::GeneralSettings, 0);
  database.reset();
  Open();
  EXPECT_EQ(database->Read(Table::GeneralSettings, 0), kept);
}

TEST_F(PatientSettingsTest, RefusedSaveIsToldAsTheFileTellsItAndChangesNothing) {
  Open();
  const std::string before = Speed();
  EXPECT_FALSE(Save(std::string(store::kLongestValue + 1, '9')));
  EXPECT_EQ(database->LastFailure(), "The value of Speed is too long.");
  EXPECT_FALSE(database->Write(Table::FtpSettings, 25, {{"FtpServerName", "Clinic"}}));
  EXPECT_EQ(Speed(), before);
}

TEST_F(PatientSettingsTest, SaveWithoutAnAnswerSaysSoAndTheOldValueIsRead) {
  Open();
  const std::string before = Speed();
  errands.Stalls = true;
  EXPECT_FALSE(Save("90"));
  EXPECT_EQ(database->LastFailure(), Sentence("gives no answer."));
  EXPECT_EQ(Speed(), before);
  EXPECT_FALSE(Save("91"));
}

TEST_F(PatientSettingsTest, SaveThatComesBackLateHasHappenedAndALaterOneCountsMore) {
  Open();
  errands.Stalls = true;
  EXPECT_FALSE(Save("90"));
  errands.ComeBack();
  EXPECT_TRUE(database->Write(Table::GeneralSettings, 0, {{"Volume", "7"}}));
  EXPECT_TRUE(Save("110"));
  database.reset();
  EXPECT_EQ(Found(), "110");
  EXPECT_EQ(Found("Volume"), "7");
}

TEST_F(PatientSettingsTest, OpeningWithoutAnAnswerSaysSoAndWhatIsOpenedLateIsClosedAgain) {
  errands.Stalls = true;
  const store::OpenedDatabase opened = databases.Open(path);
  EXPECT_FALSE(opened.database);
  EXPECT_EQ(opened.failure, Sentence("gives no answer."));
  errands.ComeBack();
  EXPECT_EQ(Found(), "100");
}

TEST_F(PatientSettingsTest, MakingWithoutAnAnswerSaysSo) {
  errands.Stalls = true;
  EXPECT_EQ(databases.Create(folder / "other.mdb"),
            "The settings database " + (folder / "other.mdb") + " gives no answer.");
}

TEST_F(PatientSettingsTest, OpeningThatFailsSaysWhy) {
  EXPECT_EQ(databases.Open(folder / "missing.mdb").failure,
            SqliteSettingsDatabases(shipped).Open(folder / "missing.mdb").failure);
}

TEST_F(PatientSettingsTest, OldDatabaseIsReadAndNotWritten) {
  store::OpenedDatabase old = databases.OpenOld(path);
  ASSERT_TRUE(old.database) << old.failure;
  EXPECT_EQ(old.database->Read(Table::GeneralSettings, 0).at("Speed"), "100");
  EXPECT_FALSE(old.database->Write(Table::GeneralSettings, 0, {{"Speed", "90"}}));
}

TEST_F(PatientSettingsTest, FileIsHeldUntilItsDatabaseIsClosed) {
  Open();
  EXPECT_NE(Found(), "100");
  database.reset();
  EXPECT_EQ(Found(), "100");
}

TEST_F(PatientSettingsTest, CloseThatGetsNoAnswerIsLeftBehind) {
  Open();
  errands.Stalls = true;
  database.reset();
  EXPECT_TRUE(errands.OutOfReach(path));
  errands.ComeBack();
  EXPECT_EQ(Found(), "100");
}

TEST_F(PatientSettingsTest, EndOfTheProcessLetsGoOfEveryFileAndSavesNothingAfterwards) {
  Open();
  EXPECT_TRUE(Save("90"));
  databases.CloseAll();
  EXPECT_EQ(Found(), "90");
  EXPECT_FALSE(Save("91"));
  EXPECT_EQ(Found(), "90");
  database.reset();
  databases.CloseAll();
}

TEST_F(PatientSettingsTest, EngineAtWorkSaysThatItGoesOn) {
  Open();
  const int signs = errands.Signs;
  EXPECT_GT(signs, 20) << "each statement is a sign, and there is at least one for each row";
  EXPECT_TRUE(Save("90"));
  EXPECT_GT(errands.Signs, signs);
}

}  // namespace
}  // namespace tavlo::test
