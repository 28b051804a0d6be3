#pragma once

#include <string>
#include <vector>

#include "base/loop.h"
#include "forms/main_form.h"
#include "store/document_files.h"
#include "window/main_window.h"

namespace tavlo::intake {

/// Files that a hand lets go over a list are copied: into the import directory on show, or into the
/// folder of the Queue. Nothing is overwritten; a copy whose name is taken gets a number. What is
/// no plain file of its own, what a program is still writing, and what lies in the deck's own
/// folders is refused with words. On the loop's thread; what it is handed must outlive it.
class DroppedFiles {
 public:
  DroppedFiles(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files);

  /// Takes files, full paths, as if a hand had let them go over the Queue, whatever view shows. The
  /// Queue shows when something has come.
  void TakeIntoQueue(const std::vector<std::string>& paths);
  /// Copies them into the folder of the Queue alone, for a deck that ends: no list is built, and
  /// nothing is said of those that are refused.
  void CopyIntoQueue(const std::vector<std::string>& paths);

 private:
  /// `refresh` is pressed when the list has more to show.
  void Take(const std::vector<std::string>& paths, const std::string& folder,
            forms::Command& refresh);
  /// True when something may have come into the folder.
  bool CopyAll(const std::vector<std::string>& paths, const std::string& folder);
  /// Empty when the file may be copied.
  std::string WhyRefused(const std::string& path);
  bool LiesInOurFolders(const std::string& path) const;

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  store::Disk& disk_;
  store::WorkFolders& folders_;
  store::FileMoves& moves_;
};

}  // namespace tavlo::intake
