#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tavlo::store {

enum class Table { GeneralSettings, FtpSettings, ImportAuthors, RevisionInfo };

/// Fields of one row by their stored names, in the form in which the windows show them. Truth is
/// "-1" or "0".
using Record = std::map<std::string, std::string>;
/// The fields to write, in the order of writing.
using Assignments = std::vector<std::pair<std::string, std::string>>;

/// The open settings database: one connection, held for the run. Rows are counted from 0 and are
/// neither added nor removed. Called on the loop's thread.
class SettingsDatabase {
 public:
  virtual ~SettingsDatabase() = default;

  virtual int RowCount(Table table) = 0;
  /// The row's fields. A row that does not exist, or cannot be read, is empty; a field that the
  /// table lacks is absent.
  virtual Record Read(Table table, int row) = 0;
  /// Writes all fields in one transaction or none of them. False when it was refused; the reason
  /// stands in `LastFailure`. A field that the table lacks is passed over.
  [[nodiscard]] virtual bool Write(Table table, int row, const Assignments& fields) = 0;
  virtual std::string LastFailure() const = 0;
};

}  // namespace tavlo::store
