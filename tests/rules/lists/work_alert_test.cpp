#include "lists/work_alert.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "support/alert_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using Texts = std::vector<std::string>;

/// Looks once, so long from now.
class Moment {
 public:
  Moment(base::Loop& loop, base::Duration fromNow, std::function<void()> look)
      : timer_(loop, "look", fromNow), look_(std::move(look)) {
    timer_.OnTick = [this] {
      timer_.Stop();
      came_ = true;
      look_();
    };
    timer_.Start();
  }
  ~Moment() { EXPECT_TRUE(came_); }

 private:
  base::Timer timer_;
  std::function<void()> look_;
  bool came_ = false;
};

struct WorkAlert : testing::Test, AlertBench {};

TEST_F(WorkAlert, ChecksOncePerPeriodOfItsSeconds) {
  StartWatching("A");
  EXPECT_EQ(Watch().tmrWorkWaitingAlert.Interval(), 3000ms);
  Transfer("a.dS2");
  Watch().AlertTicks = 0;
  Watch().GoOn();
  loop.Advance(59'999ms);
  EXPECT_TRUE(notifier.notified.empty());
  loop.Advance(1ms);
  EXPECT_EQ(notifier.notified.size(), 1u);
}

TEST_F(WorkAlert, TimerTakesTheSecondsOfTheModeThatIsOn) {
  const store::Assignments seconds{{"NewDictationAlertInterval", "10"},
                                   {"AutoQueueRefreshInterval", "200"}};
  for (const auto& [mode, interval] :
       {std::pair{"A", 500ms}, {"P", 500ms}, {"1", 10'000ms}, {"0", 10'000ms}}) {
    AlertBench bench;
    bench.StartWatching(mode, seconds);
    EXPECT_EQ(bench.Watch().tmrWorkWaitingAlert.Interval(), interval) << mode;
    EXPECT_TRUE(bench.Watch().tmrWorkWaitingAlert.Enabled()) << mode;
  }
}

TEST_F(WorkAlert, WithBothModesOffTheTimerTicksAndDoesNothing) {
  StartWatching("1");
  Transfer("a.dS2");
  disk.Operations.clear();
  loop.Advance(3600s);
  EXPECT_TRUE(disk.Operations.empty());
  EXPECT_TRUE(Spoken().empty());
  EXPECT_TRUE(Watch().tmrWorkWaitingAlert.Enabled());
}

TEST_F(WorkAlert, StopsWhatPlaysAndComesToTheTopThenSpeaksThenShowsThenRefreshes) {
  StartWatching("A");
  config.txtAutoPreview.Value = "15";
  ClickRow(0);
  ASSERT_TRUE(Engine().IsPlaying);
  Transfer("a.dS2");
  Watch().AlertTicks = 19;
  Watch().GoOn();
  const Moment before(loop, 2999ms, [this] { EXPECT_TRUE(Engine().IsPlaying); });
  const Moment top(loop, 3001ms, [this] {
    EXPECT_FALSE(Engine().IsPlaying);
    EXPECT_TRUE(form.frmMain.TopMost);
  });
  const Moment unsaid(loop, 3999ms, [this] { EXPECT_TRUE(Spoken().empty()); });
  const Moment said(loop, 4001ms, [this] { EXPECT_EQ(Spoken(), Texts{"NewDocInQ"}); });
  const Moment unseen(loop, 6499ms, [this] { EXPECT_TRUE(Messages().empty()); });
  loop.Expect({.delay = 10s, .meanwhile = [this] {
                 EXPECT_EQ(loop.Shown.back().title, "Tavlo Deck - New Dictation Alert");
                 EXPECT_TRUE(form.frmMain.TopMost);
                 EXPECT_TRUE(disk.Has(DropFolder() + "a.dS2")) << "the list is as it was";
               }});
  const Moment seen(loop, 6501ms, [this] { EXPECT_EQ(Messages().size(), 1u); });
  loop.Advance(20s);
  ASSERT_EQ(Messages(), Texts{"New dictation has arrived!"});
  EXPECT_EQ(loop.Shown.back().icon, base::Icon::Information);
  EXPECT_EQ(loop.Shown.back().buttons, base::Buttons::Ok);
  EXPECT_FALSE(form.frmMain.TopMost);
  EXPECT_FALSE(disk.Has(DropFolder() + "a.dS2"));
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
  EXPECT_TRUE(RefreshedByVoice());
}

TEST_F(WorkAlert, WindowThatIsPinnedStaysPinned) {
  StartWatching("A", {{"AlwaysOnTopFlag", "Y"}});
  Transfer("a.dS2");
  WaitForACheck();
  ASSERT_EQ(Messages().size(), 1u);
  EXPECT_TRUE(form.frmMain.TopMost);
}

TEST_F(WorkAlert, WithAnEmptyQueueSpeaksAndRefreshesWithoutAMessage) {
  StartWatching("A", {}, "");
  Transfer("a.dS2");
  WaitForACheck();
  EXPECT_EQ(Spoken(), Texts{"NewDocInQ"});
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_TRUE(form.frmMain.TopMost) << "the typist sees the new work appear";
  form.frmMain.Activate();
  EXPECT_FALSE(form.frmMain.TopMost);
}

TEST_F(WorkAlert, OnPriorityAPlainDocumentRaisesNothingAndLeavesThePriorityFigures) {
  StartWatching("P");
  Transfer("a.dS2");
  WaitForACheck();
  EXPECT_TRUE(Spoken().empty());
  EXPECT_EQ(Figures().WaitingQueuePriorityCount, 0);
  Transfer("b P_.dS2");
  WaitForACheck();
  EXPECT_EQ(Spoken(), Texts{"NewPriorityDocInQ"});
  EXPECT_EQ(Messages(), Texts{"New priority dictation has arrived!"});
}

TEST_F(WorkAlert, WithoutAutomaticImportAnImportFileRaisesTheImportAlertAlone) {
  StartWatching("A");
  Import("letter.wav");
  WaitForACheck();
  EXPECT_EQ(Spoken(), Texts{"NewDocInImport"});
  EXPECT_EQ(Messages(), Texts{"New dictation is available for import!"});
}

TEST_F(WorkAlert, WithAutomaticImportTheSameFileCountsAsTheQueues) {
  StartWatching("A", {{"AutoImportMode", "Y"}});
  Import("letter.wav");
  WaitForACheck();
  EXPECT_EQ(Spoken(), Texts{"NewDocInQ"});
  EXPECT_EQ(Messages(), Texts{"New dictation has arrived!"});
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
}

TEST_F(WorkAlert, TellsOfBothSidesInOneCheck) {
  StartWatching("A");
  Transfer("a.dS2");
  Import("letter.wav");
  WaitForACheck();
  EXPECT_EQ(Messages(),
            (Texts{"New dictation has arrived!", "New dictation is available for import!"}));
  WaitForACheck();
  EXPECT_EQ(Messages().size(), 2u);
}

TEST_F(WorkAlert, IsRaisedOnceForTheSameFigures) {
  StartWatching("A");
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.cmdStop.Press(By::Hand);
  Transfer("a.dS2");
  for (int check = 0; check < 5; ++check) WaitForACheck();
  EXPECT_EQ(Messages().size(), 1u);
  EXPECT_TRUE(disk.Has(DropFolder() + "a.dS2")) << "the list is left alone beside an open document";
}

TEST_F(WorkAlert, WorkThatIsTakenAwayAndPutBackRaisesNoSecondOne) {
  StartWatching("A");
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.cmdStop.Press(By::Hand);
  Transfer("a.dS2");
  WaitForACheck();
  disk.Remove(DropFolder() + "a.dS2");
  WaitForACheck();
  Transfer("a.dS2");
  WaitForACheck();
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlert, WhatWaitedAtTheStartRaisesNoneAndIsInTheList) {
  Transfer("early.dS2");
  StartWatching("A");
  WaitForACheck();
  EXPECT_TRUE(Spoken().empty());
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
}

TEST_F(WorkAlert, FirstWorkAfterAStartWithMuchWaitingIsToldOf) {
  for (const char* name : {"a.dS2", "b.dS2", "c.dS2"}) Transfer(name);
  StartWatching("A");
  Transfer("d.dS2");
  WaitForACheck();
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlert, AFolderThatCanNotBeReachedRaisesNothingAndSaysNothing) {
  StartWatching("A");
  disk.BreakListing(DropFolder());
  Import("letter.wav");
  WaitForACheck();
  EXPECT_TRUE(Spoken().empty());
  EXPECT_TRUE(loop.Shown.empty());
  disk.MendListing(DropFolder());
  WaitForACheck();
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlert, NoCheckComesInTheFtpViewHoweverLongItStays) {
  StartWatching("A");
  form.mnuViewFtp.Press(By::Hand);
  Transfer("a.dS2");
  const int ticks = Watch().AlertTicks;
  loop.Advance(8 * 3600s);
  EXPECT_TRUE(Spoken().empty());
  EXPECT_EQ(Watch().AlertTicks, ticks) << "no tick is counted";
  form.mnuViewCompleted.Press(By::Hand);
  WaitForACheck();
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlert, NoCheckComesWhileTheSettingsShow) {
  StartWatching("A");
  form.mnuConfiguration.Press(By::Hand);
  Transfer("a.dS2");
  loop.Advance(3600s);
  EXPECT_TRUE(Spoken().empty());
  config.mnuClose.Press(By::Hand);
  WaitForACheck();
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlert, NoSecondBoxComesOverAQuestion) {
  StartWatching("A");
  Keep("7 0 Brown 12 3 9 2004 14 5 12 2 0 17 cardio 0 0_.wav");
  form.mnuViewCompleted.Press(By::Hand);
  form.listViewCompleted.RowClick(0);
  Transfer("a.dS2");
  loop.Expect({.reply = base::Reply::No, .delay = 600s});
  form.cmdDeleteOneCompleted.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(Spoken().empty());
  WaitForACheck();
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlert, CheckComesAFullPeriodAfterTheTypistLastActed) {
  StartWatching("A");
  Transfer("a.dS2");
  for (int act = 0; act < 10; ++act) {
    loop.Advance(40s);
    ClickRow(0);
  }
  EXPECT_TRUE(Spoken().empty());
  WaitForACheck();
  EXPECT_EQ(Spoken().size(), 1u);
}

TEST_F(WorkAlert, AutomaticRefreshBringsWorkInWithoutAWordOrTheKeyboard) {
  StartWatching("1", {{"AutoRefreshMode", "-1"}});
  Transfer("a.dS2");
  form.frmMain.FocusOn(form.listViewInQueue);
  WaitForACheck();
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 2u);
  EXPECT_TRUE(promptControl.Sounded.empty());
  EXPECT_EQ(form.frmMain.Focused(), &form.listViewInQueue);
  EXPECT_FALSE(form.frmMain.TopMost);
}

