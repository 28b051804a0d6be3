#pragma once

#include <cstddef>
#include <map>
#include <memory>
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
/// The fields to write into one row.
struct RowAssignments {
  Table table;
  int row;
  Assignments fields;
};

/// Bytes that a value may have. A longer one is cut when it is read and refused when it is written;
/// a value ends before its first NUL.
inline constexpr std::size_t kLongestValue = 65536;

/// The open settings database: one connection, held for the run. Rows are counted from 0 and are
/// neither added nor removed. Called on the loop's thread.
class SettingsDatabase {
 public:
  virtual ~SettingsDatabase() = default;

  virtual int RowCount(Table table) = 0;
  /// The row's fields. A row that does not exist, or cannot be read, is empty; a field that the
  /// table lacks is absent.
  virtual Record Read(Table table, int row) = 0;
  /// Writes all fields of all rows in one transaction or none of them. False when it was refused;
  /// the reason stands in `LastFailure`. A field that the table lacks is passed over.
  [[nodiscard]] virtual bool WriteRows(const std::vector<RowAssignments>& rows) = 0;
  /// The same for one row.
  [[nodiscard]] bool Write(Table table, int row, const Assignments& fields) {
    return WriteRows({{table, row, fields}});
  }
  virtual std::string LastFailure() const = 0;
};

/// What opening gave: the database, or none and a text for the person that names the path.
struct OpenedDatabase {
  std::unique_ptr<SettingsDatabase> database;
  std::string failure;
};

/// Opens and makes settings databases. Whoever builds it hands it the shipped values.
class SettingsDatabases {
 public:
  virtual ~SettingsDatabases() = default;

  /// Opens the program's own database and holds it against every other program. A database of an
  /// older build gains the columns that it lacks with their shipped values, and its Revision
  /// follows the build. When it fails, nothing in the file has changed.
  virtual OpenedDatabase Open(const std::string& path) = 0;
  /// Opens a database of an older release for reading, as it is: fields, rows and tables may be
  /// missing, and every write is refused. The file is not changed.
  virtual OpenedDatabase OpenOld(const std::string& path) = 0;
  /// Makes a complete database with all its rows at a path where nothing stands yet. Empty on
  /// success, otherwise a text for the person, and nothing is left at the path.
  virtual std::string Create(const std::string& path) = 0;
};

}  // namespace tavlo::store
