// What hands and feet do within the waits of an alert, and under its message.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/alert_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using Texts = std::vector<std::string>;

struct WorkAlertWaits : testing::Test, AlertBench {
  base::Timer hand{loop, "hand", 100ms};

  /// An alert is raised; within its first wait a hand acts.
  void ActInTheWait(const std::function<void()>& act) {
    Transfer("a.dS2");
    hand.OnTick = [this, act] {
      if (notifier.notified.empty()) return;
      hand.Stop();
      act();
    };
    hand.Start();
    WaitForACheck();
  }
  /// The same with the settings of alerts.
  void ClickInTheWait(forms::Choice& choice) {
    ActInTheWait([this, &choice] {
      form.mnuConfiguration.Press(By::Hand);
      config.frmConfiguration.Activate();
      choice.Click();
      config.mnuClose.Press(By::Hand);
    });
  }
};

TEST_F(WorkAlertWaits, ADocumentThatIsPlayedMeanwhileKeepsItsList) {
  StartWatching("A");
  ActInTheWait([this] {
    ClickRow(0);
    form.cmdPlay.Press(By::Hand);
  });
  EXPECT_EQ(Messages().size(), 1u);
  EXPECT_TRUE(InWork().IsInWork());
  EXPECT_TRUE(disk.Has(DropFolder() + "a.dS2"));
}

TEST_F(WorkAlertWaits, NothingIsToldBehindTheEndOfTheProgram) {
  StartWatching("A");
  loop.Expect({.reply = base::Reply::Yes});
  ActInTheWait([this] { form.frmMain.CloseRequest(); });
  EXPECT_EQ(ended, 0);
  EXPECT_TRUE(Spoken().empty());
  EXPECT_TRUE(Messages().empty());
  EXPECT_FALSE(Watch().tmrWorkWaitingAlert.Enabled());
}

TEST_F(WorkAlertWaits, ProgramMayBeEndedBehindTheMessage) {
  StartWatching("A");
  Transfer("a.dS2");
  WaitForACheck();
  ASSERT_EQ(Messages().size(), 1u);
  loop.Expect({.reply = base::Reply::Yes});
  form.frmMain.CloseRequest();
  loop.Advance(3s);
  EXPECT_EQ(ended, 0);
}

TEST_F(WorkAlertWaits, TheFtpViewIsLeftAlone) {
  StartWatching("A");
  ActInTheWait([this] { form.mnuViewFtp.Press(By::Hand); });
  EXPECT_EQ(Messages().size(), 1u);
  EXPECT_TRUE(disk.Has(DropFolder() + "a.dS2"));
  EXPECT_FALSE(form.mnuReport.Enabled);
}

TEST_F(WorkAlertWaits, TheSettingsAreLeftAlone) {
  StartWatching("A");
  ActInTheWait([this] { form.mnuConfiguration.Press(By::Hand); });
  EXPECT_EQ(Messages().size(), 1u);
  EXPECT_TRUE(config.frmConfiguration.Visible);
  EXPECT_TRUE(disk.Has(DropFolder() + "a.dS2"));
}

/// Two more transfers begin and are not ended, so that they stay in the drop folder.
TEST_F(WorkAlertWaits, WhatARefreshMeanwhileHasSeenRaisesNoSecondAlert) {
  StartWatching("A");
  ActInTheWait([this] {
    for (const char* name : {"b.dS2", "c.dS2"}) {
      Transfer(name);
      disk.OpenWriter(DropFolder() + name);
    }
    form.cmdUpdateFileList.Press(By::Hand);
    // A document in work keeps the alert from a refresh of its own, which would look, too.
    const forms::Table& list = form.listViewInQueue;
    ClickRow(list.TextAt(0, forms::document_column::FileName) == Document().Name() ? 0 : 1);
    form.cmdPlay.Press(By::Hand);
    form.cmdStop.Press(By::Hand);
  });
  ASSERT_TRUE(InWork().IsInWork());
  EXPECT_EQ(Messages().size(), 1u);
  WaitForACheck();
  EXPECT_EQ(Figures().WaitingQueueCount, 2) << "both wait when the next check comes";
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlertWaits, ShortPeriodsDoNotStackAlerts) {
  StartWatching("A", {{"NewDictationAlertInterval", "1"}});
  int depth = 0;
  for (int transfer = 0; transfer < 4; ++transfer) {
    Transfer(std::to_string(transfer) + ".dS2");
    loop.Expect({.delay = 20s, .meanwhile = [&] {
                   EXPECT_EQ(++depth, 1);
                   Transfer(std::to_string(transfer) + "b.dS2");
                   loop.Advance(10s);
                   --depth;
                 }});
    loop.Advance(40s);
  }
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 9u);
}

