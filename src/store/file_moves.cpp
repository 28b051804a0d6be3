#include "store/file_moves.h"

#include <algorithm>
#include <tuple>

namespace tavlo::store {
namespace {

/// How many documents of one name the rescue folder takes. Each costs a look at the names before.
constexpr int kMostOfOneName = 9999;
/// A copy stands under this name until it is whole; the dot keeps it out of every list.
constexpr std::string_view kHalfCopyName = ".TavloDeckMove";

std::string FolderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == path.npos ? "" : path.substr(0, slash + 1);
}

std::string NameOf(const std::string& path) { return path.substr(FolderOf(path).size()); }

bool ContinuesACharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

std::string NumberedName(std::string_view name, int number) {
  const std::string mark = number > 1 ? " (" + std::to_string(number) + ")" : "";
  const auto dot = name.rfind('.');
  const bool hasExtension =
      dot != name.npos && dot > 0 && name.size() - dot < kMostBytesOfAName / 2;
  const auto extension = hasExtension ? name.substr(dot) : std::string_view();
  auto stem = name.substr(0, name.size() - extension.size());
  const std::size_t room = kMostBytesOfAName - mark.size() - extension.size();
  if (stem.size() > room) {
    std::size_t end = room;
    while (end > 0 && room - end < 3 && ContinuesACharacter(stem[end])) --end;
    stem = stem.substr(0, end);
  }
  return std::string(stem) + mark + std::string(extension);
}

Moved FileMoves::Move(const std::string& source, const std::string& target, InTheWay inTheWay) {
  Moved moved = MoveInOneStep(source, target, inTheWay);
  if (moved.result != DiskResult::OtherFileSystem) return moved;
  const std::string displaced = moved.displaced;
  moved = MoveAcross(source, target, inTheWay);
  if (moved.displaced.empty()) moved.displaced = displaced;
  NoteDoubt(source, moved.result, true);
  moved.asked = moved.result != DiskResult::OutOfReach || IsInDoubt(source);
  return moved;
}

Moved FileMoves::MoveInOneStep(const std::string& source, const std::string& target,
                               InTheWay inTheWay) {
  if (source == target) return {.result = DiskResult::Done, .arrived = true};
  unfinished_.TakeBack();
  const std::uint64_t givenUp = disk_.CallsGivenUp();
  Moved moved = RenameOver(source, target, inTheWay);
  const bool asked = disk_.CallsGivenUp() != givenUp || !moved.displaced.empty();
  NoteDoubt(source, moved.result, asked);
  moved.asked = moved.result != DiskResult::OutOfReach || IsInDoubt(source);
  return moved;
}

FileMoves::Place FileMoves::CopyInto(const std::string& source, const std::string& folder) {
  unfinished_.TakeBack();
  const std::string name = NameOf(source);
  const Copied copy = CopyBeside(source, folder + name);
  UnfinishedMoves::Unfinished move{source, copy.path, folder + name, copy.before, {}};
  if (copy.result != DiskResult::Done) {
    DropCopy(move, copy.result);
    return {copy.result, {}};
  }
  Place place = RenameToFreeName(copy.path, folder, name);
  if (place.result == DiskResult::Done) {
    const DiskResult flushed = disk_.FlushFolder(folder);
    // The copy shows already, so only its lasting is not known.
    if (flushed == DiskResult::OutOfReach) place.result = flushed;
    return place;
  }
  DropCopy(move, place.result);
  return {place.result, {}};
}

Moved FileMoves::MoveOrRescue(const std::string& source, const std::string& target,
                              InTheWay inTheWay) {
  Moved moved = Move(source, target, inTheWay);
  const bool mustStay = inTheWay == InTheWay::Stays && moved.result == DiskResult::AlreadyThere;
  const bool isOver = moved.result == DiskResult::Done || moved.result == DiskResult::OutOfReach;
  if (isOver || mustStay) return moved;
  const Place aside = Rescue(source);
  if (aside.result == DiskResult::OutOfReach) {
    moved.result = aside.result;
    NoteDoubt(source, aside.result, true);
  }
  if (moved.result == DiskResult::OutOfReach || aside.result == DiskResult::Done) {
    moved.rescued = aside.path;
  }
  return moved;
}

DiskResult FileMoves::DeleteForGood(const std::string& path) {
  const DiskResult deleted = DeleteNoting(path);
  if (deleted != DiskResult::NoAccess) return deleted;
  // Most places delete what may not be written; only for the others it is made writable, because
  // to do so each time takes as long as the delete.
  const DiskResult madeNormal = disk_.SetAttributesNormal(path);
  return madeNormal == DiskResult::Done ? DeleteNoting(path) : madeNormal;
}

DiskResult FileMoves::DeleteNoting(const std::string& path) {
  const std::uint64_t givenUp = disk_.CallsGivenUp();
  const DiskResult deleted = disk_.Delete(path);
  NoteDoubt(path, deleted, disk_.CallsGivenUp() != givenUp);
  return deleted;
}

void FileMoves::NoteDoubt(const std::string& path, DiskResult result, bool asked) {
  if (result != DiskResult::OutOfReach) {
    inDoubt_.erase(path);
  } else if (asked) {
    inDoubt_.insert(path);
  }
}

/// A document that stands at the target is set aside first. When the rename fails all the same it
/// is put back, which also undoes the case of two spellings of one path.
Moved FileMoves::RenameOver(const std::string& source, const std::string& target,
                            InTheWay inTheWay) {
  const DiskResult renamed = Rename(source, target);
  const bool mayGiveWay = renamed == DiskResult::AlreadyThere && inTheWay == InTheWay::GoesToRescue;
  if (!mayGiveWay) return {.result = renamed, .arrived = renamed == DiskResult::Done};
  if (!disk_.Facts(target)) {
    return {.result = disk_.OutOfReach(target) ? DiskResult::OutOfReach : renamed};
  }
  const Place aside = Rescue(target);
  if (aside.result != DiskResult::Done) {
    const bool mayBeThere = aside.result == DiskResult::OutOfReach;
    return {.result = aside.result, .displaced = mayBeThere ? aside.path : ""};
  }
  return RenameInto(source, target, aside.path);
}

Moved FileMoves::RenameInto(const std::string& source, const std::string& target,
                            const std::string& aside) {
  const DiskResult renamed = Rename(source, target);
  if (renamed == DiskResult::Done) return {.result = renamed, .arrived = true, .displaced = aside};
  if (renamed == DiskResult::OutOfReach) return {.result = renamed, .displaced = aside};
  const DiskResult back = Rename(aside, target);
  if (back == DiskResult::Done) return {.result = renamed};
  return {.result = back == DiskResult::OutOfReach ? back : renamed, .displaced = aside};
}

Moved FileMoves::MoveAcross(const std::string& source, const std::string& target,
                            InTheWay inTheWay) {
  const Copied copy = CopyBeside(source, target);
  UnfinishedMoves::Unfinished move{source, copy.path, target, copy.before, {}};
  if (copy.result != DiskResult::Done) {
    DropCopy(move, copy.result);
    return {.result = copy.result};
  }
  move.copied = copy.facts;
  return PutInPlace(std::move(move), inTheWay);
}

Moved FileMoves::Replace(const std::string& source, const std::string& made,
                         const std::string& target) {
  unfinished_.TakeBack();
  const auto before = disk_.Facts(source);
  const auto facts = disk_.Facts(made);
  if (!before) return {.result = WhyUnknown(source)};
  if (!facts) return {.result = WhyUnknown(made)};
  return PutInPlace({source, made, target, *before, *facts}, InTheWay::GoesToRescue);
}

Moved FileMoves::PutInPlace(UnfinishedMoves::Unfinished move, InTheWay inTheWay) {
  // The session may end in a breath of what follows, and then begins the same move anew.
  unfinished_.Add(move);
  Moved moved = RenameOver(move.copy, move.target, inTheWay);
  if (moved.result != DiskResult::Done && moved.result != DiskResult::OutOfReach) {
    unfinished_.Forget(move);
    move.copied.reset();
    DropCopy(move, moved.result);
    return moved;
  }
  // The source must not go before the new name is sure to stay.
  if (moved.result == DiskResult::Done) moved.result = disk_.FlushFolder(FolderOf(move.target));
  if (moved.result == DiskResult::Done) {
    unfinished_.Forget(move);
    move.deletes = true;
    unfinished_.Add(move);
    moved.result = disk_.Delete(move.source);
  }
  if (moved.result == DiskResult::OutOfReach) {
    spentNames_.insert(move.copy);
  } else {
    unfinished_.Forget(move);
  }
  return moved;
}

/// A copy that gave no answer may still grow, so it goes later.
void FileMoves::DropCopy(const UnfinishedMoves::Unfinished& move, DiskResult why) {
  if (move.copy.empty()) return;
  const bool goesLater =
      why == DiskResult::OutOfReach || disk_.Delete(move.copy) == DiskResult::OutOfReach;
  if (!goesLater) return;
  spentNames_.insert(move.copy);
  unfinished_.Add(move);
}

/// Why nothing is known of a file. One of which the folder has lost its server is not gone.
DiskResult FileMoves::WhyUnknown(const std::string& path) {
  const Entry stands = disk_.Look(path);
  if (stands == Entry::OutOfReach || disk_.OutOfReach(path)) return DiskResult::OutOfReach;
  return stands == Entry::Nothing ? DiskResult::NotFound : DiskResult::Failed;
}

/// Copies the source under a name of our own into the target's folder and makes sure that all of it
/// arrived, and that it did not change on the way.
FileMoves::Copied FileMoves::CopyBeside(const std::string& source, const std::string& target) {
  const auto before = disk_.Facts(source);
  if (!before) return {.result = WhyUnknown(source)};
  Copied copy = CopyToFreeName(source, FolderOf(target));
  copy.before = *before;
  if (copy.result != DiskResult::Done) return copy;
  const auto arrived = disk_.Facts(copy.path);
  if (arrived) copy.facts = *arrived;
  const bool whole = arrived && arrived->size == before->size && disk_.Facts(source) == before;
  const bool noAnswer = disk_.OutOfReach(copy.path) || disk_.OutOfReach(source);
  if (!whole) copy.result = noAnswer ? DiskResult::OutOfReach : DiskResult::Failed;
  return copy;
}

FileMoves::Copied FileMoves::CopyToFreeName(const std::string& source, const std::string& folder) {
  for (int number = 1; number <= kMostOfOneName; ++number) {
    const std::string path = folder + NumberedName(kHalfCopyName, number);
    if (spentNames_.contains(path)) continue;
    const DiskResult copied = disk_.Copy(source, path);
    if (copied != DiskResult::AlreadyThere) return {.result = copied, .path = path};
    // Only this program moves files in its own tree, so what stands there is left from a crash. A
    // call of that time may still come.
    if (!IsInOurTree(folder)) continue;
    spentNames_.insert(path);
    if (disk_.Delete(path) == DiskResult::OutOfReach) return {.result = DiskResult::OutOfReach};
  }
  return {.result = DiskResult::AlreadyThere};
}

DiskResult FileMoves::Rename(const std::string& from, const std::string& to) {
  const DiskResult renamed = disk_.Rename(from, to);
  const bool mayHaveMoved = renamed == DiskResult::Done || renamed == DiskResult::OutOfReach;
  if (mayHaveMoved) unfinished_.MayStandAt(from, to);
  return renamed;
}

FileMoves::Place FileMoves::Rescue(const std::string& path) {
  const std::string rescued = folders_.RescuedPath();
  std::ignore = disk_.MakeFolder(rescued.substr(0, rescued.size() - 1));
  const Place place = RenameToFreeName(path, rescued, NameOf(path));
  const bool isOver = place.result == DiskResult::Done || place.result == DiskResult::OutOfReach;
  return isOver ? place : RenameToFreeName(path, FolderOf(path), ".Rescued " + NameOf(path));
}

FileMoves::Place FileMoves::RenameBeside(const std::string& path, std::string_view name) {
  return RenameToFreeName(path, FolderOf(path), name);
}

FileMoves::Place FileMoves::RenameToFreeName(const std::string& path, const std::string& folder,
                                             std::string_view name) {
  for (int number = 1; number <= kMostOfOneName; ++number) {
    const std::string free = folder + NumberedName(name, number);
    const DiskResult renamed = Rename(path, free);
    if (renamed != DiskResult::AlreadyThere) return {renamed, free};
  }
  return {DiskResult::AlreadyThere, {}};
}

bool FileMoves::IsInOurTree(const std::string& folder) const {
  return folder.starts_with(folders_.InstallRoot + "/");
}

}  // namespace tavlo::store
