#include "platform/sqlite/sqlite_settings.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/disk/open_plain_file.h"
#include "platform/sqlite/private_file.h"
#include "platform/sqlite/sqlite_connection.h"

namespace tavlo::platform {
namespace {

using store::Field;
using store::OpenedDatabase;
using store::Record;
using store::ShippedDatabase;
using store::Table;
using store::TableShape;
using Mode = SqliteConnection::Mode;

/// First bytes of a file that Access made.
constexpr std::string_view kAccessMark{"\0\1\0\0Standard Jet DB", 19};

/// Settings take a thousandth of this. Whatever is larger is something else, and checking it would
/// take long.
constexpr std::uintmax_t kMostBytes = std::uintmax_t{256} * 1024 * 1024;

/// Rows keep their places: this column is the row's number, counted from 1.
constexpr std::string_view kRowNumber = "RowNumber";

std::string Sentence(const std::string& path, std::string_view rest) {
  return "The settings database " + path + " " + std::string(rest);
}

bool IsAccessFile(const std::string& path) {
  std::array<char, kAccessMark.size()> first{};
  const FileHandle file = OpenPlainFile(path, Links::Followed);
  const bool whole = file && ::pread(file.Get(), first.data(), first.size(), 0) ==
                                 static_cast<ssize_t>(first.size());
  return whole && std::string_view(first.data(), first.size()) == kAccessMark;
}

/// A folder without its settings is never filled up again, so it does not help to move the file
/// alone away.
constexpr std::string_view kRemedy =
    " Put a copy of it back, or rename its folder to begin with a new installation.";

std::string DamagedText(const std::string& path, std::string_view detail) {
  return Sentence(path, "is damaged (" + std::string(detail) + ")." + std::string(kRemedy));
}

std::string HeldText(const std::string& path) {
  return Sentence(path, "is held by another program. Close that program and try again.");
}

std::string LocklessText(const std::string& path) {
  return Sentence(path,
                  "stands on a disk that has no file locks, as a network share may. Have the share "
                  "mounted with locks, or keep the home folder on a disk of this machine.");
}

/// Whether the disk refuses locks as such, which the engine reports like a lock that another
/// program holds. To be asked only while no connection is open: closing the file here gives up the
/// locks that this process has on it.
bool HasNoLocks(const std::string& path) {
  const FileHandle file = OpenPlainFile(path, Links::Followed);
  if (!file) return false;
  struct flock lock = {};
  lock.l_type = F_RDLCK;
  lock.l_whence = SEEK_SET;
  return ::fcntl(file.Get(), F_SETLK, &lock) != 0 &&
         (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS);
}

std::string RefusedText(const std::string& path) {
  return Sentence(path,
                  "can not be read and written. Check the permissions of the file and of its "
                  "folder.");
}

/// The engine opens whatever stands beside a database under its names: a pipe there would keep the
/// program waiting for good, and through a link it would write into another file.
std::string BesideFault(const std::string& path) {
  std::error_code failed;
  const std::string real = std::filesystem::canonical(path, failed).string();
  for (const char* ending : kBesideEndings) {
    using Type = std::filesystem::file_type;
    const Type type = std::filesystem::symlink_status(real + ending, failed).type();
    if (type == Type::regular || type == Type::not_found) continue;
    return Sentence(path, "can not be used: " + real + ending + " is no file.");
  }
  return {};
}

/// What keeps a file from being opened at all; empty when nothing does.
std::string ReachFault(const std::string& path, int wanted) {
  std::error_code failed;
  const auto status = std::filesystem::status(path, failed);
  if (status.type() == std::filesystem::file_type::not_found) {
    return Sentence(path, "does not exist." + std::string(kRemedy));
  }
  if (failed) return RefusedText(path);
  if (status.type() != std::filesystem::file_type::regular) {
    return Sentence(path, "is no file.");
  }
  if (std::filesystem::file_size(path, failed) > kMostBytes) {
    return Sentence(path, "is far larger than settings are." + std::string(kRemedy));
  }
  if (eaccess(path.c_str(), wanted) != 0) return RefusedText(path);
  return BesideFault(path);
}

std::string FailureText(const std::string& path, StepResult result, const std::string& message) {
  switch (result) {
    case StepResult::Busy:
      return HeldText(path);
    case StepResult::NotDatabase:
      return DamagedText(path, "it is no database");
    case StepResult::Damaged:
      return DamagedText(path, "parts of it are missing or wrong");
    case StepResult::NoSpace:
      return Sentence(path, "can not be written: the disk is full.");
    default:
      return Sentence(path, "can not be used: " + message + ".");
  }
}

/// The columns that a table has; none when there is no such table (a view of that name does not
/// count).
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

bool Contains(const std::vector<std::string>& columns, std::string_view name) {
  return std::ranges::find(columns, name) != columns.end();
}

std::string RowOf(const TableShape& shape) {
  return "(SELECT rowid FROM " + std::string(shape.name) + " ORDER BY rowid LIMIT 1 OFFSET ?)";
}

class SqliteSettings : public store::SettingsDatabase {
 public:
  SqliteSettings(SqliteConnection connection, std::string path, bool readOnly)
      : connection_(std::move(connection)), path_(std::move(path)), readOnly_(readOnly) {
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

  bool Write(Table table, int row, const store::Assignments& fields) override {
    if (readOnly_) return Refuse(Sentence(path_, "is open for reading only."));
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
      return Refuse(Sentence(
          path_, "has no row " + std::to_string(row + 1) + " in " + std::string(shape.name) + "."));
    }
    if (values.empty()) return true;
    values.push_back(std::to_string(row));
    // A single statement is a transaction of its own.
    const StepResult result = connection_.Run("UPDATE " + std::string(shape.name) + " SET " +
                                                  assignments + " WHERE rowid = " + RowOf(shape),
                                              values);
    if (result == StepResult::Done) return true;
    return Refuse(FailureText(path_, result, connection_.LastMessage()));
  }