TEST_F(WorkAlertWaits, WhoeverLooksAtTheImportMeanwhileIsNotToldOfIt) {
  StartWatching("A");
  Import("letter.wav");
  ActInTheWait([this] { form.mnuViewImport.Press(By::Hand); });
  EXPECT_EQ(Messages(), Texts{"New dictation has arrived!"});
}

TEST_F(WorkAlertWaits, WhoeverSwitchesAlertsOffMeanwhileIsToldOfNothingMore) {
  StartWatching("A");
  Import("letter.wav");
  ClickInTheWait(config.chkWorkWaitingAlertMode);
  ASSERT_EQ(config.txtWorkWaitingAlertMode.Value.Get(), "1");
  EXPECT_EQ(Messages(), Texts{"New dictation has arrived!"});
  EXPECT_FALSE(disk.Has(DropFolder() + "a.dS2")) << "what was told of is brought in";
}

TEST_F(WorkAlertWaits, WhoeverTurnsToPriorityMeanwhileIsToldOfNothingElse) {
  StartWatching("A");
  Import("letter.wav");
  ClickInTheWait(config.optNewWorkWaitingPriority);
  ASSERT_EQ(config.txtWorkWaitingAlertMode.Value.Get(), "P");
  EXPECT_EQ(Messages(), Texts{"New dictation has arrived!"});
}

TEST_F(WorkAlertWaits, WhoeverTurnsToPriorityMeanwhileIsToldOfThePriorityImport) {
  StartWatching("A");
  Import("letter P_.wav");
  ClickInTheWait(config.optNewWorkWaitingPriority);
  EXPECT_EQ(Messages(), (Texts{"New dictation has arrived!",
                               "New priority dictation is available for import!"}));
}

TEST_F(WorkAlertWaits, ImportIsToldOfOnceThoughTheRefreshBeforeItFindsAFolderThatIsGone) {
  StartWatching("A");
  Import("letter.wav");
  ActInTheWait([this] { disk.BreakListing(Path("/Files/eU2Queue/")); });
  const Texts told{"New dictation has arrived!", "New dictation is available for import!"};
  ASSERT_EQ(Messages(), told);
  disk.MendListing(Path("/Files/eU2Queue/"));
  WaitForACheck();
  EXPECT_EQ(Messages(), told);
}

TEST_F(WorkAlertWaits, MinimizedWindowStaysMinimized) {
  StartWatching("A");
  form.frmMain.WindowShape = forms::Shape::Minimized;
  Transfer("a.dS2");
  WaitForACheck();
  EXPECT_EQ(form.frmMain.WindowShape, forms::Shape::Minimized);
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlertWaits, PedalPlaysOnBehindTheStopOfTheAlert) {
  StartWatching("A");
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  Transfer("a.dS2");
  Watch().AlertTicks = 19;
  Watch().GoOn();
  loop.Expect({.delay = 5s, .meanwhile = [&] {
                 EXPECT_FALSE(Engine().IsPlaying);
                 deck.Built()->transport.PlayCommand();
                 EXPECT_TRUE(Engine().IsPlaying);
               }});
  loop.Advance(20s);
  ASSERT_EQ(Messages().size(), 1u);
  EXPECT_TRUE(InWork().IsInWork());
}

}  // namespace
}  // namespace tavlo::test
