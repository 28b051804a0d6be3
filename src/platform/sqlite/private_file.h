#pragma once

#include <array>
#include <string>

namespace tavlo::platform {

/// What ends the names of the files that the engine keeps beside a database.
inline constexpr std::array kBesideEndings{"-journal", "-wal", "-shm"};

/// Makes an empty file that is its owner's alone; the engine gives what it keeps beside a database
/// the same mode. 0, or the errno: EEXIST when anything of that name is there.
int MakePrivateFile(const std::string& path);

/// Leaves a database and what is kept beside it to their owner alone, for settings hold passwords.
/// A link is followed for the database and not beside it. What belongs to somebody else stays as it
/// is. No file is opened: to close one would give up this process's locks on it.
void NarrowToOwner(const std::string& path);

}  // namespace tavlo::platform
