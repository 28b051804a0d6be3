#include "window/settings_saver.h"

#include <string>

namespace tavlo::window {

SettingsSaver::SettingsSaver(base::Loop& loop, store::SettingsStore& settings)
    : loop_(loop), settings_(settings), tmrTryAgain_(loop, "tmrSaveSettings", kTryAgain) {
  tmrTryAgain_.OnTick = [this] { TryAgain(); };
}

bool SettingsSaver::Write(store::Table table, int row, const store::Assignments& fields) {
  const bool written = Store(table, row, fields);
  if (!written && !failureTold_) TellFailure();
  failureTold_ = !written;
  return written;
}

bool SettingsSaver::Flush() {
  WriteUnsaved(&SettingsSaver::Write);
  return unsaved_.empty();
}

void SettingsSaver::TryAgain() {
  WriteUnsaved(&SettingsSaver::Store);
  if (unsaved_.empty()) failureTold_ = false;
}

bool SettingsSaver::Store(store::Table table, int row, const store::Assignments& fields) {
  const bool written = settings_.Write(table, row, fields);
  store::Record& unsaved = unsaved_[{table, row}];
  for (const auto& [field, value] : fields) {
    if (written) {
      unsaved.erase(field);
      stored_[{table, row}][field] = value;
    } else {
      unsaved[field] = value;
    }
  }
  if (unsaved.empty()) unsaved_.erase({table, row});
  if (unsaved_.empty()) {
    tmrTryAgain_.Stop();
  } else if (!tmrTryAgain_.Enabled()) {
    tmrTryAgain_.Start();
  }
  return written;
}

void SettingsSaver::WriteUnsaved(bool (SettingsSaver::*write)(store::Table, int,
                                                              const store::Assignments&)) {
  const auto unsaved = unsaved_;
  for (const auto& [place, fields] : unsaved) {
    (this->*write)(place.first, place.second, {fields.begin(), fields.end()});
  }
}

void SettingsSaver::Learn(store::Table table, int row, const store::Record& stored) {
  stored_[{table, row}] = stored;
}

bool SettingsSaver::IsStored(store::Table table, int row, const std::string& field,
                             const std::string& value) const {
  if (Keeps(table, row, field)) return false;
  const auto known = stored_.find({table, row});
  if (known == stored_.end()) return false;
  const auto stored = known->second.find(field);
  return value == (stored == known->second.end() ? "" : stored->second);
}

bool SettingsSaver::Keeps(store::Table table, int row, std::string_view field) const {
  const auto unsaved = unsaved_.find({table, row});
  return unsaved != unsaved_.end() && unsaved->second.contains(std::string(field));
}

store::Record SettingsSaver::Read(store::Table table, int row) const {
  store::Record record = settings_.Database().Read(table, row);
  if (record.empty()) return record;
  const auto unsaved = unsaved_.find({table, row});
  if (unsaved == unsaved_.end()) return record;
  for (const auto& [field, value] : unsaved->second) record[field] = value;
  return record;
}

int SettingsSaver::RowCount(store::Table table) const {
  return settings_.Database().RowCount(table);
}

void SettingsSaver::TellFailure() {
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
