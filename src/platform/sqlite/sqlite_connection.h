#pragma once

#include <sqlite3.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/sqlite/pulse.h"

namespace tavlo::platform {

/// How a statement ended.
enum class StepResult { Done, TooBig, Busy, Damaged, NotDatabase, NoSpace, Failed };

/// One connection to an SQLite file that may have been made by anybody: its triggers, views and
/// functions are never run. Every call says how it ended; nothing throws.
class SqliteConnection {
 public:
  enum class Mode { Read, ReadWrite };

  /// The pulse beats while a statement runs.
  explicit SqliteConnection(std::shared_ptr<const Pulse> pulse) : pulse_(std::move(pulse)) {}
  StepResult Open(const std::string& path, Mode mode);
  void Close() { handle_.reset(); }
  /// The file was opened for writing and lets itself be written.
  bool Writable() const { return sqlite3_db_readonly(handle_.get(), "main") == 0; }

  /// A cell as text, cut at an embedded NUL and at the longest value that settings may have.
  using RowReader = std::function<void(const std::vector<std::string>& cells)>;
  /// Runs one statement with texts for its parameters; each row is handed to `onRow`.
  StepResult Run(const std::string& sql, const std::vector<std::string>& parameters = {},
                 const RowReader& onRow = {});
  /// The first cell of the first row; nothing when there is none or it could not be read.
  std::optional<std::string> FirstCell(const std::string& sql,
                                       const std::vector<std::string>& parameters = {});
  /// The engine's own words for the last failure.
  std::string LastMessage() const { return lastMessage_; }

 private:
  struct Closer {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };

  static int Beat(void* pulse);
  StepResult Note(int code);

  std::shared_ptr<const Pulse> pulse_;
  std::unique_ptr<sqlite3, Closer> handle_;
  std::string lastMessage_;
};

}  // namespace tavlo::platform
