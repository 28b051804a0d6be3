#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/disk.h"
#include "store/file_moves.h"
#include "store/work_folders.h"

/// What the quiet line says of files to be imported. `name` is a bare file name.
namespace tavlo::intake {

/// Why a file stays where it is although a command was meant for it.
enum class Stays {
  No,
  IsNew,  ///< It came, or has changed, since the list was built: nobody has seen it.
  InUse,  ///< A program is still writing it.
  Refused,
};

/// What became of a file that was to be deleted.
struct ImportDeletion {
  Stays stays = Stays::No;
  store::DiskResult result = store::DiskResult::Done;
  bool asked = true;  ///< The delete was asked for, so it may still happen where it is OutOfReach.
};
/// Empty when the file was deleted.
std::string ImportDeletionInWords(const ImportDeletion& deletion, const std::string& name);

/// How many files of a directory stayed when all were to be deleted, and why.
struct ImportDeletions {
  int areNew = 0;
  int inUse = 0;
  int refused = 0;
  store::DiskResult result = store::DiskResult::Done;  ///< The first one that is not Done.

  bool All() const { return areNew == 0 && inUse == 0 && refused == 0; }
};
/// Empty when all were deleted.
std::string ImportDeletionsInWords(const ImportDeletions& deletions);

/// What became of a file that was to be sent to the Queue.
struct ImportSent {
  bool inUse = false;        ///< It stays: a copy would lack what its program writes yet.
  bool nameTooLong = false;  ///< To be claimed; with Failed.
  store::Moved moved;

  bool Done() const { return !inUse && moved.result == store::DiskResult::Done; }
};
/// Empty when the file was sent.
std::string ImportSentInWords(const ImportSent& sent, const std::string& name,
                              const store::WorkFolders& folders);

/// How a batch went.
struct ImportBatch {
  int files = 0;  ///< That the directory held.
  int sent = 0;   ///< And have gone from the directory.
  int inUse = 0;
  int failed = 0;
  int rescued = 0;            ///< Of those that failed.
  int arrived = 0;            ///< That are in the Queue and could not be deleted in the directory.
  int notKnown = 0;           ///< Of which a step may still happen.
  bool pastItsTimes = false;  ///< It ended because no more times of day were to be had.
  bool endedEarly = false;    ///< It ended at a file after which none could fare better.
  bool whole = true;          ///< The directory could be listed to its end.
  /// Of what ended it, else the first one that is not Done.
  store::DiskResult result = store::DiskResult::Done;

  /// No file that it came to stays.
  bool NoneStays() const {
    return whole && inUse == 0 && failed == 0 && arrived == 0 && notKnown == 0;
  }
  bool AllSent() const { return NoneStays() && !pastItsTimes && !endedEarly; }
};
/// Empty when all were sent.
std::string ImportBatchInWords(const ImportBatch& batch);

std::string ImportListCutShortInWords();

/// A file that was let go over a list and not taken.
struct NotTaken {
  std::string name;
  std::string why;
};
/// Empty when all were taken. The first ones are named.
std::string NotTakenInWords(const std::vector<NotTaken>& files);

}  // namespace tavlo::intake