TEST_F(WorkAlert, AutomaticRefreshWaitsForTheDocumentToBeFinished) {
  StartWatching("1", {{"AutoRefreshMode", "-1"}, {"AutoQueueDocumentFlag", "N"}});
  ClickRow(0);
  form.cmdPlay.Press(By::Hand);
  form.cmdStop.Press(By::Hand);
  Transfer("a.dS2");
  loop.Advance(3600s);
  EXPECT_TRUE(disk.Has(DropFolder() + "a.dS2"));
  form.cmdSkip.Press(By::Hand);
  ASSERT_FALSE(disk.Has(DropFolder() + "a.dS2")) << "Skip has swept";
  Transfer("b.dS2");
  WaitForACheck();
  EXPECT_FALSE(disk.Has(DropFolder() + "b.dS2"));
}

TEST_F(WorkAlert, AutomaticRefreshWaitsForThePreviewToEnd) {
  StartWatching("1", {{"AutoRefreshMode", "-1"}});
  Engine().tmrPlaySnipet.SetInterval(3600s);
  Engine().tmrPlaySnipet.Start();
  Transfer("a.dS2");
  loop.Advance(600s);
  EXPECT_TRUE(disk.Has(DropFolder() + "a.dS2"));
  Engine().tmrPlaySnipet.Stop();
  WaitForACheck();
  EXPECT_FALSE(disk.Has(DropFolder() + "a.dS2"));
}

