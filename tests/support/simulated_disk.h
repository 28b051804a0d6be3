#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/loop.h"
#include "store/disk.h"
#include "support/simulated_places.h"

namespace tavlo::test {

/// A disk in memory that refuses what the real one refuses. Folders must be made before files; a
/// folder may be another file system; other programs may hold files open. It records every
/// operation and can fail any of them, lose all from one on, run out of handles, cut the power, or
/// be late.
class SimulatedDisk : public store::Disk {
 public:
  /// Stamps come from the loop's wall clock.
  explicit SimulatedDisk(base::Loop& loop);

  // What stands on the disk before a test acts. Parent folders are made.
  SimulatedDisk& WithFolder(const std::string& path);
  /// The contents tell documents apart.
  SimulatedDisk& WithFile(const std::string& path, const std::string& contents = "sound");
  SimulatedDisk& WithLink(const std::string& path, const std::string& target);
  /// Neither file nor folder nor link.
  SimulatedDisk& WithFifo(const std::string& path);
  /// The folder and what is below it lie on a file system of their own.
  SimulatedDisk& WithFileSystemAt(const std::string& folder);

  // What other programs and people do.
  void OpenWriter(const std::string& path) { entries_.at(Absolute(path)).writers += 1; }
  void CloseWriter(const std::string& path) { entries_.at(Absolute(path)).writers -= 1; }
  void SetReadOnly(const std::string& path) { entries_.at(Absolute(path)).readOnly = true; }
  void SetUnreadable(const std::string& path) { entries_.at(Absolute(path)).unreadable = true; }
  /// Nobody but another user may rename or delete what stands in the folder, or make anything in
  /// it.
  void LockFolder(const std::string& folder) { lockedFolders_.insert(Absolute(folder)); }
  void UnlockFolder(const std::string& folder) { lockedFolders_.erase(Absolute(folder)); }
  void Write(const std::string& path, const std::string& contents);
  void Remove(const std::string& path) { entries_.erase(Absolute(path)); }
  /// Runs once, at the end of the next copy: another program interferes.
  std::function<void()> OnNextCopy;
  /// Runs before each operation: other programs act between any two of them.
  std::function<void()> BetweenOperations;

  // Faults. Operations are counted from the call, the next one being 1.
  enum class Failing { Once, ForGood };
  void FailOperation(int nth, store::DiskResult result, Failing failing = Failing::Once);
  /// At the nth operation the folder stalls, whatever is asked.
  void StallAtOperation(int nth, const std::string& folder);
  void ForgetStall() { stalling_.reset(); }
  /// The nth operation stops halfway and nothing after it reaches the disk.
  void CrashAtOperation(int nth);
  /// An operation may still fail that was told to, or not be answered.
  bool FaultPending() const { return fault_ || stalling_ || Places.AnyStalls(); }
  bool Crashed() const { return crashAt_ && operationCount_ >= *crashAt_; }
  /// Takes back every rename that no flush of the target's folder has made lasting. Deletes last,
  /// and so does what is older than half a minute: a kernel writes by itself, whoever made it.
  void LoseWhatWasNotFlushed();
  /// No more faults; the program starts again.
  void Heal();
  /// Which folders are late.
  SimulatedPlaces Places;
  /// Another part opens the file. Lets the time pass that its place takes; false when it is out of
  /// reach. Neither counted nor recorded.
  bool LetsOpen(const std::string& path) { return Places.Answers({Absolute(path)}, nullptr); }
  /// The folder cannot be listed: the network is down.
  void BreakListing(const std::string& folder) { brokenListings_[Absolute(folder)] = 0; }
  /// The walk over the folder fails after so many names.
  void BreakListingAfter(const std::string& folder, std::size_t names) {
    brokenListings_[Absolute(folder)] = names;
  }
  /// Such a walk fails because the process has no memory left.
  bool ListingBreaksForWantOfMemory = false;
  void MendListing(const std::string& folder) { brokenListings_.erase(Absolute(folder)); }
  /// The process has no handles left: whatever must open a file or a folder is refused.
  bool OutOfHandles = false;
  /// The same for the plain file at this path only.
  std::string OutOfHandlesAt;
  /// Bytes left on the file system that holds `path`; without end until this is called.
  void SetFreeSpace(const std::string& path, std::uint64_t bytes);

  // What stands on the disk now. Looking is neither counted nor recorded.
  bool Has(const std::string& path) const { return entries_.contains(Absolute(path)); }
  bool IsReadOnly(const std::string& path) const { return entries_.at(Absolute(path)).readOnly; }
  std::string Contents(const std::string& path) const;
  std::string LinkTarget(const std::string& path) const { return Contents(path); }
  /// Everything in a folder, sorted, dot files too.
  std::vector<std::string> NamesIn(const std::string& folder) const;
  /// The full paths of all plain files with these contents.
  std::vector<std::string> FilesHolding(const std::string& contents) const;
  std::size_t FileCount() const;
  using LookAtFile = std::function<void(const std::string& path, const std::string& contents)>;
  void ForEachFile(const LookAtFile& look) const;
  /// A number that a file keeps wherever it is moved to, and by which a writer knows the file that
  /// it holds open; 0 when nothing stands there.
  int NumberOf(const std::string& path) const;
  /// Where the file of that number stands; empty when it has gone.
  std::string PathOf(int number) const;

