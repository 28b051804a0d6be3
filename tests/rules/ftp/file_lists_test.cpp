#include "ftp/file_lists.h"

#include <gtest/gtest.h>

#include "support/ftp_bench.h"

namespace tavlo::test {
namespace {

using forms::By;
using Names = std::vector<std::string>;

struct FtpLists : testing::Test, FtpBench {
  void ListWith(const std::string& listing) {
    server.listing = listing;
    StartListed();
  }
  void Choose(const std::string& type) {
    for (int row = 0; row < static_cast<int>(form.comboFtpFileTypesToList.Rows().size()); ++row) {
      if (form.comboFtpFileTypesToList.TextAt(row, 0) == type) {
        form.comboFtpFileTypesToList.RowClick(row);
      }
    }
  }
  std::string ListCaption() const { return form.frameFtpFilename.Caption; }
  std::string DownloadCaption() const { return form.frameFtpDownloadList.Caption; }
};

TEST_F(FtpLists, ListWithoutALogInSaysNotConnected) {
  Start();
  form.bList.Press(By::Hand);
  EXPECT_EQ(Status(), "Not connected");
  EXPECT_EQ(ftp.calls, Names{});
}

TEST_F(FtpLists, EachLineIsAFileAndOneThatWasCutOffIsNotTaken) {
  ListWith("a.eW2\r\nb.mp3\r\nsub\r\ncut.o");
  EXPECT_EQ(Listed(), (Names{"a.eW2", "b.mp3", "sub"}));
  EXPECT_EQ(ListCaption(), "Files in list: 3");
  EXPECT_EQ(DownloadCaption(), "Files to download: 0");
  EXPECT_EQ(Status(), "List completed");
  EXPECT_EQ(form.eMessage.Tooltip.Get(), "List completed");
  EXPECT_TRUE(form.cmdFtpListToDownload.Enabled);
  EXPECT_TRUE(form.bList.Enabled);
  EXPECT_FALSE(form.bDownload.Enabled);
}

TEST_F(FtpLists, NoMoreThanTwentyFiveThousandCharactersAreTaken) {
  std::string listing;
  for (int i = 0; i < 3000; ++i) listing += "12345678\r\n";
  ListWith(listing);
  EXPECT_EQ(Listed().size(), 2500u);
  EXPECT_EQ(deck.Built()->ftp.channel.FtpListBuffer.size(), 25000u);
}

TEST_F(FtpLists, CarriageReturnsInARowMakeEmptyNamesAndNothingWorse) {
  ListWith("a\r\r\r\nb\r\n");
  EXPECT_EQ(Listed(), (Names{"a", "", "", "b"}));
}

TEST_F(FtpLists, EmptyDirectoryHasNoFilesAndMayBeListedAgain) {
  StartListed();
  EXPECT_EQ(Status(), "No files found");
  EXPECT_TRUE(form.bList.Enabled);
  EXPECT_FALSE(form.cmdFtpListToDownload.Enabled);
}

TEST_F(FtpLists, TypesAreToldByTheLastThreeLettersWhateverTheirCase) {
  EXPECT_TRUE(ftp::IsOfType("anything at all", "All files"));
  EXPECT_TRUE(ftp::IsOfType("A.EU2", "Orvane files"));
  EXPECT_TRUE(ftp::IsOfType("a.ew2", "Orvane files"));
  EXPECT_TRUE(ftp::IsOfType("a.Ds2", "Orvane files"));
  EXPECT_FALSE(ftp::IsOfType("a.wav", "Orvane files"));
  EXPECT_TRUE(ftp::IsOfType("a.WAV", "wav files"));
  EXPECT_TRUE(ftp::IsOfType("vox", "vox files"));
  EXPECT_FALSE(ftp::IsOfType("a.mp3", "wav files"));
}

TEST_F(FtpLists, NameOfLessThanThreeLettersIsOfNoTypeButAll) {
  for (const char* type : {"Orvane files", "eW2 files", "wav files", "vox files"}) {
    EXPECT_FALSE(ftp::IsOfType("av", type)) << type;
    EXPECT_FALSE(ftp::IsOfType("", type)) << type;
  }
  EXPECT_TRUE(ftp::IsOfType("av", "All files"));
}

TEST_F(FtpLists, ChosenTypeDecidesWhatIsListed) {
  server.files = {{"a.eW2", ""}, {"b.MP3", ""}, {"c.dS2", ""}, {"d.mp3", ""}};
  StartConnected();
  Choose("mp3 files");
  form.bList.Press(By::Hand);
  EXPECT_EQ(Listed(), (Names{"b.MP3", "d.mp3"}));
  Choose("Orvane files");
  form.bList.Press(By::Hand);
  EXPECT_EQ(Listed(), (Names{"a.eW2", "c.dS2"}));
}

TEST_F(FtpLists, ListingThatFailsOffersToConnectAndLeavesTheSessionOpen) {
  server.failsListings = true;
  StartListed();
  EXPECT_EQ(Status(), "The server does not list its files.");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
  EXPECT_TRUE(form.bConnect.Enabled);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_EQ(server.loggedIn, 1);
  EXPECT_TRUE(deck.Built()->ftp.channel.FtpConnected);
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(server.logIns, 2);
  EXPECT_EQ(server.loggedIn, 1);
  EXPECT_EQ(form.bConnect.Caption.Get(), "Disconnect");
}

TEST_F(FtpLists, AllFilesMoveToTheDownloadListAndBack) {
  server.files = {{"a.eW2", ""}, {"b.eW2", ""}};
  StartListed();
  form.cmdFtpListToDownload.Press(By::Hand);
  EXPECT_EQ(Listed(), Names{});
  EXPECT_EQ(ToDownload(), (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(ListCaption(), "Files in list: 0");
  EXPECT_EQ(DownloadCaption(), "Files to download: 2");
  EXPECT_FALSE(form.cmdFtpListToDownload.Enabled);
  EXPECT_TRUE(form.cmdFtpDownloadToList.Enabled && form.bDownload.Enabled &&
              form.eByteCount.Enabled && form.frameFtpDownloadList.Enabled);
  EXPECT_EQ(Status(), "");
  form.cmdFtpDownloadToList.Press(By::Hand);
  EXPECT_EQ(Listed(), (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(ListCaption(), "Files in list: 2");
  EXPECT_EQ(DownloadCaption(), "Files to download: 0");
  EXPECT_TRUE(form.cmdFtpListToDownload.Enabled);
  EXPECT_FALSE(form.cmdFtpDownloadToList.Enabled || form.bDownload.Enabled ||
               form.eByteCount.Enabled || form.frameFtpDownloadList.Enabled);
}

TEST_F(FtpLists, ClickMovesOneFileAndAnotherClickBringsItBack) {
  server.files = {{"a.eW2", ""}, {"b.eW2", ""}};
  StartListed();
  form.listFtpList.RowClick(1);
  EXPECT_EQ(Listed(), Names{"a.eW2"});
  EXPECT_EQ(ToDownload(), Names{"b.eW2"});
  EXPECT_EQ(Status(), "");
  EXPECT_TRUE(form.bDownload.Enabled);
  EXPECT_TRUE(form.cmdFtpListToDownload.Enabled);
  form.listFtpList.RowClick(0);
  EXPECT_FALSE(form.cmdFtpListToDownload.Enabled);
  EXPECT_EQ(DownloadCaption(), "Files to download: 2");
  form.listFtpDownloadList.RowClick(0);
  EXPECT_EQ(ToDownload(), Names{"a.eW2"});
  EXPECT_TRUE(form.cmdFtpListToDownload.Enabled);
  EXPECT_TRUE(form.bDownload.Enabled);
  form.listFtpDownloadList.RowClick(0);
  EXPECT_FALSE(form.bDownload.Enabled || form.cmdFtpDownloadToList.Enabled ||
               form.eByteCount.Enabled || form.frameFtpDownloadList.Enabled);
  EXPECT_EQ(Listed(), (Names{"b.eW2", "a.eW2"}));
}

TEST_F(FtpLists, NewListingEmptiesBothLists) {
  server.files = {{"a.eW2", ""}, {"b.eW2", ""}};
  StartListed();
  form.listFtpList.RowClick(0);
  form.bList.Press(By::Hand);
  EXPECT_EQ(Listed(), (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(ToDownload(), Names{});
  EXPECT_FALSE(form.bDownload.Enabled);
}

TEST_F(FtpLists, SayWhatToDoWhileTheyAreEmpty) {
  Start();
  EXPECT_TRUE(form.listFtpList.WhenEmpty.Get().starts_with("Not connected\n"));
  form.bConnect.Press(By::Hand);
  EXPECT_TRUE(form.listFtpList.WhenEmpty.Get().starts_with("Nothing is listed\n"));
  form.bConnect.Press(By::Hand);
  EXPECT_TRUE(form.listFtpList.WhenEmpty.Get().starts_with("Not connected\n"));
}

}  // namespace
}  // namespace tavlo::test
