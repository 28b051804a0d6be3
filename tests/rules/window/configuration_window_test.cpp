#include "window/configuration_window.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/simulated_database.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using forms::By;
using store::Table;

struct ConfigurationWindowTest : testing::Test {
  ConfigurationWindowTest() {
    main.frmMain.Visible = true;
    binding.Load();
    window.ReloadQueuePaths();
  }

  void Open() {
    window.Show();
    config.frmConfiguration.Activate();
  }
  window::ConfigurationHooks Hooks() {
    return {.applyBranding = [this] { ran += "branding "; },
            .centerMiniPlayer = [this] { ran += "centre "; },
            .openEqualizer = [this] { ran += "equalizer "; },
            .fillAuthors = [this] { ran += "authors "; },
            .showMixer = [this] { ran += "mixer "; },
            .saveFtpConfigSettings =
                [this] {
                  ran += "ftp ";
                  pathWhenFtpWasSaved = folders.Ew2QueuePath;
                  eu2WhenFtpWasSaved = folders.Eu2QueuePath;
                  visibleWhenFtpWasSaved = config.frmConfiguration.Visible;
                }};
  }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  SimulatedDatabase database;
  store::SettingsStore settings{database};
  store::WorkFolders folders{disk, "/root"};
  forms::MainForm main{loop};
  forms::ConfigurationForm config{loop};
  window::SettingsBinding binding{loop, main, config, settings, folders};
  std::string ran;
  std::string pathWhenFtpWasSaved;
  std::string eu2WhenFtpWasSaved;
  bool visibleWhenFtpWasSaved = false;
  window::ConfigurationWindow window{main, config, binding, folders, Hooks()};
};

TEST_F(ConfigurationWindowTest, SubjectHeadingStandsOverBothListsAtOnce) {
  for (forms::Table* list : {&main.listViewInQueue, &main.listViewCompleted}) {
    list->SetColumns(std::vector<forms::Column>(14));
  }
  Open();
  config.txtSubjectHeading.Change("Patient");
  for (const forms::Table* list : {&main.listViewInQueue, &main.listViewCompleted}) {
    EXPECT_EQ(list->Columns()[forms::document_column::Subject].title, "Patient");
  }
  config.txtSubjectHeading.Change("");
  EXPECT_EQ(config.txtSubjectHeading.Value.Get(), "Subject");
  EXPECT_EQ(main.listViewInQueue.Columns()[forms::document_column::Subject].title, "Subject");
}

TEST_F(ConfigurationWindowTest, MenuEntryShowsTheWindowInPlaceOfTheMainOne) {
  main.mnuConfiguration.Press();
  EXPECT_TRUE(config.frmConfiguration.Visible);
  EXPECT_FALSE(main.frmMain.Visible);
}

TEST_F(ConfigurationWindowTest, ClosingLeavesTheKeyboardOfTheMainWindowToNobody) {
  main.frmMain.FocusOn(main.cmdEQ);
  Open();
  config.mnuClose.Press(By::Hand);
  EXPECT_EQ(main.frmMain.Focused(), &main.txtFocus);
}

TEST_F(ConfigurationWindowTest, ClosingByTheMenuSavesTheFtpPageToo) {
  Open();
  config.txtSubjectHeading.Value = "Client";
  ran.clear();
  config.mnuClose.Press(By::Hand);
  EXPECT_EQ(ran, "ftp ");
  EXPECT_EQ(database.Value("SubjectHeading"), "Client");
  EXPECT_FALSE(config.frmConfiguration.Visible);
  EXPECT_TRUE(main.frmMain.Visible);
}

TEST_F(ConfigurationWindowTest, ClosingByTheFrameSavesAllButTheFtpPage) {
  Open();
  config.txtSubjectHeading.Value = "Client";
  config.eUser.Value = "typist";
  ran.clear();
  config.frmConfiguration.CloseRequest();
  EXPECT_EQ(ran, "");
  EXPECT_EQ(database.Value("SubjectHeading"), "Client");
  EXPECT_EQ(database.Value(Table::FtpSettings, 0, "FtpServerUserID"), "");
  EXPECT_FALSE(config.frmConfiguration.Visible);
  EXPECT_TRUE(main.frmMain.Visible);
}

TEST_F(ConfigurationWindowTest, FourthPathTakesEffectLaterThanTheOthers) {
  Open();
  config.txtEw2QueuePath.Value = "/new/ew2";
  config.txtEu2QueuePath.Value = "/new/eu2";
  config.mnuClose.Press();
  EXPECT_EQ(pathWhenFtpWasSaved, "/new/ew2/");
  EXPECT_EQ(eu2WhenFtpWasSaved, "/root/Files/eU2Queue/");
  EXPECT_TRUE(visibleWhenFtpWasSaved);
  EXPECT_EQ(folders.Eu2QueuePath, "/new/eu2/");
}

