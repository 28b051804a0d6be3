#include "window/configuration_window.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "support/settings_bench.h"
#include "support/simulated_folders.h"
#include "window/path_choices.h"
#include "window/settings_choices.h"

namespace tavlo::test {
namespace {

using forms::By;
using store::Table;

/// A page on which nothing is but what the test sees of it.
struct PageTwin : window::ConfigurationPage {
  explicit PageTwin(forms::Pane& shown) : frame(shown) {}

  forms::Pane& Frame() override { return frame; }
  void WindowCloses(window::ConfigurationExit exit) override { OnClose(exit); }

  forms::Pane& frame;
  std::function<void(window::ConfigurationExit)> OnClose = [](auto) {};
};

struct BrandTwin : window::Brand {
  int drawn = 0;
  void ApplyBranding() override { ++drawn; }
};

struct PedalChoiceTwin : window::PedalChoice {
  int followed = 0;
  void FollowChoice() override { ++followed; }
};

struct AlertTimerTwin : window::AlertTimer {
  void RestartWith(base::Duration) override {}
};

struct ConfigurationWindowTest : testing::Test, SettingsBench {
  ConfigurationWindowTest() {
    for (window::ConfigurationPage* page : std::initializer_list<window::ConfigurationPage*>{
             &choices, &equalizer, &mixer, &paths, &servers}) {
      window.Register(*page);
    }
    main.frmMain.Visible = true;
    binding.Load();
    window.ReloadQueuePaths();
  }

  void Open() {
    mainWindow.ShowConfiguration();
    config.frmConfiguration.Activate();
  }

