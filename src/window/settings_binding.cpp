#include "window/settings_binding.h"

#include "store/settings_fields.h"

namespace tavlo::window {
namespace {

using store::Table;

/// Fields that are shown before all others: the kind of pedal decides what the handler of its port
/// may do, and automatic refresh what the one of the alert mode may.
constexpr std::string_view kLoadedFirst[] = {"USBorSerialFootPedal", "AutoRefreshMode"};

std::vector<Binding> GeneralBindings(forms::MainForm& main, forms::ConfigurationForm& config) {
  std::vector<Binding> bindings = ConfigurationBindings(config);
  const std::vector<Binding> more = MainBindings(main);
  bindings.insert(bindings.end(), more.begin(), more.end());
  return bindings;
}

void FillWhenEmpty(forms::Text& text, const char* value) {
  if (text.Value.Get().empty()) text.Value = value;
}

}  // namespace

SettingsBinding::SettingsBinding(base::Loop& loop, forms::MainForm& main,
                                 forms::ConfigurationForm& config, store::SettingsStore& settings,
                                 const store::WorkFolders& folders)
    : config_(config),
      settings_(settings),
      folders_(folders),
      saver_(loop, settings),
      bindings_(GeneralBindings(main, config)),
      ftpProfile_(saver_, Table::FtpSettings, FtpBindings(config)),
      authorProfile_(saver_, Table::ImportAuthors, AuthorBindings(main)) {
  for (const Binding& binding : bindings_) {
    if (binding.saving == Saving::AtChange) binding.text->OnStored = [this] { StoreChanged(); };
  }
}

void SettingsBinding::Load() {
  loading_ = true;
  const store::Record row = settings_.Database().Read(Table::GeneralSettings, 0);
  saver_.Learn(Table::GeneralSettings, 0, row);
  const auto show = [&](const Binding& binding) {
    const auto found = row.find(std::string(binding.field));
    if (found == row.end()) return;
    const store::Field* const field = store::FindField(Table::GeneralSettings, binding.field);
    const bool isPath = field->form == store::Form::Path;
    binding.Show(isPath ? folders_.MapStoredPath(found->second) : found->second);
  };
  for (const std::string_view first : kLoadedFirst) {
    for (const Binding& binding : bindings_) {
      if (binding.field == first) show(binding);
    }
  }
  for (const Binding& binding : bindings_) show(binding);
  ftpProfile_.Show(0);
  authorProfile_.Show(0);
  loading_ = false;
  loaded_ = true;
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
  for (auto& field : Collect(Saving::GoesAlong)) fields.push_back(std::move(field));
  return Write(fields);
}

bool SettingsBinding::SavePlayerPlace() {
  // Each Complete takes the place, which is mostly where it was, and a save waits for the disk.
  if (Changed(Saving::WithPlace).empty()) return true;
  return Write(Collect(Saving::WithPlace));
}

bool SettingsBinding::Flush() { return saver_.Flush(); }

void SettingsBinding::StoreChanged() {
  // The window is there before the settings are; what a hand moves then is no choice of theirs.
  if (loading_ || !loaded_) return;
  const store::Assignments changed = Changed(Saving::AtChange);
  if (!changed.empty()) Write(changed);
}

store::Assignments SettingsBinding::Changed(Saving saving) const {
  store::Assignments changed = Collect(saving);
  std::erase_if(changed, [this](const auto& field) {
    return saver_.IsStored(Table::GeneralSettings, 0, field.first, field.second);
  });
  return changed;
}

store::Assignments SettingsBinding::Collect(Saving saving) const {
  store::Assignments fields;
  for (const Binding& binding : bindings_) {
    if (binding.saving == saving) fields.emplace_back(binding.field, binding.Shown());
  }
  return fields;
}

bool SettingsBinding::Write(const store::Assignments& fields) {
  return saver_.Write(Table::GeneralSettings, 0, fields);
}

}  // namespace tavlo::window
