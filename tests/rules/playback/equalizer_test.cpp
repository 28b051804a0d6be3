#include "playback/equalizer.h"

#include <gtest/gtest.h>

#include <numeric>

#include "support/equalizer_eye.h"
#include "support/hand.h"
#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using forms::By;
using Values = EqualizerCurve;

constexpr Values kMid{0, 0, 0, -2, -6, -10, -10, -6, -2, 0, 0, 0};
constexpr Values kHi{-10, -4, 0, 4, 0, -2, -4, -8, -12, -14, -16, -18};

struct EqualizerTest : testing::Test, PlaybackBench {
  EqualizerTest() {
    config.frmConfiguration.Visible = true;
    config.frameConfigEqualizer.Visible = true;
  }

  void Enable() { config.chkEqEnable.Click(); }

  Values Sliders() const { return ShownCurve(config); }

  void Drag(std::size_t band, int value) { test::Drag(config.sldEQ[band], value); }

  Values Told() const { return ToldCurve(player); }
};

TEST_F(EqualizerTest, IsOffAtFirstAndItsCurvesCannotBePressed) {
  engine.InitializeNCTcontrol();
  EXPECT_FALSE(player.EqualizerOn);
  EXPECT_FALSE(config.chkEqEnable.Value);
  config.cmdEqHi.Press(By::Hand);
  EXPECT_EQ(Sliders(), Values{});
  EXPECT_EQ(config.txtEqChoice.Value.Get(), "");
}

TEST_F(EqualizerTest, SwitchedOnFreesTheCurvesAndSendsTheSliders) {
  Drag(3, -7);
  player.Gains.clear();
  Enable();
  EXPECT_TRUE(player.EqualizerOn);
  EXPECT_EQ(config.txtEqEnable.Value.Get(), "Y");
  for (const forms::Command* key : {&config.cmdEqFlat, &config.cmdEqLo, &config.cmdEqMid,
                                    &config.cmdEqHi, &config.cmdEqCustom}) {
    EXPECT_TRUE(key->Enabled) << key->Name;
  }
  ASSERT_EQ(player.Gains.size(), 1U);
  EXPECT_EQ(Told(), Sliders());
}

TEST_F(EqualizerTest, SwitchedOffLocksTheCurvesAgain) {
  Enable();
  config.chkEqEnable.Click();
  EXPECT_FALSE(player.EqualizerOn);
  EXPECT_EQ(config.txtEqEnable.Value.Get(), "N");
  EXPECT_FALSE(config.cmdEqLo.Enabled);
}

TEST_F(EqualizerTest, EachCurveSetsItsSlidersAndIsRemembered) {
  Enable();
  struct Case {
    forms::Command& key;
    Values sliders;
    std::string choice;
  };
  for (const Case& expected :
       {Case{config.cmdEqLo, kLoCurve, "Lo"}, Case{config.cmdEqMid, kMid, "Mid"},
        Case{config.cmdEqHi, kHi, "Hi"}, Case{config.cmdEqFlat, Values{}, "Flat"}}) {
    expected.key.Press(By::Hand);
    EXPECT_EQ(Sliders(), expected.sliders) << expected.choice;
    EXPECT_EQ(Told(), expected.sliders) << expected.choice;
    EXPECT_EQ(config.txtEqChoice.Value.Get(), expected.choice);
    EXPECT_EQ(config.frmConfiguration.Focused(), &config.txtFocus);
  }
}

TEST_F(EqualizerTest, TopOfASliderIsTwentyDecibelsMore) {
  Drag(0, -20);
  EXPECT_EQ(player.Gains.back()[0], 20.0F);
}

TEST_F(EqualizerTest, GainsAreThirteenAndTheLastIsNothing) {
  for (std::size_t band = 0; band < config.sldEQ.size(); ++band) Drag(band, 5);
  EXPECT_EQ(player.Gains.back().size(), 13U);
  EXPECT_EQ(player.Gains.back()[11], -5.0F);
  EXPECT_EQ(player.Gains.back()[12], 0.0F);
}

