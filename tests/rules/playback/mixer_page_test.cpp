#include "playback/mixer_page.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "forms/accessible_name.h"
#include "support/hand.h"
#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using Texts = std::vector<std::string>;

struct MixerPageTest : testing::Test, PlaybackBench {
  playback::MixerPage& page = mixerPage;

  MixerPageTest() {
    config.frmConfiguration.Visible = true;
    config.frameConfigMixer.Visible = true;
    player.Devices = 2;
    mixer.Devices = {{{.name = "Output", .volume = 40000, .balance = 30},
                      {.name = "Tavlo Deck", .volume = 65535, .mute = true},
                      {.name = "Microphone", .volume = 0, .hasBalance = false}},
                     {{.name = "Headset", .volume = 1000}}};
  }

  static std::vector<SimulatedSource> Sources(int count) {
    std::vector<SimulatedSource> sources;
    for (int i = 0; i < count; ++i) {
      sources.push_back({.name = "Source " + std::to_string(i), .volume = 100 * i});
    }
    return sources;
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const forms::Text& label : config.Label) {
      if (label.Visible) names.push_back(label.Value);
    }
    return names;
  }

  Texts Devices() const {
    Texts names;
    for (int row = 0; row < static_cast<int>(config.DeviceCombo.Rows().size()); ++row) {
      names.push_back(config.DeviceCombo.TextAt(row, 0));
    }
    return names;
  }
};

TEST_F(MixerPageTest, ComingToTheFrontTakesTheStoredDevice) {
  config.DeviceCombo.Add("built in");
  config.DeviceCombo.Add("headset");
  config.txtMixerSelection.Value = "1";
  page.ComesToFront();
  EXPECT_EQ(config.DeviceCombo.ListIndex, 1);
  EXPECT_EQ(Names(), Texts{"Headset"});
}

TEST_F(MixerPageTest, EachControlIsHeardUnderTheNameOfItsSource) {
  const auto heard = [this](std::size_t strip) {
    return Texts{forms::AccessibleName(config.slVolume[strip]),
                 forms::AccessibleName(config.slBalance[strip]),
                 forms::AccessibleName(config.chMute[strip])};
  };
  page.SetSrcDevice();
  EXPECT_EQ(heard(0), (Texts{"Volume of Output", "Balance of Output", "Mute Output"}));
  EXPECT_EQ(heard(2), (Texts{"Volume of Microphone", "Balance of Microphone", "Mute Microphone"}));
  EXPECT_EQ(config.chMute[2].Caption.Get(), "Mute");

  engine.InitializeNCTcontrol();
  config.DeviceCombo.RowClick(1);
  EXPECT_EQ(heard(0), (Texts{"Volume of Headset", "Balance of Headset", "Mute Headset"}));
  EXPECT_EQ(heard(1),
            (Texts{"Volume of this source", "Balance of this source", "Mute this source"}));
}

TEST_F(MixerPageTest, StartUpShowsTheSourcesOfTheStoredDevice) {
  config.txtMixerSelection.Value = "1";
  engine.InitializeNCTcontrol();
  EXPECT_EQ(mixer.DeviceName, "Device 1");
  EXPECT_EQ(Names(), Texts{"Headset"});
}

TEST_F(MixerPageTest, EachSourceHasItsStripWithVolumeUpsideDown) {
  page.SetSrcDevice();
  EXPECT_EQ(Names(), (Texts{"Output", "Tavlo Deck", "Microphone"}));
  EXPECT_EQ(config.slVolume[0].Value, 65535 - 40000);
  EXPECT_EQ(config.slBalance[0].Value, 30);
  EXPECT_FALSE(config.chMute[0].Value);
  EXPECT_EQ(config.slVolume[1].Value, 0);
  EXPECT_TRUE(config.chMute[1].Value);
  EXPECT_EQ(config.slVolume[2].Value, 65535);
}

TEST_F(MixerPageTest, WhatASourceLacksIsDisabledOrHidden) {
  mixer.Devices[0] = {{.name = "Line", .hasVolume = false, .hasBalance = false, .hasMute = false},
                      {.name = "All"}};
  page.SetSrcDevice();
  EXPECT_FALSE(config.slVolume[0].Enabled);
  EXPECT_FALSE(config.slBalance[0].Enabled);
  EXPECT_FALSE(config.chMute[0].Visible);
  EXPECT_TRUE(config.slVolume[1].Enabled);
  EXPECT_TRUE(config.slBalance[1].Enabled);
  EXPECT_TRUE(config.chMute[1].Visible);
}

