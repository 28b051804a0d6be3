#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/time.h"

namespace tavlo::store {

/// When a completed document was dictated, as the purge reads it from the document's name: from the
/// six fields between the blanks 4 and 10, the month first whatever order the lists show. Nothing
/// when a field is not all digits, or there is no such day or time.
///
/// The hour is read on a clock of twelve: above 12 it counts from noon, up to 12 from midnight. So
/// 12:30 is half past midnight, and such a document is aged by twelve hours too much. That is our
/// own decision, and stays.
std::optional<base::CalendarTime> PurgeDate(std::string_view name);

/// Whole minutes from one moment of the calendar to a later one; negative when it is earlier. Both
/// days must exist. Counts by the calendar, as if no clock was ever put forward or back.
std::int64_t MinutesBetween(const base::CalendarTime& from, const base::CalendarTime& to);

}  // namespace tavlo::store
