#pragma once

#include <string>
#include <vector>

#include "platform/sqlite/sqlite_connection.h"
#include "store/settings_fields.h"

/// The tables of the settings as SQLite keeps them.
namespace tavlo::platform {

/// Makes statements one after the other for as long as they go well.
class SqlSteps {
 public:
  explicit SqlSteps(SqliteConnection& connection) : connection_(connection) {}

  bool Run(const std::string& sql, const std::vector<std::string>& parameters = {}) {
    if (result_ == StepResult::Done) result_ = connection_.Run(sql, parameters);
    return result_ == StepResult::Done;
  }
  StepResult Result() const { return result_; }

 private:
  SqliteConnection& connection_;
  StepResult result_ = StepResult::Done;
};

/// The columns that a table has; none when there is no such table (a view of that name does not
/// count).
std::vector<std::string> ColumnsOf(SqliteConnection& connection, const store::TableShape& shape);
/// The engine's number of a row, as an expression whose parameter is the row counted from 0.
std::string RowOf(const store::TableShape& shape);

/// What is wrong inside a file that is a database; empty when it is whole.
std::string FindDamage(SqliteConnection& connection, const std::string& path);
/// Brings a database of an older build up to this one: missing columns with their shipped values,
/// and the build's revision.
void BringUpToDate(SqliteConnection& connection, SqlSteps& steps,
                   const store::ShippedDatabase& shipped);
/// Makes all tables with all their rows.
void MakeTables(SqlSteps& steps, const store::ShippedDatabase& shipped);

}  // namespace tavlo::platform
