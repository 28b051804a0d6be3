#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavlo::store {

class FolderWalk;

/// How a file operation ended. The caller must look. OutOfReach: the place gave no answer. What was
/// asked may still happen, so it is not asked again.
enum class [[nodiscard]] DiskResult{
    Done,
    NotFound,
    AlreadyThere,
    NoSpace,
    OtherFileSystem,
    NoAccess,
    ProcessInTrouble,  ///< No handles or memory left: nothing is known of the file.
    Failed,
    OutOfReach};

struct FileFacts {
  std::uint64_t size = 0;
  std::int64_t stamp = 0;  ///< Last change of the contents, nanoseconds since 1970.
  bool operator==(const FileFacts&) const = default;
};

/// Tells whether the names in a folder are still those of before.
struct FolderMark {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t changedAt = 0;
  bool operator==(const FolderMark&) const = default;
};

/// The plain files of a folder. When `finished` is false the names are those that came before the
/// walk failed or the folder gave no answer any more; when `started` is false there are none.
struct Listing {
  bool started = false;
  bool finished = false;
  /// The walk did not start, or not go on, because the process has no handles or memory left.
  bool processInTrouble = false;
  std::vector<std::string> names;
};

enum class Readiness {
  Free,              ///< No program writes into it and it may be opened.
  FreeReadOnly,      ///< As Free, and its attributes are not the normal ones.
  InUse,             ///< A program has it open for writing, or it still grows.
  Unusable,          ///< It cannot be opened, or it is no plain file (any more).
  ProcessInTrouble,  ///< The process has no handles or memory left to ask.
  OutOfReach,        ///< The place gave no answer.
};

/// What stands at a path. A link counts as what it leads to, and as Other when it leads nowhere.
/// OutOfReach: the place gave no answer.
enum class Entry { Nothing, PlainFile, Folder, Other, OutOfReach };

/// The narrow interface to the file system. Paths are full paths of bytes; they need not be UTF-8.
/// A path without a folder, and the empty folder, mean the process's current folder. Everything is
/// called on the loop's thread. Except for `Look`, no operation on a file follows a link.
class Disk {
 public:
  virtual ~Disk() = default;

  /// Plain files only, in the folder's own order: no folders, no links, no devices, no dot files.
  virtual Listing ListPlainFiles(const std::string& folder) = 0;
  /// The same for the dot files alone: what decks keep out of every list for a while.
  virtual Listing ListDotFiles(const std::string& folder) = 0;
  /// As long as this is the same no name came, went or changed in the folder. Nothing where that is
  /// not certain: there is no such folder, its names changed a moment ago, so that the next change
  /// could bear the same time, or another machine or program has a part in it.
  virtual std::optional<FolderMark> MarkOf(const std::string& folder) = 0;
  /// Begins a walk over the same files for who asks more of each than its name. `folder` is empty
  /// or ends in a separator. The walk must not outlive the disk.
  virtual std::unique_ptr<FolderWalk> Walk(const std::string& folder) = 0;
  /// Size and stamp of a plain file; nothing when there is none, or when it is out of reach.
  virtual std::optional<FileFacts> Facts(const std::string& path) = 0;
  /// When a plain file was last changed in any way: written, named or renewed. Nanoseconds since
  /// 1970 by the clock of whoever keeps its folder, so moments of one folder alone compare. Nothing
  /// when there is no such file, or when it is out of reach.
  virtual std::optional<std::int64_t> ChangedAt(const std::string& path) = 0;
  virtual Entry Look(const std::string& path) = 0;
  /// Asks the kernel whether a program is still writing the file. Changes nothing.
  virtual Readiness TestReadiness(const std::string& path) = 0;
  /// Makes the file writable for its owner.
  virtual DiskResult SetAttributesNormal(const std::string& path) = 0;
  /// Has the file changed now, as `ChangedAt` tells it; contents and stamp stay. NoAccess for the
  /// file of another user.
  virtual DiskResult Renew(const std::string& path) = 0;

  /// Copies the contents and the stamp into a new file and flushes it to the disk. The copy keeps
  /// the mode, and the owner where that may be; on the way there it is its owner's alone. Refuses
  /// to overwrite; what was copied so far stays behind when it fails.
  virtual DiskResult Copy(const std::string& from, const std::string& to) = 0;
  /// Renames a file or a folder in one step on one file system. Refuses to overwrite.
  virtual DiskResult Rename(const std::string& from, const std::string& to) = 0;
  virtual DiskResult Delete(const std::string& path) = 0;
  /// Adds text to the end of a plain file, which is made when it is missing, and flushes it.
  virtual DiskResult Append(const std::string& path, std::string_view text) = 0;
  /// Makes a link that leads to `target`. AlreadyThere when anything of that name exists.
  virtual DiskResult MakeLink(const std::string& target, const std::string& path) = 0;
  /// One level. AlreadyThere when anything of that name exists.
  virtual DiskResult MakeFolder(const std::string& path) = 0;
  /// Removes a folder and all that it holds. Links in it are removed and not followed.
  virtual DiskResult RemoveFolder(const std::string& path) = 0;
  /// Makes renames and deletes in the folder survive a power cut.
  virtual DiskResult FlushFolder(const std::string& folder) = 0;

  /// Whether the place of `path` owes an answer, be it to a call that still waits for it. Answers
  /// at once.
  virtual bool OutOfReach(const std::string& path) = 0;
  /// How many calls were given up so far that may have begun. A call that is out of reach and makes
  /// this no greater was never made, for its place owed an answer already: nothing comes of it.
  virtual std::uint64_t CallsGivenUp() const = 0;
};

}  // namespace tavlo::store
