#include "lists/completed_purge.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "store/purge_date.h"

namespace tavlo::lists {

using store::DiskResult;

namespace {

constexpr int kMinutesOfADay = 1440;

/// Nothing when so many days are no limit. Minutes are counted in 16 bits with a sign, into which
/// 23 days do not fit; a setting that was always without effect must not begin to delete.
std::optional<std::int64_t> LimitInMinutes(std::uint8_t days) {
  const int minutes = days * kMinutesOfADay;
  if (minutes == 0 || minutes > std::numeric_limits<std::int16_t>::max()) return {};
  return minutes;
}

}  // namespace

void CompletedPurge::PurgeCompletedFiles(std::uint8_t days) {
  const auto limit = LimitInMinutes(days);
  if (!limit) return;
  const store::Listing walk = disk_.ListPlainFiles(folders_.CompletedPath());
  const auto first = walk.names.begin();
  const auto last = first + std::min<std::ptrdiff_t>(kMostNamesInARun, walk.names.end() - first);
  for (auto name = first; name != last; ++name) {
    loop_.Breathe();
    if (!PurgeIfOlder(*name, *limit)) break;
  }
  log_.Write();
}

bool CompletedPurge::PurgeIfOlder(const std::string& name, std::int64_t limitInMinutes) {
  if (!names_.ParseDocumentName(name)) return false;
  const auto dictatedAt = store::PurgeDate(name);
  if (!dictatedAt) return false;
  const base::CalendarTime now = loop_.WallClock();
  const std::int64_t age = store::MinutesBetween(*dictatedAt, now);
  if (age <= limitInMinutes) return true;
  const DiskResult deleted = moves_.DeleteForGood(folders_.CompletedPath() + name);
  if (deleted == DiskResult::OutOfReach) log_.Note(name, age, now, PurgeLog::Fate::InDoubt);
  if (deleted != DiskResult::Done) return false;
  log_.Note(name, age, now, PurgeLog::Fate::Gone);
  return true;
}

}  // namespace tavlo::lists
