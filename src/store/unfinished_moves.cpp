#include "store/unfinished_moves.h"

namespace tavlo::store {

void UnfinishedMoves::TakeBack() {
  std::erase_if(moves_, [this](Unfinished& move) { return TakenBack(move); });
}

void UnfinishedMoves::MayStandAt(const std::string& from, const std::string& to) {
  // Only one of the two stands in the end, and the other entry then finds nothing to do.
  std::vector<Unfinished> there;
  for (const Unfinished& move : moves_) {
    if (move.source != from) continue;
    there.push_back(move);
    there.back().source = to;
  }
  moves_.insert(moves_.end(), there.begin(), there.end());
}

bool UnfinishedMoves::TakenBack(Unfinished& move) {
  if (disk_.OutOfReach(move.source) || disk_.OutOfReach(move.target)) return false;
  const Sight source = See(move.source);
  const Sight copy = See(move.copy);
  if (!source.certain || !copy.certain) return false;
  // A document that is not there may be on a device that comes back.
  if (!source.facts) return false;
  if (source.facts != move.before) return true;
  if (copy.facts) {
    // It was not renamed, so what stands at the target is another document.
    move.copied.reset();
    return disk_.Delete(move.copy) != DiskResult::OutOfReach;
  }
  if (!move.copied) return true;
  const Sight target = See(move.target);
  if (!target.certain) return false;
  if (target.facts != move.copied) return true;
  const DiskResult gone = move.deletes ? aside_.SetAside(move.target) : disk_.Delete(move.target);
  return gone != DiskResult::OutOfReach;
}

UnfinishedMoves::Sight UnfinishedMoves::See(const std::string& path) {
  const auto facts = disk_.Facts(path);
  if (facts) return {true, facts};
  // Whatever else stands there, or fails to be looked at, says nothing of the document.
  return {disk_.Look(path) == Entry::Nothing, {}};
}

}  // namespace tavlo::store
