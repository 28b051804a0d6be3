#include "intake/claims.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

namespace tavlo::intake {
namespace {

using store::DiskResult;

constexpr std::string_view kClaim = ".TavloClaim ";
constexpr std::string_view kClock = ".TavloClock ";
constexpr std::string_view kWave = ".TavloWave ";
/// What the conversion libraries write into until it is whole.
constexpr std::string_view kHalfWave = ".TavloDeckWave-";

/// A claim whose name is taken gets a number, which must not cut the name that it holds.
constexpr std::size_t kRoomForANumber = 8;

/// Blanks part the fields of a claim's name, and a number goes in front of its last point.
std::string WithoutBlanks(std::string host) {
  std::ranges::replace_if(
      host, [](char c) { return c == ' ' || c == '/' || c == '.'; }, '-');
  return host;
}

/// The name of the file that is claimed; empty when the claim is none of ours.
std::string_view ClaimedName(std::string_view claim) {
  if (!claim.starts_with(kClaim)) return {};
  const auto afterHost = claim.find(' ', kClaim.size());
  const auto afterProcess = claim.find(' ', afterHost == claim.npos ? afterHost : afterHost + 1);
  return afterProcess == claim.npos ? std::string_view() : claim.substr(afterProcess + 1);
}

bool IsOurs(const std::string& name) {
  return !ClaimedName(name).empty() || name.starts_with(kClock) || name.starts_with(kWave) ||
         name.starts_with(kHalfWave);
}

}  // namespace

Claims::Claims(base::Loop& loop, store::Disk& disk, store::FileMoves& moves,
               const ClaimOwner& owner)
    : disk_(disk),
      moves_(moves),
      host_(WithoutBlanks(owner.host)),
      process_(std::to_string(owner.process)),
      // It runs in the breaths of the work that it is for, and no rule sees what it does.
      tmrRenewal_(loop, "tmrRenewal", kRenewedEach, base::TimerKind::Feed) {
  tmrRenewal_.OnTick = [this] { Renew(); };
}

Claims::Taken Claims::Take(const std::string& folder, const std::string& name) {
  const std::string claim = NameOfClaim(name);
  if (claim.empty()) return {.result = DiskResult::Failed, .nameTooLong = true};
  const store::FileMoves::Place place = moves_.RenameBeside(folder + name, claim);
  if (place.result != DiskResult::Done) return {.result = place.result, .path = {}};
  held_ = Held{.path = place.path, .name = name};
  // Not every file system takes a rename for a change.
  std::ignore = disk_.Renew(place.path);
  tmrRenewal_.Start();
  switch (disk_.TestReadiness(place.path)) {
    case store::Readiness::InUse:
      GiveBack();
      return {.result = DiskResult::Failed, .inUse = true};
    case store::Readiness::ProcessInTrouble:
      GiveBack();
      return {.result = DiskResult::ProcessInTrouble};
    case store::Readiness::OutOfReach:
      LetGo();
      return {.result = DiskResult::OutOfReach};
    case store::Readiness::Unusable:
      GiveBack();
      return {.result = DiskResult::Failed, .unreadable = true};
    default:
      return {.result = DiskResult::Done, .path = place.path};
  }
}

bool Claims::WasGivenBack() { return held_ && disk_.Look(held_->path) == store::Entry::Nothing; }

std::string Claims::GiveBack() {
  const Held held = std::exchange(held_, {}).value_or(Held{});
  tmrRenewal_.Stop();
  const store::FileMoves::Place place = moves_.RenameBeside(held.path, held.name);
  return place.result == DiskResult::Done ? place.path : held.path;
}

void Claims::LetGo() {
  held_.reset();
  tmrRenewal_.Stop();
}

void Claims::TidyUp(const std::string& folder) {
  std::vector<std::string> names = disk_.ListDotFiles(folder).names;
  std::erase_if(names, [&](const std::string& name) {
    return !IsOurs(name) || (held_ && held_->path == folder + name);
  });
  if (names.empty()) return;
  // A move that was given up knows its document by the claim's name.
  moves_.TakeBackUnfinished();
  const std::optional<std::int64_t> now = ClockOf(folder);
  if (!now) return;
  const std::int64_t limit =
      *now - std::chrono::duration_cast<std::chrono::nanoseconds>(kAbandonedAfter).count();
  for (const std::string& name : names) {
    const std::optional<std::int64_t> changed = disk_.ChangedAt(folder + name);
    if (changed && *changed <= limit) Settle(folder, name);
  }
}

std::string Claims::PathForWave(const std::string& folder) {
  // The ending stands for what it is, should a library look at it.
  return folder + std::string(kWave) + host_ + " " + process_ + " " + std::to_string(++lastWave_) +
         ".wav";
}

std::string Claims::NameOfClaim(const std::string& name) const {
  const std::size_t fixed = kClaim.size() + process_.size() + name.size() + 2;
  const std::size_t room = store::kMostBytesOfAName - kRoomForANumber;
  if (fixed > room) return {};
  return std::string(kClaim) + host_.substr(0, room - fixed) + " " + process_ + " " + name;
}

std::optional<std::int64_t> Claims::ClockOf(const std::string& folder) {
  const std::string path = folder + std::string(kClock) + host_ + " " + process_;
  if (disk_.Append(path, "\n") != DiskResult::Done) return {};
  const std::optional<std::int64_t> now = disk_.ChangedAt(path);
  std::ignore = disk_.Delete(path);
  return now;
}

void Claims::Settle(const std::string& folder, const std::string& name) {
  const std::string_view claimed = ClaimedName(name);
  if (claimed.empty()) {
    std::ignore = disk_.Delete(folder + name);
  } else {
    std::ignore = moves_.RenameBeside(folder + name, claimed);
  }
}

/// The disk may breathe over the answer, so the next minute counts from there.
void Claims::Renew() {
  tmrRenewal_.Stop();
  if (held_) std::ignore = disk_.Renew(held_->path);
  if (held_) tmrRenewal_.Start();
}

}  // namespace tavlo::intake
