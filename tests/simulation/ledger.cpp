#include "simulation/ledger.h"

#include "simulation/trace.h"

namespace tavlo::simulation {
namespace {

constexpr std::string_view kHalfCopy = ".TavloDeckMove";
constexpr std::string_view kRescued = ".Rescued ";

}  // namespace

std::string Recording::Contents() const {
  return "dictation " + std::to_string(number) + ": " + std::to_string(samples) + " samples at " +
         std::to_string(rate) + " Hz on " + std::to_string(channels) + " channels, whole";
}

std::optional<Recording> Recording::Of(std::string_view contents) {
  Recording found;
  long long samples = 0;
  const std::string text(contents);
  const int read = std::sscanf(text.c_str(), "dictation %d: %lld samples at %d Hz on %d channels",
                               &found.number, &samples, &found.rate, &found.channels);
  found.samples = samples;
  if (read != 4 || found.Contents() != contents) return {};
  return found;
}

bool Ledger::IsHalfCopy(std::string_view name) { return name.starts_with(kHalfCopy); }

void Ledger::MayBeDeleted(const test::SimulatedDisk& disk, const std::string& path) {
  const auto known = dictations_.find(disk.Contents(path));
  if (known != dictations_.end()) known->second.mayBeGone = true;
}

void Ledger::AgreedToDelete(const test::SimulatedDisk& disk, const std::string& path) {
  MayBeDeleted(disk, path);
  if (disk.Has(path)) deletions_.push_back({path, disk.Contents(path)});
}

std::string Ledger::CheckDeletions(const test::SimulatedDisk& disk, bool mayStand) {
  std::string wrong;
  for (const Deletion& deletion : deletions_) {
    const bool stands =
        disk.Has(deletion.path) && disk.Contents(deletion.path) == deletion.contents;
    if (stands && !mayStand) wrong = "Not deleted: " + Readable(deletion.path);
  }
  deletions_.clear();
  return wrong;
}

std::string Ledger::Check(const test::SimulatedDisk& disk, bool faultStruck, bool late) {
  std::map<std::string, std::vector<std::string>> places;
  for (const char* folder : {"/Files/InQueue/", "/Files/Completed/", "/Files/Rescued/"}) {
    for (const std::string& name : disk.NamesIn(root_ + folder)) {
      if (IsHalfCopy(name)) continue;
      const std::string contents = disk.Contents(root_ + folder + name);
      if (Knows(contents)) {
        places[contents].push_back(folder + name);
      } else if (!growing_.contains(contents) && !name.starts_with(kRescued)) {
        return "Half a dictation shows as " + Readable(folder + name) + ": " + contents;
      }
    }
  }
  for (auto& [contents, dictation] : dictations_) {
    const std::vector<std::string>& found = places[contents];
    if (found.empty() && !dictation.mayBeGone) return "Lost: " + contents;
    if (!dictation.CountsPlaces(found.size(), faultStruck, late)) {
      return "Two places hold " + contents + ": " + Readable(found[0]) + ", " + Readable(found[1]);
    }
  }
  std::erase_if(dictations_, [&](const auto& entry) { return places[entry.first].empty(); });
  // A delete that was left behind may still come.
  if (!disk.Places.AnyOwes()) {
    for (auto& [contents, dictation] : dictations_) dictation.mayBeGone = false;
  }
  return CheckDeletions(disk, faultStruck || late);
}

bool Ledger::Dictation::CountsPlaces(std::size_t places, bool faultStruck, bool late) {
  if (places <= 1) {
    mayStandTwice = standsTwiceForNow = false;
    return true;
  }
  mayStandTwice = mayStandTwice || faultStruck;
  standsTwiceForNow = standsTwiceForNow || late;
  return mayStandTwice || standsTwiceForNow;
}

std::string Ledger::CheckSettled() const {
  for (const auto& [contents, dictation] : dictations_) {
    const bool doubled = dictation.standsTwiceForNow && !dictation.mayStandTwice;
    if (doubled) return "Stands twice though every folder answers again: " + contents;
  }
  return "";
}

void Ledger::ProgramIsGone() {
  for (auto& [contents, dictation] : dictations_) {
    // A copy may have been on its way that nobody has seen yet.
    dictation.mayStandTwice = dictation.mayStandTwice || dictation.standsTwiceForNow;
  }
}

}  // namespace tavlo::simulation
