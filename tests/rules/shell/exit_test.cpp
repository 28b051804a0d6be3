#include "shell/exit.h"

#include <gtest/gtest.h>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::Buttons;
using base::Icon;
using base::Reply;
using base::operator""ms;
using base::operator""s;
using forms::By;

struct ExitTest : testing::Test, DeckBench {
  ExitTest() {
    Drop(Document().Name());
    StartUntilReady();
  }
  void ExpectBox(const std::string& text, Icon icon) {
    ASSERT_EQ(loop.Shown.size(), 1u);
    EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Exit");
    EXPECT_EQ(loop.Shown[0].text, text);
    EXPECT_EQ(loop.Shown[0].icon, icon);
  }
};

TEST_F(ExitTest, ClosingTheWindowAsksAndEndsTheProcess) {
  loop.Expect({.reply = Reply::Yes});
  form.frmMain.CloseRequest();
  ExpectBox("Are you sure you want to exit the Tavlo Deck?", Icon::Question);
  EXPECT_EQ(loop.Shown[0].buttons, Buttons::YesNo);
  EXPECT_EQ(ended, 0);
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(ExitTest, ServersAreLetGoBeforeThePedals) {
  std::optional<bool> attachedThen;
  usbWatcher.OnStop = [&] { attachedThen = ftp.attached; };
  loop.Expect({.reply = Reply::Yes});
  EXPECT_TRUE(ftp.attached);
  form.mnuExit.Press(By::Hand);
  EXPECT_EQ(attachedThen, false);
}

TEST_F(ExitTest, MenuAsksAndEndsTheProcess) {
  loop.Expect({.reply = Reply::Yes});
  form.mnuExit.Press(By::Hand);
  EXPECT_EQ(ended, 0);
}

TEST_F(ExitTest, PromptIsStoppedBeforeTheQuestionAndLetGoOfAtTheEnd) {
  deck.Built()->prompts.PlayPrompt("Complete");
  loop.Expect({.reply = Reply::No});
  form.frmMain.CloseRequest();
  EXPECT_FALSE(promptControl.Sounds);
  EXPECT_TRUE(promptControl.IsOpen());
  loop.Expect({.reply = Reply::Yes});
  form.frmMain.CloseRequest();
  EXPECT_FALSE(promptControl.IsOpen());
}

TEST_F(ExitTest, AnswerNoLeavesTheProgramRunningWithPlaybackStopped) {
  ClickRow(0);
  ASSERT_TRUE(deck.Built()->engine.IsPlaying);
  loop.Expect({.reply = Reply::No});
  form.frmMain.CloseRequest();
  EXPECT_FALSE(ended.has_value());
  EXPECT_FALSE(deck.Built()->engine.IsPlaying);
  EXPECT_TRUE(form.mnuFile.Enabled);
}

TEST_F(ExitTest, RefusedCloseLeavesAWindRunningAndThePlayKeyShowsIt) {
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.cmdForward.Press(By::Hand);
  form.frmMain.CloseRequest();
  EXPECT_EQ(deck.Built()->transport.WindDirection, playback::Wind::Forward);
  EXPECT_TRUE(form.DeckRuns);
}

TEST_F(ExitTest, NoDocumentIsCompletedWhileTheProgramEnds) {
  ClickRow(0);
  form.cmdComplete.Enabled = true;
  loop.Expect({.reply = Reply::Yes});
  base::Timer hand(loop, "hand", base::Duration{std::chrono::milliseconds{500}});
  hand.OnTick = [&] {
    hand.Stop();
    form.cmdComplete.Press(By::Hand);
  };
  hand.Start();
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  EXPECT_TRUE(disk.NamesIn(Completed()).empty());
  EXPECT_FALSE(form.mnuFile.Enabled);
}

TEST_F(ExitTest, OpenFtpConnectionIsToldAndStaysOpen) {
  form.bConnect.Caption = "Disconnect";
  form.frmMain.CloseRequest();
  ExpectBox("The Ftp must be disconnected before you may exit the Tavlo Deck", Icon::Warning);
  EXPECT_FALSE(ended.has_value());
}

TEST_F(ExitTest, MenuRefusesAnOpenFtpConnectionToo) {
  form.bConnect.Caption = "Disconnect";
  form.mnuExit.Press(By::Hand);
  ExpectBox("The Ftp must be disconnected before you may exit the Tavlo Deck", Icon::Warning);
}

TEST_F(ExitTest, DocumentInWorkMustBeFinishedFirst) {
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.frmMain.CloseRequest();
  ExpectBox("You must Skip, Save, or Complete this dictation before you may exit the Tavlo Deck",
            Icon::Warning);
  EXPECT_FALSE(deck.Built()->engine.IsPlaying);
  EXPECT_FALSE(ended.has_value());
}

TEST_F(ExitTest, CloseDuringWorkIsDroppedWithoutAWord) {
  loop.Post([&] { form.frmMain.CloseRequest(); });
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(ended.has_value());
}

TEST_F(ExitTest, CloseInTheMomentOfSavingIsDroppedAndTheSaveGoesOn) {
  deck.windows.configuration.txtAutoQueueJob.Value = "N";
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  loop.Advance(2s);
  loop.Expect({.reply = Reply::Yes});
  loop.Post([&] { form.frmMain.CloseRequest(); });
  form.cmdSave.Press(By::Hand);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(ended.has_value());
  EXPECT_FALSE(disk.Has(InQueue() + Document().Name()));
}

TEST_F(ExitTest, MenuInTheMomentOfCompletingIsDroppedToo) {
  file.Sounds.clear();
  ClickRow(0);
  loop.Shown.clear();
  loop.Expect({.reply = Reply::Yes});
  loop.Post([&] { form.mnuExit.Press(By::Hand); });
  form.cmdComplete.Press(By::Hand);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(ended.has_value());
  EXPECT_FALSE(disk.Has(InQueue() + Document().Name()));
}

TEST_F(ExitTest, BothWaysAreClosedInTheWaitsOfAutomaticImport) {
  config.txtAutoImport.Value = "Y";
  int tried = 0;
  base::Timer hand(loop, "hand", 1ms);
  hand.OnTick = [&] {
    ++tried;
    form.mnuExit.Press(By::Hand);
    form.frmMain.CloseRequest();
  };
  hand.Start();
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_GT(tried, 26);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(ended.has_value());
  hand.Stop();
  loop.Expect({.reply = Reply::Yes});
  form.mnuExit.Press(By::Hand);
  EXPECT_TRUE(ended.has_value());
}

TEST_F(ExitTest, NoImportDirectoryIsTurnedToWhileTheProgramEnds) {
  form.mnuViewImport.Press(By::Hand);
  base::Timer hand(loop, "hand", 100ms);
  hand.OnTick = [&] { form.scrollImportWavSubDirectories.Change(4); };
  hand.Start();
  loop.Expect({.reply = Reply::Yes});
  form.frmMain.CloseRequest();
  EXPECT_TRUE(ended.has_value());
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "0");
  EXPECT_FALSE(form.cmdDeleteAllImportFile.Enabled);
}

TEST_F(ExitTest, SecondCloseWhileTheFirstAsksIsRefused) {
  loop.Expect({.reply = Reply::No, .meanwhile = [&] { form.frmMain.CloseRequest(); }});
  form.frmMain.CloseRequest();
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(ExitTest, SecondCloseWhileTheProgramEndsIsDropped) {
  loop.Expect({.reply = Reply::Yes});
  base::Timer again(loop, "again", 500ms);
  again.OnTick = [&] {
    again.Stop();
    form.frmMain.CloseRequest();
  };
  again.Start();
  form.frmMain.CloseRequest();
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(ended, 0);
}

TEST_F(ExitTest, NothingTicksWhileTheProgramEnds) {
  loop.Expect({.reply = Reply::Yes});
  form.frmMain.CloseRequest();
  EXPECT_FALSE(deck.Built()->waitingWork.tmrWorkWaitingAlert.Enabled());
  EXPECT_FALSE(deck.Built()->transport.tmrRewindForward.Enabled());
  EXPECT_FALSE(deck.Built()->engine.tmrPlaySnipet.Enabled());
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

}  // namespace
}  // namespace tavlo::test
