#include <gtest/gtest.h>

#include "support/ftp_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using Names = std::vector<std::string>;

struct FtpDownload : testing::Test, FtpBench {
  /// Begins to fetch all that is listed.
  void Begin(const store::Assignments& more = {}) {
    StartListed(more);
    form.cmdFtpListToDownload.Press(By::Hand);
    form.bDownload.Press(By::Hand);
  }
  std::string ByteCount() const { return form.eByteCount.Value; }
  base::Timer& Tick() { return deck.Built()->ftp.download.tmrFtpDownload; }
  const std::string& Receiving() { return deck.Built()->receiving.name; }
};

TEST_F(FtpDownload, FilesOfMixedKindsAreSortedWhereTheyBelong) {
  server.files = {
      {"a.eW2", "sound a"}, {"b.dS2", "sound b"}, {"c.eU2", "sound c"}, {"note.mp3", "sound d"}};
  StartListed({{"FtpParseGenericPointer", "3"}});
  DownloadAll();
  EXPECT_EQ(server.sent, (Names{"a.eW2", "b.dS2", "c.eU2", "note.mp3"}));
  EXPECT_TRUE(disk.Has(Path("/Files/eW2Queue/a.eW2")));
  EXPECT_TRUE(disk.Has(Path("/Files/dS2Queue/b.dS2")));
  EXPECT_TRUE(disk.Has(Path("/Files/eU2Queue/c.eU2")));
  const Names imported = disk.NamesIn(Path("/Files/ImportQueue/3"));
  ASSERT_EQ(imported.size(), 1u);
  EXPECT_TRUE(imported[0].starts_with("note_") && imported[0].ends_with(".mp3")) << imported[0];
  EXPECT_EQ(disk.NamesIn(Path("/Files/FtpQueue")), Names{});
}

TEST_F(FtpDownload, RunDisconnectsBehindItsLastFile) {
  server.files = {{"a.eW2", "sound a"}};
  Begin();
  EXPECT_EQ(form.bDownload.Caption.Get(), "Halt");
  EXPECT_FALSE(form.bConnect.Enabled || form.bList.Enabled || form.cmdFtpDownloadToList.Enabled ||
               form.comboFtpFileTypesToList.Enabled || form.frameFtpFilename.Enabled);
  loop.Advance(5s);
  EXPECT_EQ(Status(), "Disconnected after download completed");
  EXPECT_EQ(form.frameFtpDownloadList.Caption.Get(), "Files: 0");
  EXPECT_EQ(form.frameFtpFilename.Caption.Get(), "Files in list: 0");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
  EXPECT_EQ(form.bDownload.Caption.Get(), "Download");
  EXPECT_FALSE(form.bDownload.Enabled);
  EXPECT_FALSE(Tick().Enabled());
  EXPECT_EQ(server.loggedIn, 0);
}

TEST_F(FtpDownload, LengthAndNameAreSaidBeforeAFileComes) {
  server.files = {{"a.eW2", std::string(1234, 'a')}};
  StartListed();
  form.cmdFtpListToDownload.Press(By::Hand);
  Names said;
  ftp.Meanwhile = [&] { said.push_back(Status()); };
  form.bDownload.Press(By::Hand);
  EXPECT_EQ(said, (Names{"", "Downloading a.eW2"}));
  EXPECT_EQ(deck.Built()->ftp.channel.FtpFileLength, 1234);
}

TEST_F(FtpDownload, LengthIsSaidWithTheBlankOfItsNumber) {
  server.files = {{"a.eW2", std::string(1234, 'a')}};
  ftp.server.refused = {"a.eW2"};
  StartListed();
  form.cmdFtpListToDownload.Press(By::Hand);
  // The status box has the length until the name follows it at once, so its change is watched.
  Names said;
  form.eMessage.OnChange = [&] { said.push_back(Status()); };
  form.bDownload.Press(By::Hand);
  ASSERT_GE(said.size(), 2u);
  EXPECT_EQ(said[0], "File length =  1234");
  EXPECT_EQ(said[1], "Downloading a.eW2");
}

TEST_F(FtpDownload, ByteCountTellsBytesAndPercent) {
  server.files = {{"a.eW2", std::string(1'000'000, 'a')}};
  server.bytesPerSecond = 1'000'000;
  Begin();
  loop.Advance(500ms);
  EXPECT_TRUE(ByteCount().starts_with(" ")) << ByteCount();
  EXPECT_NE(ByteCount().find(" bytes  4"), std::string::npos) << ByteCount();
  EXPECT_TRUE(ByteCount().ends_with("%")) << ByteCount();
  EXPECT_TRUE(Tick().Enabled());
}

