// What the watch for new work keeps through hands, slow shares and failures in its waits.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <vector>

#include "support/alert_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct WorkAlertThrough : testing::Test, AlertBench {
  base::Timer hand{loop, "hand", 100ms};

  void ActInTheWait(const std::function<void()>& act) {
    hand.OnTick = [this, act] {
      if (notifier.notified.empty()) return;
      hand.Stop();
      act();
    };
    hand.Start();
    WaitForACheck();
  }
  bool Listed(const std::string& name) {
    for (int row = 0; row < static_cast<int>(form.listViewInQueue.Rows().size()); ++row) {
      if (form.listViewInQueue.TextAt(row, forms::document_column::FileName) == name) return true;
    }
    return false;
  }
};

TEST_F(WorkAlertThrough, SettingsThatAreOpenedOverAnEmptyQueueStillTells) {
  StartWatching("A", {}, "");
  Transfer("a.dS2");
  ActInTheWait([this] { form.mnuConfiguration.Press(By::Hand); });
  ASSERT_TRUE(config.frmConfiguration.Visible);
  config.mnuClose.Press(By::Hand);
  ASSERT_FALSE(config.frmConfiguration.Visible);
  loop.Advance(3600s);
  EXPECT_TRUE(!Messages().empty() || !disk.Has(DropFolder() + "a.dS2"))
      << "neither a message nor the work itself, for an hour";
}

TEST_F(WorkAlertThrough, FtpViewOverAnEmptyQueueStillTells) {
  StartWatching("A", {}, "");
  Transfer("a.dS2");
  ActInTheWait([this] { form.mnuViewFtp.Press(By::Hand); });
  ASSERT_TRUE(form.frameFtp.Visible);
  loop.Advance(3600s);
  EXPECT_TRUE(!Messages().empty() || !disk.Has(DropFolder() + "a.dS2"));
}

TEST_F(WorkAlertThrough, ARefreshInTheQueuesAlertStillTellsOfTheImport) {
  StartWatching("A");
  Transfer("a.dS2");
  Import("letter.wav");
  ActInTheWait([this] { form.cmdUpdateFileList.Press(By::Hand); });
  loop.Advance(600s);
  EXPECT_EQ(Messages().size(), 2u) << "nobody was told of the import, nor has looked at it";
}

TEST_F(WorkAlertThrough, ACompleteInTheQueuesAlertStillTellsOfTheImport) {
  StartWatching("A");
  Transfer("a.dS2");
  Import("letter.wav");
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  ActInTheWait([this] {
    form.cmdSkipEnd.Press(By::Hand);
    form.cmdComplete.Press(By::Hand);
  });
  loop.Advance(600s);
  EXPECT_EQ(Messages().size(), 2u);
}

TEST_F(WorkAlertThrough, TheQueuesMessageTellsOfWhatComesForTheImportMeanwhile) {
  StartWatching("A");
  Transfer("a.dS2");
  loop.Expect({.delay = 1800s, .meanwhile = [this] { Import("letter.wav"); }});
  WaitForACheck();
  loop.Advance(3600s);
  EXPECT_EQ(Messages().size(), 2u);
}

TEST_F(WorkAlertThrough, AFailureInARefreshByItselfGoesOn) {
  StartWatching("1", {{"AutoRefreshMode", "-1"}});
  ASSERT_TRUE(config.chkAutoRefreshMode.Value);

  disk.WithFile(Path("/Files/eW2Queue/a.eW2"));
  disk.BetweenOperations = [this] {
    disk.BetweenOperations = nullptr;
    throw std::bad_alloc();
  };
  WaitForACheck();
  ASSERT_EQ(disk.BetweenOperations, nullptr);
  EXPECT_TRUE(Watch().tmrWorkWaitingAlert.Enabled()) << "nothing starts it any more";
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_TRUE(form.listViewInQueue.Enabled);
  EXPECT_TRUE(form.listViewInQueue.Visible);
  EXPECT_TRUE(form.cmdUpdateFileList.Visible);
  loop.Advance(600s);
  EXPECT_TRUE(Listed("a.wav"));
}