TEST_F(ConfigurationWindowTest, ClosingTakesTheDelayAndForgetsTheEqualizersRequest) {
  Open();
  window.ConfigOpenOnEqualizer = true;
  config.txtViewDelay.Value = "9";
  config.mnuClose.Press();
  EXPECT_EQ(folders.ViewDelay, 9);
  EXPECT_FALSE(window.ConfigOpenOnEqualizer);
}

TEST_F(ConfigurationWindowTest, WindowClosesAlsoWhenItsSaveFails) {
  Open();
  database.RefuseWrites("The disk is full.");
  config.txtWavQueuePath.Value = "/new/wav";
  config.mnuClose.Press();
  EXPECT_FALSE(config.frmConfiguration.Visible);
  EXPECT_EQ(folders.WavQueuePath, "/new/wav/");
  loop.Yield();
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(ConfigurationWindowTest, ChangeIsInEffectBeforeItIsSaved) {
  Open();
  config.sliderWindIncrement.Change(12);
  EXPECT_EQ(config.txtWindIncrement.Value.Get(), "12");
  EXPECT_EQ(config.frameWindIncrement.Caption.Get(), "Wind Increment:  12");
  EXPECT_EQ(database.Value("WindIncrement"), "3");
}

TEST_F(ConfigurationWindowTest, OpeningSetsTheSlidersFromTheirTexts) {
  config.txtAutoBackspace.Value = "7";
  config.txtPromptVolume.Value = "99999";
  Open();
  EXPECT_EQ(config.sliderABS.Value, 7);
  EXPECT_EQ(config.sliderAutoPreview.Value, 5);
  EXPECT_EQ(config.frameAutoPreview.Caption.Get(), "Audio Preview:  5");
  EXPECT_EQ(config.sldPromptVol.Value, 65535);
  EXPECT_EQ(config.txtPromptVolume.Value.Get(), "65535");
}

TEST_F(ConfigurationWindowTest, BackspaceShowsTenthsAsSeconds) {
  Open();
  const std::pair<int, std::string> shown[] = {
      {0, "0.0"}, {9, "0.9"}, {10, "1.0"}, {15, "1.5"}, {99, "9.9"}};
  for (const auto& [tenths, text] : shown) {
    config.sliderABS.Change(tenths);
    EXPECT_EQ(config.txtAutoBackspaceDisplay.Value.Get(), text);
    EXPECT_EQ(config.frameAutoBackspace.Caption.Get(), "Auto Backspace:  " + text);
  }
}

TEST_F(ConfigurationWindowTest, CheckBoxWritesItsLetter) {
  Open();
  config.chkSkipBegEnd.Click();
  EXPECT_EQ(config.txtSkipBegEnd.Value.Get(), "Y");
  config.chkSkipBegEnd.Click();
  EXPECT_EQ(config.txtSkipBegEnd.Value.Get(), "N");
  EXPECT_EQ(config.frmConfiguration.Focused(), &config.txtFocus);
}

TEST_F(ConfigurationWindowTest, OpeningSetsTheCheckBoxesFromTheirTexts) {
  config.txtAutoQueueJob.Value = "maybe";
  Open();
  EXPECT_FALSE(config.chkAutoQueueJob.Value);
  EXPECT_TRUE(config.chkAudioPrompts.Value);
  EXPECT_EQ(config.txtAutoQueueJob.Value.Get(), "maybe");
}

TEST_F(ConfigurationWindowTest, PedalBoxStoresTheReverseOfWhatItSays) {
  Open();
  EXPECT_TRUE(config.chkSwapRewindForwardPedals.Value);
  config.chkSwapRewindForwardPedals.Click();
  EXPECT_EQ(config.txtSwapRewFwdPedals.Value.Get(), "Y");
  EXPECT_EQ(config.lblLeftPedal.Value.Get(), "F");
  EXPECT_EQ(config.lblRightPedal.Value.Get(), "R");
  config.chkSwapRewindForwardPedals.Click();
  EXPECT_EQ(config.txtSwapRewFwdPedals.Value.Get(), "N");
  EXPECT_EQ(config.lblLeftPedal.Value.Get(), "R");
  EXPECT_EQ(config.lblRightPedal.Value.Get(), "F");
}

TEST_F(ConfigurationWindowTest, PromptsAndTheTopmostStateFollowTheirBoxesAtOnce) {
  binding.TakeAudioPrompts();
  Open();
  config.chkAudioPrompts.Click();
  EXPECT_FALSE(binding.AudioPromptsOn);
  config.chkAlwaysOnTop.Click();
  EXPECT_TRUE(main.frmMain.TopMost);
  config.chkAlwaysOnTop.Click();
  EXPECT_FALSE(main.frmMain.TopMost);
}

TEST_F(ConfigurationWindowTest, ClickOnTheCustomDisplayDrawsTheBrandAgain) {
  Open();
  ran.clear();
  config.chkShowCustomDisplay.Click();
  EXPECT_EQ(ran, "branding ");
}

TEST_F(ConfigurationWindowTest, ClickOnCenterCentersTheMiniPlayerAndGivesTheKeyboardAway) {
  Open();
  ran.clear();
  config.frmConfiguration.FocusOn(config.txtSubjectHeading);
  config.cmdCenterMiniPlayer.Press(By::Hand);
  EXPECT_EQ(ran, "centre ");
  EXPECT_EQ(config.frmConfiguration.Focused(), &config.txtFocus);
}

TEST_F(ConfigurationWindowTest, TabShowsItsPageAndNoOther) {
  Open();
  forms::Pane* const pages[] = {&config.frameSettings, &config.frameConfigEqualizer,
                                &config.frameConfigMixer, &config.frameConfigAlternatePath,
                                &config.frameFtp};
  for (int tab = 4; tab >= 0; --tab) {
    config.tabConfiguration.RowClick(tab);
    for (int page = 0; page < 5; ++page) EXPECT_EQ(pages[page]->Visible, page == tab) << page;
  }
}

TEST_F(ConfigurationWindowTest, MixerPageTakesTheStoredDevice) {
  Open();
  config.DeviceCombo.Add("built in");
  config.DeviceCombo.Add("headset");
  config.txtMixerSelection.Value = "1";
  config.tabConfiguration.RowClick(2);
  EXPECT_EQ(config.DeviceCombo.ListIndex, 1);
}

TEST_F(ConfigurationWindowTest, EqualizerButtonOpensTheWindowOnItsPage) {
  window.ConfigOpenOnEqualizer = true;
  Open();
  EXPECT_TRUE(config.frameConfigEqualizer.Visible);
  EXPECT_FALSE(config.frameSettings.Visible);
}

TEST_F(ConfigurationWindowTest, KindOfPedalMirrorsTheText) {
  Open();
  EXPECT_TRUE(config.optionUSB.Value);
  EXPECT_FALSE(config.txtSerialFootPedalComPort.Enabled);
  config.optionSerial.Click();
  EXPECT_EQ(config.txtUSBorSerialFootPedal.Value.Get(), "S");
  EXPECT_FALSE(config.optionUSB.Value);
  EXPECT_TRUE(config.txtSerialFootPedalComPort.Enabled);
  config.optionUSB.Click();
  EXPECT_EQ(config.txtUSBorSerialFootPedal.Value.Get(), "U");
  EXPECT_FALSE(config.optionSerial.Value);
}

TEST_F(ConfigurationWindowTest, BoxesForNumbersKeepTheirNumber) {
  Open();
  config.txtDeleteCompletedFiles.Change("300 days");
  EXPECT_EQ(config.txtDeleteCompletedFiles.Value.Get(), "300");
  config.txtViewDelay.Change("x");
  EXPECT_EQ(config.txtViewDelay.Value.Get(), "0");
}

TEST_F(ConfigurationWindowTest, TooltipFollowsTheCustomDisplay) {
  Open();
  config.txtCustomDisplay.Change("Hello");
  EXPECT_EQ(config.txtCustomDisplay.Tooltip.Get(), "Hello");
}

TEST_F(ConfigurationWindowTest, DoubleClickEmptiesTheWordProcessor) {
  Open();
  config.txtWordProcessorPath.DoubleClick();
  EXPECT_EQ(config.txtWordProcessorPath.Value.Get(), "");
}

TEST_F(ConfigurationWindowTest, ConversionModeStepsThroughItsRing) {
  Open();
  config.txtWavConvMode.Value = "8";
  std::string seen;
  for (int step = 0; step < 6; ++step) {
    config.cmdWavConvMode.Press(By::Hand);
    seen += config.txtWavConvMode.Value.Get() + " ";
  }
  EXPECT_EQ(seen, "11 12 16 22 44 8 ");
}

TEST_F(ConfigurationWindowTest, ConversionModeOutsideTheRingStays) {
  Open();
  config.txtWavConvMode.Value = "48";
  config.cmdWavConvMode.Press(By::Hand);
  EXPECT_EQ(config.txtWavConvMode.Value.Get(), "48");
}

TEST_F(ConfigurationWindowTest, PathTakesTheBrowsedFolderOrItsDefault) {
  Open();
  config.lblBrowsedFolder.Value = "/mnt/share";
  config.cmdSetWavQueuePath.Press();
  EXPECT_EQ(config.txtWavQueuePath.Value.Get(), "/mnt/share");
  config.cmdWavQueuePathDefault.Press();
  EXPECT_EQ(config.txtWavQueuePath.Value.Get(), "/root/Files/ImportQueue");
  config.cmdSetEu2QueuePath.Press();
  EXPECT_EQ(config.txtEu2QueuePath.Value.Get(), "/mnt/share");
  config.cmdEu2QueuePathDefault.Press();
  EXPECT_EQ(config.txtEu2QueuePath.Value.Get(), "/root/Files/eU2Queue");
}

}  // namespace
}  // namespace tavlo::test
