#include "shell/views.h"

#include <gtest/gtest.h>

#include "support/deck_bench.h"
#include "support/hand.h"

namespace tavlo::test {
namespace {

using base::operator""s;
using forms::By;
using forms::Shape;

struct ViewsTest : testing::Test, DeckBench {
  ViewsTest() {
    Drop(Document().Name());
    StartUntilReady();
  }
};

TEST_F(ViewsTest, QueueViewRebuildsTheListAndStopsTheSound) {
  ClickRow(0);
  Drop(Document().By("New").Name());
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_FALSE(deck.Built()->engine.IsPlaying);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
  EXPECT_TRUE(form.frameInQueue.Visible);
  EXPECT_FALSE(form.frameCompleted.Visible);
  EXPECT_TRUE(form.cmdUpdateFileList.Visible);
  EXPECT_TRUE(form.cmdEQ.Enabled);
  EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
}

TEST_F(ViewsTest, PlayIsRefusedWhileTheViewChanges) {
  ClickRow(0);
  loop.Post([&] { form.cmdPlay.Press(); });
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_FALSE(deck.Built()->engine.IsPlaying);
  EXPECT_TRUE(form.frameFiles.Visible);
  EXPECT_FALSE(form.cmdSkip.Enabled);
}

TEST_F(ViewsTest, ViewDoesNotChangeInTheMomentOfSelecting) {
  loop.Post([&] { form.mnuViewCompleted.Press(By::Hand); });
  ClickRow(0);
  EXPECT_TRUE(form.frameInQueue.Visible);
  EXPECT_TRUE(deck.Built()->engine.IsPlaying);
  EXPECT_TRUE(form.cmdPlay.Enabled);
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_TRUE(form.frameCompleted.Visible);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(ViewsTest, QueueViewStartsTheAlertTimerAnew) {
  deck.Built()->waitingWork.tmrWorkWaitingAlert.Stop();
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_TRUE(deck.Built()->waitingWork.tmrWorkWaitingAlert.Enabled());
}

TEST_F(ViewsTest, ExactlyOneFrameIsVisible) {
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_TRUE(form.frameCompleted.Visible);
  EXPECT_FALSE(form.frameInQueue.Visible);
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_TRUE(form.frameInQueue.Visible);
  for (const forms::Pane* other : {&form.frameCompleted, &form.frameImport, &form.frameFtp}) {
    EXPECT_FALSE(other->Visible) << other->Name;
  }
}

TEST_F(ViewsTest, CompletedViewBuildsItsListAndOffersItsButtons) {
  Keep(Document().Name());
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_EQ(form.listViewCompleted.Rows().size(), 1u);
  EXPECT_EQ(form.frameCompleted.Caption.Get(), "Completed:     1     00:00:10");
  EXPECT_TRUE(form.cmdMoveToQueue.Enabled);
  EXPECT_TRUE(form.cmdDeleteOneCompleted.Enabled);
  EXPECT_TRUE(form.cmdDeleteAllCompleted.Enabled);
  EXPECT_EQ(deck.Built()->mainWindow.CurrentView, "Complete");
  EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
}

TEST_F(ViewsTest, CompletedViewOfAnEmptyFolderLeavesItsButtonsDisabled) {
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_FALSE(form.cmdMoveToQueue.Enabled);
  EXPECT_FALSE(form.cmdDeleteOneCompleted.Enabled);
  EXPECT_FALSE(form.cmdDeleteAllCompleted.Enabled);
}

TEST_F(ViewsTest, CompletedViewEmptiesTheTextsOfTheDocumentAndOffersNoTransport) {
  ClickRow(0);
  ASSERT_EQ(form.StatusBar1.Panels.Get()[2], "Brown");
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_EQ(form.StatusBar1.Panels.Get(), std::vector<std::string>(7));
  for (const forms::Command* key : {&form.cmdSkipBeg, &form.cmdRewind, &form.cmdStop, &form.cmdPlay,
                                    &form.cmdForward, &form.cmdSkipEnd}) {
    EXPECT_FALSE(key->Enabled) << key->Name;
  }
  EXPECT_TRUE(form.cmdEQ.Enabled);
  EXPECT_TRUE(form.cmdNormalSpeed.Enabled);
}

TEST_F(ViewsTest, ChangeOfViewEndsThePreviewAndLetsAPromptSpeakOn) {
  ClickRow(0);
  deck.Built()->prompts.PlayPrompt("RefreshQueue");
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_FALSE(deck.Built()->engine.IsPlaying);
  EXPECT_TRUE(promptControl.Sounds);
  EXPECT_FALSE(form.cmdImportCompleteSnipetStop.Enabled);
  EXPECT_TRUE(form.cmdImportCompleteSnipetStop.Visible);
}

TEST_F(ViewsTest, ChangeOfViewDuringPlaybackStopsTheSound) {
  for (forms::Command* entry :
       {&form.mnuViewQueue, &form.mnuViewCompleted, &form.mnuViewImport, &form.mnuViewFtp}) {
    form.mnuViewQueue.Press();
    ClickRow(0);
    form.cmdPlay.Press(By::Hand);
    ASSERT_TRUE(deck.Built()->engine.IsPlaying);
    // The menus are out of a hand's reach now; only a program can change the view.
    EXPECT_FALSE(form.mnuView.Enabled);
    entry->Press();
    EXPECT_FALSE(deck.Built()->engine.IsPlaying) << entry->Name;
    form.cmdSkip.Press(By::Hand);
  }
}

TEST_F(ViewsTest, CompletedFolderThatCanNotBeReachedIsNamed) {
  disk.BreakListing(Completed());
  form.mnuViewCompleted.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Path Fault");
  EXPECT_TRUE(form.mnuView.Enabled);
  EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
}

TEST_F(ViewsTest, QueueThatCanNotBeReachedOffersNothingToPlay) {
  Keep(Document().By("Heard").Name());
  ClickRow(0);
  form.mnuViewCompleted.Press(By::Hand);
  form.listViewCompleted.RowClick(0);
  disk.BreakListing(InQueue());
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(ViewsTest, DocumentGoesFromTheQueueToCompletedAndBack) {
  const std::string name = form.listViewInQueue.TextAt(0, forms::document_column::FileName);
  file.Sounds[Completed() + name] = {.samples = 80'000};
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.cmdSkipEnd.Press(By::Hand);
  form.cmdComplete.Press(By::Hand);
  form.mnuViewCompleted.Press(By::Hand);
  ASSERT_EQ(form.listViewCompleted.Rows().size(), 1u);
  form.listViewCompleted.RowClick(0);
  EXPECT_TRUE(deck.Built()->engine.IsPlaying);
  form.cmdMoveToQueue.Press(By::Hand);
  EXPECT_TRUE(form.listViewCompleted.Rows().empty());
  form.mnuViewQueue.Press(By::Hand);
  ASSERT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_EQ(form.listViewInQueue.TextAt(0, forms::document_column::FileName), name);
}

TEST_F(ViewsTest, RefreshByProgramLeavesTheCompletedViewInFront) {
  Keep(Document().Name());
  form.mnuViewCompleted.Press(By::Hand);
  Drop(Document().By("New").Name());
  form.cmdUpdateFileList.Press();
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
  EXPECT_TRUE(form.frameCompleted.Visible);
  EXPECT_FALSE(form.frameInQueue.Visible);
  EXPECT_EQ(form.listViewCompleted.Rows().size(), 1u);
  EXPECT_EQ(form.frameCompleted.Caption.Get(), "Completed:     1     00:00:10");
}

TEST_F(ViewsTest, DocumentThatCanNotBePlayedIsCompletedFromItsOwnViewOnly) {
  file.Sounds.clear();
  ClickRow(0);
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_TRUE(form.listViewCompleted.Rows().empty());
  form.mnuViewQueue.Press(By::Hand);
  ClickRow(0);
  form.cmdComplete.Press(By::Hand);
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_EQ(form.listViewCompleted.Rows().size(), 1u);
}

TEST_F(ViewsTest, ExitAsksInTheCompletedViewToo) {
  form.mnuViewCompleted.Press(By::Hand);
  loop.Expect({.reply = base::Reply::Yes});
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
}

TEST_F(ViewsTest, EveryViewIsOffered) {
  for (const forms::Command* entry :
       {&form.mnuViewQueue, &form.mnuViewCompleted, &form.mnuViewImport, &form.mnuViewFtp}) {
    EXPECT_TRUE(entry->Visible) << entry->Name;
    EXPECT_TRUE(entry->Enabled) << entry->Name;
  }
}

TEST_F(ViewsTest, ImportViewSortsWhatLandedByFtpBuildsItsListAndOffersItsButtons) {
  disk.WithFile(Path("/Files/FtpQueue/memo.mp3"));
  form.mnuViewImport.Press(By::Hand);
  EXPECT_TRUE(form.frameImport.Visible);
  EXPECT_FALSE(form.frameInQueue.Visible);
  EXPECT_TRUE(form.cmdRefreshImportList.Visible);
  EXPECT_EQ(form.frameImport.Caption.Get(), "Import:     1     00:00:00");
  EXPECT_EQ(form.comboAuthorLastName.Rows().size(), 26u);
  EXPECT_EQ(form.comboAuthorLastName.ListIndex.Get(), 0);
  EXPECT_EQ(deck.Built()->mainWindow.CurrentView, "Import");
  EXPECT_FALSE(form.cmdPlay.Enabled);
  for (const forms::Command* button :
       {&form.cmdSendImportFileToQueue, &form.cmdSendAllImportFilesToQueue,
        &form.cmdDeleteOneImportFile, &form.cmdDeleteAllImportFile}) {
    EXPECT_TRUE(button->Enabled) << button->Name;
  }
}

TEST_F(ViewsTest, ImportViewWithoutFilesLeavesItsButtonsDisabled) {
  form.mnuViewImport.Press(By::Hand);
  for (const forms::Command* button :
       {&form.cmdSendImportFileToQueue, &form.cmdSendAllImportFilesToQueue,
        &form.cmdDeleteOneImportFile, &form.cmdDeleteAllImportFile}) {
    EXPECT_FALSE(button->Enabled) << button->Name;
  }
}

TEST_F(ViewsTest, ImportViewLeavesTheRecordersFoldersToTheQueue) {
  const std::string dropped = Path("/Files/eW2Queue/a.eW2");
  disk.WithFile(dropped);
  form.mnuViewImport.Press(By::Hand);
  EXPECT_TRUE(disk.Has(dropped));
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_FALSE(disk.Has(dropped));
}

TEST_F(ViewsTest, FtpViewHasNothingToPlayAndNothingToPrint) {
  form.comboFtpServerNames.Clear();
  const std::string caption = form.frameFtp.Caption;
  ClickRow(0);
  form.mnuViewFtp.Press(By::Hand);
  EXPECT_TRUE(form.frameFtp.Visible);
  EXPECT_EQ(form.comboFtpServerNames.Rows().size(), 25u);
  EXPECT_EQ(form.frameFtp.Caption.Get(), caption);
  EXPECT_FALSE(deck.Built()->engine.tmrPlaySnipet.Enabled());
  EXPECT_FALSE(file.IsOpen());
  for (const forms::Control* control : std::initializer_list<const forms::Control*>{
           &form.cmdEQ, &form.cmdNormalSpeed, &form.slPosition, &form.sldVol, &form.Slider1,
           &form.mnuReport}) {
    EXPECT_FALSE(control->Enabled) << control->Name;
  }
  form.mnuViewQueue.Press(By::Hand);
  for (const forms::Control* control : std::initializer_list<const forms::Control*>{
           &form.cmdEQ, &form.cmdNormalSpeed, &form.sldVol, &form.mnuReport}) {
    EXPECT_TRUE(control->Enabled) << control->Name;
  }
}

TEST_F(ViewsTest, FirstRefreshLeavesTheReportDisabledWhileFtpShows) {
  form.mnuViewFtp.Press(By::Hand);
  deck.Built()->refresh.tmrGetAllJobs.Start();
  loop.Advance(5s);
  EXPECT_TRUE(form.mnuView.Enabled);
  EXPECT_FALSE(form.mnuReport.Enabled);
}

TEST_F(ViewsTest, EqualizerButtonOpensTheConfigurationOnItsPage) {
  form.cmdEQ.Enabled = true;
  form.frmMain.Left = 300;
  form.frmMain.Top = 450;
  form.cmdEQ.Press(By::Hand);
  config.frmConfiguration.Activate();
  EXPECT_FALSE(form.frmMain.Visible);
  EXPECT_TRUE(config.frameConfigEqualizer.Visible);
  EXPECT_FALSE(config.frameSettings.Visible);
  EXPECT_EQ(form.txtPlayerLeft.Value.Get(), "300");
  EXPECT_EQ(form.txtPlayerTop.Value.Get(), "450");
}

TEST_F(ViewsTest, EqualizerButtonIsRefusedWhileADocumentIsBeingMoved) {
  form.cmdEQ.Enabled = true;
  const window::ListTransition moving(deck.Built()->mainWindow.guards);
  form.cmdEQ.Press(By::Hand);
  EXPECT_TRUE(form.frmMain.Visible);
  EXPECT_EQ(form.frmMain.Focused(), &form.txtFocus);
}

TEST_F(ViewsTest, DeviceThatRefusesTheFormatLeadsToTheConfigurationAndBack) {
  player.TakesFormat = false;
  ClickRow(0);
  EXPECT_FALSE(form.frmMain.Visible);
  EXPECT_TRUE(config.frmConfiguration.Visible);
  config.mnuClose.Press(By::Hand);
  EXPECT_TRUE(form.frmMain.Visible);
}

TEST_F(ViewsTest, ConfigurationTakesTheScreenAndGivesItBack) {
  form.mnuConfiguration.Press(By::Hand);
  EXPECT_FALSE(form.frmMain.Visible);
  EXPECT_TRUE(config.frmConfiguration.Visible);
  config.mnuClose.Press(By::Hand);
  EXPECT_TRUE(form.frmMain.Visible);
  EXPECT_FALSE(config.frmConfiguration.Visible);
}

TEST_F(ViewsTest, ChangedPromptVolumeIsKeptWhenTheConfigurationCloses) {
  form.mnuConfiguration.Press(By::Hand);
  Drag(config.sldPromptVol, 12'000);
  config.frmConfiguration.CloseRequest();
  EXPECT_EQ(Stored("PromptVolume"), "12000");
}

TEST_F(ViewsTest, AboutBoxShowsTheVersion) {
  form.mnuAbout.Press(By::Hand);
  EXPECT_TRUE(deck.windows.about.frmAbout.Visible);
  EXPECT_EQ(deck.windows.about.lblVersion.Value.Get(), "Version 03.08.00.TD   1.2.3");
  deck.windows.about.mnuClose.Press(By::Hand);
  EXPECT_FALSE(deck.windows.about.frmAbout.Visible);
  form.mnuAbout.Press(By::Hand);
  deck.windows.about.frmAbout.CloseRequest();
  EXPECT_FALSE(deck.windows.about.frmAbout.Visible);
}

TEST_F(ViewsTest, SystemInfoStartsTheDesktopsOwnProgram) {
  form.mnuAbout.Press(By::Hand);
  deck.windows.about.mnuSystemInfo.Press(By::Hand);
  EXPECT_EQ(informationShown, 1);
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(ViewsTest, SystemInfoSaysThatItIsUnavailable) {
  hasInformationTool = false;
  form.mnuAbout.Press(By::Hand);
  deck.windows.about.mnuSystemInfo.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck");
  EXPECT_EQ(loop.Shown[0].text, "System Information Is Unavailable At This Time");
}

TEST_F(ViewsTest, MinimizeMinimizes) {
  form.mnuMinimize.Press(By::Hand);
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Minimized);
}

TEST_F(ViewsTest, FrozenWindowThawsWhole) {
  auto& window = deck.Built()->mainWindow;
  window.DisableWindowControls();
  EXPECT_FALSE(form.mnuView.Enabled);
  EXPECT_FALSE(form.listViewInQueue.Enabled);
  EXPECT_FALSE(form.sldVol.Enabled);
  window.EnableWindowControls();
  EXPECT_TRUE(form.mnuView.Enabled);
  EXPECT_TRUE(form.listViewInQueue.Enabled);
  EXPECT_TRUE(form.sldVol.Enabled);
}

}  // namespace
}  // namespace tavlo::test