TEST_F(WorkAlertThrough, AFailureInTheFirstRefreshLeavesTheMenusToTheHand) {
  disk.WithFile(Path("/Files/eW2Queue/a.eW2"));
  disk.BetweenOperations = [this] {
    if (deck.Built() && !deck.Built()->mainWindow.guards.ListsMayChange()) {
      disk.BetweenOperations = nullptr;
      throw std::bad_alloc();
    }
  };
  StartWith({});
  loop.Advance(60s);
  ASSERT_EQ(disk.BetweenOperations, nullptr);
  EXPECT_TRUE(form.mnuFile.Enabled);
  EXPECT_TRUE(form.mnuView.Enabled);
  EXPECT_TRUE(form.cmdUpdateFileList.Enabled);
}

TEST_F(WorkAlertThrough, ASlowShareHoldsTheTypistNoLongerThanOneFolderTakes) {
  StartWatching("A");
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  disk.Places.SlowDown(Path("/Files/ImportQueue"), 2000ms);
  const base::Duration before = loop.BreathedFor;
  WaitForACheck();
  EXPECT_LE(loop.BreathedFor - before, SimulatedPlaces::kPatience)
      << "seconds in which no rule runs: "
      << std::chrono::duration_cast<std::chrono::seconds>(loop.BreathedFor - before).count();
}

TEST_F(WorkAlertThrough, AFailureInAnAlertLeavesNothingBehind) {
  StartWatching("A");
  Transfer("a.dS2");
  ActInTheWait([this] {
    disk.BetweenOperations = [this] {
      disk.BetweenOperations = nullptr;
      throw std::bad_alloc();
    };
  });
  ASSERT_EQ(disk.BetweenOperations, nullptr);
  EXPECT_TRUE(Watch().tmrWorkWaitingAlert.Enabled());
  EXPECT_TRUE(form.cmdUpdateFileList.Visible);
}

TEST_F(WorkAlertThrough, ASlowShareHoldsAFootNoLongerThanAPiece) {
  StartWatching("A");
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  disk.Places.SlowDown(Path("/Files/ImportQueue"), 300ms);
  const base::Duration before = loop.BreathedFor;
  WaitForACheck();
  EXPECT_LE(loop.BreathedFor - before, SimulatedPlaces::kPatience)
      << std::chrono::duration_cast<std::chrono::milliseconds>(loop.BreathedFor - before).count();
}

TEST_F(WorkAlertThrough, ASkipIsOverBeforeASlowShareIsCounted) {
  StartWatching("A");
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  disk.Places.SlowDown(Path("/Files/ImportQueue"), 2000ms);
  const base::Duration before = loop.BreathedFor;
  form.cmdSkip.Press(By::Hand);
  EXPECT_LE(loop.BreathedFor - before, SimulatedPlaces::kPatience)
      << std::chrono::duration_cast<std::chrono::seconds>(loop.BreathedFor - before).count();
}

TEST_F(WorkAlertThrough, ALookThatFailsBehindARefreshDoesNotHideAsMuchAgain) {
  StartWatching("A");
  for (const char* name : {"a.dS2", "b.dS2", "c.dS2"}) Transfer(name);
  // The share of the import folders is away for the moment of the count behind the refresh.
  loop.Expect({.delay = 5s, .meanwhile = [this] { disk.BreakListing(ImportFolder()); }});
  WaitForACheck();
  ASSERT_EQ(Messages().size(), 1u);
  ASSERT_FALSE(disk.Has(DropFolder() + "a.dS2"));
  disk.MendListing(ImportFolder());
  WaitForACheck();
  for (const char* name : {"d.dS2", "e.dS2", "f.dS2"}) Transfer(name);
  loop.Advance(3600s);
  EXPECT_EQ(Messages().size(), 2u) << "Last seen " << Figures().LastQueueCount;
}

TEST_F(WorkAlertThrough, TheEndOfTheProgramTakesTheNotificationAlong) {
  StartWatching("A");
  Transfer("a.dS2");
  loop.Expect({.reply = base::Reply::Yes});
  ActInTheWait([this] { form.frmMain.CloseRequest(); });
  ASSERT_EQ(ended, 0);
  EXPECT_FALSE(notifier.shown);
}

}  // namespace
}  // namespace tavlo::test
