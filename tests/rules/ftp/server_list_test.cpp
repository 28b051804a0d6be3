#include "ftp/server_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/server_page_bench.h"

namespace tavlo::test {
namespace {

struct ServerListTest : testing::Test, ServerPageBench {
  ServerListTest() { form.frameFtp.Visible = true; }

  forms::Table& names = form.comboFtpServerNames;
  forms::Table& types = form.comboFtpFileTypesToList;
};

TEST_F(ServerListTest, HasTheNamesOfAllProfilesInTheirOrder) {
  Store(0, "FtpServerName", "ClinicNorth").Store(24, "FtpServerName", "Last");
  servers.BuildFtpServers();
  ASSERT_EQ(names.Rows().size(), 25u);
  EXPECT_EQ(names.TextAt(0, 0), "ClinicNorth");
  EXPECT_EQ(names.TextAt(1, 0), "Ftp2");
  EXPECT_EQ(names.TextAt(24, 0), "Last");
}

TEST_F(ServerListTest, ANameIsListedAsItStandsWhateverIsInIt) {
  Store(1, "FtpServerName", "' OR '1'='1")
      .Store(2, "FtpServerName", "")
      .Store(3, "FtpServerName", "two\r\nlines\x01");
  servers.BuildFtpServers();
  EXPECT_EQ(names.TextAt(1, 0), "' OR '1'='1");
  EXPECT_EQ(names.TextAt(2, 0), "");
  EXPECT_EQ(names.TextAt(3, 0), "two\r\nlines\x01");
  names.RowClick(1);
  ASSERT_TRUE(servers.Chosen());
}

TEST_F(ServerListTest, BuiltAgainItHasNothingTwice) {
  servers.BuildFtpServers();
  servers.BuildFtpServers();
  EXPECT_EQ(names.Rows().size(), 25u);
}

TEST_F(ServerListTest, ATableWithFewerRowsIsListedAsFarAsItGoes) {
  database.WithRows(store::Table::FtpSettings, 3);
  form.txtFtpServerSelection.Value = "2";
  servers.BuildFtpServers();
  EXPECT_EQ(Listed(), (std::vector<std::string>{"Ftp1", "Ftp2", "Ftp3"}));
  EXPECT_EQ(servers.ChosenName(), "Ftp3");
}

TEST_F(ServerListTest, ATableWithoutRowsHasNothingToChoose) {
  database.WithRows(store::Table::FtpSettings, 0);
  servers.BuildFtpServers();
  EXPECT_TRUE(names.Rows().empty());
  EXPECT_EQ(servers.ChosenName(), "");
  EXPECT_FALSE(servers.Chosen());
}

TEST_F(ServerListTest, PutsTheStoredChoiceBack) {
  form.txtFtpServerSelection.Value = "7";
  servers.BuildFtpServers();
  EXPECT_EQ(names.ListIndex, 7);
  EXPECT_EQ(servers.ChosenName(), "Ftp8");
  EXPECT_EQ(form.txtFtpServerSelection.Value.Get(), "7");
}

TEST_F(ServerListTest, AStoredNumberThatNoRowHasChoosesNoneAndIsKept) {
  for (const char* stored : {"25", "-1", "99999999999999999999", "-4000000000"}) {
    form.txtFtpServerSelection.Value = stored;
    servers.BuildFtpServers();
    EXPECT_EQ(names.ListIndex, -1) << stored;
    EXPECT_EQ(servers.ChosenName(), "") << stored;
    EXPECT_FALSE(servers.Chosen()) << stored;
    EXPECT_EQ(form.txtFtpServerSelection.Value.Get(), stored);
  }
}

TEST_F(ServerListTest, AStoredTextThatIsNoNumberIsTheFirstServer) {
  for (const char* stored : {"", "none", "../.."}) {
    form.txtFtpServerSelection.Value = stored;
    servers.BuildFtpServers();
    EXPECT_EQ(names.ListIndex, 0) << stored;
  }
}

TEST_F(ServerListTest, AChoiceIsStoredWithItsTypeOfFilesAndEndsTheMessage) {
  Store(3, "FtpListFileDefinition", "mp3 files");
  servers.BuildFtpServers();
  form.eMessage.Value = "Disconnected";
  form.eMessage.Tooltip = "Disconnected";
  names.RowClick(3);
  EXPECT_EQ(form.txtFtpServerSelection.Value.Get(), "3");
  EXPECT_EQ(types.TextAt(types.ListIndex, 0), "mp3 files");
  EXPECT_EQ(form.eMessage.Value.Get(), "");
  EXPECT_EQ(form.eMessage.Tooltip.Get(), "");
}

TEST_F(ServerListTest, ATypeOfFilesThatThereIsNotLeavesTheOneThatIsChosen) {
  Store(3, "FtpListFileDefinition", "Mp3 files").Store(4, "FtpListFileDefinition", "");
  servers.BuildFtpServers();
  types.ListIndex = 1;
  for (const int row : {3, 4}) {
    names.RowClick(row);
    EXPECT_EQ(types.ListIndex, 1) << row;
  }
}

TEST_F(ServerListTest, TheStoredServersTypeOfFilesIsTakenOnceThereAreTypes) {
  Store(2, "FtpListFileDefinition", "mp3 files");
  form.txtFtpServerSelection.Value = "2";
  types.Clear();
  servers.BuildFtpServers();
  types.Add("All files");
  types.Add("mp3 files");
  types.ListIndex = 0;
  servers.BuildFtpServers();
  EXPECT_EQ(types.ListIndex, 1);
}

TEST_F(ServerListTest, BuiltAgainItLeavesMessageAndTypeOfFilesToTheHandThatChoseThem) {
  servers.BuildFtpServers();
  types.ListIndex = 2;
  form.eMessage.Value = "Disconnected";
  servers.BuildFtpServers();
  EXPECT_EQ(types.ListIndex, 2);
  EXPECT_EQ(form.eMessage.Value.Get(), "Disconnected");
}

TEST_F(ServerListTest, AChoiceTakesItsTypeOfFilesThoughTheOneBeforeHadTheSame) {
  servers.BuildFtpServers();
  types.ListIndex = 2;
  names.RowClick(1);
  EXPECT_EQ(types.TextAt(types.ListIndex, 0), "All files");
}

TEST_F(ServerListTest, BuiltAgainWhileConnectedItLeavesEveryChoice) {
  form.txtFtpServerSelection.Value = "4";
  servers.BuildFtpServers();
  form.bConnect.Caption = "Disconnect";
  Store(4, "FtpListFileDefinition", "mp3 files").Store(4, "FtpServerName", "Renamed");
  servers.BuildFtpServers();
  EXPECT_EQ(names.ListIndex, 4);
  EXPECT_EQ(servers.ChosenName(), "Renamed");
  EXPECT_EQ(types.ListIndex, 0);
  form.bConnect.Caption = "Connect";
  servers.BuildFtpServers();
  EXPECT_EQ(types.TextAt(types.ListIndex, 0), "mp3 files");
}

TEST_F(ServerListTest, OfTwoProfilesWithOneNameTheFirstIsMeant) {
  Store(2, "FtpServerName", "Clinic").Store(2, "FtpServerID", "first.example");
  Store(5, "FtpServerName", "Clinic").Store(5, "FtpServerID", "second.example");
  servers.BuildFtpServers();
  names.RowClick(5);
  EXPECT_EQ(form.txtFtpServerSelection.Value.Get(), "5");
  ASSERT_TRUE(servers.Chosen());
  EXPECT_EQ(servers.Chosen()->address, "first.example");
}

TEST_F(ServerListTest, TheChosenProfileIsWhatWasSavedAndNotWhatStandsOnThePage) {
  Store(0, "FtpServerID", "ftps://clinic.example")
      .Store(0, "FtpServerUserID", "typist4")
      .Store(0, "FtpServerPassword", "secret")
      .Store(0, "FtpServerDir", "/outgoing")
      .Store(0, "FtpDeleteFileCheck", "-1")
      .Store(0, "FtpAutoListDownloadCheck", "-1")
      .Store(0, "FtpPassiveModeCheck", "0")
      .Store(0, "FtpParseGenericPointer", "3");
  ShowServers();
  config.eServer.Change("other.example");
  const std::optional<ftp::ServerProfile> chosen = servers.Chosen();
  ASSERT_TRUE(chosen);
  EXPECT_EQ(chosen->address, "ftps://clinic.example");
  EXPECT_EQ(chosen->user, "typist4");
  EXPECT_EQ(chosen->password, "secret");
  EXPECT_EQ(chosen->directory, "/outgoing");
  EXPECT_TRUE(chosen->deleteFiles);
  EXPECT_TRUE(chosen->autoListAndDownload);
  EXPECT_FALSE(chosen->passive);
  EXPECT_EQ(chosen->parseGenericPointer, "3");
}

TEST_F(ServerListTest, OnlyTheStoredTruthIsOne) {
  for (const char* stored : {"1", "Y", "true", "", "-10"}) {
    Store(0, "FtpDeleteFileCheck", stored).Store(0, "FtpPassiveModeCheck", stored);
    servers.BuildFtpServers();
    ASSERT_TRUE(servers.Chosen());
    EXPECT_FALSE(servers.Chosen()->deleteFiles) << stored;
    EXPECT_FALSE(servers.Chosen()->passive) << stored;
  }
}

TEST_F(ServerListTest, APointerIsTheNumberOfAnImportDirectoryOrTheirRoot) {
  struct Pointer {
    const char* stored;
    const char* taken;
  };
  for (const Pointer& pointer :
       {Pointer{"0", "0"}, Pointer{"1", "1"}, Pointer{"25", "25"}, Pointer{"26", ""},
        Pointer{"-1", ""}, Pointer{"100", ""}, Pointer{"", "0"}, Pointer{"07", "7"},
        Pointer{"../..", "0"}, Pointer{"7/../../../etc", "7"}, Pointer{"/etc", "0"},
        Pointer{"99999999999999999999", ""}}) {
    Store(0, "FtpParseGenericPointer", pointer.stored);
    servers.BuildFtpServers();
    ASSERT_TRUE(servers.Chosen());
    EXPECT_EQ(servers.Chosen()->parseGenericPointer, pointer.taken) << pointer.stored;
  }
}

TEST_F(ServerListTest, AProfileThatLacksAFieldHasItEmpty) {
  database.Without(store::Table::FtpSettings, "FtpServerDir")
      .Without(store::Table::FtpSettings, "FtpListFileDefinition");
  servers.BuildFtpServers();
  ASSERT_TRUE(servers.Chosen());
  EXPECT_EQ(servers.Chosen()->directory, "");
}

}  // namespace
}  // namespace tavlo::test
