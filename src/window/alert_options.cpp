#include "window/alert_options.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "base/text.h"

namespace tavlo::window {
namespace {

/// Twenty ticks make one check.
constexpr int kMillisecondsASecond = 50;

/// Intervals that the timer takes; what is stored or typed has no bound.
constexpr double kShortestSeconds = 1;
constexpr double kLongestSeconds = 10'000'000;

}  // namespace

AlertOptions::AlertOptions(forms::ConfigurationForm& config, const SettingsBinding& settings,
                           AlertTimer& timer)
    : config_(config), settings_(settings), timer_(timer) {
  config_.chkAutoRefreshMode.OnClick = [this] { ClickAutoRefresh(); };
  config_.chkWorkWaitingAlertMode.OnClick = [this] { ClickAlert(); };
  config_.optNewWorkWaitingAllJobs.OnClick = [this] {
    Choose("A", config_.optNewWorkWaitingAllJobs, config_.optNewWorkWaitingPriority);
  };
  config_.optNewWorkWaitingPriority.OnClick = [this] {
    Choose("P", config_.optNewWorkWaitingPriority, config_.optNewWorkWaitingAllJobs);
  };
  config_.txtAutoQueueRefreshInterval.OnChange = [this] {
    ChangeInterval(config_.txtAutoQueueRefreshInterval, config_.chkAutoRefreshMode);
  };
  config_.txtNewDictationAlertInterval.OnChange = [this] {
    ChangeInterval(config_.txtNewDictationAlertInterval, config_.chkWorkWaitingAlertMode);
  };
}

void AlertOptions::Open() {
  configLoading_ = true;
  const std::string mode = config_.txtWorkWaitingAlertMode.Value;
  const bool off = mode == "1" || mode == "0";
  const bool any = mode == "A" || mode == "1";
  config_.chkWorkWaitingAlertMode.Value = !off;
  config_.optNewWorkWaitingAllJobs.Value = any;
  config_.optNewWorkWaitingPriority.Value = !any;

  const bool refreshes = config_.chkAutoRefreshMode.Value;
  config_.chkWorkWaitingAlertMode.Enabled = !refreshes;
  config_.txtAutoQueueRefreshInterval.Enabled = refreshes;

  config_.chkAutoRefreshMode.Enabled = off;
  config_.txtNewDictationAlertInterval.Enabled = !off;
  SetOptionsEnabled(!off);
  configLoading_ = false;
}

base::Duration AlertOptions::IntervalOf(const forms::Text& seconds) {
  const double bounded =
      std::clamp(base::NumberValue(seconds.Value.Get()), kShortestSeconds, kLongestSeconds);
  return base::Duration(static_cast<std::int64_t>(bounded * kMillisecondsASecond * 1000));
}

void AlertOptions::ClickAutoRefresh() {
  if (Idle()) return;
  if (config_.chkAutoRefreshMode.Value) {
    config_.chkWorkWaitingAlertMode.Value = false;
    config_.chkWorkWaitingAlertMode.Enabled = false;
    SetOptionsEnabled(false);
    config_.txtNewDictationAlertInterval.Enabled = false;
    SetModeOff();
    timer_.RestartWith(IntervalOf(config_.txtAutoQueueRefreshInterval));
    config_.txtAutoQueueRefreshInterval.Enabled = true;
  } else {
    config_.chkWorkWaitingAlertMode.Enabled = true;
    config_.txtAutoQueueRefreshInterval.Enabled = false;
  }
  config_.frmConfiguration.FocusOn(config_.txtFocus);
}

void AlertOptions::ClickAlert() {
  if (Idle()) return;
  if (config_.chkWorkWaitingAlertMode.Value) {
    SetOptionsEnabled(true);
    config_.txtWorkWaitingAlertMode.Value = config_.optNewWorkWaitingAllJobs.Value ? "A" : "P";
    config_.chkAutoRefreshMode.Value = false;
    config_.chkAutoRefreshMode.Enabled = false;
    config_.txtAutoQueueRefreshInterval.Enabled = false;
    timer_.RestartWith(IntervalOf(config_.txtNewDictationAlertInterval));
    config_.txtNewDictationAlertInterval.Enabled = true;
  } else {
    SetOptionsEnabled(false);
    SetModeOff();
    config_.chkAutoRefreshMode.Enabled = true;
    config_.txtNewDictationAlertInterval.Enabled = false;
  }
  config_.frmConfiguration.FocusOn(config_.txtFocus);
}

void AlertOptions::ChangeInterval(forms::Text& seconds, const forms::Choice& inUse) {
  const double number =
      std::max(std::trunc(base::NumberValue(seconds.Value.Get())), kShortestSeconds);
  const std::string kept = base::NumberText(number);
  if (seconds.Value.Get() != kept) {
    // The handler runs again for this write and does the rest there.
    seconds.Value = kept;
    return;
  }
  if (inUse.Value && !Idle()) timer_.RestartWith(IntervalOf(seconds));
}

void AlertOptions::Choose(const char* mode, forms::Choice& chosen, forms::Choice& other) {
  if (Idle() || !chosen.Value) return;
  other.Value = false;
  config_.txtWorkWaitingAlertMode.Value = mode;
  config_.frmConfiguration.FocusOn(config_.txtFocus);
}

void AlertOptions::SetOptionsEnabled(bool enabled) {
  config_.optNewWorkWaitingAllJobs.Enabled = enabled;
  config_.optNewWorkWaitingPriority.Enabled = enabled;
}

void AlertOptions::SetModeOff() {
  config_.txtWorkWaitingAlertMode.Value = config_.optNewWorkWaitingAllJobs.Value ? "1" : "0";
}

}  // namespace tavlo::window
