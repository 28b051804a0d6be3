#include "window/row_binding.h"

#include <algorithm>
#include <utility>

namespace tavlo::window {

RowBinding::RowBinding(SettingsSaver& saver, store::Table table, std::vector<Binding> bindings)
    : saver_(saver), table_(table), bindings_(std::move(bindings)) {}

bool RowBinding::Show(int row) {
  const store::Record record = saver_.Read(table_, row);
  if (record.empty()) return false;
  row_ = row;
  held_.clear();
  for (const Binding& binding : bindings_) {
    const auto found = record.find(std::string(binding.field));
    if (found == record.end()) continue;
    binding.Show(found->second);
    // Not before it holds the value: a handler may save the row meanwhile.
    held_.push_back(&binding);
  }
  return true;
}

bool RowBinding::Save() {
  if (row_ == kNoRow) return true;
  store::Assignments fields;
  for (const Binding* binding : held_) {
    if (binding->saving != Saving::Never) fields.emplace_back(binding->field, binding->Shown());
  }
  return saver_.Write(table_, row_, fields);
}

bool RowBinding::HasEdits() const {
  if (row_ == kNoRow) return false;
  const store::Record saved = saver_.Read(table_, row_);
  return std::ranges::any_of(held_, [&saved](const Binding* binding) {
    const auto found = saved.find(std::string(binding->field));
    return binding->saving != Saving::Never && found != saved.end() &&
           found->second != binding->Shown();
  });
}

bool RowBinding::MoveTo(int row) {
  if (row < 0 || row >= RowCount()) return false;
  Save();
  return Show(row);
}

bool RowBinding::MoveToLast() { return MoveTo(RowCount() - 1); }

std::vector<std::string> RowBinding::Values(std::string_view field) const {
  std::vector<std::string> values(static_cast<std::size_t>(RowCount()));
  for (std::size_t row = 0; row < values.size(); ++row) {
    const store::Record record = saver_.Read(table_, static_cast<int>(row));
    const auto found = record.find(std::string(field));
    if (found != record.end()) values[row] = found->second;
  }
  return values;
}

std::optional<int> RowBinding::Find(std::string_view field, std::string_view value) const {
  const std::vector<std::string> values = Values(field);
  const auto found = std::ranges::find(values, value);
  if (found == values.end()) return {};
  return static_cast<int>(found - values.begin());
}

}  // namespace tavlo::window