TEST_F(MixerPageTest, PanelOfASourceIsShownFromZeroUpAndNeverToBePressed) {
  mixer.Devices[0] = {{.name = "None", .advanced = -1}, {.name = "Some", .advanced = 0}};
  page.SetSrcDevice();
  EXPECT_FALSE(config.cmdAdvanced[0].Visible);
  EXPECT_TRUE(config.cmdAdvanced[1].Visible);
  EXPECT_FALSE(config.cmdAdvanced[1].Enabled);
}

TEST_F(MixerPageTest, DeviceWithMoreThanEightSourcesShowsTheFirstEight) {
  mixer.Devices[0] = Sources(11);
  page.SetSrcDevice();
  ASSERT_EQ(Names().size(), 8U);
  EXPECT_EQ(Names().back(), "Source 7");
  EXPECT_EQ(config.slVolume[7].Value, 65535 - 700);
}

TEST_F(MixerPageTest, StripsBehindTheLastSourceAreEmpty) {
  mixer.Devices[0] = Sources(8);
  page.SetSrcDevice();
  mixer.Devices[0] = Sources(2);
  page.SetSrcDevice();
  for (std::size_t strip = 2; strip < config.slVolume.size(); ++strip) {
    EXPECT_EQ(config.Label[strip].Value.Get(), "") << strip;
    EXPECT_FALSE(config.Label[strip].Visible) << strip;
    EXPECT_FALSE(config.slVolume[strip].Visible) << strip;
    EXPECT_FALSE(config.slVolume[strip].Enabled) << strip;
    EXPECT_FALSE(config.slBalance[strip].Visible) << strip;
    EXPECT_FALSE(config.chMute[strip].Visible) << strip;
    EXPECT_EQ(config.slVolume[strip].Value, 65535) << strip;
    EXPECT_EQ(config.slBalance[strip].Value, 50) << strip;
  }
}

TEST_F(MixerPageTest, EachControlSaysWhoseItIs) {
  page.SetSrcDevice();
  EXPECT_EQ(config.slVolume[2].Tooltip.Get(), "Volume of Microphone");
  EXPECT_EQ(config.slBalance[0].Tooltip.Get(), "Balance of Output");
  EXPECT_EQ(config.chMute[1].Tooltip.Get(), "Silence Tavlo Deck");
}

TEST_F(MixerPageTest, PageWithoutASourceSaysSo) {
  mixer.Devices.clear();
  page.SetSrcDevice();
  EXPECT_TRUE(config.lblNoSource.Visible);
  EXPECT_EQ(Names(), Texts{});
  mixer.Devices = {Sources(1)};
  mixer.TellChange();
  EXPECT_FALSE(config.lblNoSource.Visible);
  EXPECT_EQ(Names(), Texts{"Source 0"});
}

TEST_F(MixerPageTest, ChosenDeviceIsRememberedSelectedAndShown) {
  engine.InitializeNCTcontrol();
  config.DeviceCombo.RowClick(1);
  EXPECT_EQ(config.txtMixerSelection.Value.Get(), "1");
  EXPECT_EQ(player.CurrentDevice(), 1);
  EXPECT_EQ(Names(), Texts{"Headset"});
}

TEST_F(MixerPageTest, DocumentPlaysOnWhereItIsWhileTheMixerIsWorked) {
  engine.InitializeNCTcontrol();
  Play();
  loop.Advance(base::Duration{2'000'000});
  const double heard = documentInWork.CurrentSamplePosition;
  ASSERT_GT(heard, 0);
  config.DeviceCombo.RowClick(1);
  Drag(config.slVolume[0], 0);
  Drag(config.slBalance[0], 100);
  config.chMute[0].Click();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(player.IsRunning());
  EXPECT_EQ(documentInWork.CurrentSamplePosition, heard);
  loop.Advance(base::Duration{1'000'000});
  EXPECT_NEAR(documentInWork.CurrentSamplePosition, heard + 8000, 500);
}

