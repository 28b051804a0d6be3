#include "lists/purge_log.h"

#include <tuple>
#include <utility>

#include "base/one_line.h"
#include "base/text.h"

namespace tavlo::lists {
namespace {

constexpr std::int64_t kMinutesOfAnHour = 60;
constexpr std::int64_t kHoursOfADay = 24;

std::string InUnits(std::int64_t number, const char* unit) {
  return std::to_string(number) + " " + unit + (number == 1 ? "" : "s");
}

std::string AgeInWords(std::int64_t minutes) {
  const std::int64_t hours = minutes / kMinutesOfAnHour;
  return InUnits(hours / kHoursOfADay, "day") + " " + InUnits(hours % kHoursOfADay, "hour");
}

}  // namespace

void PurgeLog::Note(std::string_view name, std::int64_t ageInMinutes,
                    const base::CalendarTime& deletedAt, Fate fate) {
  const char* const what = fate == Fate::Gone ? " deleted, " : " may be deleted, ";
  lines_ += base::MomentText(deletedAt) + what + AgeInWords(ageInMinutes) +
            " old: " + base::OneLine(name) + "\n";
}

void PurgeLog::Write() {
  // The end of the session may come while a slow folder is written to, and writes what is left.
  const std::string lines = std::exchange(lines_, {});
  if (lines.empty()) return;
  const std::string reports = folders_.ReportsPath();
  std::ignore = disk_.MakeFolder(reports.substr(0, reports.size() - 1));
  if (HasRoom()) std::ignore = disk_.Append(folders_.PurgeLogPath(), lines);
}

bool PurgeLog::HasRoom() {
  const auto facts = disk_.Facts(folders_.PurgeLogPath());
  if (!facts || facts->size <= kMostBytes) return true;
  std::ignore = disk_.Delete(folders_.OldPurgeLogPath());
  return disk_.Rename(folders_.PurgeLogPath(), folders_.OldPurgeLogPath()) ==
         store::DiskResult::Done;
}

}  // namespace tavlo::lists
