#include "simulation/ledger.h"

#include <algorithm>
#include <array>

#include "simulation/places.h"
#include "simulation/trace.h"
#include "support/simulated_conversion.h"

namespace tavlo::simulation {
namespace {

/// A drop folder may be the root of the disk, and its files are then named with two separators.
std::string AsTheDiskHasIt(const std::string& path) {
  return path.starts_with("//") ? path.substr(1) : path;
}

constexpr std::string_view kRescuedBeside = ".Rescued ";
constexpr std::string_view kClaim = ".TavloClaim ";
constexpr std::array<std::string_view, 3> kHalfCopies{".TavloDeckMove", ".TavloWave ",
                                                      ".TavloClock "};
/// How all that is written into the folders begins, be it whole or not.
constexpr std::array<std::string_view, 4> kBeginnings{"dictation ", "text ", "wave of ",
                                                      "half a wave"};

template <typename Texts>
bool BeginsWithOneOf(const Texts& texts, std::string_view text) {
  return std::ranges::any_of(texts,
                             [text](std::string_view next) { return text.starts_with(next); });
}

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace

std::string Recording::Contents() const {
  return "dictation " + std::to_string(number) + ": " + std::to_string(samples) + " samples at " +
         std::to_string(rate) + " Hz on " + std::to_string(channels) + " channels, whole";
}

std::optional<Recording> Recording::Of(std::string_view contents) {
  Recording found;
  long long samples = 0;
  const std::string text = Ledger::DictationIn(contents);
  const int read = std::sscanf(text.c_str(), "dictation %d: %lld samples at %d Hz on %d channels",
                               &found.number, &samples, &found.rate, &found.channels);
  found.samples = samples;
  if (read != 4 || found.Contents() != text) return {};
  return found;
}

bool Ledger::IsHalfCopy(std::string_view name) { return BeginsWithOneOf(kHalfCopies, name); }

bool Ledger::IsClaim(std::string_view name) { return name.starts_with(kClaim); }

std::string Ledger::DictationIn(std::string_view contents) {
  constexpr std::string_view kWaveOf = test::SimulatedConversion::kWaveOf;
  while (contents.starts_with(kWaveOf)) contents.remove_prefix(kWaveOf.size());
  return std::string(contents);
}

std::vector<std::string> Ledger::FilesOf(const test::SimulatedDisk& disk,
                                         const std::string& contents) {
  const std::string dictation = DictationIn(contents);
  std::vector<std::string> files;
  disk.ForEachFile([&](const std::string& path, const std::string& held) {
    if (held.ends_with(dictation) && DictationIn(held) == dictation) files.push_back(path);
  });
  return files;
}

void Ledger::Becomes(const std::string& before, const std::string& after) {
  const auto known = dictations_.find(DictationIn(before));
  const bool mayBeGone = known != dictations_.end() && known->second.mayBeGone;
  Forget(before);
  Came(after);
  dictations_[DictationIn(after)].mayBeGone = mayBeGone;
}

void Ledger::CameAt(const std::string& path, const std::string& contents) {
  Came(contents);
  dictations_[DictationIn(contents)].mayBeGone = agreed_.contains(path);
}

void Ledger::MayBeDeleted(const test::SimulatedDisk& disk, const std::string& path) {
  agreed_.insert(path);
  const auto known = dictations_.find(DictationIn(disk.Contents(path)));
  if (known != dictations_.end()) known->second.mayBeGone = true;
}

void Ledger::AgreedToDelete(const test::SimulatedDisk& disk, const std::string& path) {
  MayBeDeleted(disk, path);
  if (disk.Has(path)) deletions_.push_back({path, disk.Contents(path)});
}

void Ledger::HasComeIn(const test::SimulatedDisk& disk, const std::string& contents) {
  incoming_.reset();
  if (contents.empty()) {
    emptyParts_ = true;
    return;
  }
  Dictation& dictation = dictations_[DictationIn(contents)];
  dictation.mostPlaces = std::max(dictation.mostPlaces, FilesOf(disk, contents).size());
}

std::string Ledger::CheckIncoming(const test::SimulatedDisk& disk) const {
  if (!incoming_) return "";
  const std::string part = disk.Contents(incoming_->path);
  if (disk.Has(incoming_->path) && incoming_->contents.starts_with(part)) return "";
  return "It was taken while it was received: " + Readable(incoming_->path);
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

std::string Ledger::Check(const test::SimulatedDisk& disk, Blow blow, bool late) {
  Places places;
  std::string wrong;
  disk.ForEachFile([&](const std::string& path, const std::string& contents) {
    if (wrong.empty()) wrong = Place(path, contents, places);
  });
  if (wrong.empty()) wrong = CheckIncoming(disk);
  if (wrong.empty()) wrong = CheckPlaces(places, blow, late);
  if (wrong.empty()) wrong = CheckGrowing();
  if (!wrong.empty()) return wrong;
  std::erase_if(dictations_, [&](const auto& entry) { return !places.contains(entry.first); });
  // A delete that was left behind may still come.
  if (!disk.Places.AnyOwes()) {
    for (auto& [contents, dictation] : dictations_) dictation.mayBeGone = false;
    agreed_.clear();
  }
  return CheckDeletions(disk, blow != Blow::None || late);
}

std::string Ledger::Place(const std::string& path, const std::string& contents, Places& places) {
  const std::string name = NameOf(path);
  const std::string folder = path.substr(0, path.size() - name.size());
  if (folder == kDesktop || IsHalfCopy(name)) return "";
  if (incoming_ && path == AsTheDiskHasIt(incoming_->path)) return "";
  const std::string dictation = DictationIn(contents);
  if (dictation.empty() && emptyParts_) return "";
  if (expected_.erase(dictation) > 0) Came(dictation);
  if (dictations_.contains(dictation)) {
    places[dictation].push_back(path);
    return "";
  }
  const auto grows = growing_.find(contents);
  if (grows != growing_.end()) {
    const bool stays = grows->second.whileOpen == WhileOpen::Stays;
    const bool arrived = stays && AsTheDiskHasIt(grows->second.path) != path;
    grows->second.seen = true;
    return arrived ? "Half a dictation has come to " + Readable(path) + ": " + contents : "";
  }
  const bool ofNobody =
      IsFolderOfDocuments(folder) || BeginsWithOneOf(kBeginnings, std::string_view(contents));
  if (!ofNobody || name.starts_with(kRescuedBeside)) return "";
  return "Half a dictation shows as " + Readable(path) + ": " + contents;
}

bool Ledger::IsFolderOfDocuments(const std::string& folder) const {
  return folder == root_ + kInQueue || folder == root_ + kCompleted || folder == root_ + kRescued;
}

std::string Ledger::CheckPlaces(const Places& places, Blow blow, bool late) {
  for (auto& [contents, dictation] : dictations_) {
    const auto known = places.find(contents);
    const std::size_t count = known == places.end() ? 0 : known->second.size();
    if (count == 0 && !dictation.mayBeGone) return "Lost: " + contents;
    if (dictation.CountsPlaces(count, blow, late)) continue;
    std::string wrong = std::to_string(count) + " places hold " + contents + ":";
    for (const std::string& path : known->second) wrong += " " + Readable(path);
    return wrong;
  }
  return "";
}

bool Ledger::Dictation::CountsPlaces(std::size_t places, Blow blow, bool late) {
  if (places <= 1) {
    mostPlaces = 1;
    standsTwiceForNow = false;
    return true;
  }
  if (blow == Blow::Kill) mostPlaces = std::max(mostPlaces, std::min(places, mostPlaces + 1));
  if (blow == Blow::Fault) mostPlaces = std::max(mostPlaces, places);
  standsTwiceForNow = standsTwiceForNow || late;
  return places <= mostPlaces || standsTwiceForNow;
}

std::string Ledger::CheckGrowing() {
  for (auto& [contents, growing] : growing_) {
    const bool gone = growing.whileOpen != WhileOpen::MayVanish && !growing.seen;
    if (gone) return "It has gone from under its writer: " + Readable(growing.path);
    growing.seen = false;
  }
  return "";
}

std::string Ledger::CheckSettled(const test::SimulatedDisk& disk) const {
  for (const auto& [contents, dictation] : dictations_) {
    if (!dictation.standsTwiceForNow || dictation.mostPlaces > 1) continue;
    std::string wrong = "Stands twice though every folder answers again: " + contents + ":";
    for (const std::string& path : FilesOf(disk, contents)) wrong += " " + Readable(path);
    return wrong;
  }
  return "";
}

void Ledger::ProgramIsGone() {
  for (auto& [contents, dictation] : dictations_) {
    // A copy may have been on its way that nobody has seen yet.
    if (dictation.standsTwiceForNow)
      dictation.mostPlaces = std::max(dictation.mostPlaces, std::size_t{2});
  }
}

}  // namespace tavlo::simulation
