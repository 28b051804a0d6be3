#include "ftp/server_profiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/server_page_bench.h"

namespace tavlo::test {
namespace {

using forms::By;
using ftp::CutServerName;
using window::ConfigurationExit;

struct ServerProfilesTest : testing::Test, ServerPageBench {
  const std::string& Name() const { return config.txtFtpName.Value; }
  const std::string& Protection() const { return config.lblFtpUnprotected.Value; }
};

TEST(ServerName, LettersAndDigitsPass) {
  EXPECT_EQ(CutServerName("ClinicNorth42"), "ClinicNorth42");
  EXPECT_EQ(CutServerName("AZaz09"), "AZaz09");
  EXPECT_EQ(CutServerName(""), "");
}

TEST(ServerName, ABadLastKeyIsTheOneThatGoes) {
  for (const char bad : std::string("@[`{/: '-_\x7f\t")) {
    EXPECT_EQ(CutServerName(std::string("Clinic") + bad), "Clinic") << static_cast<int>(bad);
  }
}

TEST(ServerName, ABlankInTheMiddleCostsTheEndAndStays) {
  // The blank costs the last letter, and so does the position that the text lost by it.
  EXPECT_EQ(CutServerName("ab cd"), "ab ");
  EXPECT_EQ(CutServerName("My Clinic"), "My Clin");
}

TEST(ServerName, EachBadCharacterCostsOneOfTheEnd) {
  EXPECT_EQ(CutServerName(" a"), "");
  EXPECT_EQ(CutServerName("a b c d"), "a b");
  EXPECT_EQ(CutServerName("    "), "");
}

TEST(ServerName, ACharacterIsCutAsAWhole) {
  EXPECT_EQ(CutServerName("Klinik\xC3\xA9"), "Klinik");
  EXPECT_EQ(CutServerName("Z\xC3\xBCrich"), "Z\xC3\xBCri");
  EXPECT_EQ(CutServerName("Clinic\xFF"), "Clinic");
}

TEST(ServerName, IsNeverLongerThanAByteCanTell) {
  EXPECT_EQ(CutServerName(std::string(255, 'n')), std::string(255, 'n'));
  EXPECT_EQ(CutServerName(std::string(300, 'n')), std::string(255, 'n'));
  EXPECT_EQ(CutServerName(std::string(100'000, ' ')), "");
}

TEST_F(ServerProfilesTest, ANameTypedKeyByKeyLosesTheBadKey) {
  ShowServers();
  config.txtFtpName.Change("Clinic");
  config.txtFtpName.Change("Clinic ");
  EXPECT_EQ(Name(), "Clinic");
}

TEST_F(ServerProfilesTest, APastedNameKeepsItsBlankUntilALaterChange) {
  ShowServers();
  config.txtFtpName.Change("ab cd");
  EXPECT_EQ(Name(), "ab ");
  config.txtFtpName.Change("ab c");
  EXPECT_EQ(Name(), "ab");
}

TEST_F(ServerProfilesTest, ADeletedNameBecomesFtpAndTheNumber) {
  ShowServers();
  config.cmdFtpNext.Press(By::Hand);
  config.txtFtpName.Change("");
  EXPECT_EQ(Name(), "Ftp2");
}

TEST_F(ServerProfilesTest, AStoredProfileWithoutANameIsNamedAfterItsNumber) {
  Store(0, "FtpServerName", "").Store(1, "FtpServerName", "");
  ShowServers();
  EXPECT_EQ(Name(), "Ftp1");
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(Name(), "Ftp2");
}

TEST_F(ServerProfilesTest, AChangedNameBuildsTheListOfServersFromWhatIsSaved) {
  ShowServers();
  Store(9, "FtpServerName", "Elsewhere");
  config.txtFtpName.Change("Clinic");
  EXPECT_EQ(Listed()[9], "Elsewhere");
  EXPECT_EQ(Listed()[0], "Ftp1");
}

TEST_F(ServerProfilesTest, AStepSavesTheProfileThatIsLeftThoughNothingChanged) {
  ShowServers();
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(Saves(), 1u);
  EXPECT_EQ(database.Saves.back().row, 0);
}

TEST_F(ServerProfilesTest, AStepSavesWhatWasTypedInItsOrderAndBuildsTheList) {
  ShowServers();
  config.txtFtpName.Change("ClinicNorth");
  config.eServer.Change("clinic.example");
  config.eUser.Change("typist4");
  config.ePass.Change("p w");
  config.eServerDir.Change("/outgoing");
  config.chkFtpFileDeleteMode.Click();
  config.chkFtpAutoListAndDownload.Click();
  config.chkFtpPassiveMode.Click();
  config.comboAuthorLastName.RowClick(6);
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(database.Saves.back().fields, (store::Assignments{{"FtpServerName", "ClinicNorth"},
                                                              {"FtpServerID", "clinic.example"},
                                                              {"FtpServerUserID", "typist4"},
                                                              {"FtpServerPassword", "p w"},
                                                              {"FtpServerDir", "/outgoing"},
                                                              {"FtpDeleteFileCheck", "-1"},
                                                              {"FtpAutoListDownloadCheck", "-1"},
                                                              {"FtpPassiveModeCheck", "0"},
                                                              {"FtpParseGenericPointer", "6"}}));
  EXPECT_EQ(Listed()[0], "ClinicNorth");
  EXPECT_EQ(config.eUser.Value.Get(), "");
  EXPECT_EQ(config.ePass.Value.Get(), "");
}

TEST_F(ServerProfilesTest, TheFourKeysStepOverAllProfilesAndNameTheOneThatShows) {
  ShowServers();
  const std::string& caption = config.dataFtpSettings.Caption.Get();
  EXPECT_EQ(caption, "1");
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(caption, "2");
  config.cmdFtpLast.Press(By::Hand);
  EXPECT_EQ(caption, "25");
  EXPECT_EQ(Name(), "Ftp25");
  config.cmdFtpPrevious.Press(By::Hand);
  EXPECT_EQ(caption, "24");
  config.cmdFtpFirst.Press(By::Hand);
  EXPECT_EQ(caption, "1");
  EXPECT_EQ(Name(), "Ftp1");
}

TEST_F(ServerProfilesTest, BeyondBothEndsThereIsNothingToStepTo) {
  ShowServers();
  EXPECT_FALSE(config.cmdFtpFirst.Enabled);
  EXPECT_FALSE(config.cmdFtpPrevious.Enabled);
  EXPECT_TRUE(config.cmdFtpNext.Enabled);
  config.cmdFtpPrevious.Press(By::Hand);
  EXPECT_EQ(Saves(), 0u);
  config.cmdFtpLast.Press(By::Hand);
  EXPECT_FALSE(config.cmdFtpNext.Enabled);
  EXPECT_FALSE(config.cmdFtpLast.Enabled);
  EXPECT_TRUE(config.cmdFtpPrevious.Enabled);
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(server.Row(), 24);
}

TEST_F(ServerProfilesTest, ATableWithFewerRowsEndsWithItsLastOne) {
  database.WithRows(store::Table::FtpSettings, 2);
  ShowServers();
  config.cmdFtpLast.Press(By::Hand);
  EXPECT_EQ(server.Row(), 1);
  EXPECT_FALSE(config.cmdFtpNext.Enabled);
}

TEST_F(ServerProfilesTest, AStepThatCanNotSaveIsToldOnceAndTheTextComesBackWithItsProfile) {
  ShowServers();
  database.RefuseWrites("The disk is full.");
  config.ePass.Change("secret");
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(server.Row(), 1);
  EXPECT_EQ(config.ePass.Value.Get(), "");
  config.cmdFtpPrevious.Press(By::Hand);
  EXPECT_EQ(config.ePass.Value.Get(), "secret");
  loop.Yield();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].text.find("secret"), std::string::npos);
}

TEST_F(ServerProfilesTest, EachKeyAndBoxGivesTheKeyboardAway) {
  ShowServers();
  for (forms::Command* const key :
       {&config.cmdFtpNext, &config.cmdFtpLast, &config.cmdFtpPrevious, &config.cmdFtpFirst,
        &config.cmdFtpClear, &config.cmdFtpMemorize, &config.cmdFtpClone}) {
    config.frmConfiguration.FocusOn(config.eServer);
    key->Press(By::Hand);
    EXPECT_TRUE(PageGaveKeyboardAway()) << key->Name;
  }
  for (forms::Choice* const box : {&config.chkFtpFileDeleteMode, &config.chkFtpAutoListAndDownload,
                                   &config.chkFtpPassiveMode}) {
    box->Click();
    EXPECT_TRUE(PageGaveKeyboardAway()) << box->Name;
  }
}

TEST_F(ServerProfilesTest, ClearEmptiesTheProfileButForItsNumber) {
  ShowServers();
  config.cmdFtpNext.Press(By::Hand);
  for (forms::Text* const box :
       {&config.eServer, &config.eUser, &config.ePass, &config.eServerDir}) {
    box->Change("something");
  }
  config.chkFtpFileDeleteMode.Click();
  config.chkFtpAutoListAndDownload.Click();
  config.chkFtpPassiveMode.Click();
  config.comboAuthorLastName.RowClick(6);
  config.txtFtpName.Change("Clinic");
  config.cmdFtpClear.Press(By::Hand);
  EXPECT_EQ(Name(), "Ftp2");
  for (const forms::Text* const box :
       {&config.eServer, &config.eUser, &config.ePass, &config.eServerDir}) {
    EXPECT_EQ(box->Value.Get(), "") << box->Name;
  }
  EXPECT_FALSE(config.chkFtpFileDeleteMode.Value);
  EXPECT_FALSE(config.chkFtpAutoListAndDownload.Value);
  EXPECT_TRUE(config.chkFtpPassiveMode.Value);
  EXPECT_EQ(config.txtFtpParseGenericPointer.Value.Get(), "1");
  EXPECT_EQ(config.comboAuthorLastName.ListIndex, 1);
}

TEST_F(ServerProfilesTest, AClearedPasswordIsStoredUntilTheNextSave) {
  Store(0, "FtpServerPassword", "secret");
  ShowServers();
  config.cmdFtpClear.Press(By::Hand);
  EXPECT_EQ(Stored(0, "FtpServerPassword"), "secret");
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(Stored(0, "FtpServerPassword"), "");
}

TEST_F(ServerProfilesTest, NothingIsClonedBeforeSomethingWasMemorized) {
  ShowServers();
  EXPECT_FALSE(config.cmdFtpClone.Enabled);
  config.eServer.Change("clinic.example");
  config.cmdFtpClone.Press(By::Hand);
  EXPECT_EQ(config.eServer.Value.Get(), "clinic.example");
}

TEST_F(ServerProfilesTest, CloneWritesTheNineValuesIntoTheProfileThatShows) {
  Store(0, "FtpServerName", "Clinic")
      .Store(0, "FtpServerID", "clinic.example")
      .Store(0, "FtpServerUserID", "typist4")
      .Store(0, "FtpServerPassword", "secret")
      .Store(0, "FtpServerDir", "/outgoing")
      .Store(0, "FtpAutoListDownloadCheck", "-1")
      .Store(0, "FtpPassiveModeCheck", "0")
      .Store(0, "FtpDeleteFileCheck", "-1")
      .Store(0, "FtpParseGenericPointer", "9");
  ShowServers();
  config.cmdFtpMemorize.Press(By::Hand);
  EXPECT_TRUE(config.cmdFtpClone.Enabled);
  config.cmdFtpLast.Press(By::Hand);
  config.cmdFtpClone.Press(By::Hand);
  EXPECT_EQ(Stored(24, "FtpServerID"), "");
  EXPECT_EQ(config.dataFtpSettings.Caption.Get(), "25");
  config.cmdFtpFirst.Press(By::Hand);
  for (const char* field : {"FtpServerName", "FtpServerID", "FtpServerUserID", "FtpServerPassword",
                            "FtpServerDir", "FtpAutoListDownloadCheck", "FtpPassiveModeCheck",
                            "FtpDeleteFileCheck", "FtpParseGenericPointer"}) {
    EXPECT_EQ(Stored(24, field), Stored(0, field)) << field;
  }
  EXPECT_EQ(Stored(24, "ID"), "25");
}

TEST_F(ServerProfilesTest, WhatWasMemorizedStaysAsItWasAndServesAgain) {
  ShowServers();
  config.eServer.Change("clinic.example");
  config.cmdFtpMemorize.Press(By::Hand);
  config.eServer.Change("other.example");
  config.cmdFtpClone.Press(By::Hand);
  EXPECT_EQ(config.eServer.Value.Get(), "clinic.example");
  config.cmdFtpNext.Press(By::Hand);
  config.cmdFtpClone.Press(By::Hand);
  EXPECT_EQ(config.eServer.Value.Get(), "clinic.example");
}

TEST_F(ServerProfilesTest, OpeningListsTheAuthorsAndTheOneThatIsLinked) {
  database.With(store::Table::ImportAuthors, "AuthorLastName", "Okafor", 4);
  Store(0, "FtpParseGenericPointer", "4");
  ShowServers();
  ASSERT_EQ(config.comboAuthorLastName.Rows().size(), 26u);
  EXPECT_EQ(config.comboAuthorLastName.TextAt(4, 0), "Okafor");
  EXPECT_EQ(config.comboAuthorLastName.ListIndex, 4);
  database.With(store::Table::ImportAuthors, "AuthorLastName", "Haddad", 4);
  page.WindowOpens();
  EXPECT_EQ(config.comboAuthorLastName.TextAt(4, 0), "Haddad");
  EXPECT_EQ(config.txtFtpParseGenericPointer.Value.Get(), "4");
}

TEST_F(ServerProfilesTest, AChosenAuthorIsStoredByItsListIndex) {
  ShowServers();
  config.comboAuthorLastName.RowClick(25);
  EXPECT_EQ(config.txtFtpParseGenericPointer.Value.Get(), "25");
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(config.comboAuthorLastName.ListIndex, 1);
  config.cmdFtpPrevious.Press(By::Hand);
  EXPECT_EQ(config.comboAuthorLastName.ListIndex, 25);
}

TEST_F(ServerProfilesTest, ALinkToNobodyShowsNobodyInsteadOfTheProfileBefore) {
  Store(1, "FtpParseGenericPointer", "26").Store(2, "FtpParseGenericPointer", "-1");
  Store(3, "FtpParseGenericPointer", "");
  ShowServers();
  for (const char* pointer : {"26", "-1", ""}) {
    config.txtFtpParseGenericPointer.Value = "5";
    config.cmdFtpNext.Press(By::Hand);
    EXPECT_EQ(config.txtFtpParseGenericPointer.Value.Get(), pointer);
    EXPECT_EQ(config.comboAuthorLastName.ListIndex, -1) << pointer;
  }
}

TEST_F(ServerProfilesTest, ClosingByTheMenuSavesAndBuildsTheList) {
  ShowServers();
  config.txtFtpName.Change("Clinic");
  page.WindowCloses(ConfigurationExit::ByMenu);
  EXPECT_EQ(Stored(0, "FtpServerName"), "Clinic");
  EXPECT_EQ(Listed()[0], "Clinic");
}

TEST_F(ServerProfilesTest, ClosingByTheFrameSavesNothingAndKeepsWhatWasTyped) {
  ShowServers();
  config.eUser.Change("typist4");
  page.WindowCloses(ConfigurationExit::ByFrame);
  EXPECT_EQ(Saves(), 0u);
  page.WindowOpens();
  EXPECT_EQ(config.eUser.Value.Get(), "typist4");
}

TEST_F(ServerProfilesTest, AProfileThatNeverShowedIsNotSaved) {
  database.WithRows(store::Table::FtpSettings, 0);
  ShowServers();
  page.WindowCloses(ConfigurationExit::ByMenu);
  config.cmdFtpNext.Press();
  config.cmdFtpLast.Press();
  EXPECT_EQ(Saves(), 0u);
}

TEST_F(ServerProfilesTest, TheLineUnderAPlainAddressWarns) {
  ShowServers();
  for (const char* address : {"clinic.example", "ftp://clinic.example", "192.0.2.7:2121"}) {
    config.eServer.Change(address);
    EXPECT_EQ(Protection(), "The password travels unprotected; ask for ftps:// or ftpes://.")
        << address;
    EXPECT_TRUE(config.lblFtpUnprotected.Warns) << address;
  }
}

TEST_F(ServerProfilesTest, TheLineUnderAProtectedAddressSaysSo) {
  ShowServers();
  for (const char* address : {"ftps://clinic.example", "FTPES://clinic.example/"}) {
    config.eServer.Change(address);
    EXPECT_EQ(Protection(), "The password and the files travel protected.") << address;
    EXPECT_FALSE(config.lblFtpUnprotected.Warns) << address;
  }
}

TEST_F(ServerProfilesTest, TheLineUnderWhatIsNoAddressSaysThat) {
  ShowServers();
  for (const char* address : {"http://clinic.example", "two words", "ftps://", " "}) {
    config.eServer.Change(address);
    EXPECT_EQ(Protection(), "This address can not be read; ftp.example.com would be one.")
        << address;
    EXPECT_TRUE(config.lblFtpUnprotected.Warns) << address;
  }
}

TEST_F(ServerProfilesTest, NoAddressNeedsNoLine) {
  Store(0, "FtpServerID", "clinic.example");
  ShowServers();
  EXPECT_NE(Protection(), "");
  config.cmdFtpNext.Press(By::Hand);
  EXPECT_EQ(Protection(), "");
  EXPECT_FALSE(config.lblFtpUnprotected.Warns);
}

}  // namespace
}  // namespace tavlo::test
