#include "lists/opening.h"

#include <gtest/gtest.h>

#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct OpeningTest : testing::Test, ListsBench {
  const std::string name =
      Document().By("Brown").Id(1234).Department(2).WorkType(17).About("cardio").Priority().Name();

  OpeningTest() {
    Drop(name);
    queue.RefreshQueueList();
  }
};

TEST_F(OpeningTest, ClickSelectsTheRowsFileAndFillsTheStatusBar) {
  ClickRowOf(name);
  EXPECT_EQ(opening.SelectedQueueFile, name);
  EXPECT_EQ(engine.CurrentDocumentPath, folders.InQueuePath + name);
  const std::vector<std::string> expected{
      "Pri", "1234", "Brown", "Dept: 2", "Work: 17", "Subject: cardio", "03/09/2004"};
  EXPECT_EQ(form.StatusBar1.Panels.Get(), expected);
  EXPECT_EQ(actions, 1);
}

TEST_F(OpeningTest, SubjectPanelCarriesTheUsersOwnWord) {
  config.txtSubjectHeading.Value = "Patient";
  ClickRowOf(name);
  EXPECT_EQ(form.StatusBar1.Panels.Get()[5], "Patient: cardio");
}

TEST_F(OpeningTest, SelectedDocumentWaitsForPlay) {
  ClickRowOf(name);
  EXPECT_TRUE(form.cmdPlay.Enabled);
  EXPECT_FALSE(form.cmdSkip.Enabled);
  EXPECT_FALSE(form.cmdSave.Enabled);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(OpeningTest, WithoutAPreviewTheStatusBarFillsAndNothingSounds) {
  config.txtAutoPreview.Value = "0";
  ClickRowOf(name);
  EXPECT_EQ(form.StatusBar1.Panels.Get()[2], "Brown");
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdPlay.Enabled);
}

TEST_F(OpeningTest, NothingSelectedYetDoesNothing) {
  Play();
  opening.GetSelectedJob();
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(OpeningTest, DoubleClickDoesNoMoreThanAClick) {
  ClickRowOf(name);
  form.listViewInQueue.DoubleClick(0);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_FALSE(form.cmdSkip.Enabled);
  EXPECT_TRUE(form.frameFiles.Visible);
}

TEST_F(OpeningTest, FileThatCanNotBePlayedIsExplainedAndMayLeaveByComplete) {
  file.Sounds.clear();
  ClickRowOf(name);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Unrecognized Audio Format");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Information);
  EXPECT_EQ(form.lblFileLengthHMS.Value.Get(), "00:00:00");
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

TEST_F(OpeningTest, WithoutAPreviewTheErrorComesWithPlay) {
  file.Sounds.clear();
  config.txtAutoPreview.Value = "0";
  ClickRowOf(name);
  EXPECT_TRUE(loop.Shown.empty());
  form.cmdPlay.Press(By::Hand);
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(OpeningTest, DocumentWithoutAudioSaysSoAndMayLeaveByComplete) {
  file.Sounds[folders.InQueuePath + name] = {.samples = 0};
  ClickRowOf(name);
  EXPECT_EQ(prompts, std::vector<std::string>{"EmptyDocErrMayComplete"});
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(OpeningTest, NegativeStatusEndsWithoutAWord) {
  file.InTrouble = true;
  ClickRowOf(name);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(OpeningTest, ForeignNameFillsTheStatusBarWithTheFallback) {
  Drop("memo.wav");
  queue.RefreshQueueList();
  ClickRowOf("memo.wav");
  EXPECT_EQ(form.StatusBar1.Panels.Get()[1], "999999");
  EXPECT_EQ(form.StatusBar1.Panels.Get()[2], "Unknown");
}

TEST_F(OpeningTest, SavedDocumentPlaysFromItsPosition) {
  const std::string saved = Document().By("Saved").Saved(40'000).Name();
  Drop(saved);
  queue.RefreshQueueList();
  ClickRowOf(saved);
  queue.RefreshQueueList();
  ClickRowOf(saved);
  form.cmdPlay.Press(By::Hand);
  EXPECT_EQ(file.Seeks.back(), 40'000);
}

TEST_F(OpeningTest, LastOfTwoClicksInOneMomentIsWhatOpens) {
  const std::string last = Document().By("Last").Name();
  Drop(last);
  queue.RefreshQueueList();
  loop.Post([&] { ClickRowOf(last); });
  ClickRowOf(name);
  EXPECT_EQ(opening.SelectedQueueFile, last);
  EXPECT_EQ(engine.CurrentDocumentPath, folders.InQueuePath + last);
  EXPECT_EQ(form.StatusBar1.Panels.Get()[2], "Last");
  EXPECT_EQ(file.Seeks.size(), 1u);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdPlay.Enabled);
  EXPECT_FALSE(window.guards.ListPauseActive);
}

TEST_F(OpeningTest, ClickIsRefusedWhileADocumentIsInWork) {
  ClickRowOf(name);
  form.cmdPlay.Press(By::Hand);
  const auto opens = file.OpenCount;
  ClickRowOf(name);
  EXPECT_EQ(file.OpenCount, opens);
}

}  // namespace
}  // namespace tavlo::test
