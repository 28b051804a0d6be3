#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/settings_bench.h"
#include "window/alert_options.h"

namespace tavlo::test {
namespace {

using base::operator""ms;

struct RestartedTimer : window::AlertTimer {
  std::vector<base::Duration> restarts;
  void RestartWith(base::Duration interval) override { restarts.push_back(interval); }
};

/// What the controls of refresh and alert say and which of them can be used.
struct OptionsPicture {
  std::string mode;  ///< As it is stored.
  bool refresh = false;
  bool alert = false;
  bool any = false;
  bool refreshFree = false;
  bool alertFree = false;
  bool refreshSeconds = false;
  bool alertSeconds = false;
  bool options = false;

  bool operator==(const OptionsPicture&) const = default;
};

std::ostream& operator<<(std::ostream& out, const OptionsPicture& picture) {
  return out << "mode " << picture.mode << ", refresh " << picture.refresh << picture.refreshFree
             << picture.refreshSeconds << ", alert " << picture.alert << picture.alertFree
             << picture.alertSeconds << ", options " << picture.any << picture.options;
}

/// Both off, with the option that is remembered.
OptionsPicture NeitherOn(bool any) {
  return {.mode = any ? "1" : "0", .any = any, .refreshFree = true, .alertFree = true};
}
OptionsPicture RefreshOn(bool any) {
  return {.mode = any ? "1" : "0",
          .refresh = true,
          .any = any,
          .refreshFree = true,
          .refreshSeconds = true};
}
OptionsPicture AlertOn(bool any) {
  return {.mode = any ? "A" : "P",
          .alert = true,
          .any = any,
          .alertFree = true,
          .alertSeconds = true,
          .options = true};
}
/// What an old database may hold: neither can be switched off.
OptionsPicture BothOn(bool any) {
  return {.mode = any ? "A" : "P",
          .refresh = true,
          .alert = true,
          .any = any,
          .refreshSeconds = true,
          .alertSeconds = true,
          .options = true};
}

struct AlertClicks : testing::Test, SettingsBench {
  AlertClicks() { config.frmConfiguration.Visible = true; }

  void Open(const std::string& mode, bool refresh) {
    database.With("WorkWaitingAlertMode", mode).With("AutoRefreshMode", refresh ? "-1" : "0");
    binding.Load();
    alerts.Open();
  }
  OptionsPicture Now() const {
    EXPECT_NE(config.optNewWorkWaitingAllJobs.Value, config.optNewWorkWaitingPriority.Value);
    EXPECT_EQ(config.optNewWorkWaitingAllJobs.Enabled, config.optNewWorkWaitingPriority.Enabled);
    return {.mode = config.txtWorkWaitingAlertMode.Value,
            .refresh = config.chkAutoRefreshMode.Value,
            .alert = config.chkWorkWaitingAlertMode.Value,
            .any = config.optNewWorkWaitingAllJobs.Value,
            .refreshFree = config.chkAutoRefreshMode.Enabled,
            .alertFree = config.chkWorkWaitingAlertMode.Enabled,
            .refreshSeconds = config.txtAutoQueueRefreshInterval.Enabled,
            .alertSeconds = config.txtNewDictationAlertInterval.Enabled,
            .options = config.optNewWorkWaitingAllJobs.Enabled};
  }

  RestartedTimer timer;
  window::AlertOptions alerts{config, binding, timer};
};

TEST_F(AlertClicks, EveryStoredModeOpensWithAndWithoutAutomaticRefresh) {
  for (const bool any : {true, false}) {
    Open(any ? "1" : "0", false);
    EXPECT_EQ(Now(), NeitherOn(any));
    Open(any ? "1" : "0", true);
    EXPECT_EQ(Now(), RefreshOn(any));
    Open(any ? "A" : "P", false);
    EXPECT_EQ(Now(), AlertOn(any));
    Open(any ? "A" : "P", true);
    EXPECT_EQ(Now(), BothOn(any));
  }
  EXPECT_TRUE(timer.restarts.empty());
}

TEST_F(AlertClicks, ModeThatIsNoneOfTheFourOpensAsAnAlertOnPriority) {
  for (const char* const mode : {"", "a", "2", "P "}) {
    Open(mode, false);
    OptionsPicture expected = AlertOn(false);
    expected.mode = mode;
    EXPECT_EQ(Now(), expected) << '"' << mode << '"';
  }
}

TEST_F(AlertClicks, EachFromEachStateLeadsWhereItShouldAndRestartsTheTimerOnlyWhenSwitchedOn) {
  forms::Choice* const refresh = &config.chkAutoRefreshMode;
  forms::Choice* const alert = &config.chkWorkWaitingAlertMode;
  forms::Choice* const all = &config.optNewWorkWaitingAllJobs;
  forms::Choice* const priority = &config.optNewWorkWaitingPriority;
  struct Step {
    OptionsPicture from;
    forms::Choice* clicked;
    OptionsPicture to;
    base::Duration restart = base::Duration::zero();
  };
  std::vector<Step> steps;
  for (const bool any : {true, false}) {
    const std::vector<Step> more = {{NeitherOn(any), refresh, RefreshOn(any), 6000ms},
                                    {NeitherOn(any), alert, AlertOn(any), 1500ms},
                                    {NeitherOn(any), all, NeitherOn(any)},
                                    {NeitherOn(any), priority, NeitherOn(any)},
                                    {RefreshOn(any), refresh, NeitherOn(any)},
                                    {RefreshOn(any), alert, RefreshOn(any)},
                                    {RefreshOn(any), all, RefreshOn(any)},
                                    {RefreshOn(any), priority, RefreshOn(any)},
                                    {AlertOn(any), refresh, AlertOn(any)},
                                    {AlertOn(any), alert, NeitherOn(any)},
                                    {AlertOn(any), all, AlertOn(true)},
                                    {AlertOn(any), priority, AlertOn(false)},
                                    {BothOn(any), refresh, BothOn(any)},
                                    {BothOn(any), alert, BothOn(any)},
                                    {BothOn(any), all, BothOn(true)},
                                    {BothOn(any), priority, BothOn(false)}};
    steps.insert(steps.end(), more.begin(), more.end());
  }
  for (const Step& step : steps) {
    SCOPED_TRACE(testing::Message() << step.clicked->Name << " from " << step.from);
    Open(step.from.mode, step.from.refresh);
    ASSERT_EQ(Now(), step.from);
    timer.restarts.clear();
    config.frmConfiguration.FocusOn(*step.clicked);
    // A click on the option that is set, or on what is out of reach, is none.
    const bool acts = !(step.from == step.to);
    step.clicked->Click();
    EXPECT_EQ(Now(), step.to);
    EXPECT_EQ(config.frmConfiguration.Focused() == &config.txtFocus, acts);
    std::vector<base::Duration> expected;
    if (step.restart > base::Duration::zero()) expected.push_back(step.restart);
    EXPECT_EQ(timer.restarts, expected);
  }
}

}  // namespace
}  // namespace tavlo::test
