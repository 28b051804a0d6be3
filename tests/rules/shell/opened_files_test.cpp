#include "shell/opened_files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using base::operator""ms;
using base::operator""s;
using forms::By;
using forms::Shape;
using Paths = std::vector<std::string>;

/// The deck, and somebody at the file manager.
struct OpenedFilesTest : testing::Test, DeckBench {
  OpenedFilesTest() { disk.WithFolder("/media"); }

  std::string OnStick(const std::string& name) {
    const std::string path = "/media/" + name;
    disk.WithFile(path, "sound of " + path);
    return path;
  }
  /// What a later start hands over, and what the deck has made of it once it had the time.
  void Open(const Paths& paths) {
    ASSERT_TRUE(handover.Come(paths));
    loop.Advance(3s);
  }
  /// The only dictation that waited is being played.
  void Play() {
    config.txtAutoQueueJob.Value = "N";
    ClickRow(0);
    form.cmdPlay.Press(By::Hand);
    loop.Advance(2s);
  }
  bool InQueueFolder(const std::string& name) const { return disk.Has(InQueue() + name); }
  std::string Notice() const { return form.lblNotice.Value; }
  unsigned CameToFront() const { return form.frmMain.FrontVersion(); }
  bool Waits() { return deck.Built()->openedFiles.tmrOpenedFiles.Enabled(); }
};

TEST_F(OpenedFilesTest, GivenToAStartStandInTheQueueOnceTheFirstListDoes) {
  filesToOpen = {OnStick("memo.wav"), OnStick("note.mp3")};
  deck.Start();
  loop.Advance(6s);
  EXPECT_TRUE(form.frmMain.Visible);
  EXPECT_FALSE(InQueueFolder("memo.wav"));
  loop.Advance(10s);
  EXPECT_EQ(disk.Contents(InQueue() + "memo.wav"), "sound of /media/memo.wav");
  EXPECT_TRUE(disk.Has("/media/memo.wav"));
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
  EXPECT_EQ(Notice(), "");
  EXPECT_EQ(CameToFront(), 0u) << "somebody may be typing elsewhere by now";
  EXPECT_FALSE(Waits());
}

TEST_F(OpenedFilesTest, OfALaterStartComeIntoTheQueueAndTheDeckComesToTheFront) {
  StartUntilReady();
  Open({OnStick("memo.wav")});
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_EQ(CameToFront(), 1u);
  EXPECT_FALSE(Waits());
}

TEST_F(OpenedFilesTest, BringAMinimizedDeckBack) {
  StartUntilReady();
  form.mnuMinimize.Press(By::Hand);
  Open({OnStick("memo.wav")});
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Normal);
  EXPECT_EQ(CameToFront(), 1u);
}

TEST_F(OpenedFilesTest, OfASplashThatStandsWaitForTheFirstList) {
  deck.Start();
  loop.Advance(1s);
  Open({OnStick("memo.wav")});
  EXPECT_FALSE(InQueueFolder("memo.wav"));
  loop.Advance(15s);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
}

TEST_F(OpenedFilesTest, WaitUntilTheDocumentInWorkIsFinished) {
  Drop(Document().Name());
  StartUntilReady();
  Play();
  Open({OnStick("memo.wav")});
  EXPECT_TRUE(player.IsRunning());
  EXPECT_FALSE(InQueueFolder("memo.wav"));
  EXPECT_EQ(CameToFront(), 1u);
  EXPECT_EQ(Notice(), "The opened files come into the Queue when this dictation is finished.");
  form.cmdSkip.Press(By::Hand);
  loop.Advance(5s);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
  EXPECT_EQ(Notice(), "");
}

TEST_F(OpenedFilesTest, LeaveADeckMinimizedThatIsSoWhileItsDocumentPlays) {
  Drop(Document().Name());
  StartWith({{"MinimizeMiniPlayerFlag", "Y"}});
  Play();
  ASSERT_EQ(form.frmMain.WindowShape, Shape::Minimized);
  Open({OnStick("memo.wav")});
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Minimized);
  EXPECT_EQ(CameToFront(), 0u);
  form.frmMain.Place(0, 0, 9000, 3000, Shape::Normal);
  form.cmdSkip.Press(By::Hand);
  loop.Advance(5s);
  EXPECT_TRUE(InQueueFolder("memo.wav"));
  EXPECT_EQ(CameToFront(), 1u);
}

