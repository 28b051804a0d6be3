#pragma once

#include <vector>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "window/alert_options.h"
#include "window/configuration_page.h"
#include "window/main_window.h"
#include "window/settings_binding.h"

namespace tavlo::window {

/// The reseller's logo and the user's own line on the deck.
class Brand {
 public:
  virtual ~Brand() = default;
  virtual void ApplyBranding() = 0;
};

/// The foot pedal of which there are two kinds to choose from.
class PedalChoice {
 public:
  virtual ~PedalChoice() = default;
  /// The user has chosen another kind.
  virtual void FollowChoice() = 0;
};

/// The settings page: keeps its controls in step with the texts behind them, and what they set.
class SettingsChoices : public ConfigurationPage {
 public:
  SettingsChoices(MainWindow& window, SettingsBinding& settings, AlertTimer& timer, Brand& brand,
                  PedalChoice& pedal);

  forms::Pane& Frame() override { return config_.frameSettings; }
  void WindowOpens() override;

 private:
  void BindSliders();
  void BindCheckBoxes();
  void BindPedals();
  void BindTexts();
  void ActAtOnce(const forms::Choice& box);
  void SetSliders();
  void SetCheckBoxes();
  void ShowBackspace();
  void ShowSubjectHeading();
  void ShowPedalSense();
  void StepWavConvMode();
  void FocusAway() { config_.frmConfiguration.FocusOn(config_.txtFocus); }

  MainWindow& window_;
  forms::MainForm& main_;
  forms::ConfigurationForm& config_;
  SettingsBinding& settings_;
  Brand& brand_;
  PedalChoice& pedal_;
  const std::vector<Binding> pairs_;
  AlertOptions alerts_;
};

}  // namespace tavlo::window
