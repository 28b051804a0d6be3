#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/time.h"
#include "store/disk.h"
#include "store/work_folders.h"

namespace tavlo::lists {

/// Tells in a text file of the Reports folder what a purge has deleted, a line for each document:
///
///     2004-04-01 08:00:02 deleted, 22 days 17 hours old: 0007 0 Brown 1234 3 9 ... P_.wav
///
/// A name is always one line, whatever it holds (see base::OneLine). On the loop's thread.
class PurgeLog {
 public:
  PurgeLog(store::Disk& disk, const store::WorkFolders& folders) : disk_(disk), folders_(folders) {}

  /// Bytes. A log that holds more becomes the old log, in place of the one before, and a new one is
  /// begun. That is some ten thousand documents, and small enough for any program that shows text;
  /// raising it costs twice as much room on the disk and nothing else.
  static constexpr std::uint64_t kMostBytes = 1'000'000;

  enum class Fate {
    Gone,
    InDoubt,  ///< The place gave no answer: it may still go.
  };
  /// Keeps a line in memory.
  void Note(std::string_view name, std::int64_t ageInMinutes, const base::CalendarTime& deletedAt,
            Fate fate);
  /// Adds all lines to the log at once, and makes the Reports folder if there is none. Says nothing
  /// when it fails: the documents are gone as somebody wanted it, and the start goes on. Nor does
  /// it add to a log that is full and can not become the old one.
  void Write();

 private:
  bool HasRoom();

  store::Disk& disk_;
  const store::WorkFolders& folders_;
  std::string lines_;
};

}  // namespace tavlo::lists
