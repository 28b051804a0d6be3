#include "shell/deck.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::Icon;
using base::operator""ms;
using base::operator""s;
using forms::By;
using forms::Pointer;

struct DeckTest : testing::Test, DeckBench {};

TEST_F(DeckTest, SecondCopyIsRefusedAndLeavesTheFirstUntouched) {
  anotherCopy = true;
  const auto operations = disk.Operations.size();
  deck.Start();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Running");
  EXPECT_EQ(loop.Shown[0].icon, Icon::Information);
  EXPECT_EQ(loop.Shown[0].text,
            "The Tavlo Deck can not be started because Windows reports that it is already "
            "running.\nIf you see the Tavlo Deck in the task bar, click on it to view it.\nIf it "
            "is not in the task bar, press CTRL-ALT-DEL, click Task Manager, click Applications, "
            "and if the Lyrane_Tavlo_Deck_Project status is\n'Not Responding', then select it and "
            "click End Task.  Then exit the Task Manager and restart the Tavlo Deck.");
  EXPECT_TRUE(ended.has_value());
  EXPECT_EQ(disk.Operations.size(), operations);
  EXPECT_FALSE(deck.windows.splash.frmInitSplash.Visible);
}

TEST_F(DeckTest, MissingSettingsFileIsFatalAndNamed) {
  disk.Remove(SettingsPath());
  deck.Start();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_NE(loop.Shown[0].text.find(SettingsPath()), std::string::npos);
  EXPECT_EQ(ended, 1);
  EXPECT_EQ(deck.Built(), nullptr);
  EXPECT_FALSE(disk.Has(SettingsPath()));
}

TEST_F(DeckTest, SettingsFileHeldByAnotherProgramIsFatalAndUnchanged) {
  databases.HoldByAnother(SettingsPath());
  const std::string before = disk.Contents(SettingsPath());
  deck.Start();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_NE(loop.Shown[0].text.find(SettingsPath()), std::string::npos);
  EXPECT_EQ(ended, 1);
  EXPECT_EQ(disk.Contents(SettingsPath()), before);
}

TEST_F(DeckTest, DamagedSettingsFileIsFatalAndUnchanged) {
  disk.Write(SettingsPath(), "rubbish");
  deck.Start();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_NE(loop.Shown[0].text.find(SettingsPath()), std::string::npos);
  EXPECT_EQ(ended, 1);
  EXPECT_EQ(disk.Contents(SettingsPath()), "rubbish");
}

TEST_F(DeckTest, RootThatCanNotBeMadeIsFatalAndNamed) {
  disk.Remove(SettingsPath());
  disk.Remove(kRoot);
  disk.FailOperation(1, store::DiskResult::NoSpace, SimulatedDisk::Failing::ForGood);
  deck.Start();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_NE(loop.Shown[0].text.find("/home/typist/Lyrane"), std::string::npos);
  EXPECT_EQ(ended, 1);
}

TEST_F(DeckTest, SplashHoldsTheScreenForFiveSecondsAndShowsTheVersion) {
  deck.Start();
  const auto& splash = deck.windows.splash;
  EXPECT_TRUE(splash.frmInitSplash.Visible);
  EXPECT_EQ(splash.frmInitSplash.MousePointer, Pointer::Hourglass);
  EXPECT_EQ(splash.lblVersion.Value.Get(), "Version:  03.08.00.TD   1.2.3");
  loop.Advance(4999ms);
  EXPECT_TRUE(splash.frmInitSplash.Visible);
  EXPECT_FALSE(form.frmMain.Visible);
  loop.Advance(1ms);
  EXPECT_FALSE(splash.frmInitSplash.Visible);
  EXPECT_TRUE(form.frmMain.Visible);
}

TEST_F(DeckTest, ClickOnTheSplashIconOpensTheMainWindowAtOnce) {
  deck.Start();
  loop.Advance(200ms);
  deck.windows.splash.picIcon.Click();
  EXPECT_TRUE(form.frmMain.Visible);
  EXPECT_FALSE(deck.Built() == nullptr);
}

TEST_F(DeckTest, SplashRefusesToClose) {
  deck.Start();
  deck.windows.splash.frmInitSplash.CloseRequest();
  EXPECT_TRUE(deck.windows.splash.frmInitSplash.Visible);
  EXPECT_FALSE(ended.has_value());
}

TEST_F(DeckTest, LoadKeepsTheMenusDisabledUntilTheFirstRefreshEnds) {
  deck.Start();
  loop.Advance(5000ms);
  // The load waits a second inside the tick; the first refresh follows a tenth of a second later
  // and waits one and a half.
  EXPECT_FALSE(form.mnuFile.Enabled);
  EXPECT_FALSE(form.mnuView.Enabled);
  EXPECT_FALSE(form.mnuReport.Enabled);
  loop.Advance(4s);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_TRUE(form.mnuView.Enabled);
  EXPECT_TRUE(form.mnuReport.Enabled);
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
}

