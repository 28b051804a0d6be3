#include "window/settings_saver.h"

#include <gtest/gtest.h>

#include "support/simulated_database.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using store::Table;

struct SettingsSaverTest : testing::Test {
  SimulatedLoop loop;
  SimulatedDatabase database;
  store::SettingsStore settings{database};
  window::SettingsSaver saver{loop, settings};
};

TEST_F(SettingsSaverTest, RowThatCouldNotBeWrittenReadsAsItShouldHaveBeenWritten) {
  database.RefuseWrites("no");
  EXPECT_FALSE(saver.Write(Table::FtpSettings, 3, {{"FtpServerName", "Clinic"}}));
  EXPECT_TRUE(saver.Keeps(Table::FtpSettings, 3, "FtpServerName"));
  EXPECT_FALSE(saver.Keeps(Table::FtpSettings, 3, "FtpServerDir"));
  EXPECT_FALSE(saver.Keeps(Table::FtpSettings, 2, "FtpServerName"));
  const store::Record row = saver.Read(Table::FtpSettings, 3);
  EXPECT_EQ(row.at("FtpServerName"), "Clinic");
  EXPECT_EQ(row.at("ID"), "4");
  EXPECT_EQ(saver.Read(Table::FtpSettings, 2).at("FtpServerName"), "Ftp3");
}

TEST_F(SettingsSaverTest, RowThatDoesNotExistReadsEmptyThoughItsWriteIsKept) {
  EXPECT_FALSE(saver.Write(Table::FtpSettings, 25, {{"FtpServerName", "Clinic"}}));
  EXPECT_TRUE(saver.Read(Table::FtpSettings, 25).empty());
  EXPECT_EQ(saver.RowCount(Table::FtpSettings), 25);
}

TEST_F(SettingsSaverTest, LaterWriteTakesThePlaceOfTheOneThatFailed) {
  database.RefuseWrites("no");
  saver.Write(Table::FtpSettings, 3, {{"FtpServerName", "Clinic"}, {"FtpServerDir", "in"}});
  database.AcceptWrites();
  EXPECT_TRUE(saver.Write(Table::FtpSettings, 3, {{"FtpServerName", "Ward"}}));
  EXPECT_EQ(saver.Read(Table::FtpSettings, 3).at("FtpServerName"), "Ward");
  EXPECT_TRUE(saver.Flush());
  EXPECT_EQ(database.Value(Table::FtpSettings, 3, "FtpServerName"), "Ward");
  EXPECT_EQ(database.Value(Table::FtpSettings, 3, "FtpServerDir"), "in");
}

TEST_F(SettingsSaverTest, FailureIsToldOnceWhateverTableIsWritten) {
  database.RefuseWrites("no");
  saver.Write(Table::FtpSettings, 3, {{"FtpServerName", "Clinic"}});
  saver.Write(Table::GeneralSettings, 0, {{"Speed", "90"}});
  EXPECT_FALSE(saver.Flush());
  EXPECT_TRUE(loop.Shown.empty()) << "no box opens inside the rule that made the change";
  loop.Yield();
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(SettingsSaverTest, WhatCouldNotBeWrittenIsTriedAgainByItselfAndWithoutAWord) {
  database.RefuseWrites("no");
  saver.Write(Table::FtpSettings, 3, {{"FtpServerName", "Clinic"}});
  saver.Write(Table::GeneralSettings, 0, {{"Speed", "90"}});
  loop.Advance(3 * window::SettingsSaver::kTryAgain);
  EXPECT_EQ(loop.Shown.size(), 1u);
  database.AcceptWrites();
  loop.Advance(window::SettingsSaver::kTryAgain - 1ms);
  EXPECT_TRUE(database.Saves.empty());
  loop.Advance(1ms);
  EXPECT_EQ(database.Value(Table::FtpSettings, 3, "FtpServerName"), "Clinic");
  EXPECT_EQ(database.Value("Speed"), "90");
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(SettingsSaverTest, NothingTicksOnceAllIsWritten) {
  database.RefuseWrites("no");
  saver.Write(Table::GeneralSettings, 0, {{"Speed", "90"}});
  EXPECT_NE(loop.Timers().NextDue(), std::nullopt);
  database.AcceptWrites();
  loop.Advance(window::SettingsSaver::kTryAgain);
  EXPECT_EQ(loop.Timers().NextDue(), std::nullopt);
}

TEST_F(SettingsSaverTest, FailureAfterATrialThatWentWellIsToldAgain) {
  database.RefuseWrites("no");
  saver.Write(Table::GeneralSettings, 0, {{"Speed", "90"}});
  database.AcceptWrites();
  loop.Advance(window::SettingsSaver::kTryAgain);
  database.RefuseWrites("no");
  saver.Write(Table::GeneralSettings, 0, {{"Speed", "91"}});
  loop.Yield();
  EXPECT_EQ(loop.Shown.size(), 2u);
}

TEST_F(SettingsSaverTest, ValueThatIsChangedBeforeTheNextTrialIsTheOneThatIsWritten) {
  database.RefuseWrites("no");
  saver.Write(Table::GeneralSettings, 0, {{"Speed", "90"}});
  database.AcceptWrites();
  saver.Write(Table::GeneralSettings, 0, {{"Speed", "110"}});
  loop.Advance(2 * window::SettingsSaver::kTryAgain);
  EXPECT_EQ(database.Value("Speed"), "110");
  EXPECT_EQ(database.Saves.size(), 1u);
}

}  // namespace
}  // namespace tavlo::test
