#include "playback/preview.h"

#include <gtest/gtest.h>

#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct PreviewTest : testing::Test, PlaybackBench {
  bool Select() { return preview.Prepare(loop, "/doc.wav") && preview.Start("EmptyDocErr"); }
};

TEST_F(PreviewTest, SelectionSoundsTheBeginningForASecondMoreThanAsked) {
  Lay({.samples = 800'000});
  EXPECT_TRUE(Select());
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(file.Seeks.back(), 0);
  loop.Advance(5999ms);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(1ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(file.IsOpen());
  EXPECT_TRUE(transport.DocumentPrimed);
}

TEST_F(PreviewTest, SlowerSpeedLengthensIt) {
  engine.PlaySpeedPercent = 50;
  Select();
  EXPECT_EQ(engine.tmrPlaySnipet.Interval(), 12'000ms);
  config.txtAutoPreview.Value = "15";
  Select();
  EXPECT_EQ(engine.tmrPlaySnipet.Interval(), 32'000ms);
  engine.PlaySpeedPercent = 150;
  Select();
  EXPECT_EQ(engine.tmrPlaySnipet.Interval(), 10'667ms);
}

TEST_F(PreviewTest, LengthBeyondAllMeasureIsADay) {
  config.txtAutoPreview.Value = std::string(300, '9');
  Select();
  EXPECT_EQ(engine.tmrPlaySnipet.Interval(), base::Duration{std::chrono::hours{24}} + 1s);
}

TEST_F(PreviewTest, PreviewOfNoSecondsIsSilent) {
  config.txtAutoPreview.Value = "0";
  EXPECT_TRUE(Select());
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(engine.tmrPlaySnipet.Enabled());
  EXPECT_EQ(file.OpenCount, 0);
}

TEST_F(PreviewTest, SecondSelectionStartsFromTheBeginning) {
  Select();
  loop.Advance(3s);
  Select();
  EXPECT_EQ(file.Seeks.back(), 0);
  EXPECT_EQ(engine.CurrentSamplePosition, 0);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(PreviewTest, PlayIsRefusedInTheMomentOfSelecting) {
  bool refused = false;
  loop.Post([&] {
    Play();
    refused = !engine.IsPlaying;
  });
  config.txtAutoPreview.Value = "0";
  Select();
  EXPECT_TRUE(refused);
  EXPECT_FALSE(window.guards.ListPauseActive);
}

TEST_F(PreviewTest, HandEndsItAndTheTimerTicksHarmlessly) {
  Select();
  form.cmdImportCompleteSnipetStop.Press(By::Hand);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(form.cmdImportCompleteSnipetStop.Enabled);
  loop.Advance(20s);
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(PreviewTest, PlayGoesOnFromWhereItStoppedWithoutOpeningAgain) {
  Select();
  loop.Advance(2s);
  form.cmdImportCompleteSnipetStop.Press(By::Hand);
  const double stopped = engine.CurrentSamplePosition;
  EXPECT_NEAR(stopped, 16'000, 160);
  Play();
  EXPECT_EQ(file.OpenCount, 1);
  EXPECT_EQ(file.Seeks.back(), static_cast<SampleCount>(stopped));
}

TEST_F(PreviewTest, TransportCommandTakesOverAtOnce) {
  Select();
  Play();
  loop.Advance(8s);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(PreviewTest, EmptyDocumentSaysSoAndMayBeCompleted) {
  Lay({.samples = 0});
  EXPECT_FALSE(Select());
  EXPECT_EQ(prompts, std::vector<std::string>{"EmptyDocErr"});
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

}  // namespace
}  // namespace tavlo::test