  std::string LastFailure() const override { return lastFailure_; }

 private:
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
  const bool readOnly_;
  std::vector<const Field*> fields_;
  std::string lastFailure_;
};

/// Makes statements one after the other for as long as they go well.
class Steps {
 public:
  explicit Steps(SqliteConnection& connection) : connection_(connection) {}

  bool Run(const std::string& sql, const std::vector<std::string>& parameters = {}) {
    if (result_ == StepResult::Done) result_ = connection_.Run(sql, parameters);
    return result_ == StepResult::Done;
  }
  StepResult Result() const { return result_; }

 private:
  SqliteConnection& connection_;
  StepResult result_ = StepResult::Done;
};

/// Locks the file for as long as the connection lives: in this mode no commit gives the lock back.
bool HoldFile(Steps& steps) {
  return steps.Run("PRAGMA locking_mode = EXCLUSIVE") && steps.Run("BEGIN EXCLUSIVE");
}

/// From here on a save is on the disk when its statement returns.
bool MakeSavesDurable(Steps& steps) {
  return steps.Run("PRAGMA synchronous = FULL") && steps.Run("PRAGMA journal_mode = TRUNCATE");
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

/// What is wrong inside a file that is a database; empty when it is whole.
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

void AddMissingColumn(Steps& steps, const TableShape& shape, const Field& field,
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
void ReplaceUnreadableValues(SqliteConnection& connection, Steps& steps, const TableShape& shape,
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

/// Brings a database of an older build up to this one: missing columns with their shipped values,
/// and the build's revision.
void BringUpToDate(SqliteConnection& connection, Steps& steps, const ShippedDatabase& shipped) {
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

void MakeTables(Steps& steps, const ShippedDatabase& shipped) {
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

}  // namespace

SqliteSettingsDatabases::SqliteSettingsDatabases(ShippedDatabase shipped, Opener openAccess)
    : shipped_(std::move(shipped)), openAccess_(std::move(openAccess)) {}

OpenedDatabase SqliteSettingsDatabases::Open(const std::string& path) {
  if (std::string fault = ReachFault(path, R_OK | W_OK); !fault.empty()) return {{}, fault};
  NarrowToOwner(path);
  SqliteConnection connection;
  StepResult result = connection.Open(path, Mode::ReadWrite);
  Steps steps(connection);
  if (result == StepResult::Done && !HoldFile(steps)) result = steps.Result();
  if (result == StepResult::NotDatabase && IsAccessFile(path)) {
    return {{},
            Sentence(path,
                     "is one of an older release. Move it into the folder PlaceOldDatabaseHere "
                     "and start again.")};
  }
  if (result != StepResult::Done) {
    connection.Close();
    if (HasNoLocks(path)) return {{}, LocklessText(path)};
    return {{}, FailureText(path, result, connection.LastMessage())};
  }
  if (!connection.Writable()) return {{}, RefusedText(path)};
  if (const std::string damage = FindDamage(connection, path); !damage.empty()) {
    return {{}, DamagedText(path, damage)};
  }
  // The journal's mode cannot change inside a transaction, and must not change in a damaged file.
  if (steps.Run("COMMIT") && MakeSavesDurable(steps) && steps.Run("BEGIN EXCLUSIVE")) {
    BringUpToDate(connection, steps, shipped_);
  }
  if (!steps.Run("COMMIT")) {
    return {{}, FailureText(path, steps.Result(), connection.LastMessage())};
  }
  return {std::make_unique<SqliteSettings>(std::move(connection), path, false), {}};
}

OpenedDatabase SqliteSettingsDatabases::OpenOld(const std::string& path) {
  if (std::string fault = ReachFault(path, R_OK); !fault.empty()) return {{}, fault};
  SqliteConnection connection;
  StepResult result = connection.Open(path, Mode::Read);
  if (result == StepResult::Done) result = connection.Run("SELECT count(*) FROM sqlite_master");
  if (result == StepResult::NotDatabase && openAccess_ && IsAccessFile(path)) {
    return openAccess_(path);
  }
  if (result != StepResult::Done) {
    return {{}, FailureText(path, result, connection.LastMessage())};
  }
  return {std::make_unique<SqliteSettings>(std::move(connection), path, true), {}};
}

std::string SqliteSettingsDatabases::Create(const std::string& path) {
  const int unmade = MakePrivateFile(path);
  if (unmade == EEXIST) return Sentence(path, "can not be made: something of that name is there.");
  if (unmade == ENOSPC) return FailureText(path, StepResult::NoSpace, {});
  if (unmade != 0) {
    return FailureText(path, StepResult::Failed, std::generic_category().message(unmade));
  }
  SqliteConnection connection;
  StepResult result = connection.Open(path, Mode::ReadWrite);
  Steps steps(connection);
  if (result == StepResult::Done) {
    if (MakeSavesDurable(steps) && HoldFile(steps)) MakeTables(steps, shipped_);
    steps.Run("COMMIT");
    result = steps.Result();
  }
  if (result == StepResult::Done) return {};
  connection.Close();
  const std::string failure =
      HasNoLocks(path) ? LocklessText(path) : FailureText(path, result, connection.LastMessage());
  std::error_code failed;
  std::filesystem::remove(path, failed);
  std::filesystem::remove(path + "-journal", failed);
  return failure;
}

}  // namespace tavlo::platform
