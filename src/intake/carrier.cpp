#include "intake/carrier.h"

namespace tavlo::intake {

using store::DiskResult;
using Outcome = Carried::Outcome;

bool HasGone(store::Disk& disk, const std::string& path) {
  return disk.Look(path) == store::Entry::Nothing;
}

bool IsBeingWritten(store::Disk& disk, const std::string& path) {
  return disk.TestReadiness(path) == store::Readiness::InUse;
}

Carried NotClaimed(store::Disk& disk, const std::string& source, const Claims::Taken& claim) {
  const DiskResult why = claim.result;
  if (claim.nameTooLong) return {.outcome = Outcome::NameTooLong, .why = why};
  if (claim.inUse) return {.outcome = Outcome::InUse, .why = why};
  if (why == DiskResult::OutOfReach) return {.outcome = Outcome::OutOfReach};
  if (why == DiskResult::NotFound && HasGone(disk, source)) {
    return {.outcome = Outcome::TakenByAnother};
  }
  const bool mayNot = why == DiskResult::NoAccess;
  return {
      .outcome = mayNot ? Outcome::MayNotClaim : Outcome::Failed, .why = why, .standsAt = source};
}

Carried Carrier::Carry(const std::string& folder, const std::string& entry,
                       const std::string& target) {
  const std::string source = folder + entry;
  // A rename is a claim in itself.
  store::Moved moved = moves_.MoveInOneStep(source, target, store::InTheWay::Stays);
  if (moved.result == DiskResult::AlreadyThere) {
    if (IsBeingWritten(disk_, target)) return {.outcome = Outcome::InUse};
    moved = moves_.MoveInOneStep(source, target);
  }
  if (moved.result == DiskResult::OtherFileSystem) return CarryAcross(folder, entry, target);
  if (moved.result == DiskResult::Done) return {.displaced = moved.displaced};
  if (moved.result == DiskResult::OutOfReach) return {.outcome = Outcome::OutOfReach};
  // Nothing was there to be renamed: that of two decks which is slower sees this each time.
  if (moved.result == DiskResult::NotFound && HasGone(disk_, source)) {
    return {.outcome = Outcome::TakenByAnother, .displaced = moved.displaced};
  }
  return {.outcome = Outcome::Failed,
          .why = moved.result,
          .standsAt = source,
          .displaced = moved.displaced};
}

Carried Carrier::CarryAcross(const std::string& folder, const std::string& entry,
                             const std::string& target, store::InTheWay inTheWay) {
  if (inTheWay == store::InTheWay::GoesToRescue && IsBeingWritten(disk_, target)) {
    return {.outcome = Outcome::InUse};
  }
  const Claims::Taken claim = claims_.Take(folder, entry);
  if (claim.result != DiskResult::Done) {
    return NotClaimed(disk_, folder + entry, claim);
  }
  const store::Moved moved = moves_.Move(claim.path, target, inTheWay);
  if (moved.result == DiskResult::Done || moved.result == DiskResult::OutOfReach) {
    claims_.LetGo();
    const bool done = moved.result == DiskResult::Done;
    return {.outcome = done ? Outcome::Arrived : Outcome::OutOfReach, .displaced = moved.displaced};
  }
  // A copy whose source has gone meanwhile was dropped again, unless it had arrived already.
  if (claims_.WasGivenBack()) {
    claims_.LetGo();
    return {.outcome = moved.arrived ? Outcome::Arrived : Outcome::TakenByAnother,
            .displaced = moved.displaced};
  }
  return {.outcome = Outcome::Failed,
          .why = moved.result,
          .arrived = moved.arrived,
          .standsAt = claims_.GiveBack(),
          .displaced = moved.displaced};
}

}  // namespace tavlo::intake
