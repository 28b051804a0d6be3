#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/time.h"

namespace tavlo::simulation {

/// Whole minutes since the dictation of the document, by what its name says and the purge reads:
/// the hours 13 to 24 follow noon, and 12 is midnight. Nothing where the name tells of no moment.
std::optional<std::int64_t> AgeByName(const std::string& name, const base::CalendarTime& now);

}  // namespace tavlo::simulation
