#pragma once

#include "base/time.h"
#include "forms/configuration_form.h"
#include "window/settings_binding.h"

namespace tavlo::window {

/// The timer of automatic refreshes and alerts.
class AlertTimer {
 public:
  virtual ~AlertTimer() = default;

  /// Stops the timer, sets its interval and starts it.
  virtual void RestartWith(base::Duration interval) = 0;
};

/// The options for automatic refresh and for the alert on new dictation, which exclude each other.
/// Both use one timer, whose interval is their seconds times 50 milliseconds. A box of seconds
/// holds a whole number from 1 to 1310, whatever is stored or typed.
class AlertOptions {
 public:
  AlertOptions(forms::ConfigurationForm& config, const SettingsBinding& settings,
               AlertTimer& timer);

  /// Sets the controls from the mode and the check box, without acting on them. A database that has
  /// both switched on leaves both check boxes out of reach.
  void Open();
  /// The timer's interval for one of the two boxes of seconds, whatever its text.
  static base::Duration IntervalOf(const forms::Text& seconds);

 private:
  void ClickAutoRefresh();
  void ClickAlert();
  void ChangeInterval(forms::Text& seconds, const forms::Choice& inUse);
  void Choose(const char* mode, forms::Choice& chosen, forms::Choice& other);
  void SetOptionsEnabled(bool enabled);
  void SetModeOff();
  bool Idle() const { return configLoading_ || settings_.Loading(); }

  forms::ConfigurationForm& config_;
  const SettingsBinding& settings_;
  AlertTimer& timer_;
  bool configLoading_ = false;
};

}  // namespace tavlo::window
