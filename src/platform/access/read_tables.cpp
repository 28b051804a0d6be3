#include "platform/access/read_tables.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "platform/access/token_stream.h"
#include "store/settings_fields.h"

namespace tavlo::platform {
namespace {

constexpr std::size_t kMostRows = 1000;

/// Access knows no case in names.
bool IsNamed(std::string_view name, std::string_view ours) {
  return name.size() == ours.size() && base::StartsInEitherCase(name, ours);
}

const store::TableShape* TableNamed(std::string_view name) {
  const auto found = std::ranges::find_if(
      store::kTables, [name](const auto& shape) { return IsNamed(name, shape.name); });
  return found == store::kTables.end() ? nullptr : &*found;
}

const store::Field* FieldNamed(store::Table table, std::string_view name) {
  const auto fields = store::FieldsOf(table);
  const auto found = std::ranges::find_if(
      fields, [name](const store::Field& field) { return IsNamed(name, field.name); });
  return found == fields.end() ? nullptr : &*found;
}

class Reading {
 public:
  explicit Reading(std::string_view output) : left_(output) {}

  AccessTables Tables() {
    while (const auto token = tokens::Take(left_)) {
      if (*token == tokens::kTable) {
        BeginTable();
      } else if (*token == tokens::kField) {
        TakeField();
      } else if (*token == tokens::kRowEnd) {
        EndRow();
      }
    }
    PutInOrder(store::Table::FtpSettings, "ID");
    PutInOrder(store::Table::ImportAuthors, "NumericSorter");
    return std::move(tables_);
  }

 private:
  /// A row that grew stands behind others in the file. Its number tells where it belongs, as far as
  /// each row has one.
  void PutInOrder(store::Table table, const std::string& number) {
    const auto found = tables_.find(table);
    if (found == tables_.end()) return;
    const auto numberOf = [&](const store::Record& row) {
      const auto field = row.find(number);
      return field == row.end() ? 0 : base::WholeNumberValue(field->second);
    };
    std::vector<store::Record>& rows = found->second;
    const bool areNumbered =
        std::ranges::all_of(rows, [&](const store::Record& row) { return numberOf(row) > 0; });
    if (areNumbered) std::ranges::stable_sort(rows, {}, numberOf);
  }

  void BeginTable() {
    const auto name = tokens::Take(left_);
    table_ = name ? TableNamed(*name) : nullptr;
    row_.clear();
  }

  void TakeField() {
    const auto name = tokens::Take(left_);
    const auto value = name ? tokens::Take(left_) : std::nullopt;
    if (!table_ || !value) return;
    const store::Field* const field = FieldNamed(table_->table, *name);
    const std::string_view text = value->substr(0, value->find('\0'));
    if (field && text.size() <= store::kLongestValue) row_[std::string(field->name)] = text;
  }

  void EndRow() {
    if (!table_) return;
    std::vector<store::Record>& rows = tables_[table_->table];
    if (rows.size() < kMostRows) rows.push_back(row_);
    row_.clear();
  }

  std::string_view left_;
  const store::TableShape* table_ = nullptr;
  store::Record row_;
  AccessTables tables_;
};

}  // namespace

AccessTables ReadTables(std::string_view output) { return Reading(output).Tables(); }

}  // namespace tavlo::platform
