#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/deck_bench.h"
#include "window/settings_saver.h"

namespace tavlo::test {
namespace {

using base::Reply;
using base::operator""ms;
using base::operator""s;
using forms::By;
using Late = SimulatedPlaces::Late;

constexpr base::Duration kPatience = SimulatedPlaces::kPatience;
const std::string kParent = kRoot.substr(0, kRoot.rfind('/'));

/// A machine on which the deck was never started.
struct FreshMachine : SimulatedPlatform {
  FreshMachine() {
    disk.WithFolder(kParent);
    for (const char* folder : {"/Prompts", "/Fascia"}) disk.WithFolder(kShare + folder);
    disk.WithFile(kShare + "/Prompts/Save.wav", "spoken");
  }
};

/// The deck has said that the root gives no answer, and has waited once for it.
void ExpectRefusal(const SimulatedPlatform& machine) {
  EXPECT_EQ(machine.ended, 1);
  ASSERT_EQ(machine.loop.Shown.size(), 1u);
  EXPECT_EQ(machine.loop.Shown[0].title, "Tavlo Deck");
  EXPECT_EQ(machine.loop.Shown[0].icon, base::Icon::Critical);
  EXPECT_EQ(machine.loop.Shown[0].text,
            "Tavlo Deck needs its work folder " + kRoot +
                ".\n\nIt gives no answer. The network may be down, or the device gone; start again "
                "when it is back.");
  EXPECT_LE(machine.loop.Now().sinceStart, kPatience);
}

TEST(StalledRoot, EndsTheStartWithABoxThatNamesIt) {
  DeckBench bench;
  bench.disk.Places.Stall(kRoot);
  bench.deck.Start();
  ExpectRefusal(bench);
  EXPECT_EQ(bench.deck.Built(), nullptr);
}

TEST(StalledRoot, EndsTheStartWhereverInItTheStallComes) {
  for (int nth = 1;; ++nth) {
    SCOPED_TRACE("operation " + std::to_string(nth));
    DeckBench bench;
    bench.disk.StallAtOperation(nth, kRoot);
    bench.deck.Start();
    if (static_cast<int>(bench.disk.Operations.size()) < nth) break;
    // Where nothing was asked of it any more nothing was missed.
    if (bench.disk.OutOfReach(kRoot)) {
      ExpectRefusal(bench);
    } else {
      EXPECT_NE(bench.deck.Built(), nullptr);
    }
  }
}

TEST(StalledRoot, EndsTheStartWhereNobodyCanTellWhetherAnotherCopyRuns) {
  DeckBench bench;
  bench.disk.Places.Stall(kParent);
  bench.disk.Places.SlowDown(kRoot, base::Duration{0});
  bench.disk.Places.ResumeOnceGivenUp(Late::Fails);
  bench.deck.Start();
  ExpectRefusal(bench);
  EXPECT_EQ(bench.disk.Changes(), std::vector<std::string>{});
}

TEST(StalledRoot, LeavesAFirstStartThatTheNextOneFinishes) {
  for (const Late late : {Late::Happens, Late::Fails}) {
    for (int nth = 1;; ++nth) {
      SCOPED_TRACE("operation " + std::to_string(nth));
      FreshMachine machine;
      machine.disk.StallAtOperation(nth, kParent);
      {
        shell::Deck first(machine.Edges());
        first.Start();
      }
      const bool stalled = machine.disk.OutOfReach(kRoot);
      if (static_cast<int>(machine.disk.Operations.size()) < nth) break;
      if (stalled) ExpectRefusal(machine);
      machine.disk.Places.Resume(kParent, late);
      machine.disk.Heal();
      shell::Deck second(machine.Edges());
      second.Start();
      EXPECT_NE(second.Built(), nullptr);
      EXPECT_TRUE(machine.disk.Has(SimulatedPlatform::Path("/Prompts/Save.wav")));
    }
  }
}

struct StalledSettings : testing::Test, DeckBench {
  StalledSettings() { StartUntilReady(); }

  void Stall() {
    disk.Places.Stall(kRoot);
    stalledAt = loop.Now();
  }
  auto SettingsBoxes() const {
    return std::ranges::count(loop.Shown, "Tavlo Deck - Settings", &base::MessageBox::title);
  }
  base::Duration Waited() const { return loop.Now() - stalledAt; }

