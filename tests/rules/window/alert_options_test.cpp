#include "window/alert_options.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "support/settings_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;

struct TimerTwin : window::AlertTimer {
  std::vector<base::Duration> restarts;
  void RestartWith(base::Duration interval) override { restarts.push_back(interval); }
};

struct AlertOptionsTest : testing::Test, SettingsBench {
  AlertOptionsTest() { config.frmConfiguration.Visible = true; }

  void OpenWith(const std::string& mode, const std::string& autoRefresh = "0") {
    database.With("WorkWaitingAlertMode", mode).With("AutoRefreshMode", autoRefresh);
    binding.Load();
    alerts.Open();
  }
  std::string Mode() const { return config.txtWorkWaitingAlertMode.Value; }

  TimerTwin timer;
  std::vector<base::Duration>& restarts = timer.restarts;
  window::AlertOptions alerts{config, binding, timer};
};

TEST_F(AlertOptionsTest, ModeOneLoadsSwitchedOffWithAnySelected) {
  OpenWith("1");
  EXPECT_FALSE(config.chkWorkWaitingAlertMode.Value);
  EXPECT_TRUE(config.optNewWorkWaitingAllJobs.Value);
  EXPECT_FALSE(config.optNewWorkWaitingPriority.Value);
  EXPECT_FALSE(config.optNewWorkWaitingAllJobs.Enabled);
}

TEST_F(AlertOptionsTest, ModeZeroLoadsSwitchedOffWithPrioritySelected) {
  OpenWith("0");
  EXPECT_FALSE(config.chkWorkWaitingAlertMode.Value);
  EXPECT_TRUE(config.optNewWorkWaitingPriority.Value);
  EXPECT_FALSE(config.txtNewDictationAlertInterval.Enabled);
}

TEST_F(AlertOptionsTest, ModesOfLettersLoadSwitchedOn) {
  OpenWith("A");
  EXPECT_TRUE(config.chkWorkWaitingAlertMode.Value);
  EXPECT_TRUE(config.optNewWorkWaitingAllJobs.Value);
  OpenWith("P");
  EXPECT_TRUE(config.chkWorkWaitingAlertMode.Value);
  EXPECT_TRUE(config.optNewWorkWaitingPriority.Value);
  EXPECT_TRUE(config.optNewWorkWaitingPriority.Enabled);
  EXPECT_TRUE(config.txtNewDictationAlertInterval.Enabled);
  EXPECT_FALSE(config.chkAutoRefreshMode.Enabled);
}

TEST_F(AlertOptionsTest, LoadingAndOpeningActOnNothing) {
  OpenWith("1", "-1");
  EXPECT_EQ(Mode(), "1");
  EXPECT_TRUE(config.chkAutoRefreshMode.Value);
  EXPECT_FALSE(config.chkWorkWaitingAlertMode.Enabled);
  EXPECT_TRUE(config.txtAutoQueueRefreshInterval.Enabled);
  EXPECT_TRUE(restarts.empty());
}

TEST_F(AlertOptionsTest, AlertSwitchedOnShutsAutomaticRefreshOut) {
  OpenWith("1");
  config.chkWorkWaitingAlertMode.Click();
  EXPECT_EQ(Mode(), "A");
  EXPECT_FALSE(config.chkAutoRefreshMode.Enabled);
  EXPECT_FALSE(config.txtAutoQueueRefreshInterval.Enabled);
  EXPECT_TRUE(config.txtNewDictationAlertInterval.Enabled);
  EXPECT_TRUE(config.optNewWorkWaitingAllJobs.Enabled);
  EXPECT_EQ(restarts, std::vector<base::Duration>{1500ms});
}

TEST_F(AlertOptionsTest, AlertSwitchedOffRemembersItsOptionAndFreesAutomaticRefresh) {
  OpenWith("P");
  config.chkWorkWaitingAlertMode.Click();
  EXPECT_EQ(Mode(), "0");
  EXPECT_TRUE(config.chkAutoRefreshMode.Enabled);
  EXPECT_FALSE(config.optNewWorkWaitingPriority.Enabled);
  EXPECT_TRUE(restarts.empty());
}

TEST_F(AlertOptionsTest, AutomaticRefreshSwitchedOnShutsTheAlertOut) {
  OpenWith("1");
  config.chkAutoRefreshMode.Click();
  EXPECT_EQ(Mode(), "1");
  EXPECT_FALSE(config.chkWorkWaitingAlertMode.Enabled);
  EXPECT_TRUE(config.txtAutoQueueRefreshInterval.Enabled);
  EXPECT_EQ(restarts, std::vector<base::Duration>{6000ms});
  config.chkWorkWaitingAlertMode.Click();
  EXPECT_FALSE(config.chkWorkWaitingAlertMode.Value);
}

