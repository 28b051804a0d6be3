#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <optional>
#include <string>

#include "platform/disk/file_handle.h"

namespace tavlo::platform {

enum class Links { Refused, Followed };

/// Opens the plain file at a path for reading. A folder, a pipe and a device are refused, and none
/// of them can make the call wait. Below 0 when it failed; errno then tells why, and is EINVAL for
/// what is no plain file.
FileHandle OpenPlainFile(const std::string& path, Links links);
/// The same; `status` is what the file was when it was opened.
FileHandle OpenPlainFile(const std::string& path, Links links, struct stat& status);
/// The same for a name in a folder that is open; links are refused.
FileHandle OpenPlainFileIn(int folder, const std::string& name, struct stat& status);
/// Opens whatever has this name in a folder, for who asks afterwards what it is. Links are refused,
/// and nothing makes the call wait.
FileHandle OpenAnyIn(int folder, const std::string& name);

/// All that the plain file at a path holds, links followed. Nothing when there is no such file,
/// when the disk fails, and when it holds more than `mostBytes`, whatever it says of its size.
std::optional<std::string> ReadPlainFile(const std::string& path, std::size_t mostBytes);

}  // namespace tavlo::platform
