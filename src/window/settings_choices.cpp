#include "window/settings_choices.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/text.h"
#include "store/work_folders.h"

namespace tavlo::window {
namespace {

/// A box for numbers holds its number as text.
void KeepNumber(forms::Text& text) {
  text.OnChange = [&text] { text.Value = base::NumberText(base::NumberValue(text.Value.Get())); };
}

}  // namespace

SettingsChoices::SettingsChoices(MainWindow& window, SettingsBinding& settings, AlertTimer& timer,
                                 Brand& brand, PedalChoice& pedal)
    : window_(window),
      main_(window.Form()),
      config_(window.Config()),
      settings_(settings),
      brand_(brand),
      pedal_(pedal),
      pairs_(PairsOn(config_.frameSettings, settings.Bindings())),
      alerts_(config_, settings, timer) {
  BindSliders();
  BindCheckBoxes();
  BindPedals();
  BindTexts();
}

void SettingsChoices::WindowOpens() {
  SetSliders();
  ShowBackspace();
  SetCheckBoxes();
  alerts_.Open();
  config_.txtCustomDisplay.Tooltip = config_.txtCustomDisplay.Value;
}

void SettingsChoices::BindSliders() {
  config_.sliderABS.OnChange = [this] {
    config_.txtAutoBackspace.Value = std::to_string(config_.sliderABS.Value);
    ShowBackspace();
  };
  config_.sliderAutoPreview.OnChange = [this] {
    config_.txtAutoPreview.Value = std::to_string(config_.sliderAutoPreview.Value);
    config_.frameAutoPreview.Caption = "Audio Preview:  " + config_.txtAutoPreview.Value.Get();
  };
  config_.sliderWindIncrement.OnChange = [this] {
    config_.txtWindIncrement.Value = std::to_string(config_.sliderWindIncrement.Value);
    config_.frameWindIncrement.Caption = "Wind Increment:  " + config_.txtWindIncrement.Value.Get();
  };
  config_.sldPromptVol.OnChange = [this] {
    config_.txtPromptVolume.Value = std::to_string(config_.sldPromptVol.Value);
  };
  for (forms::Range* slider : {&config_.sliderABS, &config_.sliderAutoPreview,
                               &config_.sliderWindIncrement, &config_.sldPromptVol}) {
    slider->OnRelease = [this, slider] {
      slider->OnChange();
      FocusAway();
    };
  }
}

void SettingsChoices::BindCheckBoxes() {
  for (const Binding& pair : pairs_) {
    pair.check->OnClick = [this, &pair] {
      pair.TakeTick();
      ActAtOnce(*pair.check);
      FocusAway();
    };
  }
}

/// What some of the boxes do besides, once their texts are written.
void SettingsChoices::ActAtOnce(const forms::Choice& box) {
  if (&box == &config_.chkAudioPrompts) settings_.TakeAudioPrompts();
  if (&box == &config_.chkAlwaysOnTop) main_.frmMain.TopMost = box.Value.Get();
  if (&box == &config_.chkShowCustomDisplay) brand_.ApplyBranding();
  if (&box == &config_.chkSwapRewindForwardPedals) ShowPedalSense();
}

void SettingsChoices::BindPedals() {
  config_.txtUSBorSerialFootPedal.OnChange = [this] {
    const bool usb = config_.txtUSBorSerialFootPedal.Value.Get() == "U";
    config_.optionUSB.Value = usb;
    config_.optionSerial.Value = !usb;
    config_.txtSerialFootPedalComPort.Enabled = !usb;
    // While settings load, the port is opened by its own text.
    if (!settings_.Loading()) pedal_.FollowChoice();
  };
  config_.optionUSB.OnClick = [this] {
    if (!config_.optionUSB.Value) return;
    config_.txtUSBorSerialFootPedal.Value = "U";
    FocusAway();
  };
  config_.optionSerial.OnClick = [this] {
    if (!config_.optionSerial.Value || config_.txtUSBorSerialFootPedal.Value.Get() != "U") return;
    config_.txtUSBorSerialFootPedal.Value = "S";
    FocusAway();
  };
}

void SettingsChoices::BindTexts() {
  KeepNumber(config_.txtDeleteCompletedFiles);
  KeepNumber(config_.txtViewDelay);
  config_.txtSubjectHeading.OnChange = [this] { ShowSubjectHeading(); };
  config_.txtCustomDisplay.OnChange = [this] {
    config_.txtCustomDisplay.Tooltip = config_.txtCustomDisplay.Value;
  };
  config_.txtWordProcessorPath.OnDoubleClick = [this] { config_.txtWordProcessorPath.Value = ""; };
  config_.cmdWavConvMode.OnPress = [this] { StepWavConvMode(); };
  config_.cmdCenterMiniPlayer.OnPress = [this] {
    window_.CenterMiniPlayer();
    FocusAway();
  };
}

void SettingsChoices::SetSliders() {
  const std::pair<forms::Range&, forms::Text&> sliders[] = {
      {config_.sliderABS, config_.txtAutoBackspace},
      {config_.sliderAutoPreview, config_.txtAutoPreview},
      {config_.sliderWindIncrement, config_.txtWindIncrement},
      {config_.sldPromptVol, config_.txtPromptVolume},
  };
  for (const auto& [slider, text] : sliders) {
    slider.Value = slider.Bounds.Nearest(text.WholeNumber());
  }
}

void SettingsChoices::SetCheckBoxes() {
  for (const Binding& pair : pairs_) pair.ShowTick();
  ShowPedalSense();
}

void SettingsChoices::ShowBackspace() {
  const std::string tenths = config_.txtAutoBackspace.Value;
  const bool belowASecond = base::NumberValue(tenths) < 10;
  config_.txtAutoBackspaceDisplay.Value =
      belowASecond ? "0." + tenths : tenths.substr(0, 1) + "." + tenths.substr(tenths.size() - 1);
  config_.frameAutoBackspace.Caption =
      "Auto Backspace:  " + config_.txtAutoBackspaceDisplay.Value.Get();
}

void SettingsChoices::ShowSubjectHeading() {
  const std::string heading = config_.txtSubjectHeading.Value;
  if (heading.empty()) {
    // The handler runs again for this write and does the rest there.
    config_.txtSubjectHeading.Value = "Subject";
    return;
  }
  main_.lblImportSubject.Value = heading;
  for (forms::Table* list : {&main_.listViewInQueue, &main_.listViewCompleted}) {
    // The lists get their columns once the settings are loaded.
    if (list->Columns().empty()) continue;
    list->SetColumnTitle(forms::document_column::Subject, heading);
  }
}

void SettingsChoices::ShowPedalSense() {
  const bool on = config_.chkSwapRewindForwardPedals.Value;
  config_.lblLeftPedal.Value = on ? "R" : "F";
  config_.lblRightPedal.Value = on ? "F" : "R";
}

void SettingsChoices::StepWavConvMode() {
  const auto& rates = store::kDssCodecRates;
  const auto at = std::ranges::find(rates, config_.txtWavConvMode.Value.Get());
  if (at != rates.end()) {
    config_.txtWavConvMode.Value = std::string(at + 1 == rates.end() ? rates.front() : *(at + 1));
  }
  FocusAway();
}

}  // namespace tavlo::window