TEST_F(AlertOptionsTest, AutomaticRefreshSwitchedOffLeavesTheTimerRunning) {
  OpenWith("0", "-1");
  config.chkAutoRefreshMode.Click();
  EXPECT_TRUE(config.chkWorkWaitingAlertMode.Enabled);
  EXPECT_FALSE(config.txtAutoQueueRefreshInterval.Enabled);
  EXPECT_TRUE(restarts.empty());
}

TEST_F(AlertOptionsTest, OptionWritesItsLetter) {
  OpenWith("A");
  config.optNewWorkWaitingPriority.Click();
  EXPECT_EQ(Mode(), "P");
  EXPECT_FALSE(config.optNewWorkWaitingAllJobs.Value);
  config.optNewWorkWaitingAllJobs.Click();
  EXPECT_EQ(Mode(), "A");
}

TEST_F(AlertOptionsTest, NoughtOrNothingTypedAsSecondsLeavesOneInEitherBox) {
  for (const bool refreshes : {true, false}) {
    OpenWith(refreshes ? "1" : "A", refreshes ? "-1" : "0");
    forms::Text& box =
        refreshes ? config.txtAutoQueueRefreshInterval : config.txtNewDictationAlertInterval;
    for (const char* typed : {"0", ""}) {
      box.Value = "30";
      restarts.clear();
      box.Change(typed);
      EXPECT_EQ(box.Value.Get(), "1") << box.Name << " \"" << typed << '"';
      EXPECT_EQ(restarts, std::vector<base::Duration>{50ms}) << box.Name;
    }
  }
}

TEST_F(AlertOptionsTest, IntervalInUseRestartsTheTimerAndTheOtherDoesNot) {
  OpenWith("0", "-1");
  config.txtAutoQueueRefreshInterval.Change("10x");
  EXPECT_EQ(config.txtAutoQueueRefreshInterval.Value.Get(), "10");
  config.txtNewDictationAlertInterval.Value = "7";
  EXPECT_EQ(restarts, std::vector<base::Duration>{500ms});
}

TEST_F(AlertOptionsTest, IntervalIsAWholeNumber) {
  OpenWith("A");
  config.txtNewDictationAlertInterval.Change("2.9");
  EXPECT_EQ(config.txtNewDictationAlertInterval.Value.Get(), "2");
  config.txtNewDictationAlertInterval.Change("0.5");
  EXPECT_EQ(config.txtNewDictationAlertInterval.Value.Get(), "1");
}

TEST_F(AlertOptionsTest, IntervalThatIsNotStoredIsASecond) {
  EXPECT_EQ(window::AlertOptions::IntervalOf(config.txtAutoQueueRefreshInterval), 50ms);
}

/// What is stored or typed, and the seconds that are taken for it.
const std::pair<std::string, std::string> kIntervals[] = {
    {"60", "60"},       {"1", "1"},        {"", "1"},
    {"0", "1"},         {"-1", "1"},       {"-5000", "1"},
    {"0.9", "1"},       {"soon", "1"},     {" 7", "1"},
    {"1309", "1309"},   {"1310", "1310"},  {"1311", "1310"},
    {"1310.9", "1310"}, {"65536", "1310"}, {std::string(300, '9'), "1310"}};

base::Duration TimerIntervalFor(const std::string& seconds) {
  return std::chrono::milliseconds(50 * std::stoi(seconds));
}

TEST_F(AlertOptionsTest, IntervalThatIsTypedIsTakenFromOneSecondTo1310AndTheBoxShowsIt) {
  OpenWith("A");
  for (const auto& [typed, taken] : kIntervals) {
    config.txtNewDictationAlertInterval.Value = "500";
    restarts.clear();
    config.txtNewDictationAlertInterval.Change(typed);
    EXPECT_EQ(config.txtNewDictationAlertInterval.Value.Get(), taken) << typed;
    EXPECT_EQ(restarts, std::vector{TimerIntervalFor(taken)}) << typed;
  }
}

TEST_F(AlertOptionsTest, IntervalThatIsStoredIsTakenInTheSameWay) {
  for (const auto& [stored, taken] : kIntervals) {
    database.With("AutoQueueRefreshInterval", stored).With("NewDictationAlertInterval", stored);
    OpenWith("0", "-1");
    EXPECT_EQ(config.txtAutoQueueRefreshInterval.Value.Get(), taken) << stored;
    EXPECT_EQ(config.txtNewDictationAlertInterval.Value.Get(), taken) << stored;
    EXPECT_EQ(window::AlertOptions::IntervalOf(config.txtAutoQueueRefreshInterval),
              TimerIntervalFor(taken))
        << stored;
  }
  EXPECT_TRUE(restarts.empty());
}

TEST_F(AlertOptionsTest, LongestIntervalIsTheLastThatFitsIntoSixteenBits) {
  config.txtAutoQueueRefreshInterval.Value = "1310";
  EXPECT_EQ(window::AlertOptions::IntervalOf(config.txtAutoQueueRefreshInterval), 65'500ms);
}

}  // namespace
}  // namespace tavlo::test
