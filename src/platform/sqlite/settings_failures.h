#pragma once

#include <string>
#include <string_view>

#include "platform/sqlite/sqlite_connection.h"

/// What keeps a settings database from being used, in sentences for the person. Each of them names
/// the path.
namespace tavlo::platform {

/// "The settings database", its path and the rest.
std::string SettingsSentence(const std::string& path, std::string_view rest);
std::string DamagedText(const std::string& path, std::string_view detail);
/// For a file that the user may not read or not write.
std::string RefusedText(const std::string& path);
/// How a statement ended, with the engine's own words where there are no better ones.
std::string FailureText(const std::string& path, StepResult result, const std::string& message);
/// The same for a database that could not be held. Tells a disk without locks apart, which the
/// engine reports like a lock that another program holds. No connection may be open: closing the
/// file here gives up the locks that this process has on it.
std::string HoldFailureText(const std::string& path, StepResult result, const std::string& message);

/// What keeps a file from being opened at all; empty when nothing does. `wanted` is what must be
/// allowed, as access() takes it.
std::string ReachFault(const std::string& path, int wanted);
/// Whether Access made the file.
bool IsAccessFile(const std::string& path);

}  // namespace tavlo::platform
