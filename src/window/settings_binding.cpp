#include "window/settings_binding.h"

#include "store/settings_fields.h"

namespace tavlo::window {
namespace {

using store::Table;

/// The listed fields stand in the order in which they are assigned. Two places matter when the
/// settings are loaded: the kind of pedal comes before its port, and automatic refresh before the
/// alert mode, because the handler of the first decides what the second may do.
std::vector<Binding> DialogBindings(forms::ConfigurationForm& config) {
  using enum Saving;
  return {
      {"AutoBackspace", Listed, &config.txtAutoBackspace},
      {"AutoPreview", Listed, &config.txtAutoPreview},
      {"WindIncrement", Listed, &config.txtWindIncrement},
      {"AccelerateWindIncrementFlag", Listed, &config.txtAccelerateWindIncrement},
      {"SubjectHeading", Listed, &config.txtSubjectHeading},
      {"AudioPromptsFlag", Listed, &config.txtAudioPrompts},
      {"MinimizeMiniPlayerFlag", Listed, &config.txtMinimizeMiniPlayer},
      {"WordProcessorPath", Listed, &config.txtWordProcessorPath},
      {"AlwaysOnTopFlag", Listed, &config.txtAlwaysOnTop},
      {"SkipBegEndFlag", Listed, &config.txtSkipBegEnd},
      {"SwapRewFwdPedalFlag", Listed, &config.txtSwapRewFwdPedals},
      {"ViewDelay", Listed, &config.txtViewDelay},
      {"WavConvMode", Listed, &config.txtWavConvMode},
      {"AutoQueueDocumentFlag", Listed, &config.txtAutoQueueJob},
      {"DeleteCompletedFiles", Listed, &config.txtDeleteCompletedFiles},
      {"SerialFootPedalComPort", Listed, &config.txtSerialFootPedalComPort},
      {"Ew2QueuePath", Listed, &config.txtEw2QueuePath},
      {"Ds2QueuePath", Listed, &config.txtDs2QueuePath},
      {"WavQueuePath", Listed, &config.txtWavQueuePath},
      {"Eu2QueuePath", Listed, &config.txtEu2QueuePath},
      {"PromptVolume", Listed, &config.txtPromptVolume},
      {"USBorSerialFootPedal", Listed, &config.txtUSBorSerialFootPedal},
      {"CustomEq1", Listed, &config.txtEqCustom[0]},
      {"CustomEq2", Listed, &config.txtEqCustom[1]},
      {"CustomEq3", Listed, &config.txtEqCustom[2]},
      {"CustomEq4", Listed, &config.txtEqCustom[3]},
      {"CustomEq5", Listed, &config.txtEqCustom[4]},
      {"CustomEq6", Listed, &config.txtEqCustom[5]},
      {"CustomEq7", Listed, &config.txtEqCustom[6]},
      {"CustomEq8", Listed, &config.txtEqCustom[7]},
      {"CustomEq9", Listed, &config.txtEqCustom[8]},
      {"CustomEq10", Listed, &config.txtEqCustom[9]},
      {"CustomEq11", Listed, &config.txtEqCustom[10]},
      {"CustomEq12", Listed, &config.txtEqCustom[11]},
      {"CustomDisplay", Listed, &config.txtCustomDisplay},
      {"ShowCustomDisplay", Listed, &config.txtShowCustomDisplay},
      {"MixerSelection", Listed, &config.txtMixerSelection},
      {"AutoImportMode", WithRow, &config.txtAutoImport},
      {"AutoRefreshMode", WithRow, nullptr, &config.chkAutoRefreshMode},
      {"WorkWaitingAlertMode", WithRow, &config.txtWorkWaitingAlertMode},
      {"NewDictationAlertInterval", WithRow, &config.txtNewDictationAlertInterval},
      {"AutoQueueRefreshInterval", WithRow, &config.txtAutoQueueRefreshInterval},
      {"EqualizerChoice", WithRow, &config.txtEqChoice},
      {"EqualizerEnableFlag", WithRow, &config.txtEqEnable},
  };
}

std::vector<Binding> MainBindings(forms::MainForm& main) {
  using enum Saving;
  return {
      {"FaciaImagePointer", AtChange, &main.txtFasciaImagePointer},
      {"ImportWavSynchronizeFlag", AtChange, &main.txtImportSynchronize},
      {"Speed", AtChange, &main.txtSpeed},
      {"Volume", AtChange, &main.txtVolume},
      {"FtpServerSelection", AtChange, &main.txtFtpServerSelection},
      {"PlayerTop", WithPlace, &main.txtPlayerTop},
      {"PlayerLeft", WithPlace, &main.txtPlayerLeft},
      {"TitleBarHeight", WithPlace, &main.txtTitleBarHeight},
  };
}

std::vector<Binding> FtpBindings(forms::ConfigurationForm& config) {
  using enum Saving;
  return {
      {"FtpServerName", WithFtpRow, &config.txtFtpName},
      {"FtpServerID", WithFtpRow, &config.eServer},
      {"FtpServerUserID", WithFtpRow, &config.eUser},
      {"FtpServerPassword", WithFtpRow, &config.ePass},
      {"FtpServerDir", WithFtpRow, &config.eServerDir},
      {"FtpDeleteFileCheck", WithFtpRow, nullptr, &config.chkFtpFileDeleteMode},
      {"FtpAutoListDownloadCheck", WithFtpRow, nullptr, &config.chkFtpAutoListAndDownload},
      {"FtpPassiveModeCheck", WithFtpRow, nullptr, &config.chkFtpPassiveMode},
      {"FtpParseGenericPointer", WithFtpRow, &config.txtFtpParseGenericPointer},
  };
}

/// Fields whose controls must hold their value before that of any other is shown.
constexpr std::string_view kLoadedFirst[] = {"USBorSerialFootPedal", "AutoRefreshMode"};

void FillWhenEmpty(forms::Text& text, const char* value) {
  if (text.Value.Get().empty()) text.Value = value;
}

}  // namespace

std::string Binding::Shown() const {
  return text ? text->Value.Get() : store::TruthText(check->Value);
}

void Binding::Show(const std::string& stored) const {
  if (text) {
    text->Value = stored;
  } else {
    check->Value = store::CheckBoxValue(stored) == 1;
  }
}

SettingsBinding::SettingsBinding(base::Loop& loop, forms::MainForm& main,
                                 forms::ConfigurationForm& config, store::SettingsStore& settings,
                                 const store::WorkFolders& folders)
    : loop_(loop),
      config_(config),
      settings_(settings),
      folders_(folders),
      bindings_(DialogBindings(config)) {
  for (const auto& more : {MainBindings(main), FtpBindings(config)}) {
    bindings_.insert(bindings_.end(), more.begin(), more.end());
  }
  for (const Binding& binding : bindings_) {
    if (binding.saving == Saving::AtChange) binding.text->OnStored = [this] { StoreChanged(); };
  }
}

void SettingsBinding::Load() {
  loading_ = true;
  const store::Record row = settings_.Database().Read(Table::GeneralSettings, 0);
  const auto show = [&](const Binding& binding) {
    const auto found = row.find(std::string(binding.field));
    if (binding.saving == Saving::WithFtpRow || found == row.end()) return;
    const store::Field* const field = store::FindField(Table::GeneralSettings, binding.field);
    const bool isPath = field->form == store::Form::Path;
    stored_[binding.field] = found->second;
    binding.Show(isPath ? folders_.MapStoredPath(found->second) : found->second);
  };
  for (const std::string_view first : kLoadedFirst) {
    for (const Binding& binding : bindings_) {
      if (binding.field == first) show(binding);
    }
  }
  for (const Binding& binding : bindings_) show(binding);
  ShowFtpRow(0);
  loading_ = false;
  StoreChanged();
}

void SettingsBinding::FillEmptySettings() {
  FillWhenEmpty(config_.txtAutoBackspace, "0");
  FillWhenEmpty(config_.txtAutoPreview, "5");
  FillWhenEmpty(config_.txtWindIncrement, "3");
}

void SettingsBinding::TakeAudioPrompts() {
  AudioPromptsOn = store::IsYes(config_.txtAudioPrompts.Value.Get());
}

void SettingsBinding::TakeDeleteCompletedFiles() {
  const auto days =
      store::ByteValue(settings_.Read(Table::GeneralSettings, "DeleteCompletedFiles"));
  if (days) DeleteCompletedFiles = *days;
}

bool SettingsBinding::SaveConfigurationFields() {
  store::Assignments fields = Collect(Saving::Listed);
  for (auto& field : Collect(Saving::WithRow)) fields.push_back(std::move(field));
  return Write(Table::GeneralSettings, 0, fields);
}

bool SettingsBinding::SavePlayerPlace() {
  return Write(Table::GeneralSettings, 0, Collect(Saving::WithPlace));
}

bool SettingsBinding::Flush() {
  const auto unsaved = unsaved_;
  for (const auto& [place, fields] : unsaved) {
    Write(place.first, place.second, {fields.begin(), fields.end()});
  }
  return unsaved_.empty();
}

void SettingsBinding::ShowFtpRow(int row) {
  store::Record record = settings_.Database().Read(Table::FtpSettings, row);
  if (record.empty()) return;
  const auto unsaved = unsaved_.find({Table::FtpSettings, row});
  if (unsaved != unsaved_.end()) {
    for (const auto& [field, value] : unsaved->second) record[field] = value;
  }
  ftpRow_ = row;
  // The number first: a row without a name is named after it.
  if (record.contains("ID")) config_.txtFtpServerID.Value = record.at("ID");
  for (const Binding& binding : bindings_) {
    const auto found = record.find(std::string(binding.field));
    if (binding.saving == Saving::WithFtpRow && found != record.end()) binding.Show(found->second);
  }
}

bool SettingsBinding::SaveFtpRow() {
  return Write(Table::FtpSettings, ftpRow_, Collect(Saving::WithFtpRow));
}

void SettingsBinding::StoreChanged() {
  if (loading_) return;
  store::Assignments changed;
  const auto unsaved = unsaved_.find({Table::GeneralSettings, 0});
  for (const Binding& binding : bindings_) {
    if (binding.saving != Saving::AtChange) continue;
    // A value that went back to the stored one must still replace what a failed save has kept.
    const bool kept =
        unsaved != unsaved_.end() && unsaved->second.contains(std::string(binding.field));
    if (kept || stored_[binding.field] != binding.Shown()) {
      changed.emplace_back(binding.field, binding.Shown());
    }
  }
  if (changed.empty() || !Write(Table::GeneralSettings, 0, changed)) return;
  for (const Binding& binding : bindings_) {
    if (binding.saving == Saving::AtChange) stored_[binding.field] = binding.Shown();
  }
}

store::Assignments SettingsBinding::Collect(Saving saving) const {
  store::Assignments fields;
  for (const Binding& binding : bindings_) {
    if (binding.saving == saving) fields.emplace_back(binding.field, binding.Shown());
  }
  return fields;
}

bool SettingsBinding::Write(Table table, int row, const store::Assignments& fields) {
  store::Record& unsaved = unsaved_[{table, row}];
  const bool written = settings_.Write(table, row, fields);
  for (const auto& [field, value] : fields) {
    if (written) {
      unsaved.erase(field);
    } else {
      unsaved[field] = value;
    }
  }
  if (unsaved.empty()) unsaved_.erase({table, row});
  if (!written && !failureTold_) TellFailure();
  failureTold_ = !written;
  return written;
}

void SettingsBinding::TellFailure() {
  // Told from the loop's top: a box turns the loop, which must not happen inside the rule that made
  // the change.
  loop_.Post([&loop = loop_, reason = settings_.LastFailure()] {
    loop.Show({.title = "Tavlo Deck - Settings",
               .text = "The settings can not be saved. " + reason +
                       "\nThey stay in effect until the Tavlo Deck ends.",
               .icon = base::Icon::Warning});
  });
}

}  // namespace tavlo::window
