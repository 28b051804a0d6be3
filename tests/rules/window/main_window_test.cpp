#include "window/main_window.h"

#include <gtest/gtest.h>

#include <string>

#include "support/playback_bench.h"

namespace tavlo::test {
namespace {

using forms::Shape;
using forms::Twips;

struct MainWindowTest : testing::Test, PlaybackBench {};

TEST_F(MainWindowTest, QuietLineStandsUntilTheNextCommandOfAHand) {
  window.Say("Nothing was stored.");
  EXPECT_TRUE(form.lblNotice.Visible);
  EXPECT_EQ(form.lblNotice.Value.Get(), "Nothing was stored.");
  transport.SkipToBeginningCommand();
  EXPECT_TRUE(form.lblNotice.Visible);
  Play();
  EXPECT_FALSE(form.lblNotice.Visible);
  EXPECT_EQ(form.lblNotice.Value.Get(), "");
}

TEST_F(MainWindowTest, QuietLineSaysEverythingOfOneCommandAndNothingTwice) {
  window.Say("Nothing was stored.");
  window.SayWhile(true, "The list is not whole.");
  window.Say("Nothing was stored.");
  window.Say("");
  EXPECT_EQ(form.lblNotice.Value.Get(), "Nothing was stored. The list is not whole.");
  window.SayWhile(false, "The list is not whole.");
  EXPECT_EQ(form.lblNotice.Value.Get(), "Nothing was stored.");
  window.SayWhile(false, "Nothing was stored.");
  EXPECT_FALSE(form.lblNotice.Visible);
}

TEST_F(MainWindowTest, QuietLineKeepsTheNewestWhileNobodyIsThere) {
  for (int number = 1; number <= 500; ++number) {
    window.Say("Note " + std::to_string(number) + ".");
  }
  const std::string said = form.lblNotice.Value;
  EXPECT_TRUE(said.starts_with("Note 481. ")) << said;
  EXPECT_TRUE(said.ends_with(" Note 500.")) << said;
}

TEST_F(MainWindowTest, QueueDocumentShowsInWorkOrAsTheHighlightedRowOfTheQueueInFront) {
  form.listViewInQueue.ListIndex = -1;
  EXPECT_FALSE(window.QueueDocumentShows());
  form.listViewInQueue.ListIndex = 0;
  EXPECT_TRUE(window.QueueDocumentShows());
  form.frameInQueue.Visible = false;
  EXPECT_FALSE(window.QueueDocumentShows());
  Play();
  EXPECT_TRUE(window.QueueDocumentShows());
}

TEST_F(MainWindowTest, PlaceOffTheScreenIsNotRemembered) {
  window.PlayerLeftText = "100";
  form.frmMain.Left = -5;
  form.frmMain.Top = 200;
  window.SavePlayerPosition();
  EXPECT_EQ(window.PlayerLeftText, "100");
  EXPECT_EQ(placesStored, 0);
}

TEST_F(MainWindowTest, PlaceOnTheScreenIsStored) {
  form.frmMain.Left = 0;
  form.frmMain.Top = 200;
  window.SavePlayerPosition();
  EXPECT_EQ(form.txtPlayerLeft.Value.Get(), "0");
  EXPECT_EQ(form.txtPlayerTop.Value.Get(), "200");
  EXPECT_EQ(placesStored, 1);
}

TEST_F(MainWindowTest, StoredFiguresBeyondAllMeasureDoNotWrap) {
  form.txtTitleBarHeight.Value = "4294967295";
  window.PlayerLeftText = "4294967295";
  Play();
  EXPECT_GT(form.frmMain.Height, form.framePlayer.Height);
  EXPECT_GT(form.frmMain.Left, 0);
}

TEST_F(MainWindowTest, PlayerShowsWhereMinimizingItIsNotOffered) {
  config.txtMinimizeMiniPlayer.Value = "Y";
  config.chkMinimizeMiniPlayer.Visible = false;
  Play();
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Normal);
  EXPECT_FALSE(form.frameFiles.Visible);
  EXPECT_LT(form.frmMain.Height, window.WindowHeight);
}

TEST_F(MainWindowTest, MinimizedPlayComesBackAsThePlayerAtTheEndOfTheDocument) {
  config.txtMinimizeMiniPlayer.Value = "Y";
  Play();
  ASSERT_EQ(form.frmMain.WindowShape, Shape::Minimized);
  EXPECT_FALSE(form.frameFiles.Visible);
  EXPECT_EQ(form.framePlayer.Top, 0);
  loop.Advance(std::chrono::milliseconds{9900});
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Minimized);
  loop.Advance(std::chrono::milliseconds{200});
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Normal);
  EXPECT_EQ(form.frmMain.Height, 840 + form.framePlayer.Height);
  EXPECT_FALSE(form.frameFiles.Visible);
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_EQ(placesStored, 0);
  Play();
  EXPECT_EQ(form.frmMain.WindowShape, Shape::Minimized);
}

