#include <gtest/gtest.h>

#include <algorithm>

#include "support/ftp_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using Names = std::vector<std::string>;

struct FtpAutoRetrieve : testing::Test, FtpBench {
  /// In the Queue's view, with unattended retrieval on.
  void StartUnattended(const store::Assignments& more = {}) {
    Start(more);
    form.mnuViewQueue.Press(By::Hand);
    SwitchAutoRetrieve();
  }
  base::Timer& Timer() { return deck.Built()->ftp.autoRetrieve.tmrFtpAutoRetrieve; }
  std::ptrdiff_t LogIns() const { return std::ranges::count(ftp.calls, "connect"); }
};

TEST_F(FtpAutoRetrieve, StartsOffInEachRun) {
  Start();
  EXPECT_FALSE(config.chkFtpAutoRetrieve.Value);
  EXPECT_FALSE(Timer().Enabled());
  EXPECT_TRUE(form.mnuViewFtp.Enabled);
}

TEST_F(FtpAutoRetrieve, SwitchesTheEntryOfTheViewAndTheTimer) {
  StartUnattended();
  EXPECT_FALSE(form.mnuViewFtp.Enabled);
  EXPECT_TRUE(Timer().Enabled());
  SwitchAutoRetrieve();
  EXPECT_TRUE(form.mnuViewFtp.Enabled);
  EXPECT_FALSE(Timer().Enabled());
  loop.Advance(60s);
  EXPECT_EQ(LogIns(), 0);
}

