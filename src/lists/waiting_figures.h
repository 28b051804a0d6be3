#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/loop.h"
#include "lists/waiting_work.h"
#include "store/disk.h"
#include "store/work_folders.h"

namespace tavlo::lists {

/// How a count of what waits ended.
enum class Counted {
  Whole,
  /// A folder could not be listed to its end. The figures are those of the last look, so that
  /// nothing seems to have changed.
  Failed,
  /// The folders take long to answer: the next call goes on where this one has ended. The figures
  /// are as they were.
  NotYet,
};

/// A count that has come as far as one of the folders.
struct Tally {
  std::int16_t queue = 0;
  std::int16_t queuePriority = 0;
  std::int16_t import = 0;
  std::int16_t importPriority = 0;
  int nextFolder = 0;
  bool isLook = false;  ///< What it comes to is taken as seen.
};

/// How much waits in the folders that feed the Queue, and how much did at the last look. Names are
/// counted, so a file that is still being written counts, and a folder whose names have not changed
/// need not be listed again. The Queue itself, and what a download left behind, is not looked at.
/// On the loop's thread, which breathes between two folders; a folder that may stall is listed by a
/// thread of its own, so one without an answer holds up no more than the count.
class WaitingFigures : public WorkFigures {
 public:
  /// All of them must outlive it.
  WaitingFigures(base::Loop& loop, store::Disk& disk, const store::WorkFolders& folders);

  // A figure stays at its largest value where more waits.
  std::int16_t WaitingQueueCount = 0;
  std::int16_t WaitingQueuePriorityCount = 0;
  std::int16_t WaitingImportCount = 0;
  std::int16_t WaitingImportPriorityCount = 0;
  std::int16_t LastQueueCount = 0;
  std::int16_t LastQueuePriorityCount = 0;
  std::int16_t LastImportCount = 0;
  std::int16_t LastImportPriorityCount = 0;

  /// No feet are heard while the loop breathes, so a count is cut into pieces of about this length.
  /// A longer one keeps a typist waiting, a shorter one makes a count over a slow share take more
  /// of them.
  static constexpr base::Duration kLongestPiece = std::chrono::milliseconds{500};

  /// Fills the four current figures, once it has come through all folders.
  Counted CountWaitingWork();
  /// The next count goes on with one that was not yet whole.
  bool CountIsUnderWay() const { return tally_.has_value(); }
  void SyncLastSeenFigures();
  /// The same for the figures of one side alone.
  void SyncQueueFigures();
  void SyncImportFigures();

  /// Counts anew and takes that as seen, by a later count where this one takes long. Where it fails
  /// the figures of the last look stay, but for those that the next whole count finds to be lower.
  void TakeWaitingWorkAsSeen() override;

 private:
  struct Sum {
    std::int16_t& all;
    std::int16_t& priority;
  };
  /// What a folder held when it was last listed.
  struct KnownFolder {
    std::string path;
    std::optional<store::FolderMark> mark;
    std::int16_t all = 0;
    std::int16_t priority = 0;
  };
  Counted CountOn();
  bool CountNext();
  /// Adds the names with that ending, in either case; the folder is listed only where its names may
  /// have changed. False when it could not be.
  bool Count(const std::string& folder, std::string_view ending, const Sum& sum);
  std::optional<KnownFolder> List(const std::string& folder, std::string_view ending);
  bool CountImportDirectory(int directory, const Sum& sum);
  void TakeTally();
  void GoBackToLastSeen();
  void LowerLastSeen();

  base::Loop& loop_;
  store::Disk& disk_;
  const store::WorkFolders& folders_;
  /// The count under way.
  std::optional<Tally> tally_;
  std::map<int, KnownFolder> known_;  ///< By their places in the order of counting.
  /// A look has failed.
  bool lookIsOwed_ = false;
};

}  // namespace tavlo::lists
