#pragma once

#include <memory>
#include <string>

#include "platform/sqlite/sqlite_connection.h"
#include "store/settings_database.h"

namespace tavlo::platform {

/// The rows behind a connection that is open. `path` stands in what is told of failures; a database
/// that is open for reading refuses every write.
std::unique_ptr<store::SettingsDatabase> NewSettingsRows(SqliteConnection connection,
                                                         std::string path,
                                                         SqliteConnection::Mode mode);

}  // namespace tavlo::platform
