#include "forms/heard_value.h"

#include <gtest/gtest.h>

#include <limits>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using forms::HeardValue;
using forms::HeardWords;
using forms::ValueHeardAs;

struct HeardValueTest : testing::Test {
  SimulatedLoop loop;
  forms::MainForm main{loop};
  forms::ConfigurationForm config{loop};
};

TEST_F(HeardValueTest, AVolumeIsSaidInWholePercent) {
  const forms::Span& volume = main.sldVol.Bounds;
  EXPECT_EQ(HeardWords(volume, 0), "0 percent");
  EXPECT_EQ(HeardWords(volume, 55000), "84 percent");
  EXPECT_EQ(HeardWords(volume, 65535), "100 percent");
}

TEST_F(HeardValueTest, ASpeedIsSaidInPercentOfTheNormalOne) {
  const forms::Span& speed = main.Slider1.Bounds;
  EXPECT_EQ(HeardWords(speed, -50), "50 percent");
  EXPECT_EQ(HeardWords(speed, 0), "100 percent");
  EXPECT_EQ(HeardWords(speed, 25), "125 percent");
}

TEST_F(HeardValueTest, AGainIsSaidAsItSoundsThoughTheSliderCountsDownwards) {
  const forms::Span& gain = config.sldEQ[3].Bounds;
  EXPECT_EQ(HeardWords(gain, -20), "20 dB");
  EXPECT_EQ(HeardWords(gain, 0), "0 dB");
  EXPECT_EQ(HeardWords(gain, 7), "-7 dB");
  EXPECT_EQ(ValueHeardAs(gain, 12), -12);
}

TEST_F(HeardValueTest, AVolumeOfTheMixerCountsDownwardsToo) {
  const forms::Span& volume = config.slVolume[0].Bounds;
  EXPECT_EQ(HeardWords(volume, 65535), "0 percent");
  EXPECT_EQ(HeardWords(volume, 65535 - 40000), "61 percent");
  EXPECT_EQ(HeardWords(volume, 0), "100 percent");
}

TEST_F(HeardValueTest, TenthsOfASecondAreSaidAsSeconds) {
  EXPECT_EQ(HeardWords(config.sliderABS.Bounds, 15), "1.5 seconds");
  EXPECT_EQ(HeardWords(config.sliderABS.Bounds, 20), "2 seconds");
  EXPECT_EQ(HeardWords(config.sliderWindIncrement.Bounds, 3), "3 seconds");
}

TEST_F(HeardValueTest, WhatIsSetIsWhatIsSaidAfterwards) {
  for (const forms::Range* const slider :
       {&main.sldVol, &main.Slider1, &main.slPosition, &config.sliderABS, &config.sliderAutoPreview,
        &config.sliderWindIncrement, &config.sldPromptVol, &config.sldEQ[0], &config.slVolume[0],
        &config.slBalance[0]}) {
    const forms::Span& span = slider->Bounds;
    const double low = std::min(span.heard.atMinimum, span.heard.atMaximum);
    const double high = std::max(span.heard.atMinimum, span.heard.atMaximum);
    int steps = 0;
    for (double heard = low; heard <= high + 0.001; heard += span.heard.step, ++steps) {
      EXPECT_NEAR(HeardValue(span, ValueHeardAs(span, heard)), heard, 0.001) << slider->Name;
    }
    EXPECT_GT(steps, 10) << slider->Name;
  }
}

TEST_F(HeardValueTest, WhatIsBeyondTheBoundsIsCutToThem) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  EXPECT_EQ(ValueHeardAs(main.sldVol.Bounds, 300), 65535);
  EXPECT_EQ(ValueHeardAs(main.sldVol.Bounds, -kInfinite), 0);
  EXPECT_EQ(ValueHeardAs(config.slVolume[0].Bounds, kInfinite), 0);
}

}  // namespace
}  // namespace tavlo::test