TEST_F(MixerPageTest, StoredDeviceStaysStoredWhileTheListIsFilled) {
  engine.InitializeNCTcontrol();
  config.txtMixerSelection.Value = "1";
  config.DeviceCombo.ListIndex = 1;
  engine.InitializeNCTcontrol();
  EXPECT_EQ(config.txtMixerSelection.Value.Get(), "1");
  EXPECT_EQ(player.CurrentDevice(), 1);
}

TEST_F(MixerPageTest, StoredDeviceThatIsNotListedSelectsNothing) {
  engine.InitializeNCTcontrol();
  config.txtMixerSelection.Value = "9";
  config.DeviceCombo.ListIndex = 9;
  EXPECT_EQ(config.txtMixerSelection.Value.Get(), "9");
  EXPECT_EQ(player.CurrentDevice(), 0);
  EXPECT_EQ(Names(), (Texts{"Output", "Tavlo Deck", "Microphone"}));
}

TEST_F(MixerPageTest, VolumeIsSetWhenItsSliderIsReleased) {
  page.SetSrcDevice();
  config.slVolume[2].Press();
  config.slVolume[2].Change(65535 - 123);
  EXPECT_EQ(mixer.Writes, Texts{});
  config.slVolume[2].Release();
  EXPECT_EQ(mixer.Writes, Texts{"Microphone volume 123"});
}

TEST_F(MixerPageTest, TopOfTheVolumeSliderIsTheFullVolume) {
  page.SetSrcDevice();
  Drag(config.slVolume[0], 0);
  EXPECT_EQ(mixer.Devices[0][0].volume, 65535);
  Drag(config.slVolume[0], 65535);
  EXPECT_EQ(mixer.Devices[0][0].volume, 0);
}

TEST_F(MixerPageTest, BalanceFollowsItsSliderWhileItMoves) {
  page.SetSrcDevice();
  config.slBalance[1].Press();
  config.slBalance[1].Change(10);
  config.slBalance[1].Change(0);
  EXPECT_EQ(mixer.Writes, (Texts{"Tavlo Deck balance 10", "Tavlo Deck balance 0"}));
  config.slBalance[1].Release();
}

TEST_F(MixerPageTest, MuteIsSetAndTakenBackByItsBox) {
  page.SetSrcDevice();
  config.chMute[0].Click();
  config.chMute[0].Click();
  EXPECT_EQ(mixer.Writes, (Texts{"Output mute 1", "Output mute 0"}));
}

TEST_F(MixerPageTest, LookingChangesNoSource) {
  page.SetSrcDevice();
  mixer.Devices[0][0] = {.name = "Output", .volume = 7, .balance = 99, .mute = true};
  page.SetSrcDevice();
  EXPECT_EQ(config.slBalance[0].Value, 99);
  EXPECT_EQ(mixer.Writes, Texts{});
}

TEST_F(MixerPageTest, ChangeMadeElsewhereShows) {
  page.SetSrcDevice();
  mixer.Devices[0][0].volume = 5;
  EXPECT_EQ(config.slVolume[0].Value, 65535 - 40000);
  mixer.TellChange();
  EXPECT_EQ(config.slVolume[0].Value, 65530);
}

TEST_F(MixerPageTest, SliderUnderTheHandIsNotMovedAwayAndShowsTheTruthWhenItIsLetGo) {
  page.SetSrcDevice();
  config.slVolume[0].Press();
  config.slVolume[0].Change(1000);
  mixer.Devices[0][0].volume = 5;
  mixer.Devices[0][2].volume = 77;
  mixer.TellChange();
  EXPECT_EQ(config.slVolume[0].Value, 1000);
  config.slVolume[0].Release();
  EXPECT_EQ(mixer.Devices[0][0].volume, 64535);
  EXPECT_EQ(config.slVolume[0].Value, 1000);
  EXPECT_EQ(config.slVolume[2].Value, 65535 - 77);
}

TEST_F(MixerPageTest, SourceThatGoesUnderTheHandHandsItsVolumeToNoOther) {
  page.SetSrcDevice();
  config.slVolume[1].Press();
  mixer.Devices[0].erase(mixer.Devices[0].begin() + 1);
  mixer.TellChange();
  config.slVolume[1].Change(30000);
  config.slVolume[1].Release();
  EXPECT_EQ(mixer.Devices[0][1].volume, 0);
  EXPECT_EQ(Names(), (Texts{"Output", "Microphone"}));
}

