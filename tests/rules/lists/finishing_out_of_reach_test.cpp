#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "lists/finishing.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::operator""s;
using forms::By;
using Late = SimulatedPlaces::Late;
using Names = std::vector<std::string>;
using FinishingKey = forms::Command forms::MainForm::*;

constexpr FinishingKey kCompleteKey = &forms::MainForm::cmdComplete;
constexpr FinishingKey kSaveKey = &forms::MainForm::cmdSave;
constexpr FinishingKey kSkipKey = &forms::MainForm::cmdSkip;

/// A document in work and another that waits. `elsewhere`: the Completed folder lies on a file
/// system of its own.
struct InWorkOnAShare : ListsBench {
  const std::string document = Document().By("Brown").Name();
  const std::string other = Document().By("Okafor").Name();
  const std::string savedPath = folders.InQueuePath + Document().By("Brown").Saved(40'000).Name();
  const std::string completedPath = folders.CompletedPath() + document;

  explicit InWorkOnAShare(bool elsewhere = false) {
    config.txtAutoPreview.Value = "0";
    if (elsewhere) disk.WithFileSystemAt(folders.CompletedPath());
    Drop(document);
    Drop(other);
    queue.RefreshQueueList();
    WorkOn(document, 40'000);
    form.cmdComplete.Enabled = true;
    disk.Operations.clear();
  }

  Names Places() const { return disk.FilesHolding("sound of " + document); }
  const std::string& Notice() const { return form.lblNotice.Value; }
  void Press(FinishingKey key) { (form.*key).Press(By::Hand); }
};

struct FinishingOutOfReach : testing::Test, InWorkOnAShare {
  FinishingOutOfReach() { disk.Places.Stall(folders.InQueuePath); }
};

TEST_F(FinishingOutOfReach, CompleteSaysThatItIsNotKnownAndSpeaksNoPrompt) {
  Press(kCompleteKey);
  EXPECT_EQ(Notice(),
            "It is not known whether the document was moved to Completed: the folder gives no "
            "answer. The next list shows it. Document: " +
                document);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(disk.Changes().size(), 1u);
  EXPECT_EQ(opening.SelectedQueueFile, "");
}

TEST_F(FinishingOutOfReach, SaveSaysThatItIsNotKnownAndKeepsTheNameThatItHad) {
  Press(kSaveKey);
  EXPECT_EQ(Notice(),
            "It is not known whether the position was saved: the folder gives no answer. The next "
            "list shows it. Document: " +
                document);
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(disk.Changes().size(), 1u);
  EXPECT_EQ(opening.SelectedQueueFile, document);
}

TEST_F(FinishingOutOfReach, NextDocumentIsNotOpenedFromAListThatCouldNotBeRead) {
  config.txtAutoQueueJob.Value = "Y";
  Press(kSaveKey);
  EXPECT_EQ(form.listViewInQueue.ListIndex, -1);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(FinishingOutOfReach, ListShowsWhatCameOfItOnceTheFolderAnswers) {
  Press(kSaveKey);
  disk.Places.Resume(folders.InQueuePath, Late::Happens);
  form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_EQ(Cell(RowOf(savedPath.substr(savedPath.rfind('/') + 1)), forms::document_column::Saved),
            "Saved");
  EXPECT_EQ(RowOf(document), -1);
}

TEST_F(FinishingOutOfReach, EndOfTheSessionInTheMiddleAsksForNothingTwice) {
  for (const FinishingKey key : {kCompleteKey, kSaveKey}) {
    InWorkOnAShare desk;
    desk.disk.Places.Stall(desk.folders.InQueuePath);
    base::Timer session(desk.loop, "session", 2s, base::TimerKind::Feed);
    int ends = 0;
    session.OnTick = [&] {
      session.Stop();
      ++ends;
      EXPECT_TRUE(desk.finishing.OutcomeIsDue());
      desk.finishing.StoreAtOnce();
    };
    session.Start();
    desk.Press(key);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(desk.disk.Changes().size(), 1u);
    desk.disk.Places.Resume(desk.folders.InQueuePath, Late::Happens);
    EXPECT_EQ(desk.Places(), Names{key == kCompleteKey ? desk.completedPath : desk.savedPath});
  }
}

TEST_F(FinishingOutOfReach, KeyIsSilenceAtOnceThoughThePlaceOfThePlayerIsLongInBeingStored) {
  for (const FinishingKey key : {kCompleteKey, kSaveKey, kSkipKey}) {
    InWorkOnAShare desk;
    desk.form.cmdPlay.Press(By::Hand);
    desk.loop.Advance(1s);
    const SampleCount heard = desk.player.PlayedSamples();
    ASSERT_GT(heard, 0);
    desk.form.cmdComplete.Enabled = true;
    desk.form.frmMain.Left = 4321;
    int stored = 0;
    desk.form.txtPlayerLeft.OnChange = [&] {
      ++stored;
      desk.loop.BreatheUntil([] { return false; }, desk.loop.Now() + 5s);
      EXPECT_EQ(desk.player.PlayedSamples(), heard);
      EXPECT_TRUE(desk.engine.IsPlaying) << "its rule stops it later";
    };
    desk.Press(key);
    EXPECT_EQ(stored, 1);
    EXPECT_FALSE(desk.player.IsRunning());
  }
}

TEST_F(FinishingOutOfReach, WhatAnEarlierCallKeptFromBeingAskedForIsSaidNotToHaveHappened) {
  for (const FinishingKey key : {kCompleteKey, kSaveKey}) {
    InWorkOnAShare desk;
    const std::string& share = desk.folders.InstallRoot;
    desk.form.frmMain.Left = 4321;
    desk.form.txtPlayerLeft.OnChange = [&] { desk.disk.Places.LeaveBehind(share); };
    desk.Press(key);
    EXPECT_EQ(
        desk.Notice(),
        key == kCompleteKey
            ? "Not moved to Completed: the folder gives no answer. It stays in the Queue: " +
                  desk.document
            : "The position was not saved: the folder gives no answer. Document: " + desk.document);
    EXPECT_TRUE(desk.prompts.empty());
    ASSERT_EQ(desk.loop.Shown.size(), 1u);
    EXPECT_EQ(desk.loop.Shown[0].title, "Tavlo Deck - Network Fault");
    desk.disk.Places.Resume(share, Late::Happens);
    EXPECT_EQ(desk.Places(), Names{desk.folders.InQueuePath + desk.document});
  }
}

TEST_F(FinishingOutOfReach, KeysWorkAgainOnceTheFolderAnswers) {
  Press(kCompleteKey);
  disk.Places.Resume(folders.InQueuePath, Late::Fails);
  form.cmdUpdateFileList.Press(By::Hand);
  ClickRowOf(document);
  form.cmdPlay.Press(By::Hand);
  form.cmdComplete.Enabled = true;
  Press(kCompleteKey);
  EXPECT_EQ(Places(), Names{completedPath});
  EXPECT_EQ(prompts.back(), "Complete");
}

/// Presses the key once for each operation at which each folder may stall, and lets what was left
/// behind happen or not.
template <typename Look>
void StallAtEachOperation(FinishingKey key, const Look& look) {
  const InWorkOnAShare paths;
  for (const std::string& folder : {paths.folders.InQueuePath, paths.folders.CompletedPath()}) {
    for (const bool elsewhere : {false, true}) {
      for (const Late late : {Late::Happens, Late::Fails}) {
        bool stalled = true;
        for (int nth = 1; stalled; ++nth) {
          SCOPED_TRACE(folder + (elsewhere ? " elsewhere" : "") + ", operation " +
                       std::to_string(nth) + (late == Late::Happens ? ", late" : ", never"));
          InWorkOnAShare desk(elsewhere);
          desk.disk.StallAtOperation(nth, folder);
          desk.Press(key);
          stalled = desk.disk.Places.Stalls(folder);
          look(desk, [&] {
            desk.disk.Places.Resume(folder, late);
            desk.disk.Heal();
            desk.form.cmdUpdateFileList.Press(By::Hand);
          });
        }
      }
    }
  }
}

TEST(FinishingThatStalls, LeavesOneDocumentThatTheNextListShowsWhereItIs) {
  for (const FinishingKey key : {kCompleteKey, kSaveKey, kSkipKey}) {
    StallAtEachOperation(key, [](InWorkOnAShare& desk, const auto& mendAndRefresh) {
      mendAndRefresh();
      const std::size_t aside = SetAside(desk.Places());
      EXPECT_LE(aside, 1u);
      EXPECT_EQ(desk.Places().size(), 1 + aside);
      EXPECT_EQ(desk.disk.FilesHolding("sound of " + desk.other).size(), 1u);
      EXPECT_EQ(desk.Listed(), desk.disk.NamesIn(desk.folders.InQueuePath));
    });
  }
}

TEST(FinishingThatStalls, SpeaksOnlyOfWhatHappened) {
  for (const FinishingKey key : {kCompleteKey, kSaveKey}) {
    StallAtEachOperation(key, [key](InWorkOnAShare& desk, const auto&) {
      const Names wanted{key == kCompleteKey ? desk.completedPath : desk.savedPath};
      EXPECT_EQ(!desk.prompts.empty(), desk.Places() == wanted);
      EXPECT_EQ(desk.Notice().empty(), desk.Places() == wanted);
    });
  }
}

TEST(FinishingThatStalls, KeepsNoHandLongerThanPatienceAndGivesTheListBack) {
  for (const FinishingKey key : {kCompleteKey, kSaveKey, kSkipKey}) {
    StallAtEachOperation(key, [](InWorkOnAShare& desk, const auto&) {
      EXPECT_LE(desk.loop.BreathedFor, SimulatedPlaces::kPatience);
      EXPECT_TRUE(desk.window.guards.TransportMayAct());
      EXPECT_TRUE(desk.window.guards.ListsMayChange());
      EXPECT_EQ(desk.form.frmMain.MousePointer, forms::Pointer::Arrow);
      EXPECT_TRUE(desk.form.cmdUpdateFileList.Reachable());
      EXPECT_TRUE(desk.form.mnuFile.Enabled);
      EXPECT_FALSE(desk.finishing.OutcomeIsDue());
    });
  }
}

}  // namespace
}  // namespace tavlo::test