  /// "Rename /from -> /to", "Delete /path" and so on.
  std::vector<std::string> Operations;
  /// The recorded operations that changed, or tried to change, the disk.
  std::vector<std::string> Changes() const;

  /// Folders tell whether their names have changed, but for those that are late.
  bool FoldersAreMarked = false;

  /// Where relative paths begin.
  std::string CurrentFolder = "/current";

  /// Folders and files that walks have not closed yet.
  int HeldByWalks() const { return heldByWalks_; }

  store::Listing ListPlainFiles(const std::string& folder) override;
  store::Listing ListDotFiles(const std::string& folder) override;
  /// Neither counted nor recorded.
  std::optional<store::FolderMark> MarkOf(const std::string& folder) override;
  std::unique_ptr<store::FolderWalk> Walk(const std::string& folder) override;
  std::optional<store::FileFacts> Facts(const std::string& path) override;
  std::optional<std::int64_t> ChangedAt(const std::string& path) override;
  store::Entry Look(const std::string& path) override;
  store::Readiness TestReadiness(const std::string& path) override;
  store::DiskResult SetAttributesNormal(const std::string& path) override;
  store::DiskResult Renew(const std::string& path) override;
  store::DiskResult Copy(const std::string& from, const std::string& to) override;
  store::DiskResult Rename(const std::string& from, const std::string& to) override;
  store::DiskResult Delete(const std::string& path) override;
  store::DiskResult Append(const std::string& path, std::string_view text) override;
  store::DiskResult MakeLink(const std::string& target, const std::string& path) override;
  store::DiskResult MakeFolder(const std::string& path) override;
  store::DiskResult RemoveFolder(const std::string& path) override;
  store::DiskResult FlushFolder(const std::string& folder) override;
  /// A library of the program reads the source and puts a whole file at the path, in place of what
  /// stands there, as one operation.
  store::DiskResult Produce(const std::string& source, const std::string& path,
                            const std::string& contents);
  bool OutOfReach(const std::string& path) override {
    return Places.OwesOrKeepsWaiting(Absolute(path));
  }
  std::uint64_t CallsGivenUp() const override {
    return static_cast<std::uint64_t>(Places.TimesGivenUp);
  }

 private:
  class Walking;

  enum class Kind { File, Folder, Link, Fifo };
  struct Node {
    Kind kind = Kind::File;
    std::string contents;  ///< Of a link: where it leads.
    std::int64_t stamp = 0;
    std::int64_t changedAt = 0;
    int number = 0;  ///< The order of making, which is the folder's own order.
    int writers = 0;
    bool readOnly = false;
    bool unreadable = false;
  };
  struct Fault {
    int at;
    store::DiskResult result;
    Failing failing;
  };
  struct Stalling {
    int at;
    std::string folder;
  };
  /// What an operation does to the disk, now or late.
  using Effect = std::function<store::DiskResult()>;

  enum class Dots { Hidden, Alone };
  store::Listing List(const std::string& folder, Dots dots);
  std::string Absolute(const std::string& path) const;
  std::string FileSystemOf(const std::string& absolute) const;
  std::int64_t Stamp() const;
  Node& Make(const std::string& absolute, Kind kind, const std::string& contents);
  void MakeParents(const std::string& absolute);
  bool Is(const std::string& absolute, Kind kind) const;
  /// What the kernel says of writers and attributes of a plain file that could be opened.
  static store::Readiness ReadinessOf(const Node& node);
  /// Whether something can be made at the path, save that something may stand there.
  store::DiskResult CanHold(const std::string& absolute) const;
  bool TakeSpace(const std::string& absolute, std::uint64_t bytes);
  void MoveEntries(const std::string& from, const std::string& to);
  bool FindsNoHandle(const std::string& absolute) const {
    return OutOfHandles || absolute == OutOfHandlesAt;
  }
  /// Counts and records an operation on the paths and lets the time pass that it takes; gives the
  /// fault that befalls it. One that is out of reach has its effect later, if at all.
  std::optional<store::DiskResult> Begin(const std::string& record,
                                         const std::vector<std::string>& paths,
                                         const Effect& effect = {});
  /// The same for one that opens what is at the first path.
  std::optional<store::DiskResult> BeginToOpen(const std::string& record,
                                               const std::vector<std::string>& paths,
                                               const Effect& effect = {});
  store::DiskResult WhyNotCopied(const std::string& source, const std::string& target) const;
  /// A copy that was left behind goes on, unless something else stands there by now.
  store::DiskResult FinishCopy(const std::string& source, const std::string& target);
  store::DiskResult RenameNow(const std::string& source, const std::string& target);
  store::DiskResult AppendNow(const std::string& absolute, const std::string& text);
  store::DiskResult MakeNew(const std::string& absolute, Kind kind, const std::string& contents);

  base::Loop& loop_;
  std::map<std::string, Node> entries_;
  std::vector<std::string> fileSystems_;
  std::map<std::string, std::uint64_t> freeSpace_;
  std::map<std::string, std::size_t> brokenListings_;
  std::set<std::string> lockedFolders_;
  struct UnflushedRename {
    std::string from;
    std::string to;
    base::MonotonicTime at;
  };
  std::vector<UnflushedRename> unflushedRenames_;
  std::optional<Fault> fault_;
  std::optional<int> crashAt_;
  std::optional<Stalling> stalling_;
  int operationCount_ = 0;
  int lastNumber_ = 0;
  int heldByWalks_ = 0;
};

}  // namespace tavlo::test
