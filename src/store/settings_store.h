#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/settings_database.h"

namespace tavlo::store {

/// Reads and writes the rows of the settings database for everybody who needs a stored value and
/// not what a control shows. Called on the loop's thread; the database must outlive it.
class SettingsStore {
 public:
  explicit SettingsStore(SettingsDatabase& database);

  SettingsDatabase& Database() { return database_; }

  /// Takes a field's value into `value`. A field or a row that is missing leaves `value` as it was
  /// and returns false.
  bool ReadInto(std::string& value, Table table, std::string_view field, int row = 0) const;
  /// The value in the first row; empty when it is missing.
  std::string Read(Table table, std::string_view field) const;
  /// Whether a field of the first row holds the stored truth -1.
  bool ReadTruth(Table table, std::string_view field) const;

  /// Writes in one transaction. False when it was refused: nothing of it was written then, and
  /// `LastFailure` says why.
  [[nodiscard]] bool Write(Table table, int row, const Assignments& fields);
  /// The same for several rows, in one transaction.
  [[nodiscard]] bool WriteRows(const std::vector<RowAssignments>& rows);
  std::string LastFailure() const { return database_.LastFailure(); }

  /// Revision of the database, read once when the store was made; empty when it is missing.
  const std::string Revision;
  /// The version of the program as the windows and the reports show it.
  std::string ProgramVersionText() const;

 private:
  SettingsDatabase& database_;
};

}  // namespace tavlo::store