TEST_F(MainWindowTest, TitleBarIsMeasuredOnceWhenThePlayerFirstShows) {
  form.txtTitleBarHeight.Value = "";
  form.frmMain.AboveContent = 870;
  Play();
  EXPECT_EQ(form.txtTitleBarHeight.Value.Get(), "870");
  EXPECT_EQ(form.frmMain.Height, 870 + form.framePlayer.Height);
  form.frmMain.AboveContent = 900;
  Play();
  EXPECT_EQ(form.txtTitleBarHeight.Value.Get(), "870");
}

TEST_F(MainWindowTest, TitleBarThatCouldNotBeMeasuredStaysToBeMeasured) {
  form.txtTitleBarHeight.Value = "";
  Play();
  EXPECT_EQ(form.txtTitleBarHeight.Value.Get(), "");
}

TEST_F(MainWindowTest, CenteredMiniPlayerGoesToTheMiddleOfTheScreenAndIsStoredThere) {
  Play();
  form.frmMain.Place(45, 60, form.frmMain.Width, form.frmMain.Height, Shape::Normal);
  window.CenterMiniPlayer();
  const Twips left = (form.frmMain.ScreenWidth - form.frmMain.Width) / 2;
  const Twips top = (form.frmMain.ScreenHeight - form.frmMain.Height) / 2;
  EXPECT_EQ(form.frmMain.Left, left);
  EXPECT_EQ(form.frmMain.Top, top);
  EXPECT_EQ(form.txtPlayerLeft.Value.Get(), std::to_string(left));
  EXPECT_EQ(form.txtPlayerTop.Value.Get(), std::to_string(top));
  EXPECT_EQ(placesStored, 1);
}

TEST_F(MainWindowTest, MiniPlayerCenteredBeforehandShowsInTheMiddleAtTheNextPlay) {
  window.PlayerLeftText = "300";
  window.PlayerTopText = "450";
  window.CenterMiniPlayer();
  EXPECT_EQ(form.frmMain.Top, (form.frmMain.ScreenHeight - window.WindowHeight) / 2);
  Play();
  EXPECT_EQ(form.frmMain.Left, (form.frmMain.ScreenWidth - form.frmMain.Width) / 2);
  EXPECT_EQ(form.frmMain.Top, (form.frmMain.ScreenHeight - form.frmMain.Height) / 2);
}

TEST_F(MainWindowTest, HandResizingInTheFullShapeIsTheNewFullSize) {
  form.frmMain.Place(0, 0, 15'000, 9000, Shape::Normal);
  EXPECT_EQ(window.WindowHeight, 9000);
  EXPECT_EQ(window.WindowWidth, 15'000);
}

TEST_F(MainWindowTest, FullSizeIsNeverAsLowAsAMiniPlayer) {
  const int before = window.WindowHeight;
  form.frmMain.Place(0, 0, 15'000, 6000, Shape::Normal);
  EXPECT_EQ(window.WindowHeight, before);
  form.frmMain.Place(0, 0, 15'000, 6001, Shape::Normal);
  EXPECT_EQ(window.WindowHeight, 6001);
}

TEST_F(MainWindowTest, MiniPlayerThatIsResizedTakesItsHeightAndPlaceAgain) {
  window.PlayerLeftText = "300";
  Play();
  form.frmMain.Place(1000, 1000, 13'800, 8000, Shape::Normal);
  EXPECT_EQ(form.frmMain.Height, 840 + form.framePlayer.Height);
  EXPECT_EQ(form.frmMain.Left, 300);
}

TEST_F(MainWindowTest, MiniPlayerMayBeDraggedElsewhere) {
  Play();
  form.frmMain.Place(7000, 5000, form.frmMain.Width, form.frmMain.Height, Shape::Normal);
  EXPECT_EQ(form.frmMain.Left, 7000);
  EXPECT_EQ(form.frmMain.Top, 5000);
}

}  // namespace
}  // namespace tavlo::test
