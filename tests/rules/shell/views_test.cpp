#include "shell/views.h"

#include <gtest/gtest.h>

#include "support/deck_bench.h"

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

TEST_F(ViewsTest, QueueViewStartsTheAlertTimerAnew) {
  deck.Built()->refresh.tmrWorkWaitingAlert.Stop();
  form.mnuViewQueue.Press(By::Hand);
  EXPECT_TRUE(deck.Built()->refresh.tmrWorkWaitingAlert.Enabled());
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
  deck.Built()->mainWindow.guards.ListTransitionBusy = true;
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
  config.sldPromptVol.Press();
  config.sldPromptVol.Change(12'000);
  config.sldPromptVol.Release();
  config.frmConfiguration.CloseRequest();
  EXPECT_EQ(databases.Look(SettingsPath())[store::Table::GeneralSettings][0]["PromptVolume"],
            "12000");
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