TEST_F(FtpDownload, FileThatComesAtOnceIsDoneInItsFirstTickAndCountsWhole) {
  server.files = {{"a.eW2", "12345"}, {"b.eW2", std::string(500'000, 'b')}};
  Begin();
  Names said;
  form.eMessage.OnChange = [&] { said.push_back(Status()); };
  loop.Advance(55ms);
  ASSERT_FALSE(said.empty());
  EXPECT_EQ(said[0], " 5 bytes  100% transfered.");
  EXPECT_EQ(ToDownload(), Names{"b.eW2"});
  EXPECT_EQ(form.frameFtpDownloadList.Caption.Get(), "Files: 1");
  EXPECT_EQ(form.bDownload.Caption.Get(), "Halt");
}

TEST_F(FtpDownload, UnknownLengthShowsBytesAndNoPercent) {
  server.files = {{"a.eW2", std::string(1'000'000, 'a')}};
  server.tellsLengths = false;
  Begin();
  loop.Advance(200ms);
  EXPECT_TRUE(ByteCount().ends_with(" bytes")) << ByteCount();
  EXPECT_EQ(deck.Built()->ftp.channel.FtpFileLength, 0);
}

TEST_F(FtpDownload, HaltStopsBehindTheFileThatIsUnderWay) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}, {"b.eW2", "b"}, {"c.eW2", "c"}};
  Begin();
  loop.Advance(100ms);
  form.bDownload.Press(By::Hand);
  EXPECT_EQ(Status(), "Download will be halted after the current transfer completes");
  EXPECT_FALSE(form.bDownload.Enabled);
  EXPECT_EQ(form.bDownload.Caption.Get(), "Halt");
  loop.Advance(5s);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
  EXPECT_EQ(Status(), "Download halted");
  EXPECT_EQ(ToDownload(), (Names{"b.eW2", "c.eW2"}));
  EXPECT_EQ(form.bDownload.Caption.Get(), "Download");
  EXPECT_TRUE(form.bDownload.Enabled && form.cmdFtpDownloadToList.Enabled &&
              form.bConnect.Enabled && form.bList.Enabled && form.comboFtpFileTypesToList.Enabled &&
              form.frameFtpFilename.Enabled && form.frameFtpDownloadList.Enabled);
  EXPECT_FALSE(form.eByteCount.Enabled);
  form.bDownload.Press(By::Hand);
  loop.Advance(5s);
  EXPECT_EQ(server.sent, (Names{"a.eW2", "b.eW2", "c.eW2"}));
}

TEST_F(FtpDownload, HaltInTheLastFileEndsWithHaltedAndStaysConnected) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}};
  Begin();
  loop.Advance(100ms);
  form.bDownload.Press(By::Hand);
  loop.Advance(5s);
  EXPECT_EQ(Status(), "Download halted");
  EXPECT_FALSE(form.bDownload.Enabled);
  EXPECT_FALSE(form.cmdFtpDownloadToList.Enabled);
  EXPECT_EQ(server.loggedIn, 1);
  EXPECT_EQ(form.bConnect.Caption.Get(), "Disconnect");
}

TEST_F(FtpDownload, HaltThatIsPressedWhileTheServerIsAskedCounts) {
  server.files = {{"a.eW2", "a"}, {"b.eW2", "b"}};
  StartListed();
  form.cmdFtpListToDownload.Press(By::Hand);
  ftp.Meanwhile = [&] {
    if (form.bDownload.Enabled) form.bDownload.Press(By::Hand);
  };
  form.bDownload.Press(By::Hand);
  loop.Advance(5s);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
  EXPECT_EQ(Status(), "Download halted");
  EXPECT_EQ(ftp.misuses, Names{});
}

