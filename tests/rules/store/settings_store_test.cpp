#include "store/settings_store.h"

#include <gtest/gtest.h>

#include <string>

#include "support/simulated_database.h"

namespace tavlo::test {
namespace {

using store::SettingsStore;
using store::Table;

TEST(SettingsStore, ProgramVersionIsTheLiteralThreeBlanksAndTheRevision) {
  SimulatedDatabase database;
  database.With(Table::RevisionInfo, "Revision", "0.1.0");
  EXPECT_EQ(SettingsStore(database).ProgramVersionText(), "03.08.00.TD   0.1.0");
}

TEST(SettingsStore, MissingRevisionStopsNothing) {
  SimulatedDatabase database;
  database.WithRows(Table::RevisionInfo, 0);
  EXPECT_EQ(SettingsStore(database).ProgramVersionText(), "03.08.00.TD   ");
}

TEST(SettingsStore, RevisionIsReadOnce) {
  SimulatedDatabase database;
  const SettingsStore settings(database);
  database.With(Table::RevisionInfo, "Revision", "9.9.9");
  EXPECT_EQ(settings.Revision, "1.0.0");
}

TEST(SettingsStore, ReadTakesTheFirstRow) {
  SimulatedDatabase database;
  database.With(Table::FtpSettings, "FtpServerName", "First", 0)
      .With(Table::FtpSettings, "FtpServerName", "Second", 1);
  EXPECT_EQ(SettingsStore(database).Read(Table::FtpSettings, "FtpServerName"), "First");
}

TEST(SettingsStore, ReadOfAMissingFieldLeavesTheValueAsItWas) {
  SimulatedDatabase database;
  database.Without(Table::GeneralSettings, "Speed");
  const SettingsStore settings(database);
  std::string value = "before";
  EXPECT_FALSE(settings.ReadInto(value, Table::GeneralSettings, "Speed"));
  EXPECT_FALSE(settings.ReadInto(value, Table::FtpSettings, "FtpServerName", 25));
  EXPECT_EQ(value, "before");
  EXPECT_EQ(settings.Read(Table::GeneralSettings, "Speed"), "");
}

TEST(SettingsStore, ReadOfAnEmptyFieldIsTheEmptyText) {
  SimulatedDatabase database;
  std::string value = "before";
  EXPECT_TRUE(SettingsStore(database).ReadInto(value, Table::GeneralSettings, "OEMLogo"));
  EXPECT_EQ(value, "");
}

TEST(SettingsStore, TruthIsReadThroughTheField) {
  SimulatedDatabase database;
  const SettingsStore settings(database);
  EXPECT_FALSE(settings.ReadTruth(Table::GeneralSettings, "AutoRefreshMode"));
  database.With("AutoRefreshMode", "-1");
  EXPECT_TRUE(settings.ReadTruth(Table::GeneralSettings, "AutoRefreshMode"));
}

TEST(SettingsStore, RefusedWriteChangesNothingAndSaysWhy) {
  SimulatedDatabase database;
  SettingsStore settings(database);
  database.RefuseWrites("The disk is full.");
  EXPECT_FALSE(settings.Write(Table::GeneralSettings, 0, {{"Speed", "90"}, {"Volume", "1"}}));
  EXPECT_EQ(settings.LastFailure(), "The disk is full.");
  EXPECT_EQ(database.Value("Speed"), "100");
  EXPECT_EQ(database.Value("Volume"), "50000");
}

}  // namespace
}  // namespace tavlo::test
