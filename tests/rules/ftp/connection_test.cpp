#include <gtest/gtest.h>

#include "support/ftp_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using Names = std::vector<std::string>;

struct FtpConnection : testing::Test, FtpBench {
  bool MenusAreEnabled() const { return form.mnuFile.Enabled && form.mnuView.Enabled; }
  void ExpectIdle() const {
    EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
    EXPECT_TRUE(form.bConnect.Enabled);
    EXPECT_TRUE(form.comboFtpServerNames.Enabled);
    EXPECT_TRUE(MenusAreEnabled());
  }
};

TEST_F(FtpConnection, LogsInWithTheChosenProfileAndIsReadyToList) {
  StartConnected();
  EXPECT_EQ(server.logIns, 1);
  EXPECT_EQ(ftp.calls, (Names{"connect", "directory"}));
  EXPECT_EQ(ftp.localFolder, Landing());
  EXPECT_EQ(ftp.mode, 'B');
  EXPECT_EQ(form.bConnect.Caption.Get(), "Disconnect");
  EXPECT_TRUE(form.bConnect.Enabled);
  EXPECT_TRUE(form.bList.Enabled);
  EXPECT_TRUE(form.comboFtpFileTypesToList.Enabled);
  EXPECT_TRUE(form.frameFtpFilename.Enabled);
  EXPECT_FALSE(form.comboFtpServerNames.Enabled);
  EXPECT_EQ(Status(), "Connected");
  EXPECT_EQ(form.eMessage.Tooltip.Get(), "Connected");
  EXPECT_EQ(form.frmMain.Focused(), &form.txtFocus);
}

TEST_F(FtpConnection, SaysWhichServerWhileItLogsIn) {
  Start();
  std::string said;
  ftp.Meanwhile = [&] {
    if (said.empty()) said = Status();
  };
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(said, "Connecting to server ftp.example.org");
}

TEST_F(FtpConnection, PassiveModeIsAskedForOnlyWhereTheProfileSaysSo) {
  StartConnected({{"FtpPassiveModeCheck", "-1"}});
  EXPECT_EQ(ftp.passive, 1);
  form.bConnect.Press(By::Hand);
}

TEST_F(FtpConnection, ActiveModeNeedsNoCall) {
  StartConnected({{"FtpPassiveModeCheck", "0"}});
  EXPECT_EQ(ftp.passive, 0);
}

TEST_F(FtpConnection, FilesOfTheServerGoToTheDirectoryOfTheLinkedAuthor) {
  Start({{"FtpParseGenericPointer", "7"}});
  EXPECT_EQ(form.txtFtpParseImportDirPointer.Value.Get(), "");
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(form.txtFtpParseImportDirPointer.Value.Get(), "7");
}

TEST_F(FtpConnection, EmptyServerListMakesNothingOfAPress) {
  Start();
  form.comboFtpServerNames.ListIndex = -1;
  form.bConnect.Press(By::Hand);
  EXPECT_TRUE(ftp.calls.empty());
  ExpectIdle();
}

TEST_F(FtpConnection, MenusAreTakenWhileAPersonIsConnected) {
  StartConnected();
  EXPECT_FALSE(form.mnuFile.Enabled);
  EXPECT_FALSE(form.mnuView.Enabled);
  form.bConnect.Press(By::Hand);
  EXPECT_TRUE(MenusAreEnabled());
}

TEST_F(FtpConnection, ServerWithoutAnAnswerIsToldAndMayBeTriedAgain) {
  server.down = true;
  StartConnected();
  EXPECT_EQ(Status(), "The server gives no answer.");
  ExpectIdle();
  server.down = false;
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(Status(), "Connected");
}

TEST_F(FtpConnection, WrongPasswordIsTold) {
  StartConnected({{"FtpServerPassword", "guess"}});
  EXPECT_EQ(Status(), "The server refuses this user and password.");
  ExpectIdle();
}

TEST_F(FtpConnection, MissingLandingFolderIsToldAndTheServerIsNotToldToClose) {
  Start();
  disk.Remove(Path("/Files/FtpQueue"));
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(Status(), "The landing folder is missing.");
  EXPECT_EQ(ftp.calls, Names{"connect"});
  ExpectIdle();
}

TEST_F(FtpConnection, MissingDirectoryIsToldAndTheServerIsNotToldToClose) {
  StartConnected({{"FtpServerDir", "nowhere"}});
  EXPECT_EQ(Status(), "The server has no such directory.");
  EXPECT_EQ(ftp.calls, (Names{"connect", "directory"}));
  ExpectIdle();
}