  window::MainWindow mainWindow{main, config, [] {}};
  window::ConfigurationWindow window{mainWindow, binding, folders};
  AlertTimerTwin timer;
  BrandTwin brand;
  PedalChoiceTwin pedal;
  window::SettingsChoices choices{mainWindow, binding, timer, brand, pedal};
  PageTwin equalizer{config.frameConfigEqualizer};
  PageTwin mixer{config.frameConfigMixer};
  SimulatedFolders machine;
  window::PathChoices paths{config, folders, machine};
  PageTwin servers{config.frameFtp};
};

TEST_F(ConfigurationWindowTest, SubjectHeadingStandsOverBothListsAndInTheProfileAtOnce) {
  for (forms::Table* list : {&main.listViewInQueue, &main.listViewCompleted}) {
    list->SetColumns(std::vector<forms::Column>(14));
  }
  Open();
  config.txtSubjectHeading.Change("Patient");
  for (const forms::Table* list : {&main.listViewInQueue, &main.listViewCompleted}) {
    EXPECT_EQ(list->Columns()[forms::document_column::Subject].title, "Patient");
  }
  EXPECT_EQ(main.lblImportSubject.Value.Get(), "Patient");
  config.txtSubjectHeading.Change("");
  EXPECT_EQ(config.txtSubjectHeading.Value.Get(), "Subject");
  EXPECT_EQ(main.listViewInQueue.Columns()[forms::document_column::Subject].title, "Subject");
}

TEST_F(ConfigurationWindowTest, SetTakesNoPathWhereNoPlaceCouldBeRead) {
  Open();
  config.lblBrowsedFolder.Value = "";
  const std::string before = config.txtEw2QueuePath.Value;
  config.cmdSetEw2QueuePath.Press();
  EXPECT_EQ(config.txtEw2QueuePath.Value.Get(), before);
}

TEST_F(ConfigurationWindowTest, MenuEntryShowsTheWindowInPlaceOfTheMainOne) {
  main.mnuConfiguration.Press();
  EXPECT_TRUE(config.frmConfiguration.Visible);
  EXPECT_FALSE(main.frmMain.Visible);
}

TEST_F(ConfigurationWindowTest, ClosingGivesTheKeyboardOfTheMainWindowAway) {
  main.frmMain.FocusOn(main.cmdEQ);
  Open();
  config.mnuClose.Press(By::Hand);
  EXPECT_EQ(main.frmMain.Focused(), &main.txtFocus);
}

TEST_F(ConfigurationWindowTest, ClosingTellsEachPageByWhichWayOnceAllIsSaved) {
  using window::ConfigurationExit;
  std::vector<ConfigurationExit> exits;
  servers.OnClose = [&](ConfigurationExit exit) {
    exits.push_back(exit);
    EXPECT_EQ(database.Value("SubjectHeading"), "Client");
    EXPECT_TRUE(config.frmConfiguration.Visible);
  };
  config.txtSubjectHeading.Value = "Client";
  Open();
  config.mnuClose.Press(By::Hand);
  Open();
  config.frmConfiguration.CloseRequest();
  EXPECT_EQ(exits, (std::vector{ConfigurationExit::ByMenu, ConfigurationExit::ByFrame}));
  EXPECT_FALSE(config.frmConfiguration.Visible);
  EXPECT_TRUE(main.frmMain.Visible);
}

TEST_F(ConfigurationWindowTest, ClosingByTheFrameSavesAllButTheFtpPage) {
  Open();
  config.txtSubjectHeading.Value = "Client";
  config.eUser.Value = "typist";
  config.frmConfiguration.CloseRequest();
  EXPECT_EQ(database.Value("SubjectHeading"), "Client");
  EXPECT_EQ(database.Value(Table::FtpSettings, 0, "FtpServerUserID"), "");
  EXPECT_FALSE(config.frmConfiguration.Visible);
  EXPECT_TRUE(main.frmMain.Visible);
}

TEST_F(ConfigurationWindowTest, FourthPathTakesEffectLaterThanTheOthers) {
  Open();
  config.txtEw2QueuePath.Value = "/new/ew2";
  config.txtEu2QueuePath.Value = "/new/eu2";
  int closed = 0;
  servers.OnClose = [&](auto) {
    ++closed;
    EXPECT_EQ(folders.Ew2QueuePath, "/new/ew2/");
    EXPECT_EQ(folders.Eu2QueuePath, "/root/Files/eU2Queue/");
    EXPECT_TRUE(config.frmConfiguration.Visible);
  };
  config.mnuClose.Press();
  EXPECT_EQ(closed, 1);
  EXPECT_EQ(folders.Eu2QueuePath, "/new/eu2/");
}

TEST_F(ConfigurationWindowTest, PageThatIsNotRegisteredIsNotOffered) {
  forms::ConfigurationForm other{loop};
  window::MainWindow otherMain{main, other, [] {}};
  window::ConfigurationWindow bare{otherMain, binding, folders};
  for (const forms::Pane* page : other.Pages()) EXPECT_FALSE(page->Enabled) << page->Name;
  PageTwin mixerPage{other.frameConfigMixer};
  bare.Register(mixerPage);
  EXPECT_TRUE(other.frameConfigMixer.Enabled);
  EXPECT_FALSE(other.frameFtp.Enabled);
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
  brand.drawn = 0;
  config.chkShowCustomDisplay.Click();
  EXPECT_EQ(brand.drawn, 1);
}

TEST_F(ConfigurationWindowTest, ClickOnCenterCentersTheMiniPlayerAndGivesTheKeyboardAway) {
  Open();
  main.frmMain.Left = 0;
  config.frmConfiguration.FocusOn(config.txtSubjectHeading);
  config.cmdCenterMiniPlayer.Press(By::Hand);
  EXPECT_EQ(main.frmMain.Left, (main.frmMain.ScreenWidth - main.frmMain.Width) / 2);
  EXPECT_EQ(main.txtPlayerLeft.Value.Get(), std::to_string(main.frmMain.Left.Get()));
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
  EXPECT_EQ(pedal.followed, 1);
  EXPECT_FALSE(config.optionUSB.Value);
  EXPECT_TRUE(config.txtSerialFootPedalComPort.Enabled);
  config.optionUSB.Click();
  EXPECT_EQ(config.txtUSBorSerialFootPedal.Value.Get(), "U");
  EXPECT_FALSE(config.optionSerial.Value);
}

TEST_F(ConfigurationWindowTest, BoxesForNumbersKeepTheirNumber) {
  Open();
  const std::pair<const char*, const char*> numbers[] = {
      {"300 days", "300"}, {"x", "0"}, {"", "0"}, {" 7 ", "0"}, {"-3", "-3"}, {"007", "7"}};
  for (forms::Text* const box : {&config.txtDeleteCompletedFiles, &config.txtViewDelay}) {
    for (const auto& [typed, kept] : numbers) {
      box->Change(typed);
      EXPECT_EQ(box->Value.Get(), kept) << box->Name << " after " << typed;
    }
  }
}

TEST_F(ConfigurationWindowTest, SliderThatIsLetGoWritesItsTextAndGivesTheKeyboardAway) {
  Open();
  const std::pair<forms::Range&, forms::Text&> sliders[] = {
      {config.sliderABS, config.txtAutoBackspace},
      {config.sliderAutoPreview, config.txtAutoPreview},
      {config.sliderWindIncrement, config.txtWindIncrement},
      {config.sldPromptVol, config.txtPromptVolume}};
  for (const auto& [slider, text] : sliders) {
    config.frmConfiguration.FocusOn(slider);
    slider.Press();
    slider.Change(11);
    EXPECT_EQ(text.Value.Get(), "11") << slider.Name;
    text.Value = "";
    slider.Release();
    EXPECT_EQ(text.Value.Get(), "11") << slider.Name;
    EXPECT_EQ(config.frmConfiguration.Focused(), &config.txtFocus) << slider.Name;
  }
}

TEST_F(ConfigurationWindowTest, TooltipFollowsTheCustomDisplay) {
  Open();
  config.txtCustomDisplay.Change("Hello");
  EXPECT_EQ(config.txtCustomDisplay.Tooltip.Get(), "Hello");
}

TEST_F(ConfigurationWindowTest, DoubleClickEmptiesTheWordProcessor) {
  Open();
  config.txtWordProcessorPath.Change("/usr/bin/writer");
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
