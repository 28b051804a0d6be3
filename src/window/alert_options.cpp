#include "window/alert_options.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

#include "base/text.h"

namespace tavlo::window {
namespace {

/// Twenty ticks make one check.
constexpr int kMillisecondsASecond = 50;

/// What is stored or typed has no bound. The longest interval is our own decision: the milliseconds
/// of a tick are a quantity of 16 bits, and 1310 seconds make 65500 of them.
constexpr double kShortestSeconds = 1;
constexpr double kLongestSeconds = 1310;

/// The seconds that are in effect for a box.
double SecondsOf(const forms::Text& box) {
  return std::clamp(std::trunc(box.Number()), kShortestSeconds, kLongestSeconds);
}

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
  // A box that nothing was stored for has not changed yet.
  ChangeInterval(config_.txtAutoQueueRefreshInterval, config_.chkAutoRefreshMode);
  ChangeInterval(config_.txtNewDictationAlertInterval, config_.chkWorkWaitingAlertMode);
  configLoading_ = false;
}

base::Duration AlertOptions::IntervalOf(const forms::Text& seconds) {
  return std::chrono::milliseconds(static_cast<int>(SecondsOf(seconds)) * kMillisecondsASecond);
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
  const std::string kept = base::NumberText(SecondsOf(seconds));
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
