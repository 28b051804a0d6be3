#pragma once

#include <cstdint>
#include <string>

namespace tavlo::platform {

/// Calls `_WriteFile` of a library and returns what it returns: 0 when the wave stands at the
/// destination. The library is loaded at its first call and stays loaded until the process ends.
/// One that is missing, or is no plain file, gives `ConversionCode::LibraryMissing`; one that can
/// not be loaded or lacks the call gives `LibraryBroken`.
///
/// Any thread. It returns when the conversion is over, which may take a minute, and may wait for
/// the places of all three paths; so the loop's thread leaves it to another.
std::int32_t CallWriteFile(const std::string& libraryPath, const std::string& source,
                           const std::string& destination);

/// The same for `AddHdr` of the mu-law library, for which 0 and 5 are success.
std::uint8_t CallAddHdr(const std::string& libraryPath, const std::string& source,
                        const std::string& destination);

}  // namespace tavlo::platform
