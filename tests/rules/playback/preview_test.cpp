#include "playback/preview.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct PreviewTest : testing::Test, PlaybackBench {
  playback::Primed Select() {
    return preview.Prepare(loop, "/doc.wav") ? preview.Start() : playback::Primed::Refused;
  }
};

TEST_F(PreviewTest, SelectionSoundsTheBeginningForASecondMoreThanAsked) {
  Lay({.samples = 800'000});
  EXPECT_EQ(Select(), playback::Primed::Yes);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(file.Seeks.back(), 0);
  loop.Advance(5999ms);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(1ms);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(file.IsOpen());
  EXPECT_TRUE(documentInWork.DocumentPrimed);
}

TEST_F(PreviewTest, FileThatIsLongInComingSoundsNoShorter) {
  Lay({.samples = 800'000});
  file.OnOpen = [this](const std::string&) { loop.Busy(4s); };
  EXPECT_EQ(Select(), playback::Primed::Yes);
  loop.Advance(5999ms);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(1ms);
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(PreviewTest, SlowerSpeedLengthensIt) {
  engine.PlaySpeedPercent = 50;
  std::ignore = Select();
  EXPECT_EQ(engine.tmrPlaySnipet.Interval(), 12'000ms);
  config.txtAutoPreview.Value = "15";
  std::ignore = Select();
  EXPECT_EQ(engine.tmrPlaySnipet.Interval(), 32'000ms);
  engine.PlaySpeedPercent = 150;
  std::ignore = Select();
  EXPECT_EQ(engine.tmrPlaySnipet.Interval(), 10'667ms);
}

TEST_F(PreviewTest, LengthBeyondAllMeasureIsADay) {
  config.txtAutoPreview.Value = std::string(300, '9');
  std::ignore = Select();
  EXPECT_EQ(engine.tmrPlaySnipet.Interval(), base::Duration{std::chrono::hours{24}} + 1s);
}

TEST_F(PreviewTest, PreviewOfNoSecondsIsSilent) {
  config.txtAutoPreview.Value = "0";
  EXPECT_EQ(Select(), playback::Primed::Yes);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(engine.tmrPlaySnipet.Enabled());
  EXPECT_EQ(file.OpenCount, 0);
}

TEST_F(PreviewTest, SecondSelectionStartsFromTheBeginning) {
  std::ignore = Select();
  loop.Advance(3s);
  std::ignore = Select();
  EXPECT_EQ(file.Seeks.back(), 0);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 0);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(PreviewTest, PlayIsRefusedInTheMomentOfSelecting) {
  bool refused = false;
  loop.Post([&] {
    Play();
    refused = !engine.IsPlaying;
  });
  config.txtAutoPreview.Value = "0";
  std::ignore = Select();
  EXPECT_TRUE(refused);
  EXPECT_TRUE(window.guards.ListsMayChange());
}

TEST_F(PreviewTest, HandEndsItAndTheTimerTicksHarmlessly) {
  std::ignore = Select();
  form.cmdImportCompleteSnipetStop.Press(By::Hand);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_FALSE(form.cmdImportCompleteSnipetStop.Enabled);
  loop.Advance(20s);
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(PreviewTest, PlayGoesOnFromWhereItStoppedWithoutOpeningAgain) {
  std::ignore = Select();
  loop.Advance(2s);
  form.cmdImportCompleteSnipetStop.Press(By::Hand);
  const double stopped = documentInWork.CurrentSamplePosition;
  EXPECT_NEAR(stopped, 16'000, 160);
  Play();
  EXPECT_EQ(file.OpenCount, 1);
  EXPECT_EQ(file.Seeks.back(), static_cast<SampleCount>(stopped));
}

TEST_F(PreviewTest, TransportCommandTakesOverAtOnce) {
  std::ignore = Select();
  Play();
  loop.Advance(8s);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(PreviewTest, WhatCanNotBePlayedIsLeftToTheCallerToExplain) {
  Lay({.samples = 0});
  EXPECT_EQ(Select(), playback::Primed::Empty);
  file.Sounds.clear();
  EXPECT_EQ(Select(), playback::Primed::Unplayable);
  file.InTrouble = true;
  EXPECT_EQ(Select(), playback::Primed::Refused);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(prompts.empty());
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

}  // namespace
}  // namespace tavlo::test
