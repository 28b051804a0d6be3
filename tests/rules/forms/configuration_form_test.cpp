#include "forms/configuration_form.h"

#include <gtest/gtest.h>

#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

struct ConfigurationFormTest : testing::Test {
  SimulatedLoop loop;
  forms::ConfigurationForm config{loop};
};

TEST_F(ConfigurationFormTest, WindowStartsHiddenOnTheFirstOfSixPages) {
  EXPECT_EQ(config.frmConfiguration.Caption.Get(), "Tavlo Deck - Configuration");
  EXPECT_FALSE(config.frmConfiguration.Visible);
  ASSERT_EQ(config.tabConfiguration.Rows().size(), 6u);
  EXPECT_EQ(config.tabConfiguration.TextAt(4, 0), "&Ftp");
  EXPECT_EQ(config.tabConfiguration.TextAt(5, 0), "&Keys");
  EXPECT_TRUE(config.frameSettings.Visible);
  for (const forms::Pane* page :
       {&config.frameConfigEqualizer, &config.frameConfigMixer, &config.frameConfigAlternatePath,
        &config.frameFtp, &config.frameConfigKeys}) {
    EXPECT_FALSE(page->Visible) << page->Name;
  }
}

TEST_F(ConfigurationFormTest, EqualizerHasTwelveBandsInOrder) {
  ASSERT_EQ(config.sldEQ.size(), 12u);
  ASSERT_EQ(config.txtEqCustom.size(), 12u);
  EXPECT_EQ(config.lblBand[0].Value.Get(), "31 Hz");
  EXPECT_EQ(config.lblBand[3].Value.Get(), "252 Hz");
  EXPECT_EQ(config.lblBand[11].Value.Get(), "16 kHz");
  EXPECT_EQ(config.txtEqCustom[0].Name, "txtEqCustom1");
  EXPECT_EQ(config.txtEqCustom[11].Name, "txtEqCustom12");
  EXPECT_EQ(config.sldEQ[0].Bounds.minimum, -20);
  EXPECT_EQ(config.sldEQ[11].Bounds.maximum, 20);
}

TEST_F(ConfigurationFormTest, MixerHasEightSourcesWithFullVolumeAtTheBottom) {
  ASSERT_EQ(config.slVolume.size(), 8u);
  ASSERT_EQ(config.slBalance.size(), 8u);
  ASSERT_EQ(config.chMute.size(), 8u);
  ASSERT_EQ(config.cmdAdvanced.size(), 8u);
  EXPECT_EQ(config.slVolume[7].Value, 65535);
  EXPECT_EQ(config.slBalance[7].Value, 50);
  EXPECT_FALSE(config.cmdAdvanced[0].Enabled);
}

TEST_F(ConfigurationFormTest, SlidersStartAtTheirFirstValues) {
  EXPECT_EQ(config.sldPromptVol.Value, 55000);
  EXPECT_EQ(config.sliderAutoPreview.Value, 15);
  EXPECT_EQ(config.sliderABS.Bounds.maximum, 99);
  EXPECT_EQ(config.sliderWindIncrement.Bounds.maximum, 60);
}

TEST_F(ConfigurationFormTest, RefreshAndAlertsSayWhatTheyDo) {
  EXPECT_EQ(config.chkAutoRefreshMode.Caption.Get(), "Automatic Queue Refresh");
  EXPECT_EQ(config.txtAutoQueueRefreshInterval.Tooltip.Get(),
            "The number of seconds between each automatic queue refresh");
  EXPECT_EQ(config.txtNewDictationAlertInterval.Tooltip.Get(),
            "The number of seconds between each check for new dictation");
  EXPECT_EQ(config.chkWorkWaitingAlertMode.Caption.Get(), "New Dictation Alert");
  EXPECT_EQ(config.chkWorkWaitingAlertMode.Tooltip.Get(), "Alert when a new dictation has arrived");
  EXPECT_EQ(config.optNewWorkWaitingAllJobs.Caption.Get(), "Any");
  EXPECT_EQ(config.optNewWorkWaitingAllJobs.Tooltip.Get(),
            "Alert when any new dictation has arrived");
  EXPECT_EQ(config.optNewWorkWaitingPriority.Caption.Get(), "Priority");
  EXPECT_EQ(config.optNewWorkWaitingPriority.Tooltip.Get(),
            "Alert when a new priority dictation has arrived");
  EXPECT_EQ(config.chkAutoImportMode.Caption.Get(), "Automatic Import");
  EXPECT_EQ(config.chkAutoImportMode.Tooltip.Get(),
            "Automatically import files into the queue from the import folders");
}

TEST_F(ConfigurationFormTest, CloneWaitsForTheFirstMemorize) {
  EXPECT_FALSE(config.cmdFtpClone.Enabled);
  EXPECT_TRUE(config.cmdFtpMemorize.Enabled);
}

TEST_F(ConfigurationFormTest, PedalsStartGrey) {
  EXPECT_EQ(config.ShapeLeftPedal.FillColour.Get(), 0xC0C0C0u);
}

}  // namespace
}  // namespace tavlo::test
