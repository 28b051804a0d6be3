#include "platform/sqlite/sqlite_settings.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/sqlite/adopted_settings.h"
#include "platform/sqlite/private_file.h"
#include "platform/sqlite/settings_failures.h"
#include "platform/sqlite/settings_rows.h"
#include "platform/sqlite/settings_tables.h"
#include "platform/sqlite/sqlite_connection.h"

namespace tavlo::platform {
namespace {

using store::OpenedDatabase;
using store::ShippedDatabase;
using Mode = SqliteConnection::Mode;

/// Locks the file for as long as the connection lives: in this mode no commit gives the lock back.
bool HoldFile(SqlSteps& steps) {
  return steps.Run("PRAGMA locking_mode = EXCLUSIVE") && steps.Run("BEGIN EXCLUSIVE");
}

/// From here on a save is on the disk when its statement returns.
bool MakeSavesDurable(SqlSteps& steps) {
  return steps.Run("PRAGMA synchronous = FULL") && steps.Run("PRAGMA journal_mode = TRUNCATE");
}

}  // namespace

SqliteSettingsDatabases::SqliteSettingsDatabases(ShippedDatabase shipped, Opener openAccess,
                                                 std::shared_ptr<const Pulse> pulse)
    : shipped_(std::move(shipped)), openAccess_(std::move(openAccess)), pulse_(std::move(pulse)) {}

OpenedDatabase SqliteSettingsDatabases::Open(const std::string& path) {
  if (std::string fault = ReachFault(path, R_OK | W_OK); !fault.empty()) return {{}, fault};
  NarrowToOwner(path);
  // Before the engine sees it: it would carry out what a database of ours that stood there before
  // has left beside it, and that would be the end of the old one.
  if (IsAccessFile(path)) return OpenAdopted(path);
  SqliteConnection connection(pulse_);
  StepResult result = connection.Open(path, Mode::ReadWrite);
  SqlSteps steps(connection);
  if (result == StepResult::Done && !HoldFile(steps)) result = steps.Result();
  if (result != StepResult::Done) {
    connection.Close();
    return {{}, HoldFailureText(path, result, connection.LastMessage())};
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
  return {NewSettingsRows(std::move(connection), path, Mode::ReadWrite), {}};
}

/// A root of an older release was put in the place of a new one.
OpenedDatabase SqliteSettingsDatabases::OpenAdopted(const std::string& path) {
  OpenedDatabase old = openAccess_ ? openAccess_(path) : OpenedDatabase();
  if (!old.database) {
    return {{},
            SettingsSentence(path,
                             "is one of an older release and can not be read. Move it away, and "
                             "start again with a root of its own.")};
  }
  if (std::string failure = AdoptSettings(path, *old.database, *this); !failure.empty()) {
    return {{}, std::move(failure)};
  }
  return Open(path);
}

OpenedDatabase SqliteSettingsDatabases::OpenOld(const std::string& path) {
  if (std::string fault = ReachFault(path, R_OK); !fault.empty()) return {{}, fault};
  if (openAccess_ && IsAccessFile(path)) return openAccess_(path);
  SqliteConnection connection(pulse_);
  StepResult result = connection.Open(path, Mode::Read);
  if (result == StepResult::Done) result = connection.Run("SELECT count(*) FROM sqlite_master");
  if (result != StepResult::Done) {
    return {{}, FailureText(path, result, connection.LastMessage())};
  }
  return {NewSettingsRows(std::move(connection), path, Mode::Read), {}};
}

std::string SqliteSettingsDatabases::Create(const std::string& path) {
  const int unmade = MakePrivateFile(path);
  if (unmade == EEXIST) {
    return SettingsSentence(path, "can not be made: something of that name is there.");
  }
  if (unmade == ENOSPC) return FailureText(path, StepResult::NoSpace, {});
  if (unmade != 0) {
    return FailureText(path, StepResult::Failed, std::generic_category().message(unmade));
  }
  SqliteConnection connection(pulse_);
  StepResult result = connection.Open(path, Mode::ReadWrite);
  SqlSteps steps(connection);
  if (result == StepResult::Done) {
    if (MakeSavesDurable(steps) && HoldFile(steps)) MakeTables(steps, shipped_);
    steps.Run("COMMIT");
    result = steps.Result();
  }
  if (result == StepResult::Done) return {};
  connection.Close();
  const std::string failure = HoldFailureText(path, result, connection.LastMessage());
  std::error_code failed;
  std::filesystem::remove(path, failed);
  std::filesystem::remove(path + "-journal", failed);
  return failure;
}

}  // namespace tavlo::platform
