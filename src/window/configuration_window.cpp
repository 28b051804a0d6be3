#include "window/configuration_window.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "base/text.h"
#include "store/settings_fields.h"

namespace tavlo::window {
namespace {

enum Tab { kSettingsTab, kEqualizerTab, kMixerTab, kPathsTab, kFtpTab };

void Call(const std::function<void()>& hook) {
  if (hook) hook();
}

/// A box for numbers holds its number as text.
void KeepNumber(forms::Text& text) {
  text.OnChange = [&text] { text.Value = base::NumberText(base::NumberValue(text.Value.Get())); };
}

/// The boxes that stand for a text of "Y" or "N".
struct YesNoPair {
  forms::Choice& box;
  forms::Text& text;
};

std::array<YesNoPair, 8> YesNoPairs(forms::ConfigurationForm& config) {
  return {{{config.chkAutoImportMode, config.txtAutoImport},
           {config.chkAccelerateWindIncrement, config.txtAccelerateWindIncrement},
           {config.chkAutoQueueJob, config.txtAutoQueueJob},
           {config.chkMinimizeMiniPlayer, config.txtMinimizeMiniPlayer},
           {config.chkSkipBegEnd, config.txtSkipBegEnd},
           {config.chkAudioPrompts, config.txtAudioPrompts},
           {config.chkAlwaysOnTop, config.txtAlwaysOnTop},
           {config.chkShowCustomDisplay, config.txtShowCustomDisplay}}};
}

}  // namespace

ConfigurationWindow::ConfigurationWindow(forms::MainForm& main, forms::ConfigurationForm& config,
                                         SettingsBinding& settings, store::WorkFolders& folders,
                                         ConfigurationHooks hooks)
    : main_(main),
      config_(config),
      settings_(settings),
      folders_(folders),
      hooks_(std::move(hooks)),
      alerts_(config, settings, [this](base::Duration interval) {
        if (hooks_.restartAlertTimer) hooks_.restartAlertTimer(interval);
      }) {
  BindPages();
  BindSliders();
  BindCheckBoxes();
  BindPedals();
  BindTexts();
  BindPaths();
}

void ConfigurationWindow::Show() {
  main_.frmMain.Visible = false;
  config_.frmConfiguration.Centre();
  config_.frmConfiguration.Visible = true;
}

void ConfigurationWindow::SaveConfiguration(bool withFtpPage) {
  folders_.Ew2QueuePath = folders_.QueuePathOf(config_.txtEw2QueuePath.Value.Get());
  folders_.Ds2QueuePath = folders_.QueuePathOf(config_.txtDs2QueuePath.Value.Get());
  folders_.WavQueuePath = folders_.QueuePathOf(config_.txtWavQueuePath.Value.Get());
  settings_.SaveConfigurationFields();
  if (withFtpPage) Call(hooks_.saveFtpConfigSettings);
  ConfigOpenOnEqualizer = false;
  config_.frmConfiguration.Visible = false;
  main_.frmMain.Visible = true;
  // What had the keyboard when the main window was hidden may be a key or a menu.
  main_.frmMain.FocusOn(main_.txtFocus);
  ReloadQueuePaths();
}

void ConfigurationWindow::SaveAtOnce() {
  if (config_.frmConfiguration.Visible) settings_.SaveConfigurationFields();
  settings_.Flush();
}

void ConfigurationWindow::ReloadQueuePaths() {
  folders_.ReloadQueuePaths({.ew2QueuePath = config_.txtEw2QueuePath.Value,
                             .ds2QueuePath = config_.txtDs2QueuePath.Value,
                             .wavQueuePath = config_.txtWavQueuePath.Value,
                             .eu2QueuePath = config_.txtEu2QueuePath.Value,
                             .viewDelay = config_.txtViewDelay.Value});
}

void ConfigurationWindow::BindPages() {
  main_.mnuConfiguration.OnPress = [this] { Show(); };
  config_.mnuClose.OnPress = [this] { SaveConfiguration(true); };
  config_.frmConfiguration.OnCloseRequest = [this] { SaveConfiguration(false); };
  config_.frmConfiguration.OnActivate = [this] { Open(); };
  config_.tabConfiguration.OnSelect = [this] { ShowPage(config_.tabConfiguration.ListIndex); };
}

void ConfigurationWindow::BindSliders() {
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

void ConfigurationWindow::BindCheckBoxes() {
  for (const YesNoPair& pair : YesNoPairs(config_)) Pair(pair.box, pair.text);
  Pair(config_.chkAudioPrompts, config_.txtAudioPrompts, [this] { settings_.TakeAudioPrompts(); });
  Pair(config_.chkAlwaysOnTop, config_.txtAlwaysOnTop,
       [this] { main_.frmMain.TopMost = config_.chkAlwaysOnTop.Value.Get(); });
  Pair(config_.chkShowCustomDisplay, config_.txtShowCustomDisplay,
       [this] { Call(hooks_.applyBranding); });
}

void ConfigurationWindow::Pair(forms::Choice& box, forms::Text& text, std::function<void()> also) {
  box.OnClick = [this, &box, &text, also = std::move(also)] {
    text.Value = store::YesNo(box.Value);
    Call(also);
    FocusAway();
  };
}

void ConfigurationWindow::BindPedals() {
  // This box works the other way round from its caption: on stores "N".
  config_.chkSwapRewindForwardPedals.OnClick = [this] {
    config_.txtSwapRewFwdPedals.Value = store::YesNo(!config_.chkSwapRewindForwardPedals.Value);
    ShowPedalSense();
    FocusAway();
  };
  config_.txtUSBorSerialFootPedal.OnChange = [this] {
    const bool usb = config_.txtUSBorSerialFootPedal.Value.Get() == "U";
    config_.optionUSB.Value = usb;
    config_.optionSerial.Value = !usb;
    config_.txtSerialFootPedalComPort.Enabled = !usb;
    // While settings load, the port is opened by its own text.
    if (!settings_.Loading()) Call(hooks_.followPedalChoice);
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

void ConfigurationWindow::BindTexts() {
  KeepNumber(config_.txtDeleteCompletedFiles);
  KeepNumber(config_.txtViewDelay);
  config_.txtSubjectHeading.OnChange = [this] { ShowSubjectHeading(); };
  config_.txtCustomDisplay.OnChange = [this] {
    config_.txtCustomDisplay.Tooltip = config_.txtCustomDisplay.Value;
  };
  config_.txtWordProcessorPath.OnDoubleClick = [this] { config_.txtWordProcessorPath.Value = ""; };
  config_.cmdWavConvMode.OnPress = [this] { StepWavConvMode(); };
  config_.cmdCenterMiniPlayer.OnPress = [this] {
    Call(hooks_.centerMiniPlayer);
    FocusAway();
  };
}

void ConfigurationWindow::BindPaths() {
  struct PathRow {
    store::QueuePath path;
    forms::Text& text;
    forms::Command& set;
    forms::Command& putBack;
  };
  const PathRow rows[] = {
      {store::QueuePath::Ew2, config_.txtEw2QueuePath, config_.cmdSetEw2QueuePath,
       config_.cmdEw2QueuePathDefault},
      {store::QueuePath::Ds2, config_.txtDs2QueuePath, config_.cmdSetDs2QueuePath,
       config_.cmdDs2QueuePathDefault},
      {store::QueuePath::Wav, config_.txtWavQueuePath, config_.cmdSetWavQueuePath,
       config_.cmdWavQueuePathDefault},
      {store::QueuePath::Eu2, config_.txtEu2QueuePath, config_.cmdSetEu2QueuePath,
       config_.cmdEu2QueuePathDefault},
  };
  for (const PathRow& row : rows) {
    row.set.OnPress = [this, &text = row.text] {
      text.Value = config_.lblBrowsedFolder.Value;
      FocusAway();
    };
    row.putBack.OnPress = [this, &text = row.text, path = row.path] {
      text.Value = folders_.DefaultQueuePath(path);
      FocusAway();
    };
  }
}

void ConfigurationWindow::Open() {
  SetSliders();
  ShowBackspace();
  SetCheckBoxes();
  alerts_.Open();
  if (ConfigOpenOnEqualizer) config_.tabConfiguration.ListIndex = kEqualizerTab;
  Call(hooks_.openEqualizer);
  config_.txtCustomDisplay.Tooltip = config_.txtCustomDisplay.Value;
  Call(hooks_.fillAuthors);
}

void ConfigurationWindow::SetSliders() {
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

void ConfigurationWindow::SetCheckBoxes() {
  for (const YesNoPair& pair : YesNoPairs(config_)) {
    pair.box.Value = store::IsYes(pair.text.Value.Get());
  }
  config_.chkSwapRewindForwardPedals.Value = !store::IsYes(config_.txtSwapRewFwdPedals.Value.Get());
  ShowPedalSense();
}

void ConfigurationWindow::ShowPage(int tab) {
  forms::Pane* const pages[] = {&config_.frameSettings, &config_.frameConfigEqualizer,
                                &config_.frameConfigMixer, &config_.frameConfigAlternatePath,
                                &config_.frameFtp};
  for (int page = kSettingsTab; page <= kFtpTab; ++page) pages[page]->Visible = page == tab;
  if (tab != kMixerTab) return;
  config_.DeviceCombo.ListIndex =
      static_cast<int>(base::WholeNumberValue(config_.txtMixerSelection.Value.Get()));
  Call(hooks_.showMixer);
}

void ConfigurationWindow::ShowBackspace() {
  const std::string tenths = config_.txtAutoBackspace.Value;
  const bool belowASecond = base::NumberValue(tenths) < 10;
  config_.txtAutoBackspaceDisplay.Value =
      belowASecond ? "0." + tenths : tenths.substr(0, 1) + "." + tenths.substr(tenths.size() - 1);
  config_.frameAutoBackspace.Caption =
      "Auto Backspace:  " + config_.txtAutoBackspaceDisplay.Value.Get();
}

void ConfigurationWindow::ShowSubjectHeading() {
  const std::string heading = config_.txtSubjectHeading.Value;
  if (heading.empty()) {
    // The handler runs again for this write and does the rest there.
    config_.txtSubjectHeading.Value = "Subject";
    return;
  }
  for (forms::Table* list : {&main_.listViewInQueue, &main_.listViewCompleted}) {
    // The lists get their columns once the settings are loaded.
    if (list->Columns().empty()) continue;
    list->SetColumnTitle(forms::document_column::Subject, heading);
  }
}

void ConfigurationWindow::ShowPedalSense() {
  const bool on = config_.chkSwapRewindForwardPedals.Value;
  config_.lblLeftPedal.Value = on ? "R" : "F";
  config_.lblRightPedal.Value = on ? "F" : "R";
}

void ConfigurationWindow::StepWavConvMode() {
  const auto& rates = store::kDssCodecRates;
  const auto at = std::ranges::find(rates, config_.txtWavConvMode.Value.Get());
  if (at != rates.end()) {
    config_.txtWavConvMode.Value = std::string(at + 1 == rates.end() ? rates.front() : *(at + 1));
  }
  FocusAway();
}

}  // namespace tavlo::window