TEST_F(MixerPageTest, KeysMoveASliderStepByStep) {
  page.SetSrcDevice();
  config.slBalance[0].Step(35);
  config.slBalance[0].Step(40);
  EXPECT_EQ(mixer.Devices[0][0].balance, 40);
  EXPECT_EQ(config.frmConfiguration.Focused(), &config.slBalance[0]);
}

TEST_F(MixerPageTest, DeviceThatIsPluggedInStandsBehindTheOthersAndNoIndexChanges) {
  engine.InitializeNCTcontrol();
  mixer.Plugged = {"Headset", "Device 0", "Device 1"};
  mixer.TellChange();
  EXPECT_EQ(Devices(), (Texts{"Device 0", "Device 1", "Headset"}));
  mixer.Plugged = {"Device 1", "Speakers"};
  mixer.TellChange();
  EXPECT_EQ(Devices(), (Texts{"Device 0", "Device 1", "Headset", "Speakers"}));
  mixer.Plugged = {"Headset", "Device 1", "Speakers"};
  mixer.TellChange();
  EXPECT_EQ(Devices(), (Texts{"Device 0", "Device 1", "Headset", "Speakers"}));
  EXPECT_EQ(player.CurrentDevice(), 0);
  config.DeviceCombo.RowClick(3);
  EXPECT_EQ(player.DeviceName(), "Speakers");
  EXPECT_EQ(config.txtMixerSelection.Value.Get(), "3");
}

TEST_F(MixerPageTest, DeviceThatIsPluggedInWhileASliderIsHeldIsListedAtOnce) {
  engine.InitializeNCTcontrol();
  config.slVolume[0].Press();
  mixer.Plugged = {"Headset"};
  mixer.TellChange();
  EXPECT_EQ(Devices(), (Texts{"Device 0", "Device 1", "Headset"}));
  config.slVolume[0].Release();
}

TEST_F(MixerPageTest, NewsBeforeTheListIsFilledLeaveNoDeviceInItTwice) {
  mixer.Plugged = {"Device 1", "Headset"};
  mixer.TellChange();
  engine.InitializeNCTcontrol();
  EXPECT_EQ(Devices(), (Texts{"Device 0", "Device 1", "Headset"}));
}

TEST_F(MixerPageTest, StoredDeviceThatWasMissingPlaysOnceItIsPluggedIn) {
  config.txtMixerSelection.Value = "3";
  engine.InitializeNCTcontrol();
  page.ComesToFront();
  ASSERT_EQ(player.CurrentDevice(), 0);
  mixer.Plugged = {"Headset"};
  mixer.TellChange();
  EXPECT_EQ(player.CurrentDevice(), 0);
  mixer.Plugged = {"Headset", "Speakers"};
  mixer.TellChange();
  EXPECT_EQ(player.DeviceName(), "Speakers");
  EXPECT_EQ(config.txtMixerSelection.Value.Get(), "3");
  EXPECT_EQ(config.DeviceCombo.ListIndex, 3);
}

TEST_F(MixerPageTest, ChosenDeviceGoesOnPlayingWhenAnotherComes) {
  engine.InitializeNCTcontrol();
  config.DeviceCombo.RowClick(1);
  mixer.Plugged = {"Headset"};
  mixer.TellChange();
  EXPECT_EQ(player.CurrentDevice(), 1);
}

TEST_F(MixerPageTest, FirstDeviceOfAMachineThatHadNoneIsListedAndPlays) {
  player.Devices = 0;
  engine.InitializeNCTcontrol();
  mixer.Plugged = {"Headset"};
  mixer.TellChange();
  EXPECT_EQ(Devices(), (Texts{"System default", "Headset"}));
  EXPECT_EQ(player.DeviceName(), "System default");
  EXPECT_TRUE(player.DeviceHasMixer());
}

TEST_F(MixerPageTest, MachineWithoutASoundCardStaysEmpty) {
  player.Devices = 0;
  engine.InitializeNCTcontrol();
  EXPECT_EQ(config.DeviceCombo.Rows().size(), 0U);
  EXPECT_EQ(mixer.Looks, 0);
}

}  // namespace
}  // namespace tavlo::test
