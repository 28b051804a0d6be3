#include "store/settings_fields.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "store/work_folders.h"
#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::FieldsOf;
using store::FindField;
using store::ShippedValue;
using store::Table;

const store::ShippedDatabase kShipped{.root = kRoot, .revision = "1.2.3"};

std::string Shipped(Table table, std::string_view field, int row = 0) {
  return ShippedValue(*FindField(table, field), row, kShipped);
}

TEST(SettingsFields, EveryFieldStandsOnceWithItsTableAndSaysWhatItMayHold) {
  std::set<std::pair<Table, std::string_view>> seen;
  std::size_t inTables = 0;
  for (const store::TableShape& shape : store::kTables) {
    inTables += FieldsOf(shape.table).size();
    for (const store::Field& field : FieldsOf(shape.table)) {
      EXPECT_EQ(field.table, shape.table) << field.name;
      EXPECT_TRUE(seen.emplace(field.table, field.name).second) << field.name;
      EXPECT_FALSE(field.meaning.empty()) << field.name;
      EXPECT_FALSE(store::AllowedValues(field).empty()) << field.name;
    }
  }
  EXPECT_EQ(inTables, store::AllFields().size());
}

TEST(SettingsFields, EachTableHasItsFieldsAndItsRows) {
  EXPECT_EQ(FieldsOf(Table::GeneralSettings).size(), 66u);
  EXPECT_EQ(FieldsOf(Table::FtpSettings).size(), 11u);
  EXPECT_EQ(FieldsOf(Table::ImportAuthors).size(), 9u);
  EXPECT_EQ(FieldsOf(Table::RevisionInfo).size(), 1u);
  EXPECT_EQ(store::ShapeOf(Table::GeneralSettings).rows, 1);
  EXPECT_EQ(store::ShapeOf(Table::FtpSettings).rows, 25);
  EXPECT_EQ(store::ShapeOf(Table::ImportAuthors).rows, 26);
  EXPECT_EQ(store::ShapeOf(Table::RevisionInfo).rows, 1);
}

TEST(SettingsFields, FieldOfAnotherTableIsNotFound) {
  EXPECT_TRUE(FindField(Table::FtpSettings, "FtpServerName"));
  EXPECT_FALSE(FindField(Table::GeneralSettings, "FtpServerName"));
  EXPECT_FALSE(FindField(Table::RevisionInfo, ""));
}

TEST(SettingsFields, ShippedRowsOfProfilesAreNumberedFromOne) {
  EXPECT_EQ(Shipped(Table::FtpSettings, "ID", 0), "1");
  EXPECT_EQ(Shipped(Table::FtpSettings, "FtpServerName", 24), "Ftp25");
  EXPECT_EQ(Shipped(Table::ImportAuthors, "NumericSorter", 25), "26");
}

TEST(SettingsFields, ShippedValuesThatOlderDatabasesTakeAsDefaultsStandLetterForLetter) {
  EXPECT_EQ(Shipped(Table::GeneralSettings, "CustomDisplay"),
            "Tavlo Deck        ...the steady hand!");
  EXPECT_EQ(Shipped(Table::GeneralSettings, "Speed"), "100");
  EXPECT_EQ(Shipped(Table::GeneralSettings, "Volume"), "50000");
  EXPECT_EQ(Shipped(Table::GeneralSettings, "PromptVolume"), "20000");
  EXPECT_EQ(Shipped(Table::GeneralSettings, "WorkWaitingAlertMode"), "0");
  EXPECT_EQ(Shipped(Table::GeneralSettings, "NewDictationAlertInterval"), "30");
  EXPECT_EQ(Shipped(Table::GeneralSettings, "AutoQueueRefreshInterval"), "120");
}

TEST(SettingsFields, ShippedPathsAreTheDefaultFoldersOfTheTree) {
  SimulatedLoop loop;
  SimulatedDisk disk(loop);
  const store::WorkFolders folders(disk, kShipped.root);
  EXPECT_EQ(Shipped(Table::GeneralSettings, "Ew2QueuePath"),
            folders.DefaultQueuePath(store::QueuePath::Ew2));
  EXPECT_EQ(Shipped(Table::GeneralSettings, "Ds2QueuePath"),
            folders.DefaultQueuePath(store::QueuePath::Ds2));
  EXPECT_EQ(Shipped(Table::GeneralSettings, "WavQueuePath"),
            folders.DefaultQueuePath(store::QueuePath::Wav));
  EXPECT_EQ(Shipped(Table::GeneralSettings, "Eu2QueuePath"),
            folders.DefaultQueuePath(store::QueuePath::Eu2));
}

TEST(SettingsFields, RevisionIsShippedAsTheBuildsOwn) {
  EXPECT_EQ(Shipped(Table::RevisionInfo, "Revision"), "1.2.3");
}

TEST(SettingsFields, YesIsTheCapitalLetterAlone) {
  EXPECT_TRUE(store::IsYes("Y"));
  for (const char* other : {"N", "y", "Yes", "", "1", "-1"}) EXPECT_FALSE(store::IsYes(other));
  EXPECT_EQ(store::YesNo(true), "Y");
  EXPECT_EQ(store::YesNo(false), "N");
}

TEST(SettingsFields, StoredTruthIsMinusOneAndNothingElse) {
  EXPECT_TRUE(store::IsTruth("-1"));
  for (const char* other : {"1", "0", "", "Y", "True", "-2"}) EXPECT_FALSE(store::IsTruth(other));
  EXPECT_EQ(store::TruthText(true), "-1");
  EXPECT_EQ(store::TruthText(false), "0");
}

TEST(SettingsFields, CheckBoxOfAStoredTruthHoldsOneOrZero) {
  EXPECT_EQ(store::CheckBoxValue("-1"), 1);
  EXPECT_EQ(store::CheckBoxValue("0"), 0);
  EXPECT_EQ(store::CheckBoxValue(""), 0);
}

TEST(SettingsFields, ByteHoldsZeroToTwoHundredFiftyFive) {
  EXPECT_EQ(store::ByteValue("0"), 0);
  EXPECT_EQ(store::ByteValue("255"), 255);
  EXPECT_EQ(store::ByteValue("30 days"), 30);
  EXPECT_EQ(store::ByteValue(""), 0);
  EXPECT_FALSE(store::ByteValue("256"));
  EXPECT_FALSE(store::ByteValue("300"));
  EXPECT_FALSE(store::ByteValue("-1"));
  EXPECT_FALSE(store::ByteValue(std::string(400, '9')));
}

}  // namespace
}  // namespace tavlo::test