TEST_F(OpenedFilesTest, WaitUntilAMessageBoxIsAnswered) {
  StartUntilReady();
  const std::string memo = OnStick("memo.wav");
  bool came = true;
  loop.Expect({.delay = 60s, .meanwhile = [&] { handover.Come({memo}); }});
  loop.Post([&] {
    loop.Show({.title = "Question"});
    came = InQueueFolder("memo.wav");
  });
  loop.Advance(61s);
  EXPECT_FALSE(came);
  EXPECT_EQ(CameToFront(), 1u);
  loop.Advance(3s);
  EXPECT_TRUE(InQueueFolder("memo.wav"));
}

TEST_F(OpenedFilesTest, CallNoMinimizedDeckBackUnderABoxThatStandsByItself) {
  StartUntilReady();
  form.mnuMinimize.Press(By::Hand);
  const std::string memo = OnStick("memo.wav");
  Shape under = Shape::Normal;
  loop.Expect({.delay = 60s, .meanwhile = [&] { handover.Come({memo}); }});
  loop.Post([&] {
    loop.Show({.title = "New work"});
    under = form.frmMain.WindowShape;
  });
  loop.Advance(63s);
  EXPECT_EQ(under, Shape::Minimized);
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Normal);
  EXPECT_TRUE(InQueueFolder("memo.wav"));
}

TEST_F(OpenedFilesTest, WaitUntilTheConfigurationIsClosedWhichComesToTheFront) {
  StartUntilReady();
  form.mnuConfiguration.Press(By::Hand);
  Open({OnStick("memo.wav")});
  EXPECT_FALSE(InQueueFolder("memo.wav"));
  EXPECT_EQ(config.frmConfiguration.FrontVersion(), 1u);
  EXPECT_EQ(CameToFront(), 0u);
  config.frmConfiguration.CloseRequest();
  loop.Advance(3s);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
}

TEST_F(OpenedFilesTest, WaitForTheEndOfAListChange) {
  StartUntilReady();
  const std::string memo = OnStick("memo.wav");
  const window::ListPause pause(deck.Built()->mainWindow.guards);
  Open({memo});
  EXPECT_FALSE(InQueueFolder("memo.wav"));
  EXPECT_EQ(Notice(), "") << "a hand would have to drop them again, and nobody holds these";
  EXPECT_TRUE(Waits());
}

TEST_F(OpenedFilesTest, ThatComeWhileOthersAreTakenAreTakenAfterThem) {
  StartUntilReady();
  const std::string note = OnStick("note.wav");
  std::vector<bool> came;
  base::Timer meanwhile(loop, "meanwhile", 200ms);
  meanwhile.OnTick = [&] {
    came.push_back(InQueueFolder("note.wav"));
    if (came.size() == 1) {
      EXPECT_TRUE(InQueueFolder("memo.wav"));
      handover.Come({note});
    } else {
      meanwhile.Stop();
    }
  };
  meanwhile.Start();
  Open({OnStick("memo.wav")});
  EXPECT_EQ(came, (std::vector<bool>{false, false}));
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
}

TEST_F(OpenedFilesTest, TurnAnotherViewToTheQueue) {
  StartUntilReady();
  form.mnuViewImport.Press(By::Hand);
  Open({OnStick("memo.wav")});
  EXPECT_TRUE(form.frameInQueue.Visible);
  EXPECT_FALSE(form.frameImport.Visible);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
}

TEST_F(OpenedFilesTest, ThatAreRefusedTurnNoView) {
  StartUntilReady();
  form.mnuViewImport.Press(By::Hand);
  Open({"/media/gone.wav"});
  EXPECT_TRUE(form.frameImport.Visible);
  EXPECT_EQ(Notice(), "Not taken: gone.wav (there is no such file or folder).");
}

TEST_F(OpenedFilesTest, WaitWhileAServerHoldsTheMenus) {
  StartUntilReady();
  form.mnuViewFtp.Press(By::Hand);
  form.mnuView.Enabled = false;
  Open({OnStick("memo.wav")});
  EXPECT_FALSE(InQueueFolder("memo.wav"));
  EXPECT_TRUE(form.frameFtp.Visible);
  form.mnuView.Enabled = true;
  loop.Advance(3s);
  EXPECT_TRUE(form.frameInQueue.Visible);
  EXPECT_TRUE(InQueueFolder("memo.wav"));
}

TEST_F(OpenedFilesTest, AreRefusedInTheWordsOfADrop) {
  const std::string ours = Drop(Document().Name());
  StartUntilReady();
  disk.WithFolder("/media/tapes");
  const auto refuses = [&](const std::string& path, const std::string& words) {
    form.frmMain.OnCommandByHand();
    Open({path});
    EXPECT_EQ(Notice(), "Not taken: " + words + ".") << path;
  };
  refuses("/media/tapes", "tapes (it is a folder)");
  refuses("memo.wav", "memo.wav (it is no file of this computer)");
  refuses("/media/-platform", "-platform (there is no such file or folder)");
  refuses(InQueue() + ours, ours + " (it lies in a folder of Tavlo Deck)");
}