TEST_F(FtpDownload, FilesAreDeletedOnTheServerOnceTheyAreWholeAndNeverBefore) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}, {"b.eW2", "b"}};
  Begin({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(400ms);
  EXPECT_EQ(server.deleted, Names{});
  loop.Advance(5s);
  EXPECT_EQ(server.deleted, (Names{"a.eW2", "b.eW2"}));
}

TEST_F(FtpDownload, NothingIsDeletedOnTheServerWhereTheProfileDoesNotSaySo) {
  server.files = {{"a.eW2", "a"}};
  StartListed();
  DownloadAll();
  EXPECT_EQ(server.deleted, Names{});
}

TEST_F(FtpDownload, DeleteThatFailsDoesNotStopTheRun) {
  server.files = {{"a.eW2", "a"}, {"b.eW2", "b"}};
  server.refusesDeletes = true;
  StartListed({{"FtpDeleteFileCheck", "-1"}});
  DownloadAll();
  EXPECT_EQ(server.sent, (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(Status(), "Disconnected after download completed");
}

TEST_F(FtpDownload, ClickOnTheDownloadListIsIgnoredInARun) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}, {"b.eW2", "b"}};
  Begin();
  form.listFtpDownloadList.RowClick(1);
  form.cmdFtpDownloadToList.Enabled = true;
  form.cmdFtpDownloadToList.Press(By::Hand);
  EXPECT_EQ(ToDownload(), (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(Listed(), Names{});
}

TEST_F(FtpDownload, FileThatIsRefusedEndsTheRunWithItsReasonAndHaltOnTheKey) {
  server.files = {{"a.eW2", "a"}, {"b.eW2", "b"}};
  server.refused = {"a.eW2"};
  Begin();
  EXPECT_EQ(Status(), "The server does not send this file.");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
  EXPECT_TRUE(form.bConnect.Enabled);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_EQ(form.bDownload.Caption.Get(), "Halt");
  EXPECT_FALSE(Tick().Enabled());
  EXPECT_EQ(Receiving(), "");
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(Status(), "Connected");
  EXPECT_EQ(form.bDownload.Caption.Get(), "Download");
}

TEST_F(FtpDownload, NameThatIsNotInTheListingLeavesTheRunStuck) {
  server.files = {{"a.eW2", "a"}};
  StartListed();
  form.cmdFtpListToDownload.Press(By::Hand);
  deck.Built()->ftp.channel.FtpListBuffer = "b.eW2\r\n";
  form.bDownload.Press(By::Hand);
  EXPECT_EQ(Status(), "No files available that meet the file definition");
  EXPECT_EQ(form.bDownload.Caption.Get(), "Halt");
  EXPECT_FALSE(form.bConnect.Enabled || form.bList.Enabled || Tick().Enabled());
  form.bDownload.Press(By::Hand);
  EXPECT_TRUE(deck.Built()->ftp.channel.FtpHaltRequested);
  loop.Advance(60s);
  EXPECT_FALSE(form.bConnect.Enabled);
}

TEST_F(FtpDownload, LostConnectionLeavesTheViewDeadUntilTheNextStart) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}, {"b.eW2", "b"}};
  server.breaksAfter = 1000;
  Begin({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(5s);
  EXPECT_EQ(Status(), "Connection lost.  To ftp again please restart the Tavlo Deck");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
  EXPECT_FALSE(form.bConnect.Enabled || form.bDownload.Enabled || form.mnuViewFtp.Enabled);
  EXPECT_EQ(form.bDownload.Caption.Get(), "Download");
  EXPECT_TRUE(form.mnuFile.Enabled && form.mnuView.Enabled);
  EXPECT_FALSE(Tick().Enabled());
  EXPECT_EQ(server.deleted, Names{});
  EXPECT_EQ(Receiving(), "");
}

TEST_F(FtpDownload, PartThatCameStaysAndIsSortedLikeAnyOtherFileAndTheQuietLineTells) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}};
  server.breaksAfter = 1000;
  Begin();
  loop.Advance(5s);
  EXPECT_EQ(disk.Contents(Path("/Files/eW2Queue/a.eW2")), std::string(1000, 'a'));
  EXPECT_EQ(form.lblNotice.Value.Get(), "a.eW2 was not received whole.");
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_TRUE(disk.Has(InQueue() + "a.wav"));
}