TEST_F(DeckTest, FirstRefreshShowsWhatWaits) {
  Drop(Document().By("Brown").Name());
  StartUntilReady();
  ASSERT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_TRUE(form.listViewInQueue.Visible);
  EXPECT_EQ(form.frameInQueue.Caption.Get(), "Queue:     1     00:00:10");
}

TEST_F(DeckTest, LoadMakesTheFolderTree) {
  StartUntilReady();
  for (const char* folder : {"/Files/InQueue", "/Files/Completed", "/Files/ImportQueue/25",
                             "/Reports", "/PlaceOldDatabaseHere", "/Files/FtpQueue"}) {
    EXPECT_TRUE(disk.Has(kRoot + folder)) << folder;
  }
}

TEST_F(DeckTest, SecondStartWithTheWholeTreeReportsNothing) {
  StartUntilReady();
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(DeckTest, FreshRootIsProvisionedAndStarts) {
  disk.Remove(SettingsPath());
  disk.Remove(kRoot);
  StartUntilReady();
  EXPECT_TRUE(disk.Has(SettingsPath()));
  EXPECT_TRUE(form.mnuFile.Enabled);
}

TEST_F(DeckTest, StoredSpeedAndVolumeAreInForce) {
  StartWith({{"Speed", "80"}, {"Volume", "1234"}});
  EXPECT_EQ(deck.Built()->engine.PlaySpeedPercent, 80);
  // The welcome is spoken at the volume of the prompts, once the document's is in force.
  EXPECT_EQ(player.Volumes, (std::vector<int>{1234, 20'000}));
}

TEST_F(DeckTest, RootOfAnEarlierReleaseGetsTheNewPrompts) {
  disk.WithFile("/usr/share/tavlodeck/Prompts/Welcome.wav", "welcome");
  deck.Start();
  EXPECT_EQ(disk.Contents(Path("/Prompts/Welcome.wav")), "welcome");
}

TEST_F(DeckTest, PromptsThatCanNotBeAddedDoNotKeepItFromStarting) {
  disk.WithFile("/usr/share/tavlodeck/Prompts/Welcome.wav", "welcome");
  disk.SetFreeSpace("/", 0);
  StartUntilReady();
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_FALSE(disk.Has(Path("/Prompts/Welcome.wav")));
}

TEST_F(DeckTest, WelcomesWhoStartsIt) {
  StartUntilReady();
  EXPECT_EQ(promptControl.Sounded, std::vector<std::string>{Path("/Prompts/Welcome.wav")});
}

TEST_F(DeckTest, StaysSilentWhenPromptsAreSwitchedOff) {
  StartWith({{"AudioPromptsFlag", "N"}});
  EXPECT_TRUE(promptControl.Sounded.empty());
}

TEST_F(DeckTest, CheckBoxOfThePromptsActsAtOnce) {
  StartUntilReady();
  promptControl.Sounded.clear();
  form.mnuConfiguration.Press(By::Hand);
  config.frmConfiguration.Activate();
  config.chkAudioPrompts.Click();
  deck.Built()->prompts.PlayPrompt("RefreshQueue");
  EXPECT_TRUE(promptControl.Sounded.empty());
  config.chkAudioPrompts.Click();
  deck.Built()->prompts.PlayPrompt("RefreshQueue");
  EXPECT_EQ(promptControl.Sounded.size(), 1u);
}

TEST_F(DeckTest, PlayGivesTheDocumentItsVolumeBackAndEndsThePrompt) {
  Drop("a.wav");
  StartUntilReady();
  ClickRow(0);
  deck.Built()->prompts.PlayPrompt("RewindTone");
  EXPECT_EQ(player.Volumes.back(), 10'000);
  form.cmdPlay.Press(By::Hand);
  EXPECT_FALSE(promptControl.Sounds);
  EXPECT_EQ(player.Volumes.back(), form.txtVolume.WholeNumber());
  EXPECT_TRUE(player.IsRunning());
}

TEST_F(DeckTest, EmptySettingsAreFilledWithTheirDefaults) {
  StartWith({{"WindIncrement", ""}, {"AutoPreview", ""}, {"AutoBackspace", ""}});
  EXPECT_EQ(config.txtWindIncrement.Value.Get(), "3");
  EXPECT_EQ(config.txtAutoPreview.Value.Get(), "5");
  EXPECT_EQ(config.txtAutoBackspace.Value.Get(), "0");
}

TEST_F(DeckTest, AlertTimerTakesTheIntervalOfItsMode) {
  StartWith({{"WorkWaitingAlertMode", "P"}, {"NewDictationAlertInterval", "60"}});
  EXPECT_EQ(deck.Built()->waitingWork.tmrWorkWaitingAlert.Interval(), 3000ms);
}

TEST_F(DeckTest, AlertTimerTakesTheLongestIntervalForAStoredOneBeyondIt) {
  StartWith({{"WorkWaitingAlertMode", "A"}, {"NewDictationAlertInterval", "5000"}});
  EXPECT_EQ(deck.Built()->waitingWork.tmrWorkWaitingAlert.Interval(), 65'500ms);
  EXPECT_EQ(config.txtNewDictationAlertInterval.Value.Get(), "1310");
}

TEST_F(DeckTest, FtpFileTypesAreListedAndTheFirstIsChosen) {
  StartUntilReady();
  EXPECT_EQ(form.comboFtpFileTypesToList.Rows().size(), 11u);
  EXPECT_EQ(form.comboFtpFileTypesToList.TextAt(0, 0), "All files");
  EXPECT_EQ(form.comboFtpFileTypesToList.TextAt(10, 0), "vox files");
  EXPECT_EQ(form.comboFtpFileTypesToList.ListIndex, 0);
}

TEST_F(DeckTest, ActivationPinsTheWindowWhenTheSettingSaysSo) {
  StartUntilReady();
  EXPECT_FALSE(form.frmMain.TopMost);
  config.txtAlwaysOnTop.Value = "Y";
  form.frmMain.Activate();
  EXPECT_TRUE(form.frmMain.TopMost);
}

TEST_F(DeckTest, StartWithoutASoundCardShowsTheQueueAllTheSame) {
  player.Devices = 0;
  Drop(Document().Name());
  StartUntilReady();
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Sound Card");
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
}

TEST_F(DeckTest, WithoutASoundCardADocumentCanBeWorkedOnInSilence) {
  player.Devices = 0;
  Drop(Document().Name());
  StartUntilReady();
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  EXPECT_TRUE(form.cmdSave.Enabled);
  form.cmdSkip.Press(By::Hand);
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(form.frmMain.Visible);
  EXPECT_TRUE(form.mnuFile.Enabled);
}

TEST_F(DeckTest, WhatLeadsNowhereDoesNotLookUsable) {
  StartUntilReady();
  EXPECT_TRUE(form.mnuViewQueue.Visible);
  for (const forms::Command* entry :
       {&form.mnuViewQueue, &form.mnuViewCompleted, &form.mnuViewImport, &form.mnuViewFtp,
        &form.mnuReport, &deck.windows.about.mnuSystemInfo}) {
    EXPECT_EQ(entry->Visible, entry->OnPress != nullptr) << entry->Name;
  }
  EXPECT_EQ(config.frameConfigEqualizer.Enabled, config.cmdEqFlat.OnPress != nullptr);
  EXPECT_EQ(config.frameConfigMixer.Enabled, config.DeviceCombo.OnSelect != nullptr);
  EXPECT_EQ(config.frameFtp.Enabled, config.cmdFtpNext.OnPress != nullptr);
}

TEST_F(DeckTest, MixerPageShowsTheSourcesOfTheStoredDeviceAsItOpens) {
  constexpr int kMixerTab = 2;
  player.Devices = 2;
  mixer.Devices = {{{.name = "Output"}}, {{.name = "Headset", .volume = 100}}};
  StartUntilReady();
  EXPECT_EQ(config.Label[0].Value.Get(), "Output");
  config.txtMixerSelection.Value = "1";
  form.mnuConfiguration.Press(By::Hand);
  config.frmConfiguration.Activate();
  mixer.Devices[1][0].volume = 200;
  config.tabConfiguration.RowClick(kMixerTab);
  EXPECT_TRUE(config.frameConfigMixer.Enabled);
  EXPECT_EQ(player.CurrentDevice(), 1);
  EXPECT_EQ(config.Label[0].Value.Get(), "Headset");
  EXPECT_EQ(config.slVolume[0].Value, 65535 - 200);
  mixer.Devices[1][0].volume = 300;
  config.tabConfiguration.RowClick(0);
  config.tabConfiguration.RowClick(kMixerTab);
  EXPECT_EQ(config.slVolume[0].Value, 65535 - 300);
}

TEST_F(DeckTest, TwoDecksLiveInOneProcess) {
  DeckBench other;
  Drop(Document().Name());
  StartUntilReady();
  other.StartUntilReady();
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_TRUE(other.form.listViewInQueue.Rows().empty());
}

}  // namespace
}  // namespace tavlo::test
