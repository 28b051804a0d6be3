#include "window/deck_in_words.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct DeckInWordsTest : testing::Test, DeckBench {
  DeckInWordsTest() { Drop(Document().By("Brown").Name()); }

  void Begin(const std::string& previewSeconds) {
    StartUntilReady();
    config.txtAutoPreview.Value = previewSeconds;
  }
  void SelectAndPlay() {
    Begin("0");
    ClickRow(0);
    form.cmdPlay.Press(By::Hand);
  }
  std::string Words() const { return window::DeckInWords(form); }
};

TEST_F(DeckInWordsTest, NothingIsSelectedAtTheStart) {
  Begin("5");
  EXPECT_EQ(Words(), "No dictation selected");
}

TEST_F(DeckInWordsTest, ASelectedDocumentIsNamedWhileItIsPreviewedAndAfterwards) {
  Begin("5");
  ClickRow(0);
  EXPECT_EQ(Words(), "Previewing: Brown, " + form.StatusBar1.Panels.Get()[5]);
  form.cmdImportCompleteSnipetStop.Press(By::Hand);
  EXPECT_EQ(Words(), "Selected: Brown, " + form.StatusBar1.Panels.Get()[5]);
}

TEST_F(DeckInWordsTest, APriorityIsSaid) {
  disk.WithFolder(InQueue());
  Drop(Document().By("Okafor").Priority().Name());
  Begin("0");
  ClickRow(0);
  EXPECT_EQ(Words(), "Selected: Okafor, priority, " + form.StatusBar1.Panels.Get()[5]);
}

TEST_F(DeckInWordsTest, PlayingAndWindingAreSaidAndNothingOfTheRunningTime) {
  SelectAndPlay();
  std::set<std::string> said;
  for (int tick = 0; tick < 40; ++tick) {
    said.insert(Words());
    loop.Advance(50ms);
  }
  EXPECT_EQ(said, std::set<std::string>{"Playing"});
  form.cmdForward.Press(By::Hand);
  EXPECT_EQ(Words(), "Winding forward");
  form.cmdRewind.Press(By::Hand);
  EXPECT_EQ(Words(), form.DeckRuns ? "Rewinding" : "At the beginning");
}

TEST_F(DeckInWordsTest, AStopSaysWhere) {
  SelectAndPlay();
  form.cmdStop.Press(By::Hand);
  form.slPosition.Value = 40;
  form.lblFilePositionHMS.Value = "00:00:04";
  EXPECT_EQ(Words(), "Stopped at 00:00:04");
}

TEST_F(DeckInWordsTest, TheEndsAreSaid) {
  SelectAndPlay();
  form.cmdSkipEnd.Press(By::Hand);
  EXPECT_EQ(Words(), "At the end");
  form.cmdSkipBeg.Press(By::Hand);
  EXPECT_EQ(Words(), "At the beginning");
}

TEST_F(DeckInWordsTest, ACompletedDocumentIsSelectedNoLonger) {
  SelectAndPlay();
  form.cmdSkipEnd.Press(By::Hand);
  form.cmdComplete.Press(By::Hand);
  loop.Advance(10s);
  EXPECT_EQ(Words(), "No dictation selected");
}

TEST_F(DeckInWordsTest, ADocumentThatCanNotBePlayedIsSaid) {
  Begin("5");
  file.Sounds.clear();
  ClickRow(0);
  EXPECT_TRUE(Words().starts_with("Can not be played: Brown")) << Words();
}

}  // namespace
}  // namespace tavlo::test