TEST_F(FtpDownload, NoPassTakesAFileThatIsStillComing) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}};
  Begin();
  loop.Advance(200ms);
  ASSERT_TRUE(disk.Has(Landing("a.eW2")));
  EXPECT_EQ(Receiving(), "a.eW2");
  deck.Built()->retrieval.RunRetrievalPasses();
  EXPECT_TRUE(disk.Has(Landing("a.eW2")));
  loop.Advance(5s);
  EXPECT_EQ(disk.Contents(Path("/Files/eW2Queue/a.eW2")), std::string(500'000, 'a'));
}

TEST_F(FtpDownload, WhatStandsAtTheLandingNameIsKept) {
  server.files = {{"a.eW2", "new"}};
  StartListed();
  disk.WithFile(Landing("a.eW2"), "unheard");
  DownloadAll();
  EXPECT_EQ(disk.Contents(Path("/Files/eW2Queue/a.eW2")), "new");
  ASSERT_EQ(disk.FilesHolding("unheard").size(), 1u);
  EXPECT_NE(disk.FilesHolding("unheard")[0].find("/Rescued/"), std::string::npos);
}

TEST_F(FtpDownload, FileThatIsStillWrittenAtTheLandingNameStaysWhereItsWriterHasIt) {
  server.files = {{"a.eW2", "new"}};
  StartListed();
  disk.WithFile(Landing("a.eW2"), "half of ano");
  disk.OpenWriter(Landing("a.eW2"));
  DownloadAll();
  EXPECT_EQ(Status(), "a.eW2 can not land: a program still writes what stands there.");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
  EXPECT_EQ(disk.FilesHolding("half of ano"), Names{Landing("a.eW2")});
  EXPECT_EQ(server.sent, Names{});
}

TEST_F(FtpDownload, FolderAtTheLandingNameIsToldAndStays) {
  server.files = {{"a.eW2", "new"}};
  StartListed();
  disk.WithFolder(Landing("a.eW2"));
  DownloadAll();
  EXPECT_EQ(Status(), "a.eW2 can not land: what stands there is no file.");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
  EXPECT_EQ(server.sent, Names{});
}

TEST_F(FtpDownload, NameThatWouldLeadOutOfTheFolderLandsUnderAHarmlessOne) {
  server.files = {{"../../a.eW2", "sound a"}};
  Begin();
  EXPECT_EQ(Status(), "../../a.eW2 lands as _._.._a.eW2: its name has a separator in it.");
  loop.Advance(5s);
  EXPECT_EQ(disk.FilesHolding("sound a"), Names{Path("/Files/eW2Queue/_._.._a.eW2")});
}

TEST_F(FtpDownload, NameWithALineBreakIsListedAndRefusedAndTheOthersCome) {
  server.listing = "a\nb.eW2\r\nc.eW2\r\n";
  server.files = {{"c.eW2", "sound c"}};
  StartListed();
  EXPECT_EQ(Listed().size(), 2u);
  DownloadAll();
  EXPECT_EQ(server.sent, Names{"c.eW2"});
  EXPECT_EQ(Status(), "Disconnected after download completed");
  for (const std::string& call : ftp.calls) EXPECT_EQ(call.find('\n'), std::string::npos) << call;
}

TEST_F(FtpDownload, NameThatIsRefusedLeavesTheCount) {
  server.listing = "a\nb.eW2\r\nc.eW2\r\nd.eW2\r\n";
  Begin();
  EXPECT_EQ(Status(), "The server does not send this file.");
  EXPECT_EQ(ToDownload(), (Names{"c.eW2", "d.eW2"}));
  EXPECT_EQ(form.frameFtpDownloadList.Caption.Get(), "Files: 2");
}

TEST_F(FtpDownload, ListOfNothingButRefusedNamesEndsLikeARun) {
  server.listing = "a\nb.eW2\r\n";
  StartListed();
  DownloadAll();
  EXPECT_EQ(Status(), "Disconnected after download completed");
  EXPECT_EQ(form.bDownload.Caption.Get(), "Download");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
}

TEST_F(FtpDownload, LengthBeyondThirtyTwoBitsHasItsPercent) {
  server.files = {{"a.eW2", "a"}};
  StartListed();
  form.cmdFtpListToDownload.Press(By::Hand);
  form.bDownload.Press(By::Hand);
  // A hundred times what has come, and the length itself, are beyond them, too.
  ftp.movedBefore = 3'000'000'000;
  deck.Built()->ftp.channel.FtpFileLength = 5'000'000'000;
  Names said;
  form.eMessage.OnChange = [&] { said.push_back(Status()); };
  loop.Advance(55ms);
  ASSERT_FALSE(said.empty());
  EXPECT_EQ(said[0], " 3000000001 bytes  60% transfered.");
}

TEST_F(FtpDownload, EmptyNamesOfAListingAreRefusedAndTheOthersCome) {
  server.listing = "a.eW2\r\r\nb.eW2\r\r\n\r\n";
  server.files = {{"a.eW2", "sound a"}, {"b.eW2", "sound b"}};
  StartListed();
  DownloadAll();
  EXPECT_EQ(server.sent, (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(Status(), "Disconnected after download completed");
  EXPECT_EQ(form.lblNotice.Value.Get(), "A file is not fetched: its name has no character.");
}

TEST_F(FtpDownload, FileThatItsAuthorStillSendsEndsTheRunAndNotTheView) {
  server.files = {{"a.eW2", "sound a"}, {"b.eW2", "sound b"}};
  server.growing = "a.eW2";
  Begin({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(5s);
  EXPECT_EQ(Status(), "The file is longer than the server said.");
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "a.eW2 was not received whole. The file is longer than the server said.");
  EXPECT_EQ(server.deleted, Names{});
  EXPECT_TRUE(form.bConnect.Enabled && form.mnuViewFtp.Enabled && form.mnuFile.Enabled);
  server.growing.clear();
  form.bConnect.Press(By::Hand);
  form.bList.Press(By::Hand);
  DownloadAll();
  EXPECT_EQ(server.sent, (Names{"a.eW2", "b.eW2"}));
}

TEST_F(FtpDownload, NothingRevivesTheViewBehindALostConnection) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}, {"b.eW2", "b"}};
  server.breaksAfter = 1000;
  StartListed();
  form.listFtpList.RowClick(0);
  form.bDownload.Press(By::Hand);
  loop.Advance(5s);
  form.cmdFtpListToDownload.Press(By::Hand);
  EXPECT_FALSE(form.bDownload.Enabled);
  SwitchAutoRetrieve();
  SwitchAutoRetrieve();
  EXPECT_FALSE(form.mnuViewFtp.Enabled);
  EXPECT_FALSE(form.bConnect.Enabled);
}

TEST_F(FtpDownload, WhatLandedBeforeALostConnectionGoesToTheLinkedAuthor) {
  server.files = {{"a.mp3", "sound a"}, {"b.mp3", std::string(500'000, 'b')}};
  server.breaksAfter = 1000;
  Begin({{"FtpParseGenericPointer", "7"}});
  loop.Advance(5s);
  EXPECT_EQ(disk.NamesIn(Path("/Files/ImportQueue/7")).size(), 2u);
}

TEST_F(FtpDownload, ListingThatIsMadeGoodLeavesTheRunConnected) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}};
  server.failsListings = true;
  StartConnected({{"FtpAutoListDownloadCheck", "-1"}});
  server.failsListings = false;
  form.bList.Press(By::Hand);
  form.cmdFtpListToDownload.Press(By::Hand);
  form.bDownload.Press(By::Hand);
  loop.Advance(100ms);
  form.frmMain.CloseRequest();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].text, "The Ftp must be disconnected before you may exit the Tavlo Deck");
  loop.Advance(10s);
  EXPECT_EQ(Status(), "Disconnected after download completed");
  EXPECT_EQ(server.loggedIn, 0);
  EXPECT_TRUE(disk.Has(Path("/Files/eW2Queue/a.eW2")));
}