TEST_F(FtpConnection, LineBreakInAProfileNeverReachesTheServer) {
  StartConnected({{"FtpServerUserID", "typist\r\nDELE a.wav"}});
  EXPECT_TRUE(ftp.calls.empty());
  EXPECT_EQ(Status(), "The text has a line break in it.");
  ExpectIdle();
}

TEST_F(FtpConnection, ListsAndDownloadsAtOnceWhereTheProfileSaysSo) {
  server.files = {{"a.eW2", "sound a"}, {"b.eW2", "sound b"}};
  StartConnected({{"FtpAutoListDownloadCheck", "-1"}});
  EXPECT_EQ(form.bDownload.Caption.Get(), "Halt");
  loop.Advance(10s);
  EXPECT_EQ(server.sent, (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(Status(), "Disconnected after download completed");
  ExpectIdle();
}

TEST_F(FtpConnection, AutomaticListThatFindsNothingLeavesTheListKeyEnabled) {
  StartConnected({{"FtpAutoListDownloadCheck", "-1"}});
  EXPECT_EQ(Status(), "No files found");
  EXPECT_TRUE(form.bList.Enabled);
  EXPECT_EQ(form.bConnect.Caption.Get(), "Disconnect");
}

TEST_F(FtpConnection, DisconnectHidesTheListsSortsAndShowsThemEmpty) {
  server.files = {{"a.eW2", "sound a"}};
  StartListed();
  disk.WithFile(Landing("b.eW2"), "sound b");
  bool hidden = false;
  bool processing = false;
  base::Timer look(loop, "look", 500ms);
  look.OnTick = [&] {
    look.Stop();
    hidden = !form.frameFtpFilename.Visible && !form.frameFtpConnectionStatus.Visible &&
             !form.frameFtpDownloadList.Visible && !form.cmdFtpDownloadToList.Visible &&
             !form.cmdFtpListToDownload.Visible && !form.eMessage.Visible;
    processing = form.lblFtpParsing.Visible && form.lblFtpWait.Visible;
  };
  look.Start();
  const base::MonotonicTime begun = loop.Now();
  form.bConnect.Press(By::Hand);
  EXPECT_TRUE(hidden);
  EXPECT_TRUE(processing);
  EXPECT_EQ(loop.Now() - begun, 2s);
  EXPECT_TRUE(disk.Has(Path("/Files/eW2Queue/b.eW2")));
  EXPECT_TRUE(form.frameFtpFilename.Visible);
  EXPECT_TRUE(form.eMessage.Visible);
  EXPECT_FALSE(form.lblFtpParsing.Visible);
  EXPECT_FALSE(form.lblFtpWait.Visible);
  EXPECT_EQ(Listed(), Names{});
  EXPECT_EQ(form.frameFtpFilename.Caption.Get(), "Files in list: 0");
  EXPECT_EQ(form.frameFtpDownloadList.Caption.Get(), "Files to download: 0");
  EXPECT_EQ(Status(), "Disconnected");
  EXPECT_EQ(server.loggedIn, 0);
  for (const forms::Control* control : std::initializer_list<const forms::Control*>{
           &form.bDownload, &form.eByteCount, &form.cmdFtpDownloadToList,
           &form.cmdFtpListToDownload, &form.bList, &form.comboFtpFileTypesToList,
           &form.frameFtpFilename, &form.frameFtpDownloadList}) {
    EXPECT_FALSE(control->Enabled) << control->Name;
  }
  ExpectIdle();
}

TEST_F(FtpConnection, ConnectThatIsPressedInTheWaitsOfADisconnectIsDropped) {
  StartConnected();
  base::Timer hand(loop, "hand", 300ms);
  hand.OnTick = [&] {
    hand.Stop();
    form.bConnect.Press(By::Hand);
  };
  hand.Start();
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(server.logIns, 1);
  EXPECT_EQ(Status(), "Disconnected");
  ExpectIdle();
}

TEST_F(FtpConnection, PressesWhileTheServerIsAskedAreDroppedAndReachNoClient) {
  StartConnected();
  ftp.Meanwhile = [&] {
    form.bConnect.Press(By::Hand);
    form.bList.Press(By::Hand);
  };
  form.bList.Press(By::Hand);
  EXPECT_EQ(ftp.misuses, Names{});
  EXPECT_EQ(form.bConnect.Caption.Get(), "Disconnect");
}

TEST_F(FtpConnection, ExitIsRefusedWhileConnected) {
  StartConnected();
  form.frmMain.CloseRequest();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].text, "The Ftp must be disconnected before you may exit the Tavlo Deck");
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Exit");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Warning);
  EXPECT_FALSE(ended);
  EXPECT_EQ(server.loggedIn, 1);
}