TEST_F(FtpAutoRetrieve, FetchesWhatTheServerHasAndLogsOut) {
  server.files = {{"a.eW2", "sound a"}, {"b.eW2", "sound b"}};
  StartUnattended({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(20s);
  EXPECT_EQ(server.sent, (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(disk.NamesIn(Path("/Files/eW2Queue")), (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(server.loggedIn, 0);
  EXPECT_TRUE(form.frameInQueue.Visible);
}

TEST_F(FtpAutoRetrieve, ListAndDownloadOfTheProfileComeFirst) {
  server.files = {{"a.eW2", "sound a"}};
  StartUnattended({{"FtpDeleteFileCheck", "-1"}, {"FtpAutoListDownloadCheck", "-1"}});
  loop.Advance(5050ms);
  EXPECT_EQ(std::ranges::count(ftp.calls, "list"), 1);
  loop.Advance(10s);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
}

TEST_F(FtpAutoRetrieve, EmptyServerIsLoggedOutOfAtOnceAndTriedAgain) {
  StartUnattended();
  loop.Advance(5s + 2500ms);
  EXPECT_EQ(LogIns(), 1);
  EXPECT_EQ(server.loggedIn, 0);
  loop.Advance(8s);
  EXPECT_EQ(LogIns(), 2);
}

TEST_F(FtpAutoRetrieve, LeavesTheMenusToWhoeverUsesTheDeck) {
  StartUnattended();
  bool enabled = true;
  ftp.Meanwhile = [&] { enabled = enabled && form.mnuFile.Enabled && form.mnuView.Enabled; };
  loop.Advance(10s);
  EXPECT_GE(LogIns(), 1);
  EXPECT_TRUE(enabled);
}

TEST_F(FtpAutoRetrieve, MenusThatADocumentInWorkHasTakenStayTaken) {
  server.files = {{"a.eW2", "sound a"}};
  Drop("a.wav");
  StartUnattended({{"FtpDeleteFileCheck", "-1"}});
  ClickRow(0);
  loop.Advance(1s);
  form.cmdPlay.Press(By::Hand);
  ASSERT_FALSE(form.mnuFile.Enabled);
  loop.Advance(20s);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
  EXPECT_FALSE(form.mnuFile.Enabled);
}

TEST_F(FtpAutoRetrieve, TicksOfALongTransferPressNothingThatMatters) {
  server.files = {{"a.eW2", std::string(20'000, 'a')}};
  server.bytesPerSecond = 1000;
  StartUnattended({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(24s);
  EXPECT_EQ(LogIns(), 1);
  EXPECT_FALSE(deck.Built()->ftp.channel.FtpHaltRequested);
  loop.Advance(10s);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
  EXPECT_EQ(disk.Contents(Path("/Files/eW2Queue/a.eW2")).size(), 20'000u);
}

TEST_F(FtpAutoRetrieve, SwitchedOffInATransferLetsItEndAndNoTickFollows) {
  server.files = {{"a.eW2", std::string(5000, 'a')}};
  server.bytesPerSecond = 1000;
  StartUnattended({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(7s);
  ASSERT_TRUE(ftp.Receiving());
  SwitchAutoRetrieve();
  loop.Advance(60s);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
  EXPECT_EQ(LogIns(), 1);
}

TEST_F(FtpAutoRetrieve, SwitchedOffInATickIsNotArmedAgain) {
  StartUnattended();
  ftp.Meanwhile = [&] {
    if (config.chkFtpAutoRetrieve.Value) SwitchAutoRetrieve();
  };
  loop.Advance(60s);
  EXPECT_EQ(LogIns(), 1);
  EXPECT_FALSE(Timer().Enabled());
  EXPECT_EQ(server.loggedIn, 0);
}

TEST_F(FtpAutoRetrieve, ServerThatIsDownIsTriedOnceATickAndWorksAgainWhenItIsBack) {
  server.files = {{"a.eW2", "sound a"}};
  server.down = true;
  StartUnattended({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(36s);
  EXPECT_EQ(LogIns(), 1);
  server.down = false;
  loop.Advance(20s);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
  loop.Advance(60s);
  EXPECT_EQ(server.loggedIn, 0);
}

TEST_F(FtpAutoRetrieve, LogInThatFailsIsToldInTheQuietLine) {
  StartUnattended({{"FtpServerPassword", "guess"}});
  loop.Advance(12s);
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "Automatic retrieval: The server refuses this user and password.");
}

TEST_F(FtpAutoRetrieve, NoLogInBeginsUnderABoxThatIsAboutToBeAnswered) {
  StartUnattended();
  loop.Expect({.reply = base::Reply::No, .delay = 50s});
  form.frmMain.CloseRequest();
  EXPECT_EQ(LogIns(), 0);
  loop.Advance(6s);
  EXPECT_EQ(LogIns(), 1);
}

TEST_F(FtpAutoRetrieve, DirectoryAmongTheFilesIsPassedOverAndTheOthersCome) {
  server.files = {{"a.eW2", "sound a"}, {"archive", ""}, {"b.eW2", "sound b"}};
  server.refused = {"archive"};
  StartUnattended({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(20s);
  EXPECT_EQ(server.sent, (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(disk.NamesIn(Path("/Files/eW2Queue")), (Names{"a.eW2", "b.eW2"}));
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "archive is not fetched. The server does not send this file.");
  EXPECT_TRUE(server.files.contains("archive"));
  EXPECT_EQ(ftp.misuses, Names{});
}

TEST_F(FtpAutoRetrieve, FileThatCanNotLandIsPassedOverAndTheOthersComeAndAreSorted) {
  server.files = {{"a.eW2", "sound a"}, {"b.eW2", "sound b"}, {"c.eW2", "sound c"}};
  StartUnattended({{"FtpDeleteFileCheck", "-1"}});
  disk.WithFile(Landing("b.eW2"), "half of ano");
  disk.OpenWriter(Landing("b.eW2"));
  loop.Advance(20s);
  EXPECT_EQ(server.deleted, (Names{"a.eW2", "c.eW2"}));
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "b.eW2 can not land: a program still writes what stands there.");
  EXPECT_EQ(disk.NamesIn(Path("/Files/eW2Queue")), (Names{"a.eW2", "c.eW2"}));
  EXPECT_EQ(disk.FilesHolding("half of ano"), Names{Landing("b.eW2")});
  EXPECT_EQ(server.loggedIn, 0);
}

TEST_F(FtpAutoRetrieve, AlertThatComesDueInAWaitForTheServerWaitsForItsEnd) {
  server.latency = 9s;
  // With an empty Queue nothing is said, the work just appears.
  Drop("0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 0_.wav");
  StartUnattended();
  deck.Built()->waitingWork.RestartWith(50ms);
  config.txtWorkWaitingAlertMode.Value = "A";
  loop.Advance(4s);
  bool boxInAWait = false;
  disk.WithFile(Path("/Files/eW2Queue/x.eW2"));
  loop.Expect({.delay = 1s, .meanwhile = [&] {
                 boxInAWait = deck.Built()->mainWindow.guards.ServerIsAwaited();
               }});
  loop.Advance(60s);
  ASSERT_FALSE(loop.Shown.empty());
  EXPECT_FALSE(boxInAWait);
}

TEST_F(FtpAutoRetrieve, LogInsAtAServerThatIsDownKeepNoAlertBackForLong) {
  server.down = true;
  Drop("0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 0_.wav");
  StartUnattended();
  // A check every half a minute, as long as each log-in waits.
  deck.Built()->waitingWork.RestartWith(1500ms);
  config.txtWorkWaitingAlertMode.Value = "A";
  disk.WithFile(Path("/Files/eW2Queue/x.eW2"));
  loop.Advance(50s);
  ASSERT_FALSE(loop.Shown.empty());
  EXPECT_EQ(loop.Shown[0].text, "New dictation has arrived!");
}

TEST_F(FtpAutoRetrieve, ListingThatFailsOnceIsMadeGoodByTheNextTicks) {
  server.files = {{"a.eW2", "sound a"}};
  server.failsListings = true;
  StartUnattended({{"FtpDeleteFileCheck", "-1"}});
  loop.Advance(6s);
  server.failsListings = false;
  loop.Advance(30s);
  EXPECT_EQ(server.sent, Names{"a.eW2"});
}

TEST_F(FtpAutoRetrieve, EmptyServerListOnlySaysThatNothingIsConnected) {
  Start();
  SwitchAutoRetrieve();
  form.comboFtpServerNames.Clear();
  loop.Advance(6s);
  EXPECT_EQ(LogIns(), 0);
  EXPECT_EQ(Status(), "Not connected");
}

TEST_F(FtpAutoRetrieve, ProfileIsTheOneThatIsChosenAtTheTick) {
  Start();
  form.comboFtpServerNames.RowClick(1);
  SwitchAutoRetrieve();
  loop.Advance(40s);
  EXPECT_GE(LogIns(), 1);
  EXPECT_EQ(server.logIns, 0);
  form.comboFtpServerNames.ListIndex = 0;
  loop.Advance(40s);
  EXPECT_GE(server.logIns, 1);
}

TEST_F(FtpAutoRetrieve, LostConnectionEndsItUntilTheNextStart) {
  server.files = {{"a.eW2", std::string(500'000, 'a')}};
  server.breaksAfter = 1000;
  StartUnattended();
  loop.Advance(8s);
  const std::ptrdiff_t logIns = LogIns();
  loop.Advance(60s);
  EXPECT_EQ(LogIns(), logIns);
  EXPECT_EQ(Status(), "Connection lost.  To ftp again please restart the Tavlo Deck");
}

TEST_F(FtpAutoRetrieve, TypistInAnotherViewKeepsTheKeyboard) {
  StartUnattended();
  form.mnuViewImport.Press(By::Hand);
  form.frmMain.FocusOn(form.txtImportSubject);
  loop.Advance(12s);
  EXPECT_GE(LogIns(), 1);
  EXPECT_EQ(form.frmMain.Focused(), &form.txtImportSubject);
}

TEST_F(FtpAutoRetrieve, TickInTheWaitOfAnotherCommandPressesNothing) {
  StartUnattended();
  {
    const window::ListPause pause(deck.Built()->mainWindow.guards);
    loop.Advance(12s);
    EXPECT_EQ(LogIns(), 0);
  }
  loop.Advance(6s);
  EXPECT_GE(LogIns(), 1);
}

TEST_F(FtpAutoRetrieve, LogInUnderTheQuestionOfTheExitIsSeenAndRefusesIt) {
  server.files = {{"a.eW2", std::string(50'000, 'a')}};
  server.bytesPerSecond = 1000;
  StartUnattended();
  loop.Expect({.reply = base::Reply::Yes, .delay = 80s});
  form.frmMain.CloseRequest();
  ASSERT_EQ(loop.Shown.size(), 2u);
  EXPECT_EQ(loop.Shown[1].text, "The Ftp must be disconnected before you may exit the Tavlo Deck");
  EXPECT_FALSE(ended);
}

TEST_F(FtpAutoRetrieve, NoTickComesInTheWaitsOfTheExit) {
  StartUnattended();
  loop.Expect({.reply = base::Reply::Yes, .delay = 4500ms});
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(LogIns(), 0);
}

}  // namespace
}  // namespace tavlo::test
