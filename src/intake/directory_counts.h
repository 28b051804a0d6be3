#pragma once

#include <string>

#include "base/loop.h"
#include "base/timer_queue.h"
#include "store/disk.h"
#include "store/work_folders.h"
#include "window/main_window.h"

namespace tavlo::intake {

/// Says in `frameImportDirectories` how many files wait in each import directory. That of the list
/// on show is what the list holds; the others are looked at one by one behind each new list, so
/// that no command waits for them. Like the list they are right as of the last look only. On the
/// loop's thread; what it is handed must outlive it.
class DirectoryCounts {
 public:
  DirectoryCounts(base::Loop& loop, window::MainWindow& window, store::Disk& disk,
                  const store::WorkFolders& folders);

  /// The list of the directory on show has so many rows. `whole`: these are all that it has.
  void ListWasBuilt(int rows, bool whole);
  /// Looks at all other directories anew, as long as the Import view shows.
  void LookAround();

 private:
  void LookAtNext();
  void ForgetFrom(int directory);
  void Write(int directory, const std::string& count);
  int Shown() const;

  forms::MainForm& form_;
  window::MainWindow& window_;
  store::Disk& disk_;
  const store::WorkFolders& folders_;
  /// The directory that is looked at next.
  int next_ = 0;
  base::Timer tmrImportDirectories_;
};

}  // namespace tavlo::intake