TEST_F(WorkAlert, DesktopIsToldToWhileAnotherWindowHasTheKeyboard) {
  StartWatching("A");
  form.frmMain.HasKeyboard = false;
  Transfer("a.dS2");
  loop.Expect({.delay = 5s, .meanwhile = [&] { EXPECT_TRUE(notifier.shown); }});
  WaitForACheck();
  ASSERT_EQ(notifier.notified.size(), 1u);
  EXPECT_EQ(notifier.notified[0].title, "Tavlo Deck - New Dictation Alert");
  EXPECT_EQ(notifier.notified[0].text, "New dictation has arrived!");
  EXPECT_FALSE(notifier.shown) << "the message was answered";
  EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(WorkAlert, DesktopIsNotToldWhatTheTypistSees) {
  StartWatching("A");
  form.frmMain.HasKeyboard = true;
  Transfer("a.dS2");
  WaitForACheck();
  EXPECT_TRUE(notifier.notified.empty());
  form.frmMain.WindowShape = forms::Shape::Minimized;
  Transfer("b.dS2");
  WaitForACheck();
  EXPECT_EQ(notifier.notified.size(), 1u);
}

/// One check: what came, and what is told of it.
struct Case {
  const char* mode;
  const char* autoImport;
  Texts dropped;
  Texts imported;
  Texts spoken;
};

std::ostream& operator<<(std::ostream& out, const Case& check) {
  out << check.mode << ", automatic import " << check.autoImport << ", dropped";
  for (const std::string& name : check.dropped) out << ' ' << name;
  out << ", imported";
  for (const std::string& name : check.imported) out << ' ' << name;
  return out;
}

TEST_F(WorkAlert, IsDecidedByModeAutomaticImportAndWhatCame) {
  const Texts none;
  const Texts plain{"a.x"};
  const Texts urgent{"a P_.x"};
  const Case cases[] = {
      {"A", "N", none, none, none},
      {"A", "N", plain, none, {"NewDocInQ"}},
      {"A", "N", urgent, none, {"NewDocInQ"}},
      {"A", "N", none, plain, {"NewDocInImport"}},
      {"A", "N", none, urgent, {"NewDocInImport"}},
      {"A", "N", plain, plain, {"NewDocInQ", "NewDocInImport"}},
      {"A", "Y", none, none, none},
      {"A", "Y", plain, none, {"NewDocInQ"}},
      {"A", "Y", none, plain, {"NewDocInQ"}},
      {"A", "Y", plain, urgent, {"NewDocInQ"}},
      {"P", "N", none, none, none},
      {"P", "N", plain, none, none},
      {"P", "N", urgent, none, {"NewPriorityDocInQ"}},
      {"P", "N", none, plain, none},
      {"P", "N", none, urgent, {"NewPriorityDocInImport"}},
      {"P", "N", urgent, urgent, {"NewPriorityDocInQ", "NewPriorityDocInImport"}},
      {"P", "N", plain, urgent, {"NewPriorityDocInImport"}},
      {"P", "Y", plain, plain, none},
      {"P", "Y", urgent, none, {"NewPriorityDocInQ"}},
      {"P", "Y", none, urgent, {"NewPriorityDocInQ"}},
      {"1", "N", urgent, urgent, none},
      {"0", "Y", urgent, urgent, none},
  };
  for (const Case& check : cases) {
    SCOPED_TRACE(testing::Message() << check);
    AlertBench bench;
    bench.StartWatching(check.mode, {{"AutoImportMode", check.autoImport}});
    for (const std::string& name : check.dropped) bench.Transfer(name + ".dS2");
    for (const std::string& name : check.imported) bench.Import(name + ".wav");
    bench.WaitForACheck();
    EXPECT_EQ(bench.Spoken(), check.spoken);
    EXPECT_EQ(bench.Messages().size(), check.spoken.size());
    bench.WaitForACheck();
    EXPECT_EQ(bench.Spoken(), check.spoken) << "never twice";
  }
}

/// Which of the last seen figures an alert takes over, with a document open, so that no refresh
/// takes them all.
TEST_F(WorkAlert, TakesAsSeenTheFiguresOfItsSide) {
  struct Side {
    const char* autoImport;
    bool drops;
    bool imports;
    std::array<int, 4> seen;
  };
  for (const Side& side :
       {Side{"N", true, false, {2, 1, 0, 0}}, Side{"N", false, true, {0, 0, 2, 1}},
        Side{"Y", true, true, {2, 1, 2, 1}}, Side{"Y", true, false, {2, 1, 0, 0}}}) {
    AlertBench bench;
    bench.StartWatching("P", {{"AutoImportMode", side.autoImport}});
    bench.ClickRow(0);
    bench.form.cmdPlay.Press(By::Hand);
    bench.form.cmdStop.Press(By::Hand);
    for (const char* name : {"a.dS2", "b P_.dS2"}) {
      if (side.drops) bench.Transfer(name);
    }
    for (const char* name : {"c.wav", "d P_.wav"}) {
      if (side.imports) bench.Import(name);
    }
    bench.WaitForACheck();
    const lists::WaitingFigures& figures = bench.Figures();
    EXPECT_EQ((std::array<int, 4>{figures.LastQueueCount, figures.LastQueuePriorityCount,
                                  figures.LastImportCount, figures.LastImportPriorityCount}),
              side.seen);
  }
}

}  // namespace
}  // namespace tavlo::test
