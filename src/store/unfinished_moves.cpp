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
  if (source.facts != move.before) return true;
  if (copy.facts) {
    // It was not renamed, so what stands at the target is another document.
    move.copied.reset();
    return disk_.Delete(move.copy) != DiskResult::OutOfReach;
  }
  if (!move.copied) return true;
  const Sight target = See(move.target);
  if (!target.certain) return false;
  return target.facts != move.copied || disk_.Delete(move.target) != DiskResult::OutOfReach;
}

UnfinishedMoves::Sight UnfinishedMoves::See(const std::string& path) {
  const auto facts = disk_.Facts(path);
  if (facts) return {true, facts};
  const Entry standing = disk_.Look(path);
  // A plain file without facts was out of reach when it was asked for them.
  return {standing != Entry::OutOfReach && standing != Entry::PlainFile, {}};
}

}  // namespace tavlo::store
