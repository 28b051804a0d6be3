#pragma once

#include <cstdint>
#include <string>

#include "base/loop.h"
#include "lists/purge_log.h"
#include "store/disk.h"
#include "store/document_files.h"
#include "store/document_name.h"
#include "store/file_moves.h"
#include "store/work_folders.h"

namespace tavlo::lists {

/// Deletes completed documents that are older than a person has set, once at each start. Only the
/// dictation date in the name counts (see store::PurgeDate), not the day of the completion, nor the
/// stamp of the file.
///
/// The run shows, says and speaks nothing, whatever happens. What it deleted stands in the purge
/// log. Three of its habits are our own decisions and stay:
/// - a file whose name does not hold to the grammar of store/document_name, or tells of a day that
///   does not exist, ends the run, and so does one that can not be deleted;
/// - a run looks at 1000 names at most, the rest follows at the next starts;
/// - 23 days and more delete nothing.
class CompletedPurge {
 public:
  CompletedPurge(base::Loop& loop, const store::DocumentFiles& files)
      : loop_(loop),
        disk_(files.disk),
        folders_(files.folders),
        moves_(files.moves),
        names_(loop),
        log_(files.disk, files.folders) {}

  /// Names, in the folder's own order.
  static constexpr int kMostNamesInARun = 1000;

  /// Deletes for good what is older than so many days; 0 keeps everything. Breathes before each
  /// document.
  void PurgeCompletedFiles(std::uint8_t days);
  /// Writes what the log lacks where the session ends in a breath of the run; nothing otherwise.
  void WriteLog() { log_.Write(); }

 private:
  /// False when the run ends here.
  bool PurgeIfOlder(const std::string& name, std::int64_t limitInMinutes);

  base::Loop& loop_;
  store::Disk& disk_;
  const store::WorkFolders& folders_;
  store::FileMoves& moves_;
  /// Of its own: the record of the lists keeps a part of the name that was parsed before.
  store::DocumentNames names_;
  PurgeLog log_;
};

}  // namespace tavlo::lists
