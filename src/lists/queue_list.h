#pragma once

#include <string>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "lists/document_scan.h"
#include "playback/audio_engine.h"
#include "store/document_files.h"
#include "window/main_window.h"

namespace tavlo::lists {

/// The documents that wait to be typed. The list holds no data of its own: a scan rebuilds it from
/// the files of the InQueue folder.
class QueueList {
 public:
  QueueList(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
            playback::AudioEngine& engine);

  /// Rows in the list.
  int QueueCount = 0;
  /// Sum of the rows' lengths, milliseconds.
  double QueueTotalLength = 0;

  /// Makes the columns, once at start.
  void MakeColumns(const std::string& subjectHeading);
  /// True when the list is whole. One that is not shows what was found, or what was there before.
  bool RefreshQueueList();

 private:
  std::string NothingWaits() const;
  store::Locked ParseIfFree(store::FolderWalk& walk);

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  store::WorkFolders& folders_;
  store::DocumentNames& names_;
  store::FileMoves& moves_;
  store::RescueCount& rescued_;
  DocumentScan scan_;
};

}  // namespace tavlo::lists