TEST_F(OpenedFilesTest, OfOneNameInTwoFoldersBothCome) {
  StartUntilReady();
  disk.WithFolder("/other");
  disk.WithFile("/other/memo.wav", "another memo");
  Open({OnStick("memo.wav"), "/other/memo.wav"});
  EXPECT_EQ(disk.Contents(InQueue() + "memo.wav"), "sound of /media/memo.wav");
  EXPECT_EQ(disk.Contents(InQueue() + "memo (2).wav"), "another memo");
}

TEST_F(OpenedFilesTest, ThatAreOpenedAgainWhileTheyWaitComeOnce) {
  const std::string memo = OnStick("memo.wav");
  filesToOpen = {memo, memo};
  deck.Start();
  loop.Advance(1s);
  ASSERT_TRUE(handover.Come({memo}));
  loop.Advance(15s);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
  Open({memo});
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u) << "what has come may be wanted twice";
}

TEST_F(OpenedFilesTest, PastAThousandAreNotTakenAndItIsSaid) {
  StartUntilReady();
  Paths many;
  for (int i = 0; i <= 1000; ++i) many.push_back(OnStick(std::to_string(i) + ".wav"));
  Open(many);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1000u);
  EXPECT_EQ(Notice(), "1 more file was not taken: at most 1000 may wait at a time.");
  EXPECT_FALSE(InQueueFolder("1000.wav"));
  form.frmMain.OnCommandByHand();
  Open({"/media/1000.wav"});
  EXPECT_TRUE(InQueueFolder("1000.wav"));
  EXPECT_EQ(Notice(), "");
}

TEST_F(OpenedFilesTest, ThatWaitWhenTheUserExitsAreCopiedForTheNextStart) {
  StartUntilReady();
  const std::string memo = OnStick("memo.wav");
  loop.Expect({.reply = Reply::Yes, .delay = 5s, .meanwhile = [&] { handover.Come({memo}); }});
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  EXPECT_TRUE(InQueueFolder("memo.wav"));
  EXPECT_FALSE(handover.Listens());
}

TEST_F(OpenedFilesTest, ThatWaitWhenTheSessionEndsAreCopiedForTheNextStart) {
  StartUntilReady();
  const std::string memo = OnStick("memo.wav");
  loop.Expect({.reply = Reply::No, .delay = 5s, .meanwhile = [&] {
                 handover.Come({memo});
                 deck.EndSession();
               }});
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  EXPECT_TRUE(InQueueFolder("memo.wav"));
  EXPECT_FALSE(handover.Listens());
}

TEST_F(OpenedFilesTest, FindNobodyOnceTheExitHasBegun) {
  StartUntilReady();
  loop.Expect({.reply = Reply::Yes});
  bool listens = true;
  base::Timer later(loop, "later", 500ms);
  later.OnTick = [&] { listens = handover.Listens(); };
  later.Start();
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  EXPECT_FALSE(listens);
}

TEST_F(OpenedFilesTest, GoToTheCopyThatRunsAlreadyAndThisOneEndsWithoutAWindow) {
  anotherCopy = true;
  filesToOpen = {"/media/memo.wav", "/media/\xFF\n.wav"};
  deck.Start();
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(handover.taken, std::vector<Paths>{filesToOpen});
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(deck.windows.splash.frmInitSplash.Visible);
  EXPECT_EQ(deck.Built(), nullptr);
}

TEST_F(OpenedFilesTest, ThatACopyWithoutAnAnswerDoesNotTakeAreRefusedLikeAStartWithoutFiles) {
  anotherCopy = true;
  handover.answers = false;
  filesToOpen = {"/media/memo.wav"};
  deck.Start();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Running");
  EXPECT_EQ(ended, 1);
  EXPECT_EQ(loop.BreathedFor, 5s);
}

TEST_F(OpenedFilesTest, ThatACopyDoesNotTakeSinceItEndsAreTakenByThisOne) {
  anotherCopy = true;
  handover.answers = false;
  handover.OnWait = [this] { anotherCopy = false; };
  filesToOpen = {OnStick("memo.wav")};
  StartUntilReady();
  loop.Advance(5s);
  EXPECT_FALSE(ended.has_value());
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
}

TEST_F(OpenedFilesTest, NothingIsAskedOfTheCopyThatRunsByAStartWithoutFiles) {
  anotherCopy = true;
  deck.Start();
  EXPECT_TRUE(handover.taken.empty());
  EXPECT_EQ(ended, 1);
}

}  // namespace
}  // namespace tavlo::test
