#include <gtest/gtest.h>

#include "support/deck_bench.h"
#include "support/equalizer_eye.h"
#include "support/hand.h"

namespace tavlo::test {
namespace {

using base::operator""s;
using forms::By;
using Values = EqualizerCurve;

/// The equalizer page in the whole program.
struct EqualizerWiringTest : testing::Test, DeckBench {
  void StartWith(const std::string& enable, const std::string& choice) {
    store::Assignments settings{{"EqualizerEnableFlag", enable}, {"EqualizerChoice", choice}};
    for (int band = 1; band <= forms::kEqualizerBands; ++band) {
      settings.emplace_back("CustomEq" + std::to_string(band), std::to_string(band));
    }
    DeckBench::StartWith(settings);
  }
  /// The page as the equalizer button brings it up.
  void OpenPage() {
    form.cmdEQ.Enabled = true;
    form.cmdEQ.Press(By::Hand);
    config.frmConfiguration.Activate();
  }
  void Drag(std::size_t band, int value) { test::Drag(config.sldEQ[band], value); }
  Values Sliders() const { return ShownCurve(config); }
  Values Told() const { return ToldCurve(player); }
};

TEST_F(EqualizerWiringTest, FirstOpeningAfterAStartShowsTheStoredCurveAndItIsWhatWouldSound) {
  StartWith("Y", "Lo");
  OpenPage();
  EXPECT_TRUE(config.chkEqEnable.Value);
  EXPECT_TRUE(config.cmdEqFlat.Enabled);
  EXPECT_EQ(config.cmdEqLo.BackColour.Get(), forms::PresetCommand::kChosen);
  EXPECT_EQ(Sliders(), kLoCurve);
  ASSERT_FALSE(player.Gains.empty());
  EXPECT_EQ(Told(), kLoCurve);
  EXPECT_TRUE(player.EqualizerOn);
}

TEST_F(EqualizerWiringTest, FirstOpeningAfterAStartShowsTheTypistsOwnCurve) {
  StartWith("Y", "Cust");
  OpenPage();
  EXPECT_EQ(Sliders(), (Values{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST_F(EqualizerWiringTest, PageOfAMachineWithoutASoundCardShowsWhatIsStoredToo) {
  player.Devices = 0;
  StartWith("Y", "Lo");
  OpenPage();
  EXPECT_TRUE(config.chkEqEnable.Value);
  EXPECT_EQ(Sliders(), kLoCurve);
}

TEST_F(EqualizerWiringTest, EqualizerThatIsStoredAsOffOpensLocked) {
  StartWith("N", "Lo");
  OpenPage();
  EXPECT_FALSE(config.chkEqEnable.Value);
  EXPECT_FALSE(config.cmdEqLo.Enabled);
  EXPECT_EQ(config.cmdEqLo.BackColour.Get(), forms::PresetCommand::kChosen);
  EXPECT_FALSE(player.EqualizerOn);
}

TEST_F(EqualizerWiringTest, DraggedBandsStayWhenTheWindowIsCameBackTo) {
  StartWith("Y", "Lo");
  OpenPage();
  Drag(3, 9);
  const auto sent = player.Gains.size();
  config.frmConfiguration.Activate();
  EXPECT_EQ(config.sldEQ[3].Value, 9);
  EXPECT_EQ(config.sldEQ[0].Value, kLoCurve[0]);
  EXPECT_EQ(player.Gains.size(), sent);
  EXPECT_EQ(config.txtEqChoice.Value.Get(), "Lo");
  EXPECT_EQ(config.cmdEqLo.BackColour.Get(), forms::PresetCommand::kChosen);
}

TEST_F(EqualizerWiringTest, BandsSavedAsTheOwnCurveStayUnderTheOneThatIsChosen) {
  StartWith("Y", "Lo");
  OpenPage();
  Drag(3, 9);
  config.cmdSaveCustom.Press(By::Hand);
  ASSERT_EQ(loop.Shown.back().text, "Custom equalizer setting saved");
  // The box has closed, and the desktop gives the focus back.
  config.frmConfiguration.Activate();
  EXPECT_EQ(config.sldEQ[3].Value, 9);
  EXPECT_EQ(config.txtEqCustom[3].Value.Get(), "9");
}

TEST_F(EqualizerWiringTest, DraggedBandsStayWhenTheWindowIsClosedAndOpenedAgain) {
  StartWith("Y", "Lo");
  OpenPage();
  Drag(3, 9);
  config.mnuClose.Press(By::Hand);
  OpenPage();
  EXPECT_EQ(config.sldEQ[3].Value, 9);
  EXPECT_EQ(Told(), Sliders());
}

TEST_F(EqualizerWiringTest, OnlyAStartOfPlayingPutsTheChosenCurveBack) {
  Drop(Document().Name());
  StartWith("Y", "Lo");
  OpenPage();
  Drag(3, 9);
  config.mnuClose.Press(By::Hand);
  ClickRow(0);
  loop.Advance(1s);
  EXPECT_EQ(Sliders(), kLoCurve);
  EXPECT_EQ(Told(), kLoCurve);
}

}  // namespace
}  // namespace tavlo::test
