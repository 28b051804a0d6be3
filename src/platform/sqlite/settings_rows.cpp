#include "platform/sqlite/settings_rows.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "platform/sqlite/settings_failures.h"
#include "platform/sqlite/settings_tables.h"
#include "store/settings_fields.h"

namespace tavlo::platform {
namespace {

using store::Field;
using store::Record;
using store::Table;
using store::TableShape;
using Mode = SqliteConnection::Mode;

class SettingsRows : public store::SettingsDatabase {
 public:
  SettingsRows(SqliteConnection connection, std::string path, Mode mode)
      : connection_(std::move(connection)), path_(std::move(path)), mode_(mode) {
    for (const TableShape& shape : store::kTables) {
      for (const std::string& column : ColumnsOf(connection_, shape)) {
        const Field* const field = store::FindField(shape.table, column);
        if (field) fields_.push_back(field);
      }
    }
  }

  int RowCount(Table table) override {
    const auto count =
        connection_.FirstCell("SELECT count(*) FROM " + std::string(ShapeOf(table).name));
    return count ? std::atoi(count->c_str()) : 0;
  }

  Record Read(Table table, int row) override {
    Record record;
    if (row < 0) return record;
    const TableShape& shape = ShapeOf(table);
    for (const Field* field : fields_) {
      if (field->table != table) continue;
      // Field by field, so that one value that cannot be read costs no other.
      const auto value =
          connection_.FirstCell("SELECT " + std::string(field->name) + " FROM " +
                                    std::string(shape.name) + " WHERE rowid = " + RowOf(shape),
                                {std::to_string(row)});
      if (value) record[std::string(field->name)] = *value;
    }
    return record;
  }

  bool WriteRows(const std::vector<store::RowAssignments>& rows) override {
    if (mode_ == Mode::Read) return Refuse(SettingsSentence(path_, "is open for reading only."));
    // A single statement is a transaction of its own.
    if (rows.size() == 1) return WriteRow(rows.front());
    if (!Run("BEGIN IMMEDIATE")) return false;
    const bool written = std::ranges::all_of(
        rows, [this](const store::RowAssignments& row) { return WriteRow(row); });
    if (written && Run("COMMIT")) return true;
    connection_.Run("ROLLBACK");
    return false;
  }

  std::string LastFailure() const override { return lastFailure_; }

 private:
  bool WriteRow(const store::RowAssignments& written) {
    const auto& [table, row, fields] = written;
    const TableShape& shape = ShapeOf(table);
    std::string assignments;
    std::vector<std::string> values;
    for (const auto& [name, value] : fields) {
      if (!Has(table, name)) continue;
      if (value.size() > store::kLongestValue)
        return Refuse("The value of " + name + " is too long.");
      assignments += (values.empty() ? "" : ", ") + name + " = ?";
      values.push_back(value.substr(0, value.find('\0')));
    }
    if (row < 0 || row >= RowCount(table)) {
      return Refuse(SettingsSentence(
          path_, "has no row " + std::to_string(row + 1) + " in " + std::string(shape.name) + "."));
    }
    if (values.empty()) return true;
    values.push_back(std::to_string(row));
    return Run("UPDATE " + std::string(shape.name) + " SET " + assignments +
                   " WHERE rowid = " + RowOf(shape),
               values);
  }

  bool Run(const std::string& sql, const std::vector<std::string>& values = {}) {
    const StepResult result = connection_.Run(sql, values);
    if (result == StepResult::Done) return true;
    return Refuse(FailureText(path_, result, connection_.LastMessage()));
  }

  bool Has(Table table, std::string_view name) const {
    return std::ranges::any_of(
        fields_, [&](const Field* field) { return field->table == table && field->name == name; });
  }

  bool Refuse(std::string why) {
    lastFailure_ = std::move(why);
    return false;
  }

  SqliteConnection connection_;
  const std::string path_;
  const Mode mode_;
  std::vector<const Field*> fields_;
  std::string lastFailure_;
};

}  // namespace

std::unique_ptr<store::SettingsDatabase> NewSettingsRows(SqliteConnection connection,
                                                         std::string path, Mode mode) {
  return std::make_unique<SettingsRows>(std::move(connection), std::move(path), mode);
}

}  // namespace tavlo::platform