TEST_F(FtpDownload, DeleteThatIsSwitchedOffInTheRunIsNotDone) {
  server.files = {{"a.eW2", "sound a"}};
  StartListed({{"FtpDeleteFileCheck", "-1"}});
  deck.Built()->binding.FtpProfile().Show(0);
  config.chkFtpFileDeleteMode.Value = false;
  deck.Built()->binding.FtpProfile().Save();
  DownloadAll();
  EXPECT_EQ(server.sent, Names{"a.eW2"});
  EXPECT_EQ(server.deleted, Names{});
}

TEST_F(FtpDownload, TickInTheWaitOfAnotherCommandLeavesTheEndOfTheRunForLater) {
  server.files = {{"a.eW2", "sound a"}};
  Begin();
  {
    const window::ListPause pause(deck.Built()->mainWindow.guards);
    loop.Advance(5s);
    EXPECT_EQ(form.bDownload.Caption.Get(), "Halt");
  }
  loop.Advance(5s);
  EXPECT_EQ(Status(), "Disconnected after download completed");
}

TEST_F(FtpDownload, FileOfTwentyFiveRoundsTakesASecondTick) {
  server.files = {{"a.eW2", "sound a"}};
  ftp.roundsBefore = 25;
  Begin();
  loop.Advance(55ms);
  EXPECT_EQ(server.sent, Names{});
  EXPECT_TRUE(Tick().Enabled());
  loop.Advance(55ms);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
}

TEST_F(FtpDownload, CompletionThatTheClientRefusesIsToldAndOffersToConnect) {
  server.files = {{"a.eW2", "sound a"}};
  Begin({{"FtpDeleteFileCheck", "-1"}});
  ftp.refusesToBlock = true;
  loop.Advance(5s);
  EXPECT_EQ(Status(), "The connection is closed.");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
  EXPECT_TRUE(form.bConnect.Enabled && form.mnuFile.Enabled);
  EXPECT_EQ(server.deleted, Names{});
}

TEST_F(FtpDownload, DiskWithoutRoomForTheFileIsToldBeforeItComes) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}};
  ftp.room = 1000;
  Begin();
  EXPECT_EQ(Status(), "The disk has no room for this file.");
  EXPECT_EQ(disk.NamesIn(Path("/Files/FtpQueue")), Names{});
}

}  // namespace
}  // namespace tavlo::test
