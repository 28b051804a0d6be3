#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include "store/disk.h"
#include "store/unfinished_moves.h"
#include "store/work_folders.h"

namespace tavlo::store {

/// What a file system takes. Documents' names are bounded in characters, see document_name.
inline constexpr std::size_t kMostBytesOfAName = 255;

/// What became of a move.
struct [[nodiscard]] Moved {
  /// Done: the target is whole and the source is gone. OutOfReach: it is not known which of its
  /// steps happen; nothing more was done. Anything else: the source was not moved away; it stands
  /// as before unless `rescued` says where it is.
  DiskResult result = DiskResult::Done;
  /// False with OutOfReach: an earlier call that has nothing to do with the source keeps the place
  /// busy, so not one step was asked for. The source was not moved, and will not be.
  bool asked = true;
  /// The target holds the whole document. Without Done only the last two steps failed, the flush of
  /// the target's folder or the delete of the source.
  bool arrived = false;
  /// Where the document is now that stood at the target. Empty when none did, or it stands there.
  /// With OutOfReach: where it may be.
  std::string displaced;
  /// Where the source is now that could not be moved. Empty when it was not rescued. With
  /// OutOfReach: where it may be.
  std::string rescued;
};

/// What becomes of a document that stands at the target of a move.
enum class InTheWay { GoesToRescue, Stays };

/// Moves documents so that a crash at any point leaves one whole document, or two, never none. What
/// a rule would destroy (a document of the same name that a copy overwrites, a source that goes
/// although its copy failed) goes into the rescue folder instead, under its own name or that name
/// with a number before the extension. Where the rescue folder cannot take it, as a rule because it
/// lies on another file system, it goes behind a dot in its own folder. Only `DeleteForGood`
/// deletes a document.
///
/// A step that is out of reach is the last one: it may happen late, so it is not repeated, and no
/// rescue, no delete and no other try follows on it. A copy that a move so left behind beside its
/// target or at it is taken back by the next list or move once the folders answer; one that a crash
/// left beside its target, by the next move that comes upon its name. A move that is begun anew in
/// a breath of itself, as the end of the session does, takes back what it has made so far. On the
/// loop's thread.
class FileMoves : private UnfinishedMoves::Aside {
 public:
  FileMoves(Disk& disk, const WorkFolders& folders)
      : disk_(disk), folders_(folders), unfinished_(disk, *this) {}

  /// Moves a document; one that stands at the target is rescued. AlreadyThere: what stands at the
  /// target is no plain file, or a document that stays.
  Moved Move(const std::string& source, const std::string& target,
             InTheWay inTheWay = InTheWay::GoesToRescue);

  /// The same as long as one rename does it: OtherFileSystem, and nothing done, where it would need
  /// a copy.
  Moved MoveInOneStep(const std::string& source, const std::string& target,
                      InTheWay inTheWay = InTheWay::GoesToRescue);

  /// A file that was made of a source, on one disk with the target, takes its place there; one that
  /// stands at the target is rescued. Then the source is deleted. Like a move by copy otherwise:
  /// the made file is deleted where it can not have the name. Facts of both must be known.
  Moved Replace(const std::string& source, const std::string& made, const std::string& target);

  /// The same for the rules by which the source goes even when its copy failed: then it is rescued.
  /// It stays where a document is in its way that stays.
  Moved MoveOrRescue(const std::string& source, const std::string& target,
                     InTheWay inTheWay = InTheWay::GoesToRescue);

  struct Place {
    DiskResult result = DiskResult::Done;
    std::string path;
  };
  /// Gives a document another name in its folder, with a number where that is taken, and says where
  /// it is then. With OutOfReach: where it may be.
  Place RenameBeside(const std::string& path, std::string_view name);
  /// Copies a file into a folder, which ends in a separator, under its own name or that name with a
  /// number before the extension, and says where the copy is then. It shows there only when it is
  /// whole; a file that changes meanwhile gives none. Nothing happens to the source.
  Place CopyInto(const std::string& source, const std::string& folder);
  /// Moves a document into the rescue folder and says where it is then.
  Place Rescue(const std::string& path);

  /// For what the user deletes, and the purge. One that is refused with NoAccess is made writable
  /// and tried once more; without Done the document stands, maybe writable by now.
  DiskResult DeleteForGood(const std::string& path);
  /// Whether a move or a delete of what stands at the path was out of reach and may still happen.
  bool IsInDoubt(const std::string& path) const { return inDoubt_.contains(path); }

  /// Takes back the copies of moves that were given up in the middle, as far as their folders
  /// answer. Before each list, which would show a document twice.
  void TakeBackUnfinished() { unfinished_.TakeBack(); }

 private:
  DiskResult SetAside(const std::string& path) override { return Rescue(path).result; }
  Moved RenameOver(const std::string& source, const std::string& target, InTheWay inTheWay);
  /// `aside`: where the document is that stood at the target.
  Moved RenameInto(const std::string& source, const std::string& target, const std::string& aside);
  Moved MoveAcross(const std::string& source, const std::string& target, InTheWay inTheWay);
  /// The steps behind the copy, which is whole.
  Moved PutInPlace(UnfinishedMoves::Unfinished move, InTheWay inTheWay);
  struct Copied {
    DiskResult result = DiskResult::Done;
    std::string path = {};  ///< Empty when nothing can stand there.
    FileFacts before = {};  ///< Of the source.
    FileFacts facts = {};   ///< Of the copy, once it is Done.
  };
  Copied CopyBeside(const std::string& source, const std::string& target);
  DiskResult WhyUnknown(const std::string& path);
  /// Gives the copy the first name of our own that is free in the folder and not spent.
  Copied CopyToFreeName(const std::string& source, const std::string& folder);
  void DropCopy(const UnfinishedMoves::Unfinished& move, DiskResult why);
  DiskResult Rename(const std::string& from, const std::string& to);
  Place RenameToFreeName(const std::string& path, const std::string& folder, std::string_view name);
  bool IsInOurTree(const std::string& folder) const;
  /// One try, of which note is taken.
  DiskResult DeleteNoting(const std::string& path);
  /// Takes note of what came of a move or a delete of what stands at the path. `asked`: a step of
  /// it may have begun.
  void NoteDoubt(const std::string& path, DiskResult result, bool asked);

  Disk& disk_;
  const WorkFolders& folders_;
  UnfinishedMoves unfinished_;
  /// Full paths of copies that a late call may still reach: a rename that comes late must not catch
  /// the copy of another move, half made as it is.
  std::set<std::string> spentNames_;
  /// Full paths of what may still be moved or deleted late.
  std::set<std::string> inDoubt_;
};

/// The n-th choice of a name: the name itself, then "name (2)", "name (3)" and so on, the number
/// before the extension and the stem cut so that the whole is no longer than a name may be.
std::string NumberedName(std::string_view name, int number);

}  // namespace tavlo::store
