#include "platform/sqlite/settings_tables.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace tavlo::platform {
namespace {

using store::Field;
using store::ShippedDatabase;
using store::TableShape;

/// Rows keep their places: this column is the row's number, counted from 1.
constexpr std::string_view kRowNumber = "RowNumber";

bool Contains(const std::vector<std::string>& columns, std::string_view name) {
  return std::ranges::find(columns, name) != columns.end();
}

/// Whether the file is shorter than its pages. The engine itself fills a last page that is cut off
/// with zeros.
bool IsCutOff(SqliteConnection& connection, const std::string& path) {
  const auto length = connection.FirstCell(
      "SELECT page_count * page_size FROM pragma_page_count(), pragma_page_size()");
  std::error_code failed;
  const std::uintmax_t size = std::filesystem::file_size(path, failed);
  return failed || !length || size < std::strtoull(length->c_str(), nullptr, 10);
}

void AddMissingColumn(SqlSteps& steps, const TableShape& shape, const Field& field,
                      const ShippedDatabase& shipped) {
  const std::string table(shape.name);
  const std::string column(field.name);
  steps.Run("ALTER TABLE " + table + " ADD COLUMN " + column + " TEXT");
  for (int row = 0; row < shape.rows; ++row) {
    steps.Run("UPDATE " + table + " SET " + column + " = ? WHERE rowid = " + RowOf(shape),
              {store::ShippedValue(field, row, shipped), std::to_string(row)});
  }
}

/// A value that is too long to be read would also keep its row from ever being written again.
void ReplaceUnreadableValues(SqliteConnection& connection, SqlSteps& steps, const TableShape& shape,
                             const ShippedDatabase& shipped) {
  for (int row = 0; row < shape.rows; ++row) {
    std::string assignments;
    std::vector<std::string> values;
    for (const Field& field : store::FieldsOf(shape.table)) {
      const std::string column(field.name);
      const StepResult read =
          connection.Run("SELECT " + column + " FROM " + std::string(shape.name) +
                             " WHERE rowid = " + RowOf(shape),
                         {std::to_string(row)});
      if (read != StepResult::TooBig) continue;
      assignments += (values.empty() ? "" : ", ") + column + " = ?";
      values.push_back(store::ShippedValue(field, row, shipped));
    }
    if (values.empty()) continue;
    values.push_back(std::to_string(row));
    steps.Run("UPDATE " + std::string(shape.name) + " SET " + assignments +
                  " WHERE rowid = " + RowOf(shape),
              values);
  }
}

}  // namespace

std::vector<std::string> ColumnsOf(SqliteConnection& connection, const TableShape& shape) {
  const std::string name(shape.name);
  const bool exists =
      connection.FirstCell("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?", {name})
          .has_value();
  std::vector<std::string> columns;
  if (!exists) return columns;
  const StepResult read =
      connection.Run("SELECT name FROM pragma_table_info(?)", {name},
                     [&](const std::vector<std::string>& cells) { columns.push_back(cells[0]); });
  if (read != StepResult::Done) columns.clear();
  return columns;
}

std::string RowOf(const TableShape& shape) {
  return "(SELECT rowid FROM " + std::string(shape.name) + " ORDER BY rowid LIMIT 1 OFFSET ?)";
}

std::string FindDamage(SqliteConnection& connection, const std::string& path) {
  if (IsCutOff(connection, path)) return "its end is missing";
  if (connection.FirstCell("PRAGMA quick_check(1)") != "ok") {
    return "parts of it are missing or wrong";
  }
  for (const TableShape& shape : store::kTables) {
    const std::string name(shape.name);
    if (ColumnsOf(connection, shape).empty()) return "its table " + name + " is missing";
    const auto count = connection.FirstCell("SELECT count(*) FROM " + name);
    if (!count || std::atoi(count->c_str()) < shape.rows) return "rows of " + name + " are missing";
  }
  return {};
}

void BringUpToDate(SqliteConnection& connection, SqlSteps& steps, const ShippedDatabase& shipped) {
  for (const TableShape& shape : store::kTables) {
    const auto columns = ColumnsOf(connection, shape);
    for (const Field& field : store::FieldsOf(shape.table)) {
      if (!Contains(columns, field.name)) AddMissingColumn(steps, shape, field, shipped);
    }
    ReplaceUnreadableValues(connection, steps, shape, shipped);
  }
  if (connection.FirstCell("SELECT Revision FROM RevisionInfo ORDER BY rowid") !=
      shipped.revision) {
    steps.Run("UPDATE RevisionInfo SET Revision = ?", {shipped.revision});
  }
}

void MakeTables(SqlSteps& steps, const ShippedDatabase& shipped) {
  for (const TableShape& shape : store::kTables) {
    std::string columns(kRowNumber);
    std::string marks = "?";
    for (const Field& field : store::FieldsOf(shape.table)) {
      columns += ", " + std::string(field.name) + " TEXT";
      marks += ", ?";
    }
    columns.insert(kRowNumber.size(), " INTEGER PRIMARY KEY");
    const std::string table(shape.name);
    steps.Run("CREATE TABLE " + table + " (" + columns + ")");
    for (int row = 0; row < shape.rows; ++row) {
      std::vector<std::string> values{std::to_string(row + 1)};
      for (const Field& field : store::FieldsOf(shape.table)) {
        values.push_back(store::ShippedValue(field, row, shipped));
      }
      steps.Run("INSERT INTO " + table + " VALUES (" + marks + ")", values);
    }
  }
}

}  // namespace tavlo::platform
