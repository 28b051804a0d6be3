#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using playback::Primed;

/// An end that was not heard: the position is left at the ear, and nothing is offered.
struct UnheardEndTest : testing::Test, PlaybackBench {
  void Start(double sample = 0) {
    // The hand that presses Play lets the window forget what it said.
    window.ForgetNotice();
    ASSERT_EQ(engine.Prime(), Primed::Yes);
    documentInWork.CurrentSamplePosition = sample;
    engine.StartPlay();
  }
  SimulatedSound& Sound() { return file.Sounds["/doc.wav"]; }

  void ExpectStoppedWhereTheEarWas(double sample) {
    EXPECT_FALSE(engine.IsPlaying);
    EXPECT_NEAR(documentInWork.CurrentSamplePosition, sample, 1);
    EXPECT_EQ(form.slPosition.Value, static_cast<int>(std::nearbyint(sample / 800)));
    EXPECT_EQ(form.lblFilePositionHMS.Value.Get(),
              base::FormatHMS(std::max(sample / 8 - 500, 0.0)));
    EXPECT_FALSE(form.cmdComplete.Enabled);
    EXPECT_TRUE(prompts.empty());
    EXPECT_EQ(form.lblNotice.Value.Get(), "The rest of this document can not be read.");
    EXPECT_TRUE(loop.Shown.empty());
  }
  void ExpectHeardToItsEnd() {
    EXPECT_FALSE(engine.IsPlaying);
    EXPECT_EQ(documentInWork.CurrentSamplePosition, 80'000);
    EXPECT_TRUE(form.cmdComplete.Enabled);
    EXPECT_EQ(form.lblNotice.Value.Get(), "");
  }
};

TEST_F(UnheardEndTest, ReadErrorStopsWhereTheEarWas) {
  Sound().readable = 42'500;
  Start();
  loop.Advance(12s);
  ExpectStoppedWhereTheEarWas(42'500);
}

TEST_F(UnheardEndTest, FileThatIsCutOffInMidPlayStopsWhereTheEarWas) {
  Start(8000);
  loop.Advance(2s);
  Sound().readable = 10'000;
  loop.Advance(12s);
  ExpectStoppedWhereTheEarWas(32'000);
}

TEST_F(UnheardEndTest, ReadErrorShortBeforeTheEndIsNoEnd) {
  Sound().readable = 79'900;
  Start();
  loop.Advance(12s);
  ExpectStoppedWhereTheEarWas(79'900);
}

TEST_F(UnheardEndTest, SoundThatEndsMoreThanHalfASecondTooEarlyIsNoEnd) {
  Sound().sounding = 75'999;
  Start();
  loop.Advance(12s);
  ExpectStoppedWhereTheEarWas(75'999);
}

TEST_F(UnheardEndTest, SoundThatEndsHalfASecondTooEarlyIsHeardToItsEnd) {
  Sound().sounding = 76'000;
  Start();
  loop.Advance(12s);
  ExpectHeardToItsEnd();
}

TEST_F(UnheardEndTest, IsToldAlikeAtAnySpeed) {
  for (const int speed : {50, 150}) {
    SCOPED_TRACE(speed);
    engine.PlaySpeedPercent = speed;
    Sound().readable = 42'500;
    Start();
    loop.Advance(30s);
    EXPECT_NEAR(documentInWork.CurrentSamplePosition, 42'500, 1);
    EXPECT_FALSE(form.cmdComplete.Enabled);
    Sound().readable = 80'000;
    Start();
    loop.Advance(30s);
    ExpectHeardToItsEnd();
    form.cmdComplete.Enabled = false;
  }
}

TEST_F(UnheardEndTest, LeavesCompleteAsItWas) {
  form.cmdComplete.Enabled = true;
  Sound().readable = 42'500;
  Start();
  loop.Advance(12s);
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

TEST_F(UnheardEndTest, BringsAMinimizedWindowBackAndEndsAPreview) {
  Sound().readable = 42'500;
  Start();
  engine.tmrPlaySnipet.SetInterval(60s);
  engine.tmrPlaySnipet.Start();
  form.frmMain.WindowShape = forms::Shape::Minimized;
  loop.Advance(12s);
  EXPECT_EQ(form.frmMain.WindowShape, forms::Shape::Normal);
  EXPECT_EQ(form.frmMain.Height, 840 + form.framePlayer.Height);
  EXPECT_FALSE(engine.tmrPlaySnipet.Enabled());
}

TEST_F(UnheardEndTest, HeldSliderKeepsThePlaceItWasPressedAtAndATrueEndIsHeardUnderIt) {
  Sound().readable = 42'500;
  Start();
  loop.Advance(2s);
  engine.SliderDragging = true;
  const double pressedAt = documentInWork.CurrentSamplePosition;
  loop.Advance(12s);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, pressedAt);
  EXPECT_FALSE(form.cmdComplete.Enabled);

  Sound().readable = 80'000;
  Start(pressedAt);
  loop.Advance(12s);
  ExpectHeardToItsEnd();
}

TEST_F(UnheardEndTest, PlayAgainAfterAnErrorThatPassedIsHeardToItsEnd) {
  Sound().readable = 42'500;
  Start();
  loop.Advance(12s);
  Sound().readable = 80'000;
  window.ForgetNotice();
  engine.StartPlay();
  loop.Advance(12s);
  ExpectHeardToItsEnd();
}

TEST_F(UnheardEndTest, SeekBehindTheBadPlaceIsHeardToItsEnd) {
  Start();
  Sound().readable = 0;
  // One block is heard and the next one could not be read; the other one in flight sounds yet.
  loop.Advance(700ms);
  Sound().readable = 80'000;
  player.ClearQueue();
  engine.ContinueFrom(70'000);
  loop.Advance(12s);
  ExpectHeardToItsEnd();
}

TEST_F(UnheardEndTest, SeekToTheEndIsAnEnd) {
  Start();
  loop.Advance(1s);
  player.ClearQueue();
  engine.ContinueFrom(80'000);
  loop.Advance(1s);
  ExpectHeardToItsEnd();
}

TEST_F(UnheardEndTest, BlockThatIsLostToAFaultEndsTheRunWhereTheEarWas) {
  for (bool* fault : {&file.ReadThrows, &transform.Throws, &player.QueueThrows}) {
    Start();
    loop.Advance(1800ms);
    *fault = true;
    loop.Advance(12s);
    EXPECT_FALSE(*fault);
    ExpectStoppedWhereTheEarWas(20'000);
    window.ForgetNotice();
  }
}

TEST_F(UnheardEndTest, FirstBlockThatIsLostStartsNothingAndSaysSo) {
  transform.Throws = true;
  Start(8000);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(player.Queued.empty());
  loop.Advance(1s);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(documentInWork.CurrentSamplePosition, 8000);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_EQ(form.lblNotice.Value.Get(), "The rest of this document can not be read.");
}

TEST_F(UnheardEndTest, LostBlockOfAStereoDocumentIsLostWhole) {
  Lay({.samples = 80'000, .rate = 8000, .channels = 2});
  Start();
  loop.Advance(1800ms);
  const std::size_t queued = player.Queued.size();
  transform.Throws = true;
  loop.Advance(12s);
  EXPECT_EQ(player.Queued.size(), queued);
  ExpectStoppedWhereTheEarWas(20'000);
}

TEST_F(UnheardEndTest, LastBlockThatIsLostIsNoEnd) {
  Start();
  loop.Advance(8800ms);
  transform.Throws = true;
  loop.Advance(12s);
  ExpectStoppedWhereTheEarWas(76'000);
}

TEST_F(UnheardEndTest, EndsAPreviewAlike) {
  Sound().readable = 8000;
  ASSERT_TRUE(preview.Prepare(loop, "/doc.wav"));
  ASSERT_EQ(preview.Start(), Primed::Yes);
  loop.Advance(3s);
  ExpectStoppedWhereTheEarWas(8000);
}

TEST_F(UnheardEndTest, SkipToEndOffersCompleteAfterIt) {
  Sound().readable = 20'000;
  Play();
  loop.Advance(10s);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  form.cmdSkipEnd.Press(forms::By::Hand);
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(form.slPosition.Value, 100);
}

}  // namespace
}  // namespace tavlo::test
