#include "support/simulated_places.h"

#include <algorithm>
#include <utility>

namespace tavlo::test {
namespace {

std::string WithoutSeparator(const std::string& folder) {
  return folder.size() > 1 && folder.ends_with('/') ? folder.substr(0, folder.size() - 1) : folder;
}

bool Holds(const std::string& folder, const std::string& path) {
  return folder == "/" || path == folder || path.starts_with(folder + "/");
}

}  // namespace

void SimulatedPlaces::SlowDown(const std::string& folder, base::Duration length) {
  places_[WithoutSeparator(folder)].takes = length;
}

void SimulatedPlaces::Stall(const std::string& folder) {
  places_[WithoutSeparator(folder)].stalls = true;
}

void SimulatedPlaces::Resume(const std::string& folder, Late late) {
  const auto found = places_.find(WithoutSeparator(folder));
  if (found != places_.end()) ComeBack(found->second, late);
}

void SimulatedPlaces::LeaveBehind(const std::string& folder) {
  Place& place = places_[WithoutSeparator(folder)];
  place.stalls = true;
  place.owes = true;
}

void SimulatedPlaces::Mend(Late late) {
  for (auto& [folder, place] : places_) {
    ComeBack(place, late);
    place.takes = base::Duration{0};
  }
  onceGivenUp_.reset();
}

void SimulatedPlaces::ForgetProcess(Late late) {
  for (auto& [folder, place] : places_) {
    const bool stalls = place.stalls;
    ComeBack(place, late);
    place.stalls = stalls;
  }
}

bool SimulatedPlaces::AnyStalls() const {
  return std::ranges::any_of(places_, [](const auto& entry) { return entry.second.stalls; });
}

bool SimulatedPlaces::Stalls(const std::string& path) const {
  const std::string* const folder = FolderHolding(path);
  return folder && places_.at(*folder).stalls;
}

bool SimulatedPlaces::Owes(const std::string& path) const {
  const std::string* const folder = FolderHolding(path);
  return folder && places_.at(*folder).owes;
}

bool SimulatedPlaces::OwesOrKeepsWaiting(const std::string& path) const {
  const std::string* const folder = FolderHolding(path);
  return folder && (places_.at(*folder).owes || places_.at(*folder).waiting > 0);
}

bool SimulatedPlaces::AnyOwes() const {
  return std::ranges::any_of(places_, [](const auto& entry) { return entry.second.owes; });
}

bool SimulatedPlaces::Answers(const std::vector<std::string>& paths, std::function<void()> late) {
  const std::vector<Place*> asked = PlacesOf(paths);
  if (std::ranges::any_of(asked, &Place::owes)) return false;
  if (WaitFor(asked)) return true;
  GiveUp(asked, std::move(late));
  return false;
}

bool SimulatedPlaces::WaitFor(const std::vector<Place*>& asked) {
  const base::MonotonicTime begun = loop_.Now();
  base::MonotonicTime answer = begun;
  base::MonotonicTime limit = begun + kPatience;
  for (Place* const place : asked) {
    if (place->waiting++ == 0) place->askedAt = begun;
    answer = std::max(answer, begun + place->takes);
    // A call inside another one does not begin before that has an answer.
    limit = std::min(limit, place->askedAt + kPatience);
  }
  const auto noneStalls = [&asked] { return std::ranges::none_of(asked, &Place::stalls); };
  const bool answers = noneStalls()
                           ? answer == begun || !loop_.BreatheUntil([] { return false; }, answer)
                           : loop_.BreatheUntil(noneStalls, limit);
  for (Place* const place : asked) --place->waiting;
  if (answers) AnsweredAfter += loop_.Now() - begun;
  return answers;
}

void SimulatedPlaces::GiveUp(const std::vector<Place*>& asked, std::function<void()> late) {
  for (Place* const place : asked) {
    // One that waits inside another was never begun.
    if (!place->stalls || place->waiting > 0) continue;
    ++TimesGivenUp;
    place->owes = true;
    place->behind = std::exchange(late, nullptr);
    if (onceGivenUp_) ComeBack(*place, *onceGivenUp_);
  }
}

void SimulatedPlaces::ComeBack(Place& place, Late late) {
  place.stalls = false;
  place.owes = false;
  const std::function<void()> behind = std::exchange(place.behind, nullptr);
  if (behind && late == Late::Happens) behind();
}

std::vector<SimulatedPlaces::Place*> SimulatedPlaces::PlacesOf(
    const std::vector<std::string>& paths) {
  std::vector<Place*> found;
  for (const std::string& path : paths) {
    const std::string* const folder = FolderHolding(path);
    Place* const place = folder ? &places_.at(*folder) : nullptr;
    if (place && std::ranges::find(found, place) == found.end()) found.push_back(place);
  }
  return found;
}

const std::string* SimulatedPlaces::FolderHolding(const std::string& path) const {
  const std::string* innermost = nullptr;
  for (const auto& [folder, place] : places_) {
    if (!Holds(folder, path)) continue;
    if (!innermost || folder.size() > innermost->size()) innermost = &folder;
  }
  return innermost;
}

}  // namespace tavlo::test
