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
  if (source == target) return {.result = DiskResult::Done, .arrived = true};
  const Moved renamed = RenameOver(source, target, inTheWay);
  if (renamed.result != DiskResult::OtherFileSystem) return renamed;
  Moved across = MoveAcross(source, target, inTheWay);
  if (across.displaced.empty()) across.displaced = renamed.displaced;
  return across;
}

Moved FileMoves::MoveOrRescue(const std::string& source, const std::string& target,
                              InTheWay inTheWay) {
  Moved moved = Move(source, target, inTheWay);
  const bool mustStay = inTheWay == InTheWay::Stays && moved.result == DiskResult::AlreadyThere;
  if (moved.result == DiskResult::Done || mustStay) return moved;
  const Place aside = Rescue(source);
  if (aside.result == DiskResult::Done) moved.rescued = aside.path;
  return moved;
}

DiskResult FileMoves::DeleteForGood(const std::string& path) { return disk_.Delete(path); }

/// A document that stands at the target is set aside first. When the rename fails all the same it
/// is put back, which also undoes the case of two spellings of one path.
Moved FileMoves::RenameOver(const std::string& source, const std::string& target,
                            InTheWay inTheWay) {
  const DiskResult renamed = disk_.Rename(source, target);
  const bool documentGivesWay = renamed == DiskResult::AlreadyThere &&
                                inTheWay == InTheWay::GoesToRescue && disk_.Facts(target);
  if (!documentGivesWay) return {.result = renamed, .arrived = renamed == DiskResult::Done};
  const Place aside = Rescue(target);
  if (aside.result != DiskResult::Done) return {.result = aside.result};
  const DiskResult again = disk_.Rename(source, target);
  if (again == DiskResult::Done) {
    return {.result = again, .arrived = true, .displaced = aside.path};
  }
  const bool back = disk_.Rename(aside.path, target) == DiskResult::Done;
  return {.result = again, .displaced = back ? "" : aside.path};
}

Moved FileMoves::MoveAcross(const std::string& source, const std::string& target,
                            InTheWay inTheWay) {
  const Place copy = CopyBeside(source, target);
  if (copy.result != DiskResult::Done) return {.result = copy.result};
  Moved moved = RenameOver(copy.path, target, inTheWay);
  if (moved.result != DiskResult::Done) {
    std::ignore = disk_.Delete(copy.path);
    return moved;
  }
  // The source must not go before the new name is sure to stay.
  moved.result = disk_.FlushFolder(FolderOf(target));
  if (moved.result == DiskResult::Done) moved.result = disk_.Delete(source);
  return moved;
}

/// Copies the source under a name of our own into the target's folder and makes sure that all of it
/// arrived, and that it did not change on the way.
FileMoves::Place FileMoves::CopyBeside(const std::string& source, const std::string& target) {
  const auto before = disk_.Facts(source);
  if (!before) return {DiskResult::NotFound, {}};
  const std::string folder = FolderOf(target);
  DiskResult copied = DiskResult::AlreadyThere;
  std::string path;
  for (int number = 1; copied == DiskResult::AlreadyThere && number <= kMostOfOneName; ++number) {
    path = folder + NumberedName(kHalfCopyName, number);
    copied = disk_.Copy(source, path);
    // Only this program moves files in its own tree, so what stands there is left from a crash.
    if (copied == DiskResult::AlreadyThere && IsInOurTree(folder) &&
        disk_.Delete(path) == DiskResult::Done) {
      copied = disk_.Copy(source, path);
    }
  }
  if (copied == DiskResult::AlreadyThere) return {copied, {}};
  const auto arrived = disk_.Facts(path);
  const bool whole = arrived && arrived->size == before->size && disk_.Facts(source) == before;
  if (copied == DiskResult::Done && whole) return {DiskResult::Done, path};
  std::ignore = disk_.Delete(path);
  return {copied == DiskResult::Done ? DiskResult::Failed : copied, {}};
}

FileMoves::Place FileMoves::Rescue(const std::string& path) {
  const std::string rescued = folders_.RescuedPath();
  std::ignore = disk_.MakeFolder(rescued.substr(0, rescued.size() - 1));
  const Place place = RenameToFreeName(path, rescued, "");
  return place.result == DiskResult::Done ? place
                                          : RenameToFreeName(path, FolderOf(path), ".Rescued ");
}

FileMoves::Place FileMoves::RenameToFreeName(const std::string& path, const std::string& folder,
                                             std::string_view prefix) {
  const std::string name = std::string(prefix) + NameOf(path);
  for (int number = 1; number <= kMostOfOneName; ++number) {
    const std::string free = folder + NumberedName(name, number);
    const DiskResult renamed = disk_.Rename(path, free);
    if (renamed != DiskResult::AlreadyThere) return {renamed, free};
  }
  return {DiskResult::AlreadyThere, {}};
}

bool FileMoves::IsInOurTree(const std::string& folder) const {
  return folder.starts_with(folders_.InstallRoot + "/");
}

}  // namespace tavlo::store
