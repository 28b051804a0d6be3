#include "platform/sqlite/sqlite_connection.h"

#include <algorithm>

#include "base/text.h"
#include "store/settings_database.h"

namespace tavlo::platform {
namespace {

/// Longest record that is read or written, in bytes. A file may claim a text of a gigabyte; what
/// is longer than this fails alone and costs no memory.
constexpr int kLongestRecord = 8 * 1024 * 1024;

/// How long an opener waits for a program that only looks into the file, such as a backup.
constexpr int kBusyMilliseconds = 500;

/// Steps of the engine between two beats of the pulse, far less than a second's worth.
constexpr int kStepsPerBeat = 1000;

struct StatementCloser {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementCloser>;

std::string CellText(sqlite3_stmt* statement, int column) {
  // A whole number that was stored as a fraction reads as the whole number that it is.
  if (sqlite3_column_type(statement, column) == SQLITE_FLOAT) {
    return base::NumberText(sqlite3_column_double(statement, column));
  }
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (!bytes) return {};
  const std::string_view all(bytes,
                             static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
  return std::string(all.substr(0, std::min(all.find('\0'), store::kLongestValue)));
}

}  // namespace

StepResult SqliteConnection::Open(const std::string& path, Mode mode) {
  const int flags = mode == Mode::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  sqlite3* opened = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &opened, flags | SQLITE_OPEN_PRIVATECACHE, nullptr);
  handle_.reset(opened);
  if (code != SQLITE_OK) return Note(code);
  sqlite3_extended_result_codes(opened, 1);
  sqlite3_busy_timeout(opened, kBusyMilliseconds);
  // The engine hands this on and changes nothing of it.
  sqlite3_progress_handler(opened, kStepsPerBeat, Beat, const_cast<Pulse*>(pulse_.get()));
  sqlite3_limit(opened, SQLITE_LIMIT_LENGTH, kLongestRecord);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  return StepResult::Done;
}

int SqliteConnection::Beat(void* pulse) {
  static_cast<const Pulse*>(pulse)->Beat();
  return 0;
}

StepResult SqliteConnection::Run(const std::string& sql, const std::vector<std::string>& parameters,
                                 const RowReader& onRow) {
  sqlite3_stmt* prepared = nullptr;
  const int code = sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &prepared, nullptr);
  const Statement statement(prepared);
  if (code != SQLITE_OK) return Note(code);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const int bound = sqlite3_bind_text(prepared, static_cast<int>(i) + 1, parameters[i].data(),
                                        static_cast<int>(parameters[i].size()), SQLITE_STATIC);
    if (bound != SQLITE_OK) return Note(bound);
  }
  int step = sqlite3_step(prepared);
  pulse_->Beat();
  for (; step == SQLITE_ROW; step = sqlite3_step(prepared)) {
    if (!onRow) continue;
    std::vector<std::string> cells;
    for (int column = 0; column < sqlite3_column_count(prepared); ++column) {
      cells.push_back(CellText(prepared, column));
    }
    onRow(cells);
  }
  return Note(step);
}

std::optional<std::string> SqliteConnection::FirstCell(const std::string& sql,
                                                       const std::vector<std::string>& parameters) {
  std::optional<std::string> first;
  const StepResult result = Run(sql, parameters, [&](const std::vector<std::string>& cells) {
    if (!first && !cells.empty()) first = cells.front();
  });
  return result == StepResult::Done ? first : std::nullopt;
}

StepResult SqliteConnection::Note(int code) {
  if (code == SQLITE_OK || code == SQLITE_DONE) return StepResult::Done;
  lastMessage_ = handle_ ? sqlite3_errmsg(handle_.get()) : sqlite3_errstr(code);
  switch (code & 0xFF) {
    case SQLITE_TOOBIG:
      return StepResult::TooBig;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return StepResult::Busy;
    case SQLITE_CORRUPT:
      return StepResult::Damaged;
    case SQLITE_NOTADB:
      return StepResult::NotDatabase;
    case SQLITE_FULL:
      return StepResult::NoSpace;
    default:
      return StepResult::Failed;
  }
}

}  // namespace tavlo::platform