TEST_F(EqualizerTest, DraggedBandIsSentWhenItIsReleasedAndLeavesTheChoice) {
  Enable();
  config.cmdEqHi.Press(By::Hand);
  const auto sent = player.Gains.size();
  config.sldEQ[4].Press();
  config.sldEQ[4].Change(9);
  EXPECT_EQ(player.Gains.size(), sent);
  config.sldEQ[4].Release();
  EXPECT_EQ(player.Gains.size(), sent + 1);
  EXPECT_EQ(config.txtEqChoice.Value.Get(), "Hi");
}

TEST_F(EqualizerTest, ChosenCurveIsTheColouredOne) {
  Enable();
  config.cmdEqMid.Press(By::Hand);
  EXPECT_EQ(config.cmdEqMid.BackColour.Get(), forms::PresetCommand::kChosen);
  EXPECT_FALSE(config.cmdEqHi.BackColour.Get());
  config.cmdEqHi.Press(By::Hand);
  EXPECT_FALSE(config.cmdEqMid.BackColour.Get());
  EXPECT_EQ(config.cmdEqHi.BackColour.Get(), forms::PresetCommand::kChosen);
}

TEST_F(EqualizerTest, SavedCustomCurveComesBackAsItWas) {
  Enable();
  Values custom{};
  std::iota(custom.begin(), custom.end(), -6);
  for (std::size_t band = 0; band < custom.size(); ++band) Drag(band, custom[band]);
  config.cmdSaveCustom.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1U);
  EXPECT_EQ(loop.Shown.back().text, "Custom equalizer setting saved");
  EXPECT_EQ(loop.Shown.back().title, "Tavlo Deck");
  EXPECT_EQ(config.txtEqCustom[0].Value.Get(), "-6");
  config.cmdEqFlat.Press(By::Hand);
  config.cmdEqCustom.Press(By::Hand);
  EXPECT_EQ(Sliders(), custom);
  EXPECT_EQ(config.txtEqChoice.Value.Get(), "Cust");
}

TEST_F(EqualizerTest, StoredCustomValuesOfAnySizeStayWithinTheSliders) {
  Enable();
  config.txtEqCustom[0].Value = "999999999999";
  config.txtEqCustom[1].Value = "-77";
  config.txtEqCustom[2].Value = "no number";
  config.cmdEqCustom.Press(By::Hand);
  EXPECT_EQ(config.sldEQ[0].Value, 20);
  EXPECT_EQ(config.sldEQ[1].Value, -20);
  EXPECT_EQ(config.sldEQ[2].Value, 0);
}

TEST_F(EqualizerTest, EachStartClicksTheStoredCurveAgainSoThatItsTableIsWhatPlays) {
  config.txtEqEnable.Value = "Y";
  config.txtEqChoice.Value = "Lo";
  Play();
  EXPECT_TRUE(config.chkEqEnable.Value);
  EXPECT_TRUE(player.EqualizerOn);
  EXPECT_EQ(Told(), kLoCurve);
  Drag(0, 0);
  form.cmdStop.Press(By::Hand);
  Play();
  EXPECT_EQ(Told(), kLoCurve);
}

TEST_F(EqualizerTest, SwitchedOffItStillReceivesGainsAtAStart) {
  config.txtEqEnable.Value = "N";
  config.txtEqChoice.Value = "Lo";
  Drag(0, -3);
  player.Gains.clear();
  Play();
  ASSERT_FALSE(player.Gains.empty());
  EXPECT_EQ(player.Gains.back()[0], 3.0F);
  EXPECT_FALSE(player.EqualizerOn);
}

TEST_F(EqualizerTest, UnknownStoredChoiceClicksNothing) {
  config.txtEqEnable.Value = "Y";
  config.txtEqChoice.Value = "Loud";
  Play();
  EXPECT_EQ(Told(), Values{});
  EXPECT_EQ(config.txtEqChoice.Value.Get(), "Loud");
  EXPECT_FALSE(config.cmdEqFlat.BackColour.Get());
}

}  // namespace
}  // namespace tavlo::test