TEST_F(FtpConnection, ExitInTheWaitsOfADisconnectEndsAndNothingOfTheDisconnectFollows) {
  StartConnected();
  loop.Expect({.reply = base::Reply::Yes});
  base::Timer hand(loop, "hand", 300ms);
  hand.OnTick = [&] {
    hand.Stop();
    form.frmMain.CloseRequest();
  };
  hand.Start();
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(ended, 0);
  EXPECT_NE(Status(), "Disconnected");
}

TEST_F(FtpConnection, NothingBeginsUnderABoxOfTheSort) {
  StartConnected();
  disk.BreakListing(Path("/Files/FtpQueue"));
  loop.Expect({.delay = 30s, .meanwhile = [&] { form.bConnect.Press(); }});
  form.bConnect.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Network Fault");
  EXPECT_EQ(server.logIns, 1);
  EXPECT_EQ(Status(), "Disconnected");
}

TEST_F(FtpConnection, LogInThatStandsWhenTheSessionEndsIsClosed) {
  StartConnected();
  deck.EndSessionNow();
  EXPECT_EQ(server.loggedIn, 0);
  EXPECT_FALSE(ftp.attached);
}

TEST_F(FtpConnection, SessionThatEndsInTheMiddleOfALogInEndsIt) {
  Start();
  ftp.Meanwhile = [&] { deck.EndSessionNow(); };
  form.bConnect.Press(By::Hand);
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(ftp.misuses, Names{});
  EXPECT_EQ(ftp.calls, Names{"connect"});
}

TEST_F(FtpConnection, SessionThatEndsWhileTheServerIsAskedLetsGoOfTheClientAtOnce) {
  StartConnected();
  ftp.Meanwhile = [&] { deck.EndSessionNow(); };
  form.bList.Press(By::Hand);
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(ftp.misuses, Names{});
  EXPECT_FALSE(ftp.attached);
  EXPECT_EQ(server.loggedIn, 0);
}

TEST_F(FtpConnection, SessionThatEndsInTheWaitsOfTheExitLetsGoOfTheClientOnce) {
  StartConnected();
  form.bConnect.Press(By::Hand);
  loop.Expect({.reply = base::Reply::Yes});
  base::Timer session(loop, "session", 400ms);
  session.OnTick = [&] { deck.EndSessionNow(); };
  session.Start();
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  EXPECT_FALSE(ftp.attached);
  EXPECT_EQ(ftp.misuses, Names{});
}

TEST_F(FtpConnection, ConnectThatIsPressedInTheWaitsOfTheExitBeginsNothing) {
  Start();
  loop.Expect({.reply = base::Reply::Yes});
  base::Timer hand(loop, "hand", 400ms);
  hand.OnTick = [&] { form.bConnect.Press(By::Hand); };
  hand.Start();
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(ftp.calls, Names{});
  EXPECT_EQ(ftp.misuses, Names{});
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
}

TEST_F(FtpConnection, ModuleThatCanNotBeAttachedIsToldAndTheDeckGoesOn) {
  ftp.missing = true;
  Start();
  EXPECT_EQ(Status(), "Cannot attach to FTP Client Module");
  EXPECT_TRUE(form.frameFtp.Visible);
}

TEST_F(FtpConnection, DoubleClickClearsTheStatus) {
  StartConnected();
  form.eMessage.DoubleClick();
  EXPECT_EQ(Status(), "");
  EXPECT_EQ(form.eMessage.Tooltip.Get(), "");
}

TEST_F(FtpConnection, ProfileIsReadOnceAtTheLogIn) {
  server.files = {{"a.eW2", "sound a"}};
  StartListed({{"FtpDeleteFileCheck", "0"}});
  deck.Built()->binding.FtpProfile().Show(0);
  config.chkFtpFileDeleteMode.Value = true;
  deck.Built()->binding.FtpProfile().Save();
  DownloadAll();
  EXPECT_EQ(server.sent, Names{"a.eW2"});
  EXPECT_EQ(server.deleted, Names{});
}

}  // namespace
}  // namespace tavlo::test