  base::MonotonicTime stalledAt;
};

TEST_F(StalledSettings, SaveIsToldOnceInTheWordsOfAnyThatFailsAndWaitedForOnce) {
  Stall();
  form.txtSpeed.Value = "90";
  form.txtVolume.Value = "100";
  EXPECT_EQ(Waited(), kPatience);
  loop.Yield();
  form.txtVolume.Value = "200";
  loop.Yield();
  ASSERT_EQ(SettingsBoxes(), 1);
  const auto box = std::ranges::find(loop.Shown, "Tavlo Deck - Settings", &base::MessageBox::title);
  EXPECT_EQ(box->text, "The settings can not be saved. The settings database " + SettingsPath() +
                           " gives no answer.\nThey stay in effect until the Tavlo Deck ends.");
}

TEST_F(StalledSettings, CompleteThatASaveKeptFromBeingAskedForIsSaidNotToHaveHappened) {
  const std::string name = Drop(Document().By("Brown").Name());
  form.cmdUpdateFileList.Press(By::Hand);
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.cmdSkipEnd.Press(By::Hand);
  // The place of the player is saved ahead of what becomes of the document.
  form.frmMain.Left = form.frmMain.Left + 150;
  loop.Shown.clear();
  Stall();
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(loop.BreathedFor, kPatience);
  EXPECT_EQ(form.lblNotice.Value.Get(),
            "Not moved to Completed: the folder gives no answer. It stays in the Queue: " + name);
  // The settings, the four drop folders below the root, and the Queue.
  ASSERT_EQ(loop.Shown.size(), 6u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Settings");
  for (std::size_t i = 1; i < loop.Shown.size(); ++i) {
    EXPECT_EQ(loop.Shown[i].title, "Tavlo Deck - Network Fault");
  }
  disk.Places.Resume(kRoot, Late::Happens);
  EXPECT_EQ(disk.FilesHolding("sound of " + name), std::vector<std::string>{InQueue() + name});
}

TEST_F(StalledSettings, SaveIsWrittenOnceTheDiskAnswersAgain) {
  for (const Late late : {Late::Happens, Late::Fails}) {
    const std::string speed = late == Late::Happens ? "90" : "110";
    Stall();
    form.txtSpeed.Value = speed;
    form.txtVolume.Value = "100";
    EXPECT_NE(Stored("Speed"), speed);
    disk.Places.Resume(kRoot, late);
    loop.Advance(window::SettingsSaver::kTryAgain);
    EXPECT_EQ(Stored("Speed"), speed);
    EXPECT_EQ(Stored("Volume"), "100");
  }
}

TEST_F(StalledSettings, SaveThatComesBackLateDoesNotUndoALaterOne) {
  Stall();
  form.txtSpeed.Value = "90";
  form.txtSpeed.Value = "110";
  disk.Places.Resume(kRoot, Late::Happens);
  loop.Advance(window::SettingsSaver::kTryAgain);
  EXPECT_EQ(Stored("Speed"), "110");
}

TEST_F(StalledSettings, ExitHidesTheWindowAndEndsThough) {
  Stall();
  form.txtSpeed.Value = "90";
  // It answers for a moment and stalls again, so that the last save is waited for.
  disk.Places.Resume(kRoot, Late::Fails);
  Stall();
  loop.Expect({.reply = Reply::Yes});
  const base::MonotonicTime asked = loop.Now();
  std::optional<base::MonotonicTime> hidden;
  base::Timer eye(loop, "eye", 100ms, base::TimerKind::Feed);
  eye.OnTick = [&] {
    if (!form.frmMain.Visible && !hidden) hidden = loop.Now();
  };
  eye.Start();
  form.frmMain.CloseRequest();
  EXPECT_EQ(ended, 0);
  ASSERT_TRUE(hidden.has_value());
  EXPECT_LE(*hidden - asked, 2100ms);
  // The patience of the save and the waits of the end pass at the same time.
  EXPECT_LE(loop.Now() - asked, kPatience);
}

TEST_F(StalledSettings, EndOfTheSessionWaitsNoLongerThanThePatience) {
  Stall();
  deck.EndSession();
  EXPECT_EQ(ended, 0);
  EXPECT_LE(Waited(), kPatience);
}

}  // namespace
}  // namespace tavlo::test
