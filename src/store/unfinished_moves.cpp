#include "store/unfinished_moves.h"

namespace tavlo::store {

void UnfinishedMoves::Forget(const Unfinished& move) {
  std::erase_if(moves_, [&move](const Unfinished& other) {
    return other.source == move.source && other.copy == move.copy;
  });
}

void UnfinishedMoves::TakeBack() {
  // What is asked for here may add to the moves, or take some back in its breath.
  const std::vector<Unfinished> moves = moves_;
  for (const Unfinished& move : moves) {
    if (TakenBack(move)) Forget(move);
  }
}

void UnfinishedMoves::MayStandAt(const std::string& from, const std::string& to) {
  // Only one of the two stands in the end, and the other entry then finds nothing to do.
  std::vector<Unfinished> there;
  for (const Unfinished& move : moves_) {
    if (move.source != from) continue;
    there.push_back(move);
    there.back().source = to;
    // What is seen at the target then is the document itself, and never a copy to be taken back.
    if (to == move.target) there.back().copied.reset();
  }
  moves_.insert(moves_.end(), there.begin(), there.end());
}

bool UnfinishedMoves::TakenBack(const Unfinished& move) {
  if (disk_.OutOfReach(move.source) || disk_.OutOfReach(move.target)) return false;
  const Sight source = See(move.source);
  const Sight copy = See(move.copy);
  if (!source.certain || !copy.certain) return false;
  // A document that is not there may be on a device that comes back.
  if (!source.facts) return false;
  if (source.facts != move.before) return true;
  if (copy.facts) {
    if (disk_.Delete(move.copy) != DiskResult::OutOfReach) return true;
    // It was not renamed, so what stands at the target is another document.
    for (Unfinished& other : moves_) {
      if (other.copy == move.copy) other.copied.reset();
    }
    return false;
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
